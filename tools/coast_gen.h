// Coastline files from shore lines: points spaced evenly along each line,
// kept to what one tile may hold, written one file per 10-degree square in
// the form the editor reads ("I", "1 version", then latitude and longitude
// pairs).
//
// Positions are whole ten-thousandths of a degree, the precision the files
// are written in, so that a point on a tile's edge is known exactly: it is
// loaded by every tile whose box holds it, edges included.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

const int coast_units_per_degree = 10000;
const double coast_default_spacing_m = 200;   // about the detail of the high-resolution shores

struct coast_point {
    int lat;   // ten-thousandths of a degree
    int lon;
};

// One shore line as read, in degrees, in the order of its points.
struct shore_line {
    std::vector<double> lat, lon;
};

// A one-degree tile by its south-west corner in whole degrees: latitude, longitude.
using tile_key = std::pair<int, int>;

using tile_counts = std::map<tile_key, int>;
using tile_spacings = std::map<tile_key, double>;   // metres; a tile not listed takes the default

// Reads lines of "lon lat" pairs; a line starting with '>' begins a new shore
// line, and anything else that is not a pair is skipped. Returns the count read.
int read_shore_lines(std::istream& in, std::vector<shore_line>& out);

// Ground distance in metres between two positions in degrees, on a sphere,
// by the local flat approximation (good for the short steps along a shore).
double ground_distance_m(double lat1, double lon1, double lat2, double lon2);

// Walks the line and puts a point at its start and then one after every
// step, where a step is the spacing of the tile the last point stands in;
// the line's end is added when it lies more than half a step past the last
// point. Consecutive points that round to the same position are kept once.
void space_line(const shore_line& line, const tile_spacings& spacing, double default_m,
                std::vector<coast_point>& out);

// Every tile whose closed box holds the point: one, two on an edge, four on a corner.
int tiles_holding(const coast_point& p, tile_key out[4]);

// How many points each tile loads.
tile_counts count_per_tile(const std::vector<coast_point>& points);

// Spaces all lines, then widens the spacing of each tile that holds more than
// cap points and spaces again, until none does. The spacings used are left in
// spacing. Returns the most points any tile holds.
int fit_points(const std::vector<shore_line>& lines, double default_m, int cap,
               tile_spacings& spacing, std::vector<coast_point>& out);

// The points each 10-degree square's file gets: every point of every tile of
// that square, keyed by the file name ("+030-120.cst").
std::map<std::string, std::vector<coast_point>> points_per_file(const std::vector<coast_point>& points);

// Writes one file; returns 0 when it can't be written.
int write_coast_file(const std::string& path, const std::vector<coast_point>& points);
