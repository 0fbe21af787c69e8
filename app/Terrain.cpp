// The map projection: latitude is linear, and the east-west scale is the
// cosine of each point's own latitude, so meridians lean towards the origin.
#include "app/Terrain.h"
#include "hl/Hl_types.h"

#include <cmath>

float ret_y(float lat)
{
    return (lat - msc.map_dlat - msc.lat) * map_scale * msc.map_zoom + map_y1;
}

float ret_x(float lon, float lat)
{
    return (lon - msc.map_dlon - msc.lon) * map_scale * msc.map_zoom * std::cos(lat * con.deg_to_rad) + map_x1;
}

float ret_lat(float y)
{
    return (y - map_y1) / (map_scale * msc.map_zoom) + msc.map_dlat + msc.lat;
}

// At a pole the cosine is 0 and every x lies on the origin's meridian: the
// longitude of the origin is given back instead of a division by zero.
float ret_lon(float x, float y)
{
    float c = std::cos(ret_lat(y) * con.deg_to_rad);
    float origin = msc.map_dlon + msc.lon;
    if (std::fabs(c) < 1e-6f) return origin;
    return (x - map_x1) / (map_scale * msc.map_zoom * c) + origin;
}
