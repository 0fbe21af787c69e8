// The coastline tool on made-up shores: GMT's segments read, and points
// spaced evenly along them at each tile's own spacing.
#include "world_fixture.h"

#include "tools/coast_gen.h"

#include <sstream>

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
