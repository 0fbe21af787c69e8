// Start-up of the editor: the defaults, the flat tile, the open tile and the
// two world databases, then frames until the quit command ends the run.
#include "app/Main.h"
#include "app/Airports.h"
#include "app/Navaids.h"
#include "app/Panel_layout.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstring>

void set_msc_defaults()
{
    std::memset(&msc, 0, sizeof msc);
    msc.screen = 200;
    msc.lat = 33;
    msc.lon = -119;
    msc.sel_row = 29;
    msc.sel_col = 39;
    msc.map_zoom = 1.0f;
    msc.apt_zoom = 1.0f;
    msc.obj_tool = 95;
}

void lay_flat_grid()
{
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) {
            planelon[i][j] = interp(0, msc.lon, 59, msc.lon + 1, (float)i, 0);
            planelat[i][j] = interp(0, msc.lat, 79, msc.lat + 1, (float)j, 0);
            planey[i][j] = 0;
            is_water[i][j] = 1;
        }
}

void clear_feature_tables()
{
    for (int v = 0; v < nav_cap; v++) nav_type[v] = 0;
    for (int n = 0; n < obj_cap; n++) {
        obj_type[n] = 0;
        C_to_C("?", obj_name[n]);
        obj_hddz[n] = 100.0f;
    }
}

// The nine stock terrain textures, in the order that shows the splash first at 50.
void load_stock_textures()
{
    static const struct { int id; const char* name; } stock[9] = {
        {50, "Norsuite Resources:textures:terrain:wat"},
        {54, "Norsuite Resources:textures:terrain:grs"},
        {58, "Norsuite Resources:textures:terrain:mnt"},
        {51, "Norsuite Resources:textures:terrain:grs_wat_h"},
        {52, "Norsuite Resources:textures:terrain:grs_wat_c"},
        {53, "Norsuite Resources:textures:terrain:wat_grs_c"},
        {55, "Norsuite Resources:textures:terrain:grs_mnt_h"},
        {56, "Norsuite Resources:textures:terrain:grs_mnt_c"},
        {57, "Norsuite Resources:textures:terrain:mnt_grs_c"},
    };
    int width, height;
    for (int k = 0; k < 9; k++) OGL_texbmp(-100, stock[k].id, 0, -104, stock[k].name, &width, &height, 1.0f);
}

// ---- apt.dat ------------------------------------------------------------------------

// Counts one more row in a table; every 400th moves the splash progress.
static void count_row(int* last_row, int progress_every)
{
    int before = *last_row;
    *last_row = before + 1;
    if (before % progress_every == 0) MACIBM_showinit(1);
}

static void load_airport_record()
{
    count_row(&apt_wrl_max, 400);
    if (apt_wrl_max >= apt_cap)
        MACIBM_alert("Too many airports in apt.dat file!", "", "", &apt_wrl_max, alert_fatal_number);
    int a = apt_wrl_max;
    fio_apt_line(&apt_h[a], &apt_twr[a], &apt_bld[a], apt_id[a], apt_name[a], 1);
    apt_lo_ind[a] = rwy_wrl_max + 1;
    // Until a runway line follows, the airport's run is empty (hi = lo - 1),
    // so that an airport without runways keeps the runs of later airports intact.
    apt_hi_ind[a] = rwy_wrl_max;
}

// A runway line ahead of any airport line has no airport to belong to: it is
// read past, and the user is told once.
static void skip_orphan_runway()
{
    static int told = 0;
    float lat, lon, hdng, len, width;
    int num, code;
    char lcr;
    fio_rwy_line(&lat, &lon, &num, &lcr, &hdng, &len, &width, &code, 1);
    if (told) return;
    told = 1;
    MACIBM_alert("A runway line in apt.dat comes before the first airport line.",
                 "It belongs to no airport and was left out:", apt_path,
                 "Saving the airports writes the file without it.", alert_warning);
}

