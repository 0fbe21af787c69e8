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
