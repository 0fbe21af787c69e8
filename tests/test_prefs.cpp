// The preference files: where the editor was, and the display mode.
#include "world_fixture.h"

class Prefs : public WorldTest {
protected:
    char path[path_len];
    void SetUp() override
    {
        WorldTest::SetUp();
        C_plus_C(app_path, "config/Norvane/Norvane Tile-Forger.prf", path);
    }
};

TEST_F(Prefs, WrittenPlaceReadsBackAndTheFolderIsMade)
{
    msc.lat = -34;
    msc.lon = -71;
    msc.ter_tool = 3;
    msc.screen = 203;
    msc.apt_sel = 17;
    msc.nav_sel = 4;
    EXPECT_EQ(handle_prefs(0, 6, path), 1);
    set_msc_defaults();
    EXPECT_EQ(handle_prefs(0, 5, path), 1);
    EXPECT_FLOAT_EQ(msc.lat, -34);
    EXPECT_FLOAT_EQ(msc.lon, -71);
    EXPECT_EQ(msc.ter_tool, 3);
    EXPECT_EQ(msc.screen, 203);
    EXPECT_EQ(msc.apt_sel, 17);
    EXPECT_EQ(msc.nav_sel, 4);
}

TEST_F(Prefs, DisplayFileNeedsAllFourValues)
{
    char res[path_len];
    C_plus_C(app_path, "res.prf", res);
    write_file("res.prf", "I\r\n543 version\r\n1024\r\n768\r\n32\r\n0\r\n");
    EXPECT_EQ(handle_prefs(2, 5, res), 1);
    EXPECT_FLOAT_EQ(mnw.scr_x, 1024);
    EXPECT_FLOAT_EQ(mnw.scr_y, 768);
    EXPECT_FLOAT_EQ(mnw.scr_bits, 32);
    write_file("res.prf", "I\r\n543 version\r\n1024\r\n768\r\n32\r\n");
    EXPECT_FATAL_ALERT(handle_prefs(2, 5, res), "File-scanning error!");
    EXPECT_NE(last_log_line().find("file: res prefs, "), std::string::npos);
}

TEST_F(Prefs, BadArgumentIsFatal)
{
    EXPECT_FATAL_ALERT(handle_prefs(5, 5, path), "Bad pref arg!");
    EXPECT_FATAL_ALERT(handle_prefs(0, 8, path), "Bad pref arg!");
}