static void load_runway_record()
{
    if (apt_wrl_max < 0) {
        skip_orphan_runway();
        return;
    }
    count_row(&rwy_wrl_max, 400);
    if (rwy_wrl_max >= rwy_cap)
        MACIBM_alert("Too many runways in apt.dat file!", "", "", &rwy_wrl_max, alert_fatal_number);
    int w = rwy_wrl_max;
    fio_rwy_line(&rwy_lat[w], &rwy_lon[w], &rwy_num[w], &rwy_lcr[w], &rwy_hdng[w],
                 &rwy_len[w], &rwy_width[w], &rwy_code[w], 1);
    apt_hi_ind[apt_wrl_max] = w;
}

static void database_path(const char* file, char* out)
{
    C_plus_C("Earth", path_sep_str, out);
    app_C(out, file);
    ap_dir("additional nav data", out);
}

void load_airports()
{
    database_path("apt.dat", apt_path);
    if (!inf_open(apt_path, kind_apt, 500, 1))
        MACIBM_alert("I am unable to access the airport data file!",
                     "The path I am looking at is as follows:", apt_path, "", alert_fatal);
    apt_wrl_max = -1;
    rwy_wrl_max = -1;
    for (;;) {
        int code = intscan(apt_path);
        if (code == 99) break;
        if (code == 1) load_airport_record();
        if (code == 10) load_runway_record();
    }
    inf_close();
}

// ---- nav.dat --------------------------------------------------------------------------

void load_navaids()
{
    database_path("nav.dat", nav_path);
    if (!inf_open(nav_path, kind_nav, 500, 1))
        MACIBM_alert("I am unable to access the nav data file!",
                     "The path I am looking at is as follows:", nav_path, "", alert_fatal);
    nav_wrl_max = -1;
    for (;;) {
        int code = intscan(nav_path);
        if (code == 99) break;
        nav_wrl_max++;
        if (nav_wrl_max % 200 == 0) MACIBM_showinit(1);
        if (nav_wrl_max >= nav_load_cap)
            MACIBM_alert("Too many navs in nav.dat file!", "", "", &nav_wrl_max, alert_fatal_number);
        int v = nav_wrl_max;
        nav_type[v] = code;
        fio_nav_line(&nav_type[v], &nav_lat[v], &nav_lon[v], &nav_h[v], &nav_frq[v], &nav_hdng[v],
                     nav_id[v], nav_name[v], 1);
    }
    inf_close();
}

// ---- the entry ------------------------------------------------------------------------

// The preference file is a file on disk like any other: a value outside what
// the editor itself could have written takes its default, and the run goes on.
// The tile is checked against the range of the tile spinners.
void keep_place_in_range()
{
    if (!fltrange(msc.lat, -99, 99) || !fltrange(msc.lon, -999, 999)) {
        msc.lat = 33;
        msc.lon = -119;
    }
    if (!intrange(msc.screen, 200, 203)) msc.screen = 200;
    if (!intrange(msc.ter_tool, 0, 4)) msc.ter_tool = 0;
}

// Selections are checked once the tables are loaded: a row in use, or 0.
void keep_selections_in_tables()
{
    if (!intrange(msc.apt_sel, 0, apt_wrl_max)) msc.apt_sel = 0;
    if (!intrange(msc.nav_sel, 0, nav_cap - 1) || nav_type[msc.nav_sel] == 0) msc.nav_sel = 0;
}

// The window, the preferences, the stock textures, the tile and both databases:
// everything the first frame needs.
void start_editor()
{
    MACIBM_init();
    set_msc_defaults();
    handle_prefs(0, 5, gen_path);
    keep_place_in_range();
    load_stock_textures();
    lay_flat_grid();
    clear_feature_tables();
    read_terrain();
    load_airports();
    load_navaids();
    keep_selections_in_tables();
}

int WinMain(void* instance, int show_window)
{
    active_inst = instance;
    active_windstyle = show_window;
    start_editor();
    while (!gdone) MACIBM_event_proc();
    MACIBM_finishup();
    return 0;
}

// ---- zoom, pan and the editing commands ------------------------------------------------

