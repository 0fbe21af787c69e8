// The full-size world of the generator: the loaders' limits at full size, and
// reader and writer agreeing on every byte of the largest files.
#include "tools/world_gen.h"

#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace {

std::string temp_root;

std::string world_folder(const char* name) { return temp_root + "/" + name + "/"; }

class WorldGen : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "tf_world_gen_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        temp_root = pattern;
        gen_fill_constants();
    }
    static void TearDownTestSuite()
    {
        std::error_code ignored;
        std::filesystem::remove_all(temp_root, ignored);
    }
};

// The largest files that load: every airport and runway row, 19997 navaids.
TEST_F(WorldGen, FullSizeDatabasesLoadToTheLastRow)
{
    std::string root = world_folder("limits");
    ASSERT_TRUE(gen_write_world(root.c_str(), gen_default_seed));
    std::string last_apt_name = apt_name[17999], last_nav_name = nav_name[19996];
    const int glideslope = 12000;   // a row in the group of kind 6
    int last_code = rwy_code[69999], gs_hdng = intround(nav_hdng[glideslope]);

    char report[path_len];
    EXPECT_TRUE(gen_check_world(root.c_str(), report, sizeof report)) << report;
    EXPECT_EQ(apt_wrl_max, 17999);
    EXPECT_EQ(rwy_wrl_max, 69999);
    EXPECT_EQ(nav_wrl_max, 19996);
    EXPECT_EQ(apt_lo_ind[0], 0);
    EXPECT_EQ(apt_hi_ind[17999], 69999);
    EXPECT_EQ(last_apt_name, apt_name[17999]);
    EXPECT_EQ(last_nav_name, nav_name[19996]);
    EXPECT_EQ(last_code, rwy_code[69999]);
    EXPECT_EQ(nav_type[glideslope], 6);
    EXPECT_EQ(gs_hdng, intround(nav_hdng[glideslope]));
}

// A full obstacle table fills every slot; the end marker must not take the
// place of the first obstacle.
TEST_F(WorldGen, TileReadsBackWithItsGridAndAllItsObstacles)
{
    static float lat[obj_cap], lon[obj_cap], hddz[obj_cap];
    static int kind[obj_cap];
    static float y[grid_ni][grid_nj];
    static int water[grid_ni][grid_nj];
    static unsigned int tex[grid_ni][grid_nj];
    std::string root = world_folder("tile");
    ASSERT_TRUE(gen_write_world(root.c_str(), gen_default_seed));
    std::memcpy(lat, obj_lat, sizeof lat);
    std::memcpy(lon, obj_lon, sizeof lon);
    std::memcpy(hddz, obj_hddz, sizeof hddz);
    std::memcpy(kind, obj_type, sizeof kind);
    std::memcpy(y, planey, sizeof y);
    std::memcpy(water, is_water, sizeof water);
    std::memcpy(tex, planetex, sizeof tex);

    std::memset(planey, 0, sizeof planey);
    std::memset(obj_type, 0, sizeof obj_type);
    read_terrain();
    EXPECT_EQ(std::memcmp(y, planey, sizeof y), 0);
    EXPECT_EQ(std::memcmp(water, is_water, sizeof water), 0);
    EXPECT_EQ(std::memcmp(tex, planetex, sizeof tex), 0);
    for (int n = 0; n < obj_cap; n++) {
        ASSERT_EQ(obj_type[n], kind[n]) << "slot " << n;
        ASSERT_EQ(obj_lat[n], lat[n]) << "slot " << n;
        ASSERT_EQ(obj_lon[n], lon[n]) << "slot " << n;
        ASSERT_EQ(obj_hddz[n], hddz[n]) << "slot " << n;
    }
}

}  // namespace
