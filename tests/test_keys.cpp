// Commands by key, and what a frame runs. (Typing into the name of a record, with Backspace and blanks:
// Flows.NewAirportAndGlideslopeAreSaved in tests/window.)
#include "app/Utils.h"
#include "hl/Hl_graph.h"
#include "world_fixture.h"

using Keys = WorldTest;

TEST_F(Keys, KeysRunTheirCommandsOnTheMapScreens)
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
}

// A frame runs the handler of the current screen alone: a click where the
// navaid screen has its ADD button adds a navaid there only, and marks the
// navaids changed; on the airport screen the click marks the airports.
TEST_F(Keys, AFrameRunsTheCurrentScreenOnly)
{
    OGL_assign_colortable();
    nav_type[0] = 2;   // an NDB, the kind the screen lists first
    nav_wrl_max = 0;
    to_array = 1;
    for (int screen : {200, 201, 202, 203}) {
        msc.screen = screen;
        mnw.mouse_x = 400, mnw.mouse_y = 360, mnw.mouse_click = 1;
        APPLICATION_update();
        EXPECT_EQ(nav_type[1], screen == 203 ? 2 : 0) << screen;
        EXPECT_EQ(msc.apt_dirty * 10 + msc.nav_dirty, screen == 202 ? 10 : screen == 203 ? 11 : 0) << screen;
    }
    to_array = mnw.mouse_click = 0;
}
