// Start-up of the editor: the defaults, the flat tile, the open tile and the
// two world databases, then frames until the quit command ends the run.
#include "app/Main.h"
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

int WinMain(void* instance, int show_window)
{
    active_inst = instance;
    active_windstyle = show_window;
    MACIBM_init();
    set_msc_defaults();
    load_stock_textures();
    lay_flat_grid();
    clear_feature_tables();
    read_terrain();
    load_airports();
    load_navaids();
    while (!gdone) MACIBM_event_proc();
    MACIBM_finishup();
    return 0;
}
