// The map projection and the zoom, pan and editing commands.
#include "app/Main.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "drawn.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstring>

class MapView : public ::testing::Test {
protected:
    void SetUp() override { fill_constants(), set_msc_defaults(); }
};

// Zoom-in presses of count that changed the zoom.
static int zoom_in_steps(int count, const float& zoom)
{
    int steps = 0;
    for (int k = 0; k < count; k++) {
        const float before = zoom;
        handle_zoom(cmd_zoom_in);
        steps += zoom != before;
    }
    return steps;
}

TEST_F(MapView, TileCornersAtZoomOne)
{
    EXPECT_FLOAT_EQ(ret_x(-119, 33), 168);
    EXPECT_FLOAT_EQ(ret_y(33), 5);
    EXPECT_FLOAT_EQ(ret_y(34), 578);
    msc.lat = 0;
    msc.lon = 0;
    EXPECT_FLOAT_EQ(ret_x(1, 0), 741);
    EXPECT_NEAR(ret_x(1, 1), 168 + 573 * std::cos(1.0 * M_PI / 180), 1e-3);   // the east edge leans
    msc.lat = -34;
    EXPECT_GT(ret_x(1, -33), ret_x(1, -34));   // south of the equator the north edge is wider
}

// The pointer's place in degrees, minutes and seconds, then in decimal degrees:
// latitude above, longitude below, a minus sign ahead of a field that is west.
TEST_F(MapView, PointerReadoutInDegreesMinutesSecondsAndDecimal)
{
    OGL_assign_colortable();
    mnw.mouse_x = 168, mnw.mouse_y = 398.9375f;   // 33.6875 N, 33 41 15, on the tile's west edge at 119 W
    pixel_set shown = stamped("033", 20, 30, 6, stamped("41", 50, 30, 6, stamped("15", 74, 30)));
    shown = stamped(".", 120, 29, 6, stamped("03368750", 105, 30, 6, shown));
    shown = stamped("-119", 14, 12, 6, stamped("00", 50, 12, 6, stamped("00", 74, 12, 6, shown)));
    shown = stamped(".", 120, 11, 6, stamped("-11900000", 99, 12, 6, shown));
    EXPECT_EQ(baked(draw_pointer_readout, 7), shown);
}

TEST_F(MapView, MapZoomStopsAfterNineteenSteps)
{
    EXPECT_EQ(zoom_in_steps(40, msc.map_zoom), 19);
    EXPECT_NEAR(msc.map_zoom, 31.95, 0.01);
    // Each step moved the view by a tenth of the new visible degree: a geometric series.
    EXPECT_NEAR(msc.map_dlat, 0.5 * (1 - std::pow(1 / 1.2, 19)), 1e-4);
}

// The airport diagram: ten zoom steps of 1.25, a pan of 50 units a step that
// stops 2000 units out, shrinks with a zoom out and is dropped back near zoom 1.
TEST_F(MapView, AirportDiagramZoomAndPanStopAtTheirEnds)
{
    msc.screen = cmd_screen_airports;
    EXPECT_EQ(zoom_in_steps(20, msc.apt_zoom), 10);
    EXPECT_NEAR(msc.apt_zoom, std::pow(1.25, 10), 1e-4);
    for (int k = 0; k < 50; k++) {
        handle_zoom(cmd_pan_right);
        handle_zoom(cmd_pan_down);
    }
    EXPECT_EQ(std::pair(msc.apt_dx, msc.apt_dy), std::pair(-2000.0f, 2000.0f));
    for (int k = 0; k < 90; k++) {
        handle_zoom(cmd_pan_left);
        handle_zoom(cmd_pan_up);
    }
    EXPECT_EQ(std::pair(msc.apt_dx, msc.apt_dy), std::pair(2000.0f, -2000.0f));
    handle_zoom(cmd_zoom_out);
    EXPECT_EQ(std::pair(msc.apt_dx, msc.apt_dy), std::pair(1500.0f, -1500.0f));
    for (int k = 0; k < 20; k++) handle_zoom(cmd_zoom_out);   // 0.75 does not undo 1.25: it ends below 1
    EXPECT_NEAR(msc.apt_zoom, std::pow(1.25, 10) * std::pow(0.75, 8), 1e-5);   // eight steps out in all
    EXPECT_EQ(std::pair(msc.apt_dx, msc.apt_dy), std::pair(0.0f, 0.0f));
}

