// The entry of the editor: start-up order, main loop and end of the run.
#pragma once

int WinMain(void* instance, int show_window);
void start_editor();   // everything up to the first frame: window, preferences, tile, databases

// Steps of the start-up, each usable on its own.
void set_msc_defaults();
void lay_flat_grid();
void clear_feature_tables();
void load_stock_textures();
void load_airports();
void load_navaids();
void keep_place_in_range();         // tile, screen and tool of the preference file
void keep_selections_in_tables();   // its selections, once the tables are loaded

// Command ids.
enum {
    cmd_about = 0,
    cmd_save_tile = 100, cmd_save_airports = 101, cmd_save_navaids = 102, cmd_quit = 104,
    cmd_screen_terrain = 200, cmd_screen_obstacles = 201, cmd_screen_airports = 202, cmd_screen_navaids = 203,
    cmd_pan_up = 300, cmd_pan_down = 301, cmd_pan_left = 302, cmd_pan_right = 303,
    cmd_zoom_in = 304, cmd_zoom_out = 305,
    cmd_cycle_tool = 307, cmd_toggle_overlay = 308, cmd_flatten_water = 309,
};

void handle_zoom(int command);
void flatten_water();
void cycle_tool();

// Commands, keys and one frame of the main screen.
void APPLICATION_handlemenu(int command);
void APPLICATION_handlekey(int arrow_flag, int key);
void APPLICATION_update();
void draw_pointer_readout();

// Key codes of the arrows as the key map receives them.
const int key_arrow_left = 31488, key_arrow_up = 32256, key_arrow_right = 31744, key_arrow_down = 32000;
