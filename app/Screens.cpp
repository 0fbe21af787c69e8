// The terrain screen: the tile selector, zoom and pan, the five tools on the
// map, the elevation of the selected vertex and the list of custom textures.
// Each call draws the controls and reacts to this frame's mouse at once.
#include "app/Screens.h"
#include "app/Main.h"
#include "app/Panel_layout.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <algorithm>
#include <cmath>
#include <cstring>

int tex_list_top;

const int col_slot_number = 3;
const int tool_move = 0, tool_select = 1, tool_water = 2, tool_rotate = 3, tool_paint = 4;
const int last_list_top = tex_slot_cap - 9;   // 491: slot 499 in the last row

int mouse_in(const panel_box& b) { return fltbox(mnw.mouse_x, mnw.mouse_y, b.x1, b.y1, b.x2, b.y2); }
int box_clicked(const panel_box& b) { return mnw.mouse_click && mouse_in(b); }

int spinner_field(const panel_spinner& s, float* value, const char* help)
{
    return instdbtn(col_value, s.x, s.y, value, s.digits, s.decimals, s.is_signed, help);
}

int heading_field(const panel_spinner& s, float* value, const char* help)
{
    return instdbtn_range(col_value, s.x, s.y, value, s.digits, s.decimals, 0, 360, help);
}

int wheel_field(const panel_wheel& w, char* id) { return incharbtn(col_value, w.x, w.y, id, w.chars); }

// ---- tile selector ---------------------------------------------------------------------------

// A click on a digit opens the neighbouring tile at once, once the open one
// is saved or given up; Cancel keeps it, and the spinners show it again.
static void tile_selector()
{
    float lat = (float)intround(msc.lat), lon = (float)intround(msc.lon);
    spinner_field(ter_lat_spinner, &lat,
                  "This is the latitude of the lower-left (south-west) corner of the env file currently displayed.");
    spinner_field(ter_lon_spinner, &lon,
                  "This is the longitude of the lower-left (south-west) corner of the env file currently displayed.");
    if (intround(lat) == intround(msc.lat) && intround(lon) == intround(msc.lon)) return;
    if (!handle_save(store_tile, msc.ter_dirty)) return;
    tex_list_top = 0;
    msc.lat = lat;
    msc.lon = lon;
    read_terrain();
}

static void zoom_and_pan()
{
    if (!mnw.mouse_click) return;
    const struct { const panel_box* box; int command; } buttons[6] = {
        {&zoom_in_box, cmd_zoom_in}, {&zoom_out_box, cmd_zoom_out}, {&pan_up_box, cmd_pan_up},
        {&pan_left_box, cmd_pan_left}, {&pan_right_box, cmd_pan_right}, {&pan_down_box, cmd_pan_down},
    };
    for (const auto& b : buttons)
        if (mouse_in(*b.box)) APPLICATION_handlemenu(b.command);
}

// ---- the tools on the map --------------------------------------------------------------------

// The nearest inner vertex by Manhattan distance, in the places of the last
// frame; on a tie the first in scan order stays. The outline can't be taken.
int nearest_vertex(float x, float y, int* row, int* col)
{
    float best = 9999;
    int found = 0;
    for (int i = 1; i < grid_i; i++)
        for (int j = 1; j < grid_j; j++) {
            float d = std::fabs(y - flt_ploty[i][j]) + std::fabs(x - flt_plotx[i][j]);
            if (!(d < best)) continue;
            best = d;
            *row = i;
            *col = j;
            found = 1;
        }
    return found;
}

// The cell as the quadrilateral drawn, edges clockwise with y negated; a
// point exactly on an edge is in neither cell.
int cell_holds(int i, int j, float x, float y)
{
    const int ci[5] = {i, i, i + 1, i + 1, i};
    const int cj[5] = {j, j + 1, j + 1, j, j};
    for (int k = 0; k < 4; k++)
        if (!inside_cw_reg(flt_plotx[ci[k]][cj[k]], -flt_ploty[ci[k]][cj[k]], flt_plotx[ci[k + 1]][cj[k + 1]],
                           -flt_ploty[ci[k + 1]][cj[k + 1]], x, -y, 0))
            return 0;
    return 1;
}

// A quarter turn, judged by the s values: r0, r1, r2, r3, then r0 again.
void rotate_cell(int i, int j)
{
    float s00 = planest[i][j][0][0][0], s01 = planest[i][j][0][1][0], s10 = planest[i][j][1][0][0];
    int next = st_r0;
    if (s10 - s00 > 0.5f) next = st_r1;
    else if (s00 - s01 > 0.5f) next = st_r2;
    else if (s00 - s10 > 0.5f) next = st_r3;
    set_orientation(i, j, next, planetex[i][j]);
}

