// Where the controls of the four screens stand, and the static labels that the
// panel bitmaps carry beside them. The screens place their controls from these
// constants and the bitmap generator places the labels from the same ones, so a
// label cannot drift away from its control.
//
// All places are canvas units, origin bottom left, y upward. A label stands on
// its y as the 5 by 7 text does: rows y to y + 6 at scale 1.
#pragma once

#include "app/Terrain.h"

// ---- kinds of places ---------------------------------------------------------------------
struct panel_box { float x1, y1, x2, y2; };                  // hit box, edges included
struct panel_spinner { float x, y; int digits, decimals, is_signed; };
struct panel_cycle { float x, y, offset; };                  // text at x, arrows at x + offset
struct panel_wheel { float x, y; int chars; };               // character wheel
struct panel_list { float x, y; };                           // y: centre line of the selected row

enum panel_align { align_left, align_right, align_centre };
enum panel_tone { tone_label, tone_heading, tone_hint, tone_button };
struct panel_label {
    const char* text;
    float x, y;      // left end, right end or middle of the text, by align
    int align;
    int scale;       // 1: 5 by 7 pixels a character, 2: 10 by 14
    int tone;
};

constexpr float label_advance = 6;       // one character of panel text at scale 1
constexpr float label_height = 7;

// ---- widget geometry shared by every screen ------------------------------------------------
// A digit spinner: each digit owns a zone 10 wide from y - 14 to y + 20; the
// digits stand 3 units into their zones.
constexpr float spinner_step = 10, spinner_below = 14, spinner_above = 20, spinner_inset = 3;
// A cycle button: arrow zone 15 wide, from y - 17 to y + 23, split at y + 3.
constexpr float cycle_zone_w = 15, cycle_below = 17, cycle_above = 23, cycle_split = 3;
// A character wheel: a zone 10 wide per character, from y - 14 to y + 20.
constexpr float wheel_step = 10, wheel_below = 14, wheel_above = 20, wheel_inset = 3;
// A radio lamp: 9 by 9 drawn, 10 by 10 hit, from its bottom left.
constexpr float lamp_size = 10;
// A name list of 13 rows around the selected one, with its knob strip and edit line.
constexpr float list_top_dy = 54, list_bottom_dy = -53;
constexpr float list_rows_w = 261, list_arrow_h = 14;
constexpr float list_knob_dx = 280, list_knob_w = 15, list_knob_h = 13;
constexpr float list_name_dx = 8, list_id_dx = 242, list_row_pitch = 10, list_half_rows = 6;
constexpr float list_edit_dx = 3, list_edit_dy = -90;
// The list knob and the mouse arrow in the interface atlas (texture 154), as
// texture coordinates: s1, t1, s2, t2.
constexpr float knob_tex[4] = {0.7734375f, 0.78125f, 0.8828125f, 0.984375f};
constexpr float arrow_tex[4] = {0.90625f, 0.734375f, 1.0f, 1.0f};
constexpr float arrow_w = 14, arrow_h = 18;    // the arrow on the canvas, tip at its top left

// ---- the map screens (terrain 200, obstacles 201) ------------------------------------------
constexpr panel_box zoom_in_box = {106, 561, 156, 577};
constexpr panel_box zoom_out_box = {106, 544, 156, 560};
constexpr panel_box pan_up_box = {122, 519, 141, 537};
constexpr panel_box pan_left_box = {104, 500, 122, 519};
constexpr panel_box pan_right_box = {141, 500, 159, 519};
constexpr panel_box pan_down_box = {122, 482, 141, 500};
constexpr panel_box map_area_box = {map_x1, map_y1, map_x2, map_y2};

// The pointer readout under the left column: degrees, minutes, seconds and the
// decimal value, latitude above longitude.
constexpr float readout_lat_y = 30, readout_lon_y = 12;
constexpr float readout_deg_x = 20, readout_min_x = 50, readout_sec_x = 74, readout_dec_x = 105;
constexpr int readout_deg_digits = 3, readout_min_digits = 2, readout_sec_digits = 2;
constexpr int readout_dec_digits = 8, readout_dec_decimals = 5;
constexpr float readout_spacing = 6;

