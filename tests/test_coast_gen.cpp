// The coastline tool on made-up shores, checked by loading what it writes
// with the editor's own coast load.
#include "world_fixture.h"

#include "app/Utils.h"
#include "tools/coast_gen.h"

#include <filesystem>
#include <sstream>

// A shore line from "lon lat" pairs.
static shore_line shore(std::initializer_list<std::pair<double, double>> lon_lat)
{
    shore_line s;
    for (auto [lon, lat] : lon_lat) {
        s.lon.push_back(lon);
        s.lat.push_back(lat);
    }
    return s;
}

static double ground_m(const coast_point& a, const coast_point& b)
{
    const double u = coast_units_per_degree;
    return ground_distance_m(a.lat / u, a.lon / u, b.lat / u, b.lon / u);
}

TEST(CoastTool, ReadsGmtSegmentsAndSpacesPointsEvenlyAcrossUnevenVertices)
{
    // Two segments as GMT prints them; the first runs east along 33.5 N with
    // its vertices at uneven places and a corner, where the walk goes on round it.
    std::istringstream gmt("> Shore Bin # 1, Level 1\n-118.9\t33.5\n-118.87\t33.5\n-118.5\t33.5\n"
                           "-118.5\t33.3\nnot a pair\n> Shore Bin # 2, Level 2\n-118.05\t33.1\n-117.95\t33.1\n");
    std::vector<shore_line> lines;
    ASSERT_EQ(read_shore_lines(gmt, lines), 2);
    ASSERT_EQ(lines[0].lat.size(), 4u);
    ASSERT_EQ(lines[1].lon.size(), 2u);

    std::vector<coast_point> points;
    space_line(lines[0], {}, 500, points);
    const double east_m = ground_distance_m(33.5, -118.9, 33.5, -118.5);
    const size_t along_east = (size_t)(east_m / 500) + 1;
    ASSERT_GT(points.size(), along_east + 40);
    for (size_t k = 1; k < along_east; k++) EXPECT_NEAR(ground_m(points[k - 1], points[k]), 500, 12) << k;
    EXPECT_EQ(points[0].lat, 335000);
    EXPECT_EQ(points[0].lon, -1189000);
    // The end of the line is kept when it lies more than half a step past the last point.
    const coast_point end = points.back();
    EXPECT_TRUE(end.lat == 333000 && end.lon == -1185000) << end.lat << " " << end.lon;
    EXPECT_GT(ground_m(points[points.size() - 2], end), 250);
    EXPECT_LE(ground_m(points[points.size() - 2], end), 500);

    // Each step is the spacing of the tile the last point stands in: 500 m
    // west of 118 W, 2000 m from the first point east of it.
    std::vector<coast_point> steps;
    space_line(lines[1], {{{33, -119}, 500}, {{33, -118}, 2000}}, 100, steps);
    ASSERT_GE(steps.size(), 12u);
    for (size_t k = 1; k < steps.size(); k++)
        EXPECT_NEAR(ground_m(steps[k - 1], steps[k]), steps[k - 1].lon < -1180000 ? 500 : 2000, 12) << k;
}

class CoastFiles : public WorldTest {
protected:
    // Loads the coast of one tile from the files under root.
    int load_tile(int lat, int lon)
    {
        msc.lat = (float)lat;
        msc.lon = (float)lon;
        read_coast();
        return msc.coast_num;
    }
    void write_all(const std::vector<coast_point>& points)
    {
        std::filesystem::create_directories(root + "additional nav data/coastlines");
        for (const auto& [name, pts] : points_per_file(points))
            ASSERT_TRUE(write_coast_file(root + "additional nav data/coastlines/" + name, pts));
    }
};

TEST_F(CoastFiles, TilesOverTheCapAreSpacedWiderAndEdgePointsCountInBothNeighbours)
{
    // About 900 km of shore folded into the tile 39 N 119 W, and a shore along
    // 40 N, the edge it shares with the tile to its north and with the next
    // square: 200 m steps would give far more than the editor loads.
    std::vector<shore_line> lines(1);
    for (int k = 0; k <= 90; k++) {
        lines[0].lon.push_back(-118.95 + 0.9 * (k % 2));
        lines[0].lat.push_back(39.05 + 0.01 * k);
    }
    lines.push_back(shore({{-118.95, 40.0}, {-118.05, 40.0}}));
    tile_spacings spacing;
    std::vector<coast_point> points;
    const int most = fit_points(lines, 200, coast_cap, spacing, points);
    EXPECT_LE(most, coast_cap);
    ASSERT_EQ(spacing.size(), 1u);
    EXPECT_GT(spacing[tile_key(39, -119)], 200);

    write_all(points);
    const int south = load_tile(39, -119), north = load_tile(40, -119);
    EXPECT_LE(south, coast_cap);
    EXPECT_GT(south, coast_cap * 9 / 10) << "spaced wider than it had to be";
    // The tile to the north, in the next square's file, has the edge line only, at 200 m.
    EXPECT_NEAR(north, ground_distance_m(40, -118.95, 40, -118.05) / 200, 2);
    for (int k = 0; k < msc.coast_num; k++) EXPECT_EQ(coast_lat[k], 40.0f);
}