static void zoom_airport_diagram(int command)
{
    if (command == cmd_pan_right) msc.apt_dx -= 50;
    if (command == cmd_pan_left) msc.apt_dx += 50;
    if (command == cmd_pan_up) msc.apt_dy -= 50;
    if (command == cmd_pan_down) msc.apt_dy += 50;
    float factor = 1.0f;
    if (command == cmd_zoom_in && msc.apt_zoom < 9.3132257f) factor = 1.25f;   // 1.25 to the 10th
    if (command == cmd_zoom_out && msc.apt_zoom > 1.0f) factor = 0.75f;
    msc.apt_zoom *= factor;
    msc.apt_dx *= factor;
    msc.apt_dy *= factor;
    msc.apt_dx = fltlim(msc.apt_dx, -2000, 2000);
    msc.apt_dy = fltlim(msc.apt_dy, -2000, 2000);
    if (msc.apt_zoom < 1.01f) msc.apt_dx = msc.apt_dy = 0;
}

// The pan step is a tenth of the visible degree, taken after the zoom changed;
// zooming moves the view along the diagonal so that it closes in on the tile.
static void zoom_map(int command)
{
    if (command == cmd_zoom_in && msc.map_zoom < 30) {
        msc.map_zoom *= 1.2f;
        float step = 0.1f / msc.map_zoom;
        msc.map_dlon += step;
        msc.map_dlat += step;
    }
    if (command == cmd_zoom_out) {
        msc.map_zoom /= 1.2f;
        float step = 0.1f / msc.map_zoom;
        msc.map_dlon -= step;
        msc.map_dlat -= step;
    }
    float step = 0.1f / msc.map_zoom;
    if (command == cmd_pan_up) msc.map_dlat += step;
    if (command == cmd_pan_down) msc.map_dlat -= step;
    if (command == cmd_pan_left) msc.map_dlon -= step;
    if (command == cmd_pan_right) msc.map_dlon += step;
    if (msc.map_zoom < 1) {
        msc.map_zoom = 1;
        msc.map_dlat = msc.map_dlon = 0;
    }
    msc.map_dlat = fltlim(msc.map_dlat, -0.9999f, 0.9999f);
    msc.map_dlon = fltlim(msc.map_dlon, -0.9999f, 0.9999f);
}

void handle_zoom(int command)
{
    if (msc.screen == cmd_screen_airports) zoom_airport_diagram(command);
    if (msc.screen == cmd_screen_terrain || msc.screen == cmd_screen_obstacles) zoom_map(command);
}

// The level of a water cell whose corners round to three equal heights and
// one other; -999 when there is none.
static int water_level(int e1, int e2, int e3, int e4)
{
    int a = e1 == e2, b = e2 == e3, c = e3 == e4, d = e4 == e1;
    if (a && b && !c && !d) return e3;
    if (a && !b && !c && d) return e2;
    if (!a && !b && c && d) return e1;
    if (!a && b && c && !d) return e4;
    return -999;
}

// Pulls the odd corner of each water cell to the level of the other three.
// Later cells see the edits of earlier ones; the tile is not marked changed.
void flatten_water()
{
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            if (!is_water[i][j]) continue;
            int level = water_level(intround(planey[i][j]), intround(planey[i][j + 1]),
                                    intround(planey[i + 1][j]), intround(planey[i + 1][j + 1]));
            if (!(level > -998)) continue;
            planey[i][j] = planey[i][j + 1] = planey[i + 1][j] = planey[i + 1][j + 1] = (float)level;
        }
}

// The terrain tools run 0 to 4; the obstacle tools 0, 96, 95. A value outside
// its cycle stays as it is.
void cycle_tool()
{
    if (msc.screen == cmd_screen_terrain && intrange(msc.ter_tool, 0, 4))
        msc.ter_tool = intwrap(msc.ter_tool + 1, 0, 4);
    if (msc.screen == cmd_screen_obstacles) {
        if (msc.obj_tool == 0) msc.obj_tool = 96;
        else if (msc.obj_tool == 96) msc.obj_tool = 95;
        else if (msc.obj_tool == 95) msc.obj_tool = 0;
    }
}

// ---- commands and keys ----------------------------------------------------------------------

static int on_map_screen() { return msc.screen == cmd_screen_terrain || msc.screen == cmd_screen_obstacles; }