// ---- terrain screen (200) --------------------------------------------------------------------
constexpr panel_spinner ter_lat_spinner = {60, 548, 2, 0, 1};
constexpr panel_spinner ter_lon_spinner = {50, 503, 3, 0, 1};
constexpr float ter_tool_lamp_x = 10;
constexpr float ter_tool_lamp_y[5] = {459, 390, 324, 280, 236};
constexpr int ter_tool_value[5] = {0, 1, 2, 3, 4};
constexpr panel_spinner ter_elev_spinner = {57, 360, 5, 0, 1};
constexpr panel_box ter_list_up_box = {25, 216, 158, 229};
constexpr panel_box ter_list_down_box = {25, 52, 158, 65};
constexpr panel_box ter_list_open_box = {25, 66, 158, 215};
// Rows r from -1 to 8: lamp at (10, 188 - 15 r), number at 28 and name at 52 on 189 - 15 r.
constexpr float ter_list_lamp_x = 10, ter_list_lamp_y0 = 188, ter_list_text_y0 = 189;
constexpr float ter_list_pitch = 15, ter_list_number_x = 28, ter_list_name_x = 52;
constexpr int ter_list_first_row = -1, ter_list_last_row = 8;

// ---- obstacle screen (201) ---------------------------------------------------------------------
constexpr float obs_tool_lamp_x = 10;
constexpr float obs_tool_lamp_y[9] = {438, 423, 408, 378, 363, 348, 333, 318, 303};
constexpr int obs_tool_value[9] = {0, 96, 95, 2, 3, 4, 5, 6, 8};
constexpr panel_spinner obs_height_spinner = {114, 269, 4, 0, 0};
constexpr panel_spinner obs_heading_spinner = {124, 228, 3, 0, 0};   // range 0 to 360
constexpr float obs_name_x = 14, obs_name_y = 170;
constexpr panel_box obs_chooser_box = {9, 167, 158, 183};
// The map symbol of each placing tool beside its label, centred here.
constexpr float obs_symbol_x = 32, obs_symbol_dy = 4;

// ---- airport screen (202) ------------------------------------------------------------------------
constexpr panel_list apt_list = {20, 498};
constexpr panel_box rwy_list_up_box = {86, 330, 106, 348};
constexpr panel_box rwy_list_down_box = {86, 312, 106, 330};
constexpr panel_box rwy_rows_box = {21, 155, 83, 346};
constexpr float rwy_row_x = 25, rwy_row_y0 = 336, rwy_row_pitch = 10;
constexpr int rwy_rows_shown = 19;
constexpr panel_box apt_delete_box = {18, 378, 291, 396};
constexpr panel_box apt_add_box = {18, 355, 291, 373};
constexpr panel_box rwy_delete_box = {95, 252, 292, 270};
constexpr panel_box rwy_add_box = {95, 229, 292, 247};
constexpr panel_spinner apt_elev_spinner = {115, 119, 5, 0, 1};
constexpr panel_wheel apt_id_wheel = {275, 119, 4};
constexpr panel_cycle apt_tower_button = {457, 119, 5};
constexpr panel_cycle apt_bld_button = {653, 119, 5};
constexpr panel_spinner rwy_lat_spinner = {27, 74, 7, 5, 1};
constexpr panel_spinner rwy_lon_spinner = {119, 74, 8, 5, 1};
constexpr panel_spinner rwy_num_spinner = {223, 74, 2, 0, 0};
constexpr panel_spinner rwy_hdng_spinner = {288, 74, 5, 2, 0};      // range 0 to 360
constexpr panel_spinner rwy_len_spinner = {389, 74, 5, 0, 0};
constexpr panel_spinner rwy_width_spinner = {469, 74, 4, 0, 0};
constexpr panel_cycle rwy_side_button = {256, 74, -5};
// Lights of the two ends: index 0 on the upper row, index 1 on the lower.
constexpr panel_cycle rwy_slope_button[2] = {{540, 74, 16}, {540, 29, 16}};
constexpr panel_cycle rwy_edge_button[2] = {{598, 74, 16}, {598, 29, 16}};
constexpr panel_cycle rwy_approach_button[2] = {{654, 74, 57}, {654, 29, 57}};
constexpr panel_cycle rwy_surface_button = {243, 29, 40};
constexpr panel_box apt_diagram_box = {325, 155, 778, 564};
// The widest text each cycle button shows, in characters.
constexpr int apt_yes_no_chars = 3, rwy_side_chars = 1, rwy_slope_chars = 7;
constexpr int rwy_edge_chars = 7, rwy_approach_chars = 17, rwy_surface_chars = 16;

