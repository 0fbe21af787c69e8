// Commands by number and by key, and typing into the name of a record.
#include "app/Utils.h"
#include "world_fixture.h"

#include <cstring>

class Keys : public WorldTest {
protected:
    void SetUp() override
    {
        WorldTest::SetUp();
        mnw.win_id = 0;
        g_cs_input[0] = 0;
        return_hit = 0;
    }
};

TEST_F(Keys, KeysRunTheirCommandsOnTheMapScreens)
{
    MACIBM_handlekey(0x26);   // arrow up
    EXPECT_FLOAT_EQ(msc.map_dlat, 0.1f);
    MACIBM_handlekey(0x25);   // arrow left
    EXPECT_FLOAT_EQ(msc.map_dlon, -0.1f);
    MACIBM_handlekey(0xBB);   // '='
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.2f);
    MACIBM_handlekey(0xBD);   // '-'
    EXPECT_NEAR(msc.map_zoom, 1.0f, 1e-6);
    MACIBM_handlekey('M');
    EXPECT_EQ(msc.ter_tool, 1);
    MACIBM_handlekey(0x20);
    EXPECT_EQ(msc.show_tex, 1);
    MACIBM_handlekey(0x20);
    EXPECT_EQ(msc.show_tex, 0);
    EXPECT_STREQ(g_cs_input, "m  ");   // the text line takes the characters all the same
}

TEST_F(Keys, TypingEditsTheSelectedName)
{
    msc.screen = 202;
    apt_wrl_max = 3;
    msc.apt_sel = 3;
    C_to_C("Fiel", apt_name[3]);
    MACIBM_handlekey('D');
    MACIBM_handlekey('M');   // also sends the tool cycle, which does nothing here
    MACIBM_handlekey(0x20);  // a blank, and no overlay toggle here
    MACIBM_handlekey(0xBD);  // '-' never enters a name
    MACIBM_handlekey(0xBB);
    EXPECT_STREQ(apt_name[3], "Fieldm ");
    EXPECT_EQ(msc.ter_tool, 0);
    EXPECT_EQ(msc.show_tex, 0);
    EXPECT_EQ(msc.apt_dirty, 0);   // typing alone marks nothing
    MACIBM_handlekey(0x08);
    MACIBM_handlekey(0x10);   // Shift alone adds nothing
    MACIBM_handlekey(0x0D);   // nor does Return, which marks the frame
    EXPECT_STREQ(apt_name[3], "Fieldm");
    EXPECT_EQ(return_hit, 1);

    msc.screen = 203;
    msc.nav_sel = 0;
    nav_name[0][0] = 0;
    MACIBM_handlekey(0x08);   // Backspace on an empty name
    EXPECT_STREQ(nav_name[0], "");
}
