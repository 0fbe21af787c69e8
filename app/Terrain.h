// The map of the open tile: projection between degrees and the canvas.
#pragma once

// The map area of the terrain and obstacle screens on the canvas.
const float map_scale = 573;   // canvas units per degree of latitude at zoom 1
const float map_x1 = 168, map_y1 = 5, map_x2 = 795, map_y2 = 578;

float ret_y(float lat);
float ret_x(float lon, float lat);
float ret_lat(float y);
float ret_lon(float x, float y);
