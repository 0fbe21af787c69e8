// The full-size world: well-formed records, the loaders' limits at full size,
// and reader and writer agreeing on every byte of the largest files.
#include "tools/world_gen.h"

#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <system_error>

namespace {

std::string temp_root;

std::string world_folder(const char* name) { return temp_root + "/" + name + "/"; }

std::string read_bytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string database_file(const std::string& root, const char* name)
{
    return root + "additional nav data/Earth/" + name;
}

std::string tile_file(const std::string& root)
{
    return root + "additional nav data/Earth/+030-120/+033-119.env";
}

int name_reads_back(const char* name)
{
    size_t n = std::strlen(name);
    if (n == 0 || n > 38 || name[0] == ' ') return 0;
    for (size_t k = 0; k < n; k++)
        if (!std::isprint((unsigned char)name[k])) return 0;
    return 1;
}

int is_four_capitals(const char* id)
{
    if (std::strlen(id) != 4) return 0;
    for (int k = 0; k < 4; k++)
        if (id[k] < 'A' || id[k] > 'Z') return 0;
    return 1;
}

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

TEST_F(WorldGen, AirportRecordsAreWellFormedAndFillEveryRow)
{
    gen_fill_airports(gen_default_seed);
    ASSERT_EQ(apt_wrl_max, 17999);
    ASSERT_EQ(rwy_wrl_max, 69999);
    std::set<std::string> ids;
    for (int a = 0; a <= apt_wrl_max; a++) {
        ASSERT_TRUE(is_four_capitals(apt_id[a])) << "airport " << a << ": " << apt_id[a];
        ids.insert(apt_id[a]);
        ASSERT_TRUE(name_reads_back(apt_name[a])) << "airport " << a << ": " << apt_name[a];
        ASSERT_EQ(apt_lo_ind[a], a == 0 ? 0 : apt_hi_ind[a - 1] + 1) << "airport " << a;
        ASSERT_GE(apt_hi_ind[a], apt_lo_ind[a]) << "airport " << a << " has no runway";
    }
    EXPECT_EQ(ids.size(), 18000u);
    EXPECT_EQ(apt_hi_ind[17999], 69999);
}

TEST_F(WorldGen, RunwayFieldsStayInTheirRanges)
{
    gen_fill_airports(gen_default_seed);
    int parallels = 0, helipads = 0;
    for (int w = 0; w <= rwy_wrl_max; w++) {
        ASSERT_TRUE(intrange(rwy_num[w], 1, 18) || rwy_num[w] == 99) << "runway " << w;
        ASSERT_TRUE(std::strchr("xLR", rwy_lcr[w]) != nullptr) << "runway " << w;
        if (rwy_lcr[w] == 'R') {
            ASSERT_EQ(rwy_lcr[w - 1], 'L') << "runway " << w;
            ASSERT_EQ(rwy_num[w - 1], rwy_num[w]) << "runway " << w;
            parallels++;
        }
        helipads += rwy_num[w] == 99;
        ASSERT_TRUE(fltrange(rwy_hdng[w], 0, 360)) << "runway " << w;
        ASSERT_TRUE(fltbox(rwy_lon[w], rwy_lat[w], -180, -90, 180, 90)) << "runway " << w;
        ASSERT_GT(rwy_len[w], 0);
        ASSERT_GT(rwy_width[w], 0);
        // Every digit in range: decoding and encoding give the same code back.
        int surface, slope[2], lights[2], approach[2];
        code_to_lgts(&surface, slope, lights, approach, rwy_code[w]);
        ASSERT_EQ(lgts_to_code(surface, slope, lights, approach), rwy_code[w]) << "runway " << w;
        ASSERT_TRUE(intrange(rwy_code[w] / 1000000, 1, 9)) << "runway " << w;
    }
    EXPECT_GT(parallels, 0);
    EXPECT_GT(helipads, 0);
}

TEST_F(WorldGen, NavaidsAreGroupedByKindWithTheirOwnFrequenciesAndSlopes)
{
    gen_fill_navaids(gen_default_seed);
    ASSERT_EQ(nav_wrl_max, 19996);
    for (int v = 0; v <= nav_wrl_max; v++) {
        ASSERT_TRUE(intrange(nav_type[v], 2, 9)) << "navaid " << v;
        if (v > 0) {
            ASSERT_GE(nav_type[v], nav_type[v - 1]) << "navaid " << v << " breaks its group";
        }
        ASSERT_TRUE(is_four_capitals(nav_id[v])) << "navaid " << v;
        ASSERT_TRUE(name_reads_back(nav_name[v])) << "navaid " << v;
        ASSERT_TRUE(intrange(nav_frq[v], 0, 99999)) << "navaid " << v;
        if (nav_type[v] == 2) {
            ASSERT_LT(nav_frq[v], 1000) << "navaid " << v;
        }
        if (nav_type[v] == 6) {
            int n = intround(nav_hdng[v]);
            ASSERT_TRUE(intrange(n % 1000, 0, 359)) << "navaid " << v;
            ASSERT_TRUE(intrange(n / 1000, 250, 350)) << "navaid " << v;
        } else {
            ASSERT_TRUE(fltrange(nav_hdng[v], 0, 360)) << "navaid " << v;
        }
    }
    for (int v = 19997; v < nav_cap; v++) EXPECT_EQ(nav_type[v], 0);
}

TEST_F(WorldGen, TileHasSeaShoresHillsAndObstaclesOnDryLand)
{
    gen_fill_tile(gen_default_seed);
    int count[60] = {0}, water = 0;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            ASSERT_TRUE(intrange((int)planetex[i][j], 50, 58)) << i << "," << j;
            count[planetex[i][j]]++;
            water += is_water[i][j] != 0;
        }
    EXPECT_GT(water, 59 * 79 / 10);
    EXPECT_LT(water, 59 * 79 * 6 / 10);
    for (int tex : {50, 51, 52, 54, 55, 56, 58}) EXPECT_GT(count[tex], 0) << "texture " << tex;
    for (int n = 0; n < gen_obstacle_count; n++) {
        ASSERT_TRUE(fltbox(obj_lon[n], obj_lat[n], -119, 33, -118, 34)) << "obstacle " << n;
        int i = intlim((int)((obj_lon[n] - msc.lon) * 59), 0, 58);
        int j = intlim((int)((obj_lat[n] - msc.lat) * 79), 0, 78);
        ASSERT_EQ(is_water[i][j], 0) << "obstacle " << n << " stands in water";
        ASSERT_TRUE(intrange(obj_type[n], 2, 6) || obj_type[n] == 8) << "obstacle " << n;
        if (obj_type[n] == 8) {
            ASSERT_TRUE(name_reads_back(obj_name[n])) << "obstacle " << n;
        }
    }
}

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

