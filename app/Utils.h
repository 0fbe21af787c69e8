// The tile file, the coast load and the writers of the three stores.
#pragma once

// Store kinds of writeout and handle_save.
const int store_tile = 200;
const int store_airports = 202;
const int store_navaids = 203;

void return_latlon_str_ENV(int lat, int lon, char* out);
void return_latlon_str_COAST(float lat, float lon, char* out);
void tile_file_path(char* out);
int name_leaves_folder(const char* name);   // a texture or object name that is absolute or climbs out
void read_coast();
void read_terrain();
void writeout(int kind);
int handle_save(int kind, int dirty);
