// A full-size world for load tests and benchmarks: the airport and navaid
// databases at the largest size that loads, and one tile with a full
// obstacle table over a grid of sea, shores, plains and hills. The tables are
// filled with deterministic values from a seed and written by the editor's own
// writers, so the files are exactly what the editor itself would save.
#pragma once

const int gen_airport_count = 18000;   // every airport row
const int gen_runway_count = 70000;    // every runway row
const int gen_navaid_count = 19997;    // the most records a nav.dat may hold
const int gen_obstacle_count = 60000;  // every obstacle slot
const int gen_tile_lat = 33;
const int gen_tile_lon = -119;
const unsigned gen_default_seed = 20240611u;

// The unit constants, formed exactly as the platform start-up forms them, for
// programs that run the editor's code without its window.
void gen_fill_constants();

// Makes root/"additional nav data"/Earth/ and the 10-degree folder of the
// tile. root ends with a separator. Returns 0 when a folder can't be made or
// the root is too long for the editor's paths.
int gen_make_folders(const char* root);

// app_path becomes root; apt_path and nav_path the databases under it.
void gen_point_paths_at(const char* root);

// Fill the tables. Each restarts the number sequence from the seed, so one
// group can be made again without the others.
void gen_fill_airports(unsigned seed);
void gen_fill_navaids(unsigned seed);
void gen_fill_tile(unsigned seed);   // also sets msc.lat, msc.lon to the tile

// Fills all tables and writes apt.dat, nav.dat and the tile under root.
// Returns 0 when a folder can't be made.
int gen_write_world(const char* root, unsigned seed);

// Loads the three files under root with the editor's own loaders and checks
// the counts: every airport, runway and navaid row, and the tile's obstacles.
// Returns 1 when all hold; otherwise 0 with the first difference in message.
int gen_check_world(const char* root, char* message, int message_len);

// The editor ends the process with status 0 from a fatal alert. While a
// guard is up such an end becomes status 1, so that a load that died cannot
// pass for a good run. Guards nest; each up needs its down.
void gen_guard_up();
void gen_guard_down();