// ---- navaid screen (203) ---------------------------------------------------------------------------
constexpr panel_box nav_delete_box = {368, 375, 643, 395};
constexpr panel_box nav_add_box = {368, 350, 643, 370};
constexpr float nav_kind_lamp_x = 36;
constexpr float nav_kind_lamp_y[8] = {305, 281, 257, 233, 209, 185, 161, 137};
constexpr int nav_kind_value[8] = {2, 3, 4, 6, 5, 7, 8, 9};
constexpr panel_list nav_list = {370, 497};
constexpr panel_wheel nav_id_wheel = {391, 322, 4};
constexpr panel_spinner nav_lat_spinner = {401, 244, 7, 5, 1};
constexpr panel_spinner nav_lon_spinner = {391, 201, 8, 5, 1};
constexpr panel_spinner nav_elev_spinner = {391, 158, 5, 0, 1};
constexpr panel_spinner nav_hdng_spinner = {391, 115, 5, 2, 1};
constexpr panel_spinner nav_slope_spinner = {572, 115, 4, 2, 1};
constexpr panel_spinner nav_frq_spinner = {391, 72, 5, 0, 0};

// ---- helpers for placing labels ------------------------------------------------------------------
constexpr float box_mid_x(panel_box b) { return (b.x1 + b.x2) / 2; }
constexpr float box_text_y(panel_box b) { return (b.y1 + b.y2 + 1 - label_height) / 2; }
constexpr float spinner_end(panel_spinner s) { return s.x + spinner_step * s.digits; }
constexpr float spinner_sign_x(panel_spinner s) { return s.x - 3; }   // a minus sign stands here
// A label left of a spinner ends this far before its sign; one behind it starts after the tooltip zone.
constexpr float before_spinner(panel_spinner s) { return spinner_sign_x(s) - 5; }
constexpr float after_spinner(panel_spinner s) { return spinner_end(s) + 5; }
constexpr float label_over(float y) { return y + spinner_above; }
constexpr float lamp_label_x(float lamp_x) { return lamp_x + 14; }
constexpr float lamp_label_y(float lamp_y) { return lamp_y + 1; }
constexpr float list_header_y(panel_list l) { return l.y + list_top_dy + list_arrow_h + 4; }

// ---- the labels of each panel ---------------------------------------------------------------------
constexpr float menu_bar_y = 582;                 // the menu bar covers the canvas from here up
constexpr float readout_label_x = 20;

constexpr panel_label readout_labels[] = {
    {"LATITUDE", readout_label_x, readout_lat_y + 11, align_left, 1, tone_hint},
    {"LONGITUDE", readout_label_x, readout_lon_y - 10, align_left, 1, tone_hint},
};

constexpr panel_label ter_labels[] = {
    {"TILE", 14, ter_lat_spinner.y + 23, align_left, 1, tone_heading},
    {"LAT", before_spinner(ter_lat_spinner), ter_lat_spinner.y, align_right, 1, tone_label},
    {"LON", before_spinner(ter_lon_spinner), ter_lon_spinner.y, align_right, 1, tone_label},
    {"ZOOM +", box_mid_x(zoom_in_box), box_text_y(zoom_in_box), align_centre, 1, tone_button},
    {"ZOOM -", box_mid_x(zoom_out_box), box_text_y(zoom_out_box), align_centre, 1, tone_button},
    {"TOOLS", 10, ter_tool_lamp_y[0] + 15, align_left, 1, tone_heading},
    {"MOVE VERTEX", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[0]), align_left, 1, tone_label},
    {"DRAG A GRID POINT", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[0]) - 12, align_left, 1, tone_hint},
    {"SELECT VERTEX", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[1]), align_left, 1, tone_label},
    {"ELEV", before_spinner(ter_elev_spinner), ter_elev_spinner.y, align_right, 1, tone_label},
    {"FT", after_spinner(ter_elev_spinner), ter_elev_spinner.y, align_left, 1, tone_hint},
    {"TOGGLE WATER", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[2]), align_left, 1, tone_label},
    {"LAND OR WATER CELL", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[2]) - 12, align_left, 1, tone_hint},
    {"ROTATE TEXTURE", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[3]), align_left, 1, tone_label},
    {"TURN A CUSTOM CELL", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[3]) - 12, align_left, 1, tone_hint},
    {"PAINT TEXTURE", lamp_label_x(ter_tool_lamp_x), lamp_label_y(ter_tool_lamp_y[4]), align_left, 1, tone_label},
};

