// Shared state of the editor: the editor's own record, the window record,
// the unit constants and every world table, all global and of fixed size.
#pragma once

// ---- capacities of the world tables -------------------------------------
const int grid_ni = 60;          // vertices along i (east)
const int grid_nj = 80;          // vertices along j (north)
const int obj_cap = 60000;       // obstacle slots
const int apt_cap = 18000;       // airports
const int rwy_cap = 70000;       // runways
const int nav_cap = 20000;       // navaid slots
const int nav_load_cap = 19997;  // navaid records a nav.dat may hold
const int coast_cap = 3000;      // coast points of one tile
const int tex_slot_cap = 500;    // custom terrain texture slots
const int name_len = 40;         // name buffers: 39 characters and a terminator
const int id_len = 5;            // identifiers: 4 characters and a terminator
const int path_len = 500;        // paths and messages

// ---- the editor's own state ------------------------------------------------
struct miscstruct {
    int screen;          // 200 terrain, 201 obstacles, 202 airports, 203 navaids
    int ter_dirty;
    int apt_dirty;
    int nav_dirty;
    int show_tex;
    float lat;           // south edge of the open tile
    float lon;           // west edge of the open tile
    int ter_tool;
    int coast_num;
    int sel_row;         // selected vertex, i
    int sel_col;         // selected vertex, j
    int ter_tex;
    float map_zoom;
    float map_dlat;
    float map_dlon;
    float apt_zoom;
    float apt_dx;
    float apt_dy;
    int obj_tool;
    int obj_sel;
    int apt_sel;
    int rwy_sel;
    int nav_sel;
    char ter_tex_name[tex_slot_cap][name_len];
};

// ---- the window, menus and input state ----------------------------------------
const int menu_cap = 320;
const int menu_item_cap = 100;

struct menuwindowstruct {
    void* hwnd;
    int win_id;
    float win_x;
    float win_y;
    float win_w;
    float win_h;
    int open_menu;
    float scr_x;
    float scr_y;
    float scr_bits;
    float scale_x;
    float scale_y;
    char tip[path_len];
    char menu_title[menu_cap][name_len];
    int menu_parent[menu_cap];
    char item_name[menu_cap][menu_item_cap][name_len];
    int item_cmd[menu_cap][menu_item_cap];
    float title_x1[menu_cap], title_y1[menu_cap], title_x2[menu_cap], title_y2[menu_cap];
    float item_x1[menu_cap][menu_item_cap], item_y1[menu_cap][menu_item_cap];
    float item_x2[menu_cap][menu_item_cap], item_y2[menu_cap][menu_item_cap];
    float mouse_x;
    float mouse_y;
    int mouse_click;
    int mouse_down;
    int mouse_repeat;
    float time;
};

// ---- unit constants ------------------------------------------------------------
struct constantstruct {
    float ft_to_m;
    float m_to_ft;
    float rad_to_deg;
    float deg_to_rad;
    float nm_to_m;
};

extern miscstruct msc;
extern menuwindowstruct mnw;
extern constantstruct con;

extern int gdone;      // set to 1 to end the main loop
extern int grid_i;     // cell count along i, 59
extern int grid_j;     // cell count along j, 79

// ---- paths ---------------------------------------------------------------------
extern char app_path[path_len];   // the program's folder, with its closing separator
extern char wrk_path[path_len];
extern char gen_path[path_len];   // the editor's preference file
extern char res_path[path_len];   // the display-mode preference file
extern char obj_path[path_len];
extern char ter_path[path_len];
extern char sit_path[path_len];
extern char log_path[path_len];
extern char apt_path[path_len];
extern char nav_path[path_len];

// ---- terrain grid of the open tile ------------------------------------------------
extern float planelat[grid_ni][grid_nj];
extern float planelon[grid_ni][grid_nj];
extern float planey[grid_ni][grid_nj];
extern int is_water[grid_ni][grid_nj];
extern unsigned int planetex[grid_ni][grid_nj];
extern float planest[grid_ni][grid_nj][2][2][2];
extern float flt_plotx[grid_ni][grid_nj];
extern float flt_ploty[grid_ni][grid_nj];

// ---- obstacles -----------------------------------------------------------------------
extern int obj_type[obj_cap];
extern float obj_lat[obj_cap];
extern float obj_lon[obj_cap];
extern float obj_hddz[obj_cap];
extern char obj_name[obj_cap][name_len];

// ---- airports --------------------------------------------------------------------------
extern float apt_h[apt_cap];
extern int apt_twr[apt_cap];
extern int apt_bld[apt_cap];
extern char apt_id[apt_cap][id_len];
extern char apt_name[apt_cap][name_len];
extern int apt_lo_ind[apt_cap];
extern int apt_hi_ind[apt_cap];

// ---- runways -------------------------------------------------------------------------------
extern float rwy_lat[rwy_cap];
extern float rwy_lon[rwy_cap];
extern int rwy_num[rwy_cap];
extern char rwy_lcr[rwy_cap];
extern float rwy_hdng[rwy_cap];
extern float rwy_len[rwy_cap];
extern float rwy_width[rwy_cap];
extern int rwy_code[rwy_cap];

// ---- navaids ----------------------------------------------------------------------------------
extern int nav_type[nav_cap];
extern float nav_lat[nav_cap];
extern float nav_lon[nav_cap];
extern float nav_h[nav_cap];
extern int nav_frq[nav_cap];
extern float nav_hdng[nav_cap];
extern char nav_id[nav_cap][id_len];
extern char nav_name[nav_cap][name_len];

// ---- coast points of the open tile -----------------------------------------------------------
extern float coast_lat[coast_cap];
extern float coast_lon[coast_cap];

// ---- counters: index of the last used row, -1 for empty ----------------------------------------
extern int apt_wrl_max;
extern int rwy_wrl_max;
extern int nav_wrl_max;