static void vertex_tool()
{
    int i = 0, j = 0;
    if (!nearest_vertex(mnw.mouse_x, mnw.mouse_y, &i, &j)) return;
    msc.sel_row = i;
    msc.sel_col = j;
    if (msc.ter_tool != tool_move) return;
    planelat[i][j] = ret_lat(mnw.mouse_y);
    planelon[i][j] = ret_lon(mnw.mouse_x, mnw.mouse_y);
}

static void cell_tool(int i, int j)
{
    if (msc.ter_tool == tool_water) is_water[i][j] = is_water[i][j] ? 0 : 1;
    if (msc.ter_tool == tool_rotate) rotate_cell(i, j);
    if (msc.ter_tool == tool_paint) {
        msc.show_tex = 1;
        planetex[i][j] = msc.ter_tex == 0 ? 0 : (unsigned int)(msc.ter_tex + 1999);
    }
}

// Any press on the map marks the tile changed, whatever comes of it.
static void map_tools()
{
    if (!mnw.mouse_down || !mouse_in(map_area_box)) return;
    msc.ter_dirty = 1;
    if (msc.ter_tool == tool_move || (msc.ter_tool == tool_select && mnw.mouse_click)) vertex_tool();
    if (!mnw.mouse_click || !intrange(msc.ter_tool, tool_water, tool_paint)) return;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (cell_holds(i, j, mnw.mouse_x, mnw.mouse_y)) cell_tool(i, j);
}

// Feet on screen, metres in the table; only an edit writes the vertex back.
static void elevation()
{
    float feet = con.m_to_ft * planey[msc.sel_row][msc.sel_col];
    if (spinner_field(ter_elev_spinner, &feet, "This is the elevation of this point above sea level, in feet."))
        planey[msc.sel_row][msc.sel_col] = feet * con.ft_to_m;
}

// ---- the list of custom textures -----------------------------------------------------------------

static void scroll_list()
{
    if (!mnw.mouse_click && !mnw.mouse_repeat) return;
    if (mouse_in(ter_list_up_box)) tex_list_top = intlim(tex_list_top - 1, 0, last_list_top);
    if (mouse_in(ter_list_down_box)) tex_list_top = intlim(tex_list_top + 1, 0, last_list_top);
}

static void draw_list()
{
    for (int n = -1; n < tex_slot_cap; n++) {
        int r = n - tex_list_top;
        if (!intrange(r, ter_list_first_row, ter_list_last_row)) continue;
        float y = ter_list_text_y0 - ter_list_pitch * r;
        inonebool(ter_list_lamp_x, ter_list_lamp_y0 - ter_list_pitch * r, &msc.ter_tex, n + 1);
        if (n == -1) {
            OGL_text_line(col_value, ter_list_number_x, y, "Norvane Defaults");
            continue;
        }
        char name[name_len + 1];
        std::memcpy(name, msc.ter_tex_name[n], name_len);   // a full slot has no terminator
        name[name_len] = 0;
        OGL_text_line(col_value, ter_list_name_x, y, name);
        char number[16];
        int_to_str(n, number);
        app_C(number, ":");
        OGL_text_line(col_slot_number, ter_list_number_x, y, number);
    }
}

int texture_list_row(float y) { return intlim((int)std::floor((200 - y) / 15), -1, 8); }

// The chosen file's path, less the folder prefix and the extension, names a
// slot of 40 bytes: a longer one is cut there. 1 when it was cut.
static int name_from_path(char* path, const char* prefix, char* slot)
{
    int len = (int)std::strlen(path);
    path[len >= 4 ? len - 4 : 0] = 0;
    const char* relative = path + std::min(std::strlen(prefix), std::strlen(path));
    std::strncpy(slot, relative, name_len);
    return std::strlen(relative) >= (size_t)name_len;
}

static void open_texture(int slot)
{
    char name[path_len], path[path_len];
    name[0] = 0;
    if (!MACIBM_opensave(998, ftype_ter_tex, name, path)) return;
    const int cut = name_from_path(path, ter_path, msc.ter_tex_name[slot]);
    int width, height;
    OGL_texbmp(-100, 2000 + slot, 0, -104, path, &width, &height, 1.0f);
    if (cut)
        MACIBM_alert("The total path to the texture cannot exceed 40 characters.",
                     "This will be updated in a future version of Norvane, but you are restricted to 40 "
                     "characters for now.",
                     "This is for backwards-compatibility with existing ENV files.", "", alert_warning);
}

static void list_click()
{
    if (!mnw.mouse_click || !mouse_in(ter_list_open_box)) return;
    int slot = texture_list_row(mnw.mouse_y) + tex_list_top;
    if (slot <= -1) return;   // the defaults row has no file
    open_texture(slot);
}

void handle_map()
{
    tile_selector();
    zoom_and_pan();
    for (int k = 0; k < 5; k++) inonebool(ter_tool_lamp_x, ter_tool_lamp_y[k], &msc.ter_tool, ter_tool_value[k]);
    map_tools();
    elevation();
    scroll_list();
    draw_list();
    list_click();
    assign_terrain_texes(0, 0);
}

// ---- the obstacle screen ---------------------------------------------------------------------

