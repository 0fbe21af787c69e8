// tf_coast FOLDER WEST EAST SOUTH NORTH [SPACING_M] < shore lines
// Reads shore lines as "lon lat" pairs, a line starting with '>' between two
// of them (what `gmt coast -M -W` prints), spaces points evenly along them and
// writes one coastline file for each 10-degree square of the region into
// FOLDER. The region's bounds are multiples of 10. No one-degree tile gets
// more points than the editor loads: where the shore is too long for the
// spacing, that tile's spacing is widened.
#include "tools/coast_gen.h"

#include "app/Utils.h"
#include "hl/Hl_types.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

static void usage()
{
    std::fprintf(stderr, "usage: tf_coast FOLDER WEST EAST SOUTH NORTH [SPACING_M] < shore-lines\n"
                         "Bounds in whole degrees, multiples of 10; spacing in metres, %.0f if not given.\n",
                 coast_default_spacing_m);
}

static int whole_ten(const char* text, int low, int high, int* out)
{
    char* end = nullptr;
    long v = std::strtol(text, &end, 10);
    if (*end || v % 10 || v < low || v > high) return 0;
    *out = (int)v;
    return 1;
}

int main(int argc, char** argv)
{
    int west, east, south, north;
    if ((argc != 6 && argc != 7) || !whole_ten(argv[2], -180, 180, &west) || !whole_ten(argv[3], -180, 180, &east)
        || !whole_ten(argv[4], -90, 90, &south) || !whole_ten(argv[5], -90, 90, &north) || west >= east
        || south >= north) {
        usage();
        return 2;
    }
    const double spacing_m = argc == 7 ? std::atof(argv[6]) : coast_default_spacing_m;
    if (spacing_m <= 0) {
        usage();
        return 2;
    }
    std::vector<shore_line> lines;
    read_shore_lines(std::cin, lines);
    tile_spacings spacing;
    std::vector<coast_point> points;
    const int most = fit_points(lines, spacing_m, coast_cap, spacing, points);
    if (most > coast_cap) {
        std::fprintf(stderr, "tf_coast: a tile still holds %d points after widening its spacing\n", most);
        return 1;
    }
    const auto files = points_per_file(points);
    const std::string folder = std::string(argv[1]) + "/";
    int written = 0;
    for (int lat = south; lat < north; lat += 10)
        for (int lon = west; lon < east; lon += 10) {
            char name[16];
            return_latlon_str_COAST((float)lat, (float)lon, name);
            auto found = files.find(name);
            if (found == files.end()) continue;
            if (!write_coast_file(folder + name, found->second)) {
                std::fprintf(stderr, "tf_coast: cannot write %s%s\n", folder.c_str(), name);
                return 1;
            }
            std::printf("%s: %zu points\n", name, found->second.size());
            written++;
        }
    std::printf("%zu shore lines, %d files, at most %d points in a tile (cap %d), %zu tiles spaced wider than %.0f m\n",
                lines.size(), written, most, coast_cap, spacing.size(), spacing_m);
    return 0;
}
