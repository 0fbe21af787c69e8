// The map's commands: the pointer's readout, the cell a press picks, the commands by key,
// and FLATTEN WATER. (Typing into the name of a record, with Backspace and blanks:
// Flows.NewAirportAndGlideslopeAreSaved in tests/window.)
#include "app/Screens.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "world_fixture.h"
#include "drawn.h"

class MapView : public ::testing::Test {
protected:
    void SetUp() override { fill_constants(), set_msc_defaults(); }
};

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
    mnw.mouse_x = 317, baked(draw_pointer_readout, 7);   // 118 41 15 W: its minutes and seconds keep the sign
    EXPECT_EQ(written(7, 44, 12, 42, 7), stamped("-41", 44, 12, 6, stamped("-15", 68, 12)));
}

// A cell is the quadrilateral of its four vertices as drawn, not their square:
// here one leaning right, 20 wide at the bottom, its top 10 further east and
// rising 5 to the east, so that no two edges are alike.
TEST(CellPick, SkewedCellHoldsWhatLiesInsideItsEdgesOnly)
{
    const float corners[4][4] = {{5, 5, 100, 100}, {5, 6, 110, 120}, {6, 6, 130, 125}, {6, 5, 120, 100}};
    for (const auto& c : corners) flt_plotx[(int)c[0]][(int)c[1]] = c[2], flt_ploty[(int)c[0]][(int)c[1]] = c[3];
    const struct { float x, y; int held; } points[] = {
        {105, 101, 1}, {125, 115, 1}, {112, 119.5f, 1}, {125, 123, 1},   // inside, near the leaning edges and the top
        {101, 110, 0}, {128, 105, 0},                      // in the square, outside the lean
        {124, 110, 0}, {110, 100, 0}, {118, 122, 0},        // on an edge: in neither cell
        {131, 119, 0}, {115, 122, 0}, {115, 99, 0}};
    for (const auto& p : points) EXPECT_EQ(cell_holds(5, 5, p.x, p.y), p.held) << p.x << "," << p.y;
}

using Keys = WorldTest;

TEST_F(Keys, KeysAndMenuRunTheirCommandsOnTheMapScreens)
{
    MACIBM_handlekey(0x26);   // arrow up
    MACIBM_handlekey(0x25);   // arrow left
    EXPECT_FLOAT_EQ(msc.map_dlat, 0.1f);
    EXPECT_FLOAT_EQ(msc.map_dlon, -0.1f);
    for (int key : {0x27, 0x28}) MACIBM_handlekey(key);   // arrows right and down: back where it was
    EXPECT_EQ(std::pair(msc.map_dlat, msc.map_dlon), std::pair(0.0f, 0.0f));
    MACIBM_handlekey(0xBB);   // '='
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.2f);
    for (int key : {0xBD, 0xBD, (int)'M', 0x20, 0x20}) MACIBM_handlekey(key);   // '-' twice, 'M', space twice
    EXPECT_NEAR(msc.map_zoom, 1.0f, 1e-6);   // in and out again, and no further out than 1
    EXPECT_EQ(msc.ter_tool, 1);
    EXPECT_EQ(msc.show_tex, 0);
    MACIBM_handlekey(0x20);
    EXPECT_EQ(msc.show_tex, 1);
    std::memset(is_water, 0, sizeof is_water);   // FLATTEN WATER: a water cell's odd corner to the others' level
    is_water[20][30] = 1, planey[20][30] = planey[21][30] = planey[21][31] = 5, planey[20][31] = 7;
    APPLICATION_handlemenu(cmd_flatten_water);
    EXPECT_EQ(planey[20][31], 5);
    msc.screen = 202;   // the airport diagram zooms in ten steps of 1.25 at most
    for (int k = 0; k < 11; k++) MACIBM_handlekey(0xBB);
    EXPECT_FLOAT_EQ(msc.apt_zoom, 9.3132257f);
}
