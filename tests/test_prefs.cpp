// The preference file: where the editor was.
#include "world_fixture.h"

#include <filesystem>

class Prefs : public WorldTest {
protected:
    char path[path_len];
    void SetUp() override { WorldTest::SetUp(), C_plus_C(app_path, "config/Norvane/Norvane Tile-Forger.prf", path); }
};

// The place, the tool, the screen and the selections, as one line.
static std::string place()
{
    return std::to_string(msc.lat) + " " + std::to_string(msc.lon) + " tool " + std::to_string(msc.ter_tool) +
           " screen " + std::to_string(msc.screen) + " " + std::to_string(msc.apt_sel) + " " + std::to_string(msc.nav_sel);
}

// A preference file is a file on disk: values the editor could not have
// written take their defaults, and nothing is read or written outside a table.
TEST_F(Prefs, ValuesOutOfRangeTakeTheirDefaultsAndAPlaceReadsBack)
{
    write_file("config/Norvane/Norvane Tile-Forger.prf",
               "I\r\n543 version\r\n1e30\r\n-2147483648\r\n5\r\n202\r\n5000000\r\n-3\r\n");
    apt_wrl_max = 4, nav_type[2] = 3;
    EXPECT_EQ(handle_prefs(0, 5, path), 1);
    keep_place_in_range();
    keep_selections_in_tables();
    EXPECT_EQ(place(), "33.000000 -119.000000 tool 0 screen 202 0 0");   // a screen that exists stays
    msc.apt_sel = 4, msc.nav_sel = 2;
    keep_selections_in_tables();   // rows in use stay
    EXPECT_EQ(place(), "33.000000 -119.000000 tool 0 screen 202 4 2");
    nav_type[2] = 0;
    for (float lon : {-999.0f, -1000.0f}) {   // the other ends: the first stays, one step past is reset
        msc.lat = 99, msc.lon = lon;
        keep_place_in_range();
        EXPECT_EQ(msc.lat, lon > -1000 ? 99 : 33);
        EXPECT_EQ(msc.lon, lon > -1000 ? -999 : -119);
    }
    msc.lat = -99, msc.lon = 999, msc.screen = 199, msc.ter_tool = 4;   // the spinners' ends stay
    keep_place_in_range();
    EXPECT_EQ(place(), "-99.000000 999.000000 tool 4 screen 200 4 2");
    // Saved into a folder made anew, and read back.
    std::filesystem::remove_all(root + "config");
    EXPECT_EQ(handle_prefs(0, 6, path), 1);
    set_msc_defaults();
    EXPECT_EQ(msc.obj_tool, 95);   // whatever was saved, the obstacle screen starts with the select tool
    EXPECT_EQ(handle_prefs(0, 5, path), 1);
    EXPECT_EQ(place(), "-99.000000 999.000000 tool 4 screen 200 4 2");
    EXPECT_FATAL_ALERT(handle_prefs(5, 6, path), "Bad pref arg!");   // no sixth file to write

    // A letter typed with a selection far outside the table edits nothing.
    msc.screen = 202, msc.apt_sel = 5000000;
    MACIBM_handlekey('A');
    msc.screen = 203, msc.nav_sel = -7;
    MACIBM_handlekey('A');
    EXPECT_STREQ(g_cs_input, "aa");   // the letters stand on the edit line alone
}
