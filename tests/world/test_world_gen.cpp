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
#include <string>
#include <system_error>

namespace {

// What a tile file holds, as bytes: the heights, water and textures of the
// grid, and every slot of the obstacle table.
std::string tile_tables()
{
    auto bytes = [](const auto& table) { return std::string((const char*)table, sizeof table); };
    return bytes(planey) + bytes(is_water) + bytes(planetex) + bytes(obj_type) + bytes(obj_lat) + bytes(obj_lon) +
           bytes(obj_hddz);
}

// A full obstacle table fills every slot; the end marker must not take the
// place of the first obstacle.
TEST(WorldGen, TileReadsBackWithItsGridAndAllItsObstacles)
{
    std::string root = (std::filesystem::temp_directory_path() / "tf_world_gen_XXXXXX").string();
    ASSERT_NE(mkdtemp(root.data()), nullptr);
    gen_fill_constants();
    const bool written = gen_write_world((root + "/tile/").c_str(), gen_default_seed);
    const std::string before = tile_tables();
    std::memset(planey, 0, sizeof planey);
    std::memset(obj_type, 0, sizeof obj_type);
    if (written) read_terrain();
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
    ASSERT_TRUE(written);
    EXPECT_TRUE(tile_tables() == before) << "the tile read back is not the tile written";
}

}  // namespace
