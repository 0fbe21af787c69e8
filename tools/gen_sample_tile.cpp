// tf_sample_tile FOLDER < land mask
// Gives the sample tile 33 N 119 W under FOLDER (a folder laid out as beside
// the program) its water and land from a land mask, and elevations shaped by
// hand after the real relief, and writes it with the editor's own writer. The
// tile's obstacles and custom texture names stay as they are.
//
// The mask is "lon lat value" lines, value 0 for water and 1 for land, on the
// grid's vertices and the cells' centres: 119 by 159 nodes over the tile, as
//   gmt grdlandmask -R-119/-118/33/34 -I119+n/159+n -Dh -N0/1/0/1/0 -Gmask.nc
//   gmt grd2xyz mask.nc
// print them (tools/make_sample_tile.sh). A cell is water where the mask is
// water at its centre; the last row and column, which belong to no cell,
// take the mask at their vertex.
#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>

const int tile_lat = 33, tile_lon = -119;
const int nodes_i = 2 * 59 + 1, nodes_j = 2 * 79 + 1;   // vertices and cell centres

static int mask[nodes_i][nodes_j];   // 1 land, 0 water, -1 not given

static int read_mask()
{
    std::memset(mask, -1, sizeof mask);
    double lon, lat, value;
    int read = 0;
    while (std::cin >> lon >> lat >> value) {
        const int a = (int)std::lround((lon - tile_lon) * 2 * grid_i);
        const int b = (int)std::lround((lat - tile_lat) * 2 * grid_j);
        if (a < 0 || a >= nodes_i || b < 0 || b >= nodes_j) continue;
        mask[a][b] = value > 0.5 ? 1 : 0;
        read++;
    }
    for (int a = 0; a < nodes_i; a++)
        for (int b = 0; b < nodes_j; b++)
            if (mask[a][b] < 0) return 0;
    return read;
}

// ---- the relief, by hand ---------------------------------------------------------------
//
// Approximate: heights in metres after the map, not survey data. The basin
// rises from the shore to the north; the peninsula's hills stand at its
// south-west corner; the island is one ridge from north-west to south-east
// with its highest point near the middle; the northern tip of the island to
// the south, on the tile's south edge, is one low hill.

static double bump(double lat, double lon, double lat0, double lon0, double r_lat, double r_lon)
{
    const double u = (lat - lat0) / r_lat, v = (lon - lon0) / r_lon;
    return std::exp(-(u * u + v * v));
}

static double clamp01(double v) { return v < 0 ? 0 : v > 1 ? 1 : v; }

// Height above a line from (lat1, lon1) to (lat2, lon2), falling off across it.
static double ridge(double lat, double lon, double lat1, double lon1, double lat2, double lon2, double half_width)
{
    const double dy = lat2 - lat1, dx = lon2 - lon1;
    const double t = clamp01(((lat - lat1) * dy + (lon - lon1) * dx) / (dy * dy + dx * dx));
    const double across = std::hypot(lat - (lat1 + t * dy), lon - (lon1 + t * dx));
    const double along = std::sin(t * M_PI);   // low at both ends of the island
    return std::exp(-(across / half_width) * (across / half_width)) * (0.35 + 0.65 * along);
}

static double land_height_m(double lat, double lon)
{
    double h = 12 + 40 * clamp01((lat - tile_lat - 0.75) / 0.25);         // the basin
    h += 420 * bump(lat, lon, 33.765, -118.365, 0.035, 0.055);            // the peninsula's hills
    h += 120 * bump(lat, lon, 34.005, -118.37, 0.02, 0.025);               // the hills north of the airport
    h += 90 * bump(lat, lon, 33.805, -118.165, 0.008, 0.01);               // the small hill in the port city
    h += 480 * ridge(lat, lon, 33.47, -118.60, 33.31, -118.31, 0.03);      // the island's ridge
    h += 160 * bump(lat, lon, 33.376, -118.42, 0.02, 0.025);               // its highest point
    h += 120 * bump(lat, lon, 33.0, -118.58, 0.03, 0.03);                  // the tip of the southern island
    return h;
}

// A vertex on a water cell stays at sea level, so that water lies flat.
static int on_water(int i, int j)
{
    for (int a = i - 1; a <= i; a++)
        for (int b = j - 1; b <= j; b++)
            if (a >= 0 && b >= 0 && a < grid_i && b < grid_j && is_water[a][b]) return 1;
    return 0;
}

static void shape_tile()
{
    for (int i = 0; i <= grid_i; i++)
        for (int j = 0; j <= grid_j; j++) {
            const int centre = i < grid_i && j < grid_j;
            is_water[i][j] = !mask[centre ? 2 * i + 1 : 2 * i][centre ? 2 * j + 1 : 2 * j];
        }
    for (int i = 0; i <= grid_i; i++)
        for (int j = 0; j <= grid_j; j++)
            planey[i][j] = on_water(i, j) ? 0.0f : (float)land_height_m(planelat[i][j], planelon[i][j]);
}

// ---- what lies where -------------------------------------------------------------------

static int cell_is_water(float lat, float lon)
{
    const int i = (int)std::floor((lon - tile_lon) * grid_i), j = (int)std::floor((lat - tile_lat) * grid_j);
    return is_water[i][j];
}

static int in_tile(float lat, float lon) { return lat > tile_lat && lat < tile_lat + 1 && lon > tile_lon && lon < tile_lon + 1; }

static void report_places()
{
    for (int r = 0; r <= rwy_wrl_max; r++)
        if (in_tile(rwy_lat[r], rwy_lon[r]))
            std::printf("runway %d (%.4f %.4f): %s\n", r, rwy_lat[r], rwy_lon[r], cell_is_water(rwy_lat[r], rwy_lon[r]) ? "WATER" : "land");
    for (int n = 0; n <= nav_wrl_max; n++)
        if (nav_type[n] && in_tile(nav_lat[n], nav_lon[n]))
            std::printf("navaid %s (%.4f %.4f): %s\n", nav_id[n], nav_lat[n], nav_lon[n], cell_is_water(nav_lat[n], nav_lon[n]) ? "WATER" : "land");
    int obstacles = 0;
    while (obj_type[obstacles] != 99) obstacles++;
    std::printf("%d obstacles kept\n", obstacles);
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tf_sample_tile FOLDER < land mask\n");
        return 2;
    }
    std::string root = std::filesystem::absolute(argv[1]).lexically_normal().string();
    if (root.back() != '/') root += '/';
    if (!read_mask()) {
        std::fprintf(stderr, "tf_sample_tile: the mask does not cover every node of the %d by %d grid\n", nodes_i, nodes_j);
        return 1;
    }
    fill_constants();
    C_to_C(root.c_str(), app_path);
    set_msc_defaults();
    msc.lat = tile_lat;
    msc.lon = tile_lon;
    lay_flat_grid();
    clear_feature_tables();
    read_terrain();
    load_airports();
    load_navaids();
    shape_tile();
    assign_terrain_texes(0, 0);
    writeout(store_tile);
    report_places();
    return 0;
}
