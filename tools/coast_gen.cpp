#include "tools/coast_gen.h"

#include "app/Utils.h"
#include "hl/Hl_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <istream>
#include <sstream>

static const double metres_per_degree = 111195.0;   // on a sphere of radius 6371 km

int read_shore_lines(std::istream& in, std::vector<shore_line>& out)
{
    int lines = 0;
    bool open_line = false;
    std::string text;
    while (std::getline(in, text)) {
        if (!text.empty() && text[0] == '>') {
            open_line = false;
            continue;
        }
        std::istringstream fields(text);
        double lon, lat;
        if (!(fields >> lon >> lat)) continue;
        if (!open_line) {
            out.push_back(shore_line());
            open_line = true;
            lines++;
        }
        out.back().lat.push_back(lat);
        out.back().lon.push_back(lon);
    }
    return lines;
}

double ground_distance_m(double lat1, double lon1, double lat2, double lon2)
{
    const double mid = (lat1 + lat2) * 0.5 * M_PI / 180.0;
    const double north = (lat2 - lat1) * metres_per_degree;
    const double east = (lon2 - lon1) * metres_per_degree * std::cos(mid);
    return std::sqrt(north * north + east * east);
}

static int to_units(double degrees) { return (int)std::lround(degrees * coast_units_per_degree); }

static double spacing_at(const tile_spacings& spacing, double default_m, double lat, double lon)
{
    auto found = spacing.find(tile_key((int)std::floor(lat), (int)std::floor(lon)));
    return found == spacing.end() ? default_m : found->second;
}

static void add_point(double lat, double lon, size_t first_of_line, std::vector<coast_point>& out)
{
    coast_point p = {to_units(lat), to_units(lon)};
    if (out.size() > first_of_line && out.back().lat == p.lat && out.back().lon == p.lon) return;
    out.push_back(p);
}

void space_line(const shore_line& line, const tile_spacings& spacing, double default_m,
                std::vector<coast_point>& out)
{
    const size_t n = line.lat.size();
    if (n == 0) return;
    const size_t first = out.size();
    add_point(line.lat[0], line.lon[0], first, out);
    double step = spacing_at(spacing, default_m, line.lat[0], line.lon[0]);
    double left = step;   // still to walk to the next point
    for (size_t k = 1; k < n; k++) {
        const double lat0 = line.lat[k - 1], lon0 = line.lon[k - 1];
        const double seg = ground_distance_m(lat0, lon0, line.lat[k], line.lon[k]);
        double walked = 0;
        while (seg - walked >= left) {
            walked += left;
            const double f = walked / seg;
            const double lat = lat0 + f * (line.lat[k] - lat0);
            const double lon = lon0 + f * (line.lon[k] - lon0);
            add_point(lat, lon, first, out);
            step = spacing_at(spacing, default_m, lat, lon);
            left = step;
        }
        left -= seg - walked;
    }
    if (step - left > step * 0.5) add_point(line.lat[n - 1], line.lon[n - 1], first, out);
}

// The whole degrees whose closed one-degree span holds a value in units: one,
// or two when it lies on a whole degree.
static int degrees_holding(int units, int out[2])
{
    const int below = (int)std::floor((double)units / coast_units_per_degree);
    out[0] = below;
    if (units % coast_units_per_degree != 0) return 1;
    out[1] = below - 1;
    return 2;
}

int tiles_holding(const coast_point& p, tile_key out[4])
{
    int lats[2], lons[2];
    const int nlat = degrees_holding(p.lat, lats);
    const int nlon = degrees_holding(p.lon, lons);
    int n = 0;
    for (int a = 0; a < nlat; a++)
        for (int b = 0; b < nlon; b++) out[n++] = tile_key(lats[a], lons[b]);
    return n;
}

tile_counts count_per_tile(const std::vector<coast_point>& points)
{
    tile_counts counts;
    tile_key tiles[4];
    for (const coast_point& p : points) {
        const int n = tiles_holding(p, tiles);
        for (int k = 0; k < n; k++) counts[tiles[k]]++;
    }
    return counts;
}

int fit_points(const std::vector<shore_line>& lines, double default_m, int cap,
               tile_spacings& spacing, std::vector<coast_point>& out)
{
    int most = 0;
    for (int round = 0; round < 100; round++) {
        out.clear();
        for (const shore_line& line : lines) space_line(line, spacing, default_m, out);
        most = 0;
        bool widened = false;
        for (const auto& [tile, count] : count_per_tile(out)) {
            most = std::max(most, count);
            if (count <= cap) continue;
            const double now = spacing.count(tile) ? spacing[tile] : default_m;
            spacing[tile] = now * std::max(1.02, 1.02 * count / cap);
            widened = true;
        }
        if (!widened) break;
    }
    return most;
}

std::map<std::string, std::vector<coast_point>> points_per_file(const std::vector<coast_point>& points)
{
    std::map<std::string, std::vector<coast_point>> files;
    tile_key tiles[4];
    for (const coast_point& p : points) {
        const int n = tiles_holding(p, tiles);
        std::string names[4];
        for (int k = 0; k < n; k++) {
            char name[16];
            return_latlon_str_COAST((float)tiles[k].first, (float)tiles[k].second, name);
            names[k] = name;
            if (std::find(names, names + k, names[k]) == names + k) files[names[k]].push_back(p);
        }
    }
    return files;
}

// Whole ten-thousandths as a decimal with four places, exactly.
static void put_units(std::FILE* f, int units)
{
    const int whole = std::abs(units) / coast_units_per_degree;
    const int part = std::abs(units) % coast_units_per_degree;
    std::fprintf(f, "%s%d.%04d", units < 0 ? "-" : "", whole, part);
}

int write_coast_file(const std::string& path, const std::vector<coast_point>& points)
{
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return 0;
    std::fprintf(f, "I%s1 version%s", line_end, line_end);
    for (const coast_point& p : points) {
        put_units(f, p.lat);
        std::fputc(' ', f);
        put_units(f, p.lon);
        std::fputs(line_end, f);
    }
    return std::fclose(f) == 0;
}
