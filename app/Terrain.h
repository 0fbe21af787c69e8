// The map of the open tile: projection between degrees and the canvas.
#pragma once

// The map area of the terrain and obstacle screens on the canvas.
constexpr float map_scale = 573;   // canvas units per degree of latitude at zoom 1
constexpr float map_x1 = 168, map_y1 = 5, map_x2 = 795, map_y2 = 578;

float ret_y(float lat);
float ret_x(float lon, float lat);
float ret_lat(float y);
float ret_lon(float x, float y);

// The terrain view: ground, grid, runways, selected vertex, obstacles, coast,
// clipped to the map area. Leaves every vertex's canvas place in flt_plotx/y.
void plot_TF_terrain();

// Pieces of the view, each usable on its own.
int water_cell_colour(int i, int j);          // 4 when not level along three edges, else 16
int runway_near_tile(int r);                  // the runway's centre lies within 0.1 degrees of the tile
void runway_corner(int r, int k, float* lon, float* lat);   // corner k = 0..3
int in_map_area(float x, float y);
void plot_obstacle_symbol(int kind, int col, float x, float y);
void plot_symbol_at_pixel(int kind, int col, int px, int py);
extern int obj_flash;

// Obstacle symbols stamped from the pixels OpenGL lights for each kind
// (app/Obstacle_stamps.cpp), since every symbol of a kind lights the same
// pixels about its own.
int stamps_begin(const int box[4]);   // 0 when the scale or the box does not allow stamps
// The symbol of each obstacle n below count that is shown, of its kind, on its pixel.
void stamp_symbols(const unsigned char* shown, const int* kind, const int* px, const int* py, int count);
void stamps_draw(int col);            // the stamps as one bitmap in colour col
extern int stamped_draws;             // counts the drawings that stamped
// Forgets the kept picture of the map, so that the next frame draws it whole.
void drop_map_picture();
extern int map_whole_draws;   // counts the frames that drew the map whole
extern int map_area_draws;    // and those that drew an area of it again