constexpr panel_label obs_labels[] = {
    {"OBSTACLES", 10, 562, align_left, 1, tone_heading},
    {"OF THIS TILE", 10, 550, align_left, 1, tone_hint},
    {"ZOOM +", box_mid_x(zoom_in_box), box_text_y(zoom_in_box), align_centre, 1, tone_button},
    {"ZOOM -", box_mid_x(zoom_out_box), box_text_y(zoom_out_box), align_centre, 1, tone_button},
    {"EDIT", 10, obs_tool_lamp_y[0] + 15, align_left, 1, tone_heading},
    {"DELETE", lamp_label_x(obs_tool_lamp_x), lamp_label_y(obs_tool_lamp_y[0]), align_left, 1, tone_label},
    {"MOVE", lamp_label_x(obs_tool_lamp_x), lamp_label_y(obs_tool_lamp_y[1]), align_left, 1, tone_label},
    {"SELECT", lamp_label_x(obs_tool_lamp_x), lamp_label_y(obs_tool_lamp_y[2]), align_left, 1, tone_label},
    {"PLACE", 10, obs_tool_lamp_y[3] + 15, align_left, 1, tone_heading},
    {"BUILDING", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[3]), align_left, 1, tone_label},
    {"RADIO MAST", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[4]), align_left, 1, tone_label},
    {"BRIDGE", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[5]), align_left, 1, tone_label},
    {"COOLING TOWER", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[6]), align_left, 1, tone_label},
    {"SMOKESTACK", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[7]), align_left, 1, tone_label},
    {"CUSTOM OBJECT", obs_symbol_x + 10, lamp_label_y(obs_tool_lamp_y[8]), align_left, 1, tone_label},
    {"HEIGHT FT", 14, obs_height_spinner.y, align_left, 1, tone_label},
    {"HEADING DEG", 14, obs_heading_spinner.y, align_left, 1, tone_label},
    {"OBJECT FILE", 10, obs_chooser_box.y2 + 5, align_left, 1, tone_label},
    {"CLICK THE NAME TO CHOOSE", 10, obs_chooser_box.y1 - 13, align_left, 1, tone_hint},
};

constexpr panel_label apt_labels[] = {
    {"AIRPORT", apt_list.x + list_name_dx, list_header_y(apt_list), align_left, 1, tone_heading},
    {"ID", apt_list.x + list_id_dx, list_header_y(apt_list), align_left, 1, tone_heading},
    {"AIRPORT DIAGRAM", apt_diagram_box.x1, list_header_y(apt_list), align_left, 1, tone_heading},
    {"DELETE AIRPORT", box_mid_x(apt_delete_box), box_text_y(apt_delete_box), align_centre, 1, tone_button},
    {"ADD AIRPORT", box_mid_x(apt_add_box), box_text_y(apt_add_box), align_centre, 1, tone_button},
    {"RUNWAYS", rwy_list_up_box.x2 + 7, rwy_row_y0, align_left, 1, tone_heading},
    {"OF THIS AIRPORT", rwy_list_up_box.x2 + 7, rwy_row_y0 - 12, align_left, 1, tone_hint},
    {"DELETE RUNWAY", box_mid_x(rwy_delete_box), box_text_y(rwy_delete_box), align_centre, 1, tone_button},
    {"ADD RUNWAY", box_mid_x(rwy_add_box), box_text_y(rwy_add_box), align_centre, 1, tone_button},
    {"ELEVATION", before_spinner(apt_elev_spinner), apt_elev_spinner.y, align_right, 1, tone_label},
    {"FT", after_spinner(apt_elev_spinner), apt_elev_spinner.y, align_left, 1, tone_hint},
    {"AIRPORT ID", apt_id_wheel.x - 8, apt_id_wheel.y, align_right, 1, tone_label},
    {"TOWER", apt_tower_button.x - 7, apt_tower_button.y, align_right, 1, tone_label},
    {"BUILDINGS", apt_bld_button.x - 7, apt_bld_button.y, align_right, 1, tone_label},
    {"LATITUDE", rwy_lat_spinner.x, label_over(rwy_lat_spinner.y), align_left, 1, tone_label},
    {"LONGITUDE", rwy_lon_spinner.x, label_over(rwy_lon_spinner.y), align_left, 1, tone_label},
    {"NUM", rwy_num_spinner.x, label_over(rwy_num_spinner.y), align_left, 1, tone_label},
    {"SIDE", rwy_side_button.x - 10, label_over(rwy_side_button.y), align_left, 1, tone_label},
    {"HEADING", rwy_hdng_spinner.x, label_over(rwy_hdng_spinner.y), align_left, 1, tone_label},
    {"LENGTH FT", rwy_len_spinner.x, label_over(rwy_len_spinner.y), align_left, 1, tone_label},
    {"WIDTH FT", rwy_width_spinner.x, label_over(rwy_width_spinner.y), align_left, 1, tone_label},
    {"SLOPE", rwy_slope_button[0].x, label_over(rwy_slope_button[0].y), align_left, 1, tone_label},
    {"LIGHTS", rwy_edge_button[0].x, label_over(rwy_edge_button[0].y), align_left, 1, tone_label},
    {"APPROACH", rwy_approach_button[0].x, label_over(rwy_approach_button[0].y), align_left, 1, tone_label},
    {"OTHER END", rwy_slope_button[1].x - 7, rwy_slope_button[1].y, align_right, 1, tone_label},
    {"SURFACE", rwy_surface_button.x - 7, rwy_surface_button.y, align_right, 1, tone_label},
    {"CENTRE OF THE RUNWAY", rwy_lat_spinner.x, rwy_lat_spinner.y - 30, align_left, 1, tone_hint},
};

