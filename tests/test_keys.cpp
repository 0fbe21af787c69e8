// Commands by key. (Typing into the name of a record, with Backspace and blanks:
// Flows.NewAirportAndGlideslopeAreSaved in tests/window.)
#include "app/Utils.h"
#include "world_fixture.h"

using Keys = WorldTest;

TEST_F(Keys, KeysRunTheirCommandsOnTheMapScreens)
{
    MACIBM_handlekey(0x26);   // arrow up
    MACIBM_handlekey(0x25);   // arrow left
    EXPECT_FLOAT_EQ(msc.map_dlat, 0.1f);
    EXPECT_FLOAT_EQ(msc.map_dlon, -0.1f);
    MACIBM_handlekey(0xBB);   // '='
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.2f);
    for (int key : {0xBD, (int)'M', 0x20, 0x20}) MACIBM_handlekey(key);   // '-', 'M', space twice
    EXPECT_NEAR(msc.map_zoom, 1.0f, 1e-6);   // in and out again
    EXPECT_EQ(msc.ter_tool, 1);
    EXPECT_EQ(msc.show_tex, 0);
    MACIBM_handlekey(0x20);
    EXPECT_EQ(msc.show_tex, 1);
}