TEST_F(MapView, ToolCyclesOnTheirScreensOnly)
{
    for (int expect : {1, 2, 3, 4, 0}) {
        cycle_tool();
        EXPECT_EQ(msc.ter_tool, expect);
    }
    msc.screen = 201;
    for (int expect : {0, 96, 95}) {
        cycle_tool();
        EXPECT_EQ(msc.obj_tool, expect);
    }
    msc.obj_tool = 3;   // outside its cycle: stays
    cycle_tool();
    EXPECT_EQ(msc.obj_tool, 3);
    msc.screen = 202;
    cycle_tool();
    EXPECT_EQ(msc.ter_tool, 0);
}

// One odd corner of a water cell is pulled to the other three, whichever it is;
// so is a cell whose corners differ a little.
TEST_F(MapView, FlattenWaterPullsTheOddCornerToTheOtherThree)
{
    const int ci[4] = {10, 10, 11, 11}, cj[4] = {10, 11, 10, 11};   // SW, NW, SE, NE of cell (10, 10)
    const float cells[5][4] = {{10, 10, 10, 12}, {10, 10, 12, 10}, {10, 12, 10, 10}, {12, 10, 10, 10}, {9.6f, 10.4f, 10, 12}};
    for (const auto& c : cells) {
        std::memset(planey, 0, sizeof planey);
        std::memset(is_water, 0, sizeof is_water);
        is_water[10][10] = 1;
        for (int k = 0; k < 4; k++) planey[ci[k]][cj[k]] = c[k];
        flatten_water();
        for (int k = 0; k < 4; k++) EXPECT_FLOAT_EQ(planey[ci[k]][cj[k]], 10) << "corner " << k << " of " << c[3];
    }
    // Two levels two and two (a sloping lake shore) have no odd corner: kept as they are.
    const float kept[2][4] = {{10, 10, 12, 12}, {10, 12, 12, 10}};
    for (const auto& c : kept) {
        for (int k = 0; k < 4; k++) planey[ci[k]][cj[k]] = c[k];
        flatten_water();
        for (int k = 0; k < 4; k++) EXPECT_FLOAT_EQ(planey[ci[k]][cj[k]], c[k]) << "corner " << k;
    }
}

// A cell is the quadrilateral of its four vertices as drawn, not their square:
// here one leaning right, 20 wide at the bottom, its top 10 further east.
TEST(CellPick, SkewedCellHoldsWhatLiesInsideItsEdgesOnly)
{
    const float corners[4][4] = {{5, 5, 100, 100}, {5, 6, 110, 120}, {6, 6, 130, 120}, {6, 5, 120, 100}};
    for (const auto& c : corners) {
        flt_plotx[(int)c[0]][(int)c[1]] = c[2];
        flt_ploty[(int)c[0]][(int)c[1]] = c[3];
    }
    const struct { float x, y; int held; } points[] = {
        {105, 101, 1}, {127, 115, 1}, {112, 119.5f, 1},   // inside, near the leaning edges and the top
        {101, 110, 0}, {128, 105, 0},                      // in the square, outside the lean
        {125, 110, 0}, {110, 100, 0}, {120, 120, 0},        // on an edge: in neither cell
        {131, 119, 0}, {115, 121, 0}, {115, 99, 0}};
    for (const auto& p : points) EXPECT_EQ(cell_holds(5, 5, p.x, p.y), p.held) << p.x << "," << p.y;
}