// Asks for each changed store in turn; a Cancel ends the quit there, with
// whatever the earlier prompts saved.
static void quit()
{
    if (!handle_save(store_tile, msc.ter_dirty)) return;
    if (!handle_save(store_airports, msc.apt_dirty)) return;
    if (!handle_save(store_navaids, msc.nav_dirty)) return;
    handle_prefs(0, 6, gen_path);
    gdone = 1;
}

static void change_screen(int screen)
{
    msc.screen = screen;
    MACIBM_startwind(0);
}

void APPLICATION_handlemenu(int command)
{
    if (command == cmd_about) MACIBM_alert("", "", "", "", alert_about);
    if (command == cmd_save_tile) writeout(store_tile);
    if (command == cmd_save_airports) writeout(store_airports);
    if (command == cmd_save_navaids) writeout(store_navaids);
    if (command == cmd_quit) quit();
    if (intrange(command, cmd_screen_terrain, cmd_screen_navaids)) change_screen(command);
    if (intrange(command, cmd_pan_up, cmd_zoom_out)) handle_zoom(command);
    if (!on_map_screen()) return;
    if (command == cmd_cycle_tool) cycle_tool();
    if (command == cmd_toggle_overlay) msc.show_tex = msc.show_tex == 0 ? 1 : 0;
    if (command == cmd_flatten_water) flatten_water();
}

void APPLICATION_handlekey(int arrow_flag, int key)
{
    if (arrow_flag) {
        if (key == key_arrow_up) APPLICATION_handlemenu(cmd_pan_up);
        if (key == key_arrow_down) APPLICATION_handlemenu(cmd_pan_down);
        if (key == key_arrow_left) APPLICATION_handlemenu(cmd_pan_left);
        if (key == key_arrow_right) APPLICATION_handlemenu(cmd_pan_right);
        return;
    }
    if (key == '+' || key == '=') APPLICATION_handlemenu(cmd_zoom_in);
    if (key == '-' || key == '_') APPLICATION_handlemenu(cmd_zoom_out);
    if (key == 'm' || key == 'M') APPLICATION_handlemenu(cmd_cycle_tool);
    if (key == ' ') APPLICATION_handlemenu(cmd_toggle_overlay);
}

// ---- one frame of the main screen ------------------------------------------------------------

// Degrees, minutes and seconds, each truncated toward zero and keeping the
// sign; the seconds are rounded and may come out as 60.
static void draw_degrees(float v, float y)
{
    const int col = 7;
    int d = (int)v;
    int m = (int)((v - d) * 60);
    int s = intround(((v - d) - m / 60.0f) * 3600);
    OGL_number(col, readout_deg_x, y, (float)d, readout_deg_digits, 0, readout_spacing, 1, 101);
    OGL_number(col, readout_min_x, y, (float)m, readout_min_digits, 0, readout_spacing, 1, 101);
    OGL_number(col, readout_sec_x, y, (float)s, readout_sec_digits, 0, readout_spacing, 1, 101);
    OGL_number(col, readout_dec_x, y, v, readout_dec_digits, readout_dec_decimals, readout_spacing, 1, 101);
}

// Where the mouse is, also outside the map.
void draw_pointer_readout()
{
    draw_degrees(ret_lat(mnw.mouse_y), readout_lat_y);
    draw_degrees(ret_lon(mnw.mouse_x, mnw.mouse_y), readout_lon_y);
}

void APPLICATION_update()
{
    if (mnw.win_id != 0) return;
    if (msc.screen == cmd_screen_terrain) handle_map();
    if (msc.screen == cmd_screen_obstacles) handle_obs();
    // Any click on the airport and navaid screens marks their store.
    if (msc.screen == cmd_screen_airports && mnw.mouse_click) msc.apt_dirty = 1;
    if (msc.screen == cmd_screen_navaids && mnw.mouse_click) msc.nav_dirty = 1;
    if (msc.screen == cmd_screen_airports) handle_apt();
    if (msc.screen == cmd_screen_navaids) handle_nav();
    if (on_map_screen()) {
        plot_TF_terrain();
        draw_pointer_readout();
    }
}
