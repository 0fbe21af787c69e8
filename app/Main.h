// The entry of the editor: start-up order, main loop and end of the run.
#pragma once

int WinMain(void* instance, int show_window);

// Steps of the start-up, each usable on its own.
void set_msc_defaults();
void lay_flat_grid();
void clear_feature_tables();
void load_stock_textures();
void load_airports();
void load_navaids();