const int obs_delete = 0, obs_move = 96, obs_select = 95, obs_custom = 8;

static int selection_valid() { return intrange(msc.obj_sel, 0, obj_cap - 1); }

int obstacle_in_tile(int n)
{
    return intrange(obj_type[n], 1, 8) && fltrange(obj_lon[n], msc.lon, msc.lon + 1) &&
           fltrange(obj_lat[n], msc.lat, msc.lat + 1);
}

// Straight distance in degrees, longitude not shortened for the latitude:
// there is no pick radius, and on a tie the lowest slot stays. -1 for none.
int nearest_obstacle(float lat, float lon)
{
    float best = 9999;
    int nearest = -1;
    for (int n = 0; n < obj_cap; n++) {
        if (!obstacle_in_tile(n)) continue;
        float d = pythag(lat - obj_lat[n], lon - obj_lon[n]);
        if (!(d < best)) continue;
        best = d;
        nearest = n;
    }
    return nearest;
}

int first_free_obstacle()
{
    for (int n = 0; n < obj_cap; n++)
        if (obj_type[n] == 0) return n;
    return -1;
}

// A new obstacle takes the height of the one selected before, or for a
// custom one its object with heading 0; it is then the selected one.
static void place_obstacle(float lat, float lon)
{
    const int n = first_free_obstacle();
    if (n < 0) {
        MACIBM_alert("The obstacle table is full!", "All 60000 obstacle places are taken, so no new obstacle can be placed.",
                     "Delete obstacles you do not need, on this tile or on others, to make room.", "", alert_warning);
        return;
    }
    const int before = selection_valid() ? msc.obj_sel : n;
    obj_type[n] = msc.obj_tool;
    obj_lat[n] = lat;
    obj_lon[n] = lon;
    if (msc.obj_tool == obs_custom && n != before) std::memcpy(obj_name[n], obj_name[before], name_len);
    obj_hddz[n] = msc.obj_tool == obs_custom ? 0 : obj_hddz[before];
    msc.obj_sel = n;
}

// Any press on the map marks the tile changed, whatever comes of it. A
// dragged obstacle jumps to the mouse in the frame of the press.
static void obstacle_map_tools()
{
    if (!mouse_in(map_area_box)) return;
    const float lat = ret_lat(mnw.mouse_y), lon = ret_lon(mnw.mouse_x, mnw.mouse_y);
    const int picking = msc.obj_tool == obs_delete || msc.obj_tool == obs_move || msc.obj_tool == obs_select;
    int found = -1;
    if (mnw.mouse_click) msc.ter_dirty = 1;
    if (mnw.mouse_click && picking) found = nearest_obstacle(lat, lon);
    if (found >= 0) msc.obj_sel = found;
    if (mnw.mouse_down && msc.obj_tool == obs_move && selection_valid()) {
        obj_lat[msc.obj_sel] = lat;
        obj_lon[msc.obj_sel] = lon;
    }
    if (!mnw.mouse_click) return;
    if (found >= 0 && msc.obj_tool == obs_delete) obj_type[msc.obj_sel] = 0;
    if (intrange(msc.obj_tool, 2, 8)) place_obstacle(lat, lon);
}

static void choose_object()
{
    if (!mnw.mouse_click || !mouse_in(obs_chooser_box)) return;
    char name[path_len], path[path_len];
    name[0] = 0;
    if (!MACIBM_opensave(998, ftype_object, name, path)) return;
    if (name_from_path(path, obj_path, obj_name[msc.obj_sel]))
        MACIBM_alert("The total path to the object cannot exceed 40 characters.",
                     "This will be updated in a future version of Norvane, but you are restricted to 40 "
                     "characters for now.",
                     "This is for backwards-compatibility with existing ENV files.", "", alert_warning);
}

// Height for the standard kinds 1 to 6; heading and object for a custom one.
static void obstacle_fields()
{
    if (!selection_valid()) return;
    const int n = msc.obj_sel;
    if (intrange(obj_type[n], 1, 6))
        spinner_field(obs_height_spinner, &obj_hddz[n], "This is the HEIGHT of this obstacle, in feet.");
    if (obj_type[n] != obs_custom) return;
    heading_field(obs_heading_spinner, &obj_hddz[n],
                  "This is the HEADING of this obstacle, in degrees. Enter zero to not rotate the custom obstacle at all.");
    char shown[name_len + 1];
    std::memcpy(shown, obj_name[n], name_len);   // a full slot has no terminator
    shown[name_len] = 0;
    OGL_text_line(col_value, obs_name_x, obs_name_y, shown);
    choose_object();
}

void handle_obs()
{
    zoom_and_pan();
    for (int k = 0; k < 9; k++) inonebool(obs_tool_lamp_x, obs_tool_lamp_y[k], &msc.obj_tool, obs_tool_value[k]);
    obstacle_map_tools();
    obstacle_fields();
    assign_terrain_texes(0, 0);
}