constexpr panel_label nav_labels[] = {
    {"NAVAIDS", nav_kind_lamp_x - 10, 540, align_left, 2, tone_heading},
    {"PICK A KIND BELOW,", nav_kind_lamp_x - 10, 515, align_left, 1, tone_hint},
    {"THEN A NAVAID IN THE LIST.", nav_kind_lamp_x - 10, 503, align_left, 1, tone_hint},
    {"TYPE TO RENAME IT.", nav_kind_lamp_x - 10, 491, align_left, 1, tone_hint},
    {"NAVAID", nav_list.x + list_name_dx, list_header_y(nav_list), align_left, 1, tone_heading},
    {"ID", nav_list.x + list_id_dx, list_header_y(nav_list), align_left, 1, tone_heading},
    {"DELETE NAVAID", box_mid_x(nav_delete_box), box_text_y(nav_delete_box), align_centre, 1, tone_button},
    {"ADD NAVAID", box_mid_x(nav_add_box), box_text_y(nav_add_box), align_centre, 1, tone_button},
    {"KIND", nav_kind_lamp_x, nav_kind_lamp_y[0] + 20, align_left, 1, tone_heading},
    {"NDB", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[0]), align_left, 1, tone_label},
    {"VOR", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[1]), align_left, 1, tone_label},
    {"ILS", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[2]), align_left, 1, tone_label},
    {"GLIDESLOPE", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[3]), align_left, 1, tone_label},
    {"LOCALIZER", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[4]), align_left, 1, tone_label},
    {"OUTER MARKER", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[5]), align_left, 1, tone_label},
    {"MIDDLE MARKER", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[6]), align_left, 1, tone_label},
    {"INNER MARKER", lamp_label_x(nav_kind_lamp_x), lamp_label_y(nav_kind_lamp_y[7]), align_left, 1, tone_label},
    {"ID", nav_id_wheel.x - 8, nav_id_wheel.y, align_right, 1, tone_label},
    {"LATITUDE", before_spinner(nav_lon_spinner), nav_lat_spinner.y, align_right, 1, tone_label},
    {"DEG", after_spinner(nav_lat_spinner), nav_lat_spinner.y, align_left, 1, tone_hint},
    {"LONGITUDE", before_spinner(nav_lon_spinner), nav_lon_spinner.y, align_right, 1, tone_label},
    {"DEG", after_spinner(nav_lon_spinner), nav_lon_spinner.y, align_left, 1, tone_hint},
    {"ELEVATION", before_spinner(nav_elev_spinner), nav_elev_spinner.y, align_right, 1, tone_label},
    {"FT", after_spinner(nav_elev_spinner), nav_elev_spinner.y, align_left, 1, tone_hint},
    {"HEADING", before_spinner(nav_hdng_spinner), nav_hdng_spinner.y, align_right, 1, tone_label},
    {"DEG", after_spinner(nav_hdng_spinner), nav_hdng_spinner.y, align_left, 1, tone_hint},
    {"GLIDESLOPE", before_spinner(nav_slope_spinner), nav_slope_spinner.y, align_right, 1, tone_label},
    {"DEG", after_spinner(nav_slope_spinner), nav_slope_spinner.y, align_left, 1, tone_hint},
    {"FREQUENCY", before_spinner(nav_frq_spinner), nav_frq_spinner.y, align_right, 1, tone_label},
    {"NDB: KHZ, AS 00278", nav_frq_spinner.x, nav_frq_spinner.y - 28, align_left, 1, tone_hint},
    {"VOR, ILS: MHZ X 100, AS 11360", nav_frq_spinner.x, nav_frq_spinner.y - 40, align_left, 1, tone_hint},
};

template <int n>
constexpr int label_count(const panel_label (&)[n]) { return n; }