TEST_F(WorldGen, SavingTheLoadedDatabasesGivesTheFilesBackByteForByte)
{
    std::string made = world_folder("made"), saved = world_folder("saved");
    ASSERT_TRUE(gen_write_world(made.c_str(), gen_default_seed));
    ASSERT_TRUE(gen_make_folders(saved.c_str()));
    gen_point_paths_at(made.c_str());
    gen_guard_up();
    load_airports();
    load_navaids();
    gen_guard_down();
    gen_point_paths_at(saved.c_str());
    writeout(store_airports);
    writeout(store_navaids);
    for (const char* name : {"apt.dat", "nav.dat"}) {
        std::string a = read_bytes(database_file(made, name)), b = read_bytes(database_file(saved, name));
        EXPECT_GT(a.size(), 1000000u) << name;
        EXPECT_TRUE(a == b) << name << " differs after a load and a save";
    }
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

TEST_F(WorldGen, SameSeedWritesTheSameFilesAndAnotherSeedOthers)
{
    std::string one = world_folder("seed_a"), two = world_folder("seed_b"), other = world_folder("seed_c");
    ASSERT_TRUE(gen_write_world(one.c_str(), 7));
    ASSERT_TRUE(gen_write_world(two.c_str(), 7));
    ASSERT_TRUE(gen_write_world(other.c_str(), 8));
    for (const char* name : {"apt.dat", "nav.dat"}) {
        EXPECT_TRUE(read_bytes(database_file(one, name)) == read_bytes(database_file(two, name))) << name;
        EXPECT_FALSE(read_bytes(database_file(one, name)) == read_bytes(database_file(other, name))) << name;
    }
    EXPECT_TRUE(read_bytes(tile_file(one)) == read_bytes(tile_file(two)));
    EXPECT_FALSE(read_bytes(tile_file(one)) == read_bytes(tile_file(other)));
}

}  // namespace
