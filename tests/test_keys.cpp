// Commands by key, and typing into the name of a record.
#include "app/Utils.h"
#include "world_fixture.h"

using Keys = WorldTest;

TEST_F(Keys, KeysRunTheirCommandsOnTheMapScreensAndTypeIntoNamesElsewhere)
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
    EXPECT_STREQ(g_cs_input, "m  ");   // the text line takes the characters all the same
    MACIBM_handlekey(0x20);
    EXPECT_EQ(msc.show_tex, 1);

    // 'M' also sends the tool cycle, which does nothing here; a blank toggles
    // no overlay; '-' and '=' never enter a name; Shift alone adds nothing, nor
    // does Return, which marks the frame; typing alone marks nothing.
    msc.screen = 202;
    apt_wrl_max = 3;
    msc.apt_sel = 3;
    C_to_C("Fiel", apt_name[3]);
    return_hit = 0;
    for (int key : {(int)'D', (int)'M', 0x20, 0xBD, 0xBB, 0x08, 0x10, 0x0D}) MACIBM_handlekey(key);
    EXPECT_STREQ(apt_name[3], "Fieldm");
    EXPECT_EQ(msc.ter_tool, 1);
    EXPECT_EQ(msc.show_tex, 1);
    EXPECT_EQ(msc.apt_dirty, 0);
    EXPECT_EQ(return_hit, 1);
}
