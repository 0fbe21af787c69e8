// The tile file: names, the byte layout, what changes on the way through a
// write and a read, the blank tile and its save into a missing folder, broken
// files, the coast's limit, and names that leave their folder.
#include "app/Utils.h"
#include "world_fixture.h"

#include <algorithm>
#include <cstring>
#include <vector>

static const char* const tile_file = "additional nav data/Earth/+030-120/+033-119.env";
static const int vertex_bytes = 4800 * 16;
static const int marker_offset = 5 + vertex_bytes;

class TileFile : public WorldTest {
protected:
    template <typename T = int>
    static T at(const std::string& bytes, size_t offset)
    {
        T v;
        std::memcpy(&v, bytes.data() + offset, 4);
        return v;
    }
    static void put_obstacle(int slot, int kind, float lat, float lon, float hddz, const char* name = "?")
    {
        obj_type[slot] = kind, obj_lat[slot] = lat, obj_lon[slot] = lon, obj_hddz[slot] = hddz;
        C_to_C(name, obj_name[slot]);
    }
    // The vertex tables as bytes: heights, places, water and textures.
    static std::string grid_bytes()
    {
        auto bytes = [](const auto& table) { return std::string((const char*)table, sizeof table); };
        return bytes(planelat) + bytes(planelon) + bytes(planey) + bytes(is_water) + bytes(planetex);
    }
    // A tile with varied heights, water in the south-west and custom cells.
    static void shape_tile()
    {
        for (int i = 0; i < grid_ni; i++)
            for (int j = 0; j < grid_nj; j++) {
                planey[i][j] = (float)(i * 7 + j * 3) + 0.25f;
                planelat[i][j] += 0.001f * (float)(i % 3);
                is_water[i][j] = (i < 10 && j < 10);
                set_orientation(i, j, st_r0, is_water[i][j] ? 50 : 54);
            }
        set_orientation(5, 50, st_r1, 2003);
        set_orientation(6, 50, st_r2, 2003);
        set_orientation(7, 50, st_r3, 2007);
        set_orientation(8, 50, st_flip_t, 52);
        set_orientation(9, 50, st_r0, 0);   // code -40000: the largest digit alone
        C_to_C("rock face", msc.ter_tex_name[3]);
        C_to_C("sand", msc.ter_tex_name[7]);
        C_to_C("painted nowhere", msc.ter_tex_name[9]);
    }
};

TEST_F(TileFile, NamesOfTilesAndCoastFiles)
{
    // A tile's file lies in the folder of its ten-degree square, named by its south-west corners.
    const struct { int lat, lon; const char *tile, *coast; } names[] = {
        {33, -119, "+030-120/+033-119.env", "+030-120.cst"}, {0, 0, "+000+000/+000+000.env", "+000+000.cst"},
        {-1, 9, "-010+000/-001+009.env", "-010+000.cst"}, {-5, -5, "-010-010/-005-005.env", "-010-010.cst"}};
    char name[32];
    for (const auto& n : names) {
        EXPECT_STREQ((return_latlon_str_ENV(n.lat, n.lon, name), name), n.tile);
        EXPECT_STREQ((return_latlon_str_COAST(n.lat, n.lon, name), name), n.coast);
    }
}

TEST_F(TileFile, WrittenBytesFollowTheLayoutAndReadBackTheSame)
{
    shape_tile();
    put_obstacle(0, 3, 33.5f, -118.5f, 250);
    put_obstacle(1, 0, 33.6f, -118.6f, 100);          // free slot: left out
    put_obstacle(2, 8, 33.7f, -118.7f, 90, "tower/a");
    put_obstacle(3, 5, 40.0f, -118.5f, 100);          // another tile: left out
    put_obstacle(4, 7, 33.5f, -118.5f, 100);          // kind 7 is never written
    put_obstacle(5, 1, 34.0f, -118.0f, 60);           // on the north-east corner: in
    msc.ter_dirty = 1;
    writeout(200);
    EXPECT_EQ(msc.ter_dirty, 0);

    std::string f = read_file(tile_file);
    ASSERT_EQ(f.size(), (size_t)(marker_offset + 24 + 56 + 24 + 4 + 500 * 40));
    EXPECT_EQ(f[0], 'i');
    EXPECT_EQ(at(f, 1), 4);
    // Vertex (i, j) is record j * 60 + i; the code is negative.
    size_t v = 5 + (50 * 60 + 5) * 16;
    EXPECT_FLOAT_EQ(at<float>(f, v + 8), planey[5][50]);
    EXPECT_EQ(at(f, v + 12), -(30000 + 2003));
    v = 5 + (3 * 60 + 2) * 16;
    EXPECT_EQ(at(f, v + 12), -(100000 + 40000 + 50));
    EXPECT_FLOAT_EQ(at<float>(f, v), planelat[2][3]);
    EXPECT_FLOAT_EQ(at<float>(f, v + 4), planelon[2][3]);

    // The obstacles (kind 3, kind 8 with its name, kind 1), the end marker, the names.
    const size_t o = marker_offset;
    for (auto [offset, value] : {std::pair{0, 3}, {16, 0}, {20, 0}, {24, 8}, {80, 1}, {104, 99}})
        EXPECT_EQ(at(f, o + offset), value) << "obstacle byte " << offset;
    EXPECT_FLOAT_EQ(at<float>(f, o + 12), 250);
    EXPECT_STREQ(f.c_str() + o + 24 + 16, "tower/a");
    for (auto [slot, name] : {std::pair{3, "rock face"}, {7, "sand"}, {9, "Untitled"}})   // 9: used by no cell
        EXPECT_STREQ(f.c_str() + o + 108 + slot * 40, name);
    EXPECT_STREQ(msc.ter_tex_name[9], "Untitled");   // released in memory too

    clear_feature_tables();   // the vertex tables' way back: TileOfTheOtherByteOrderReadsTheSame
    msc.map_zoom = 4;
    read_terrain();
    // The written obstacles come back compacted in their order.
    EXPECT_EQ(std::vector<int>(obj_type, obj_type + 4), (std::vector<int>{3, 8, 1, 99}));
    EXPECT_STREQ(obj_name[1], "tower/a");
    EXPECT_FLOAT_EQ(obj_hddz[1], 90);
    EXPECT_FLOAT_EQ(obj_lat[2], 34.0f);
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.0f);
}

// A tile written on a machine of the other byte order has the head letter 'a'
// and every number's bytes the other way round; the names are bytes as they are.
TEST_F(TileFile, TileOfTheOtherByteOrderReadsTheSame)
{
    shape_tile();
    writeout(200);
    std::string f = read_file(tile_file);
    ASSERT_EQ(f.size(), (size_t)(marker_offset + 4 + 500 * 40));   // no obstacles: the end marker, then the names
    f[0] = 'a';
    for (size_t k = 1; k < (size_t)marker_offset + 4; k += 4) std::reverse(&f[k], &f[k] + 4);
    write_file(tile_file, f);
    const std::string before = grid_bytes();
    lay_flat_grid();
    std::memset(planest, 0, sizeof planest);
    read_terrain();
    EXPECT_TRUE(grid_bytes() == before) << "the vertex tables changed";
    for (int o = st_r1; o <= st_r3; o++) {   // cells (5, 50) to (7, 50) come back turned as they were
        set_orientation(0, 0, o, 0);
        EXPECT_EQ(std::memcmp(planest[0][0], planest[4 + o][50], sizeof planest[0][0]), 0) << o;
    }
    EXPECT_STREQ(msc.ter_tex_name[3], "rock face");
}

TEST_F(TileFile, MissingFileOrWrongHeadLaysABlankWaterTile)
{
    msc.lat = -5, msc.lon = 12, planey[3][3] = 99, is_water[3][3] = 0, msc.coast_num = 17;
    // Left over from an earlier read: slot 0 in this tile goes, slot 1 outside it stays.
    obj_type[0] = obj_type[1] = 2;
    obj_lat[0] = -4.5f, obj_lon[0] = 12.5f, obj_lat[1] = 33.5f, obj_lon[1] = -118.5f;
    read_terrain();
    EXPECT_EQ(obj_type[0], 0);
    EXPECT_EQ(obj_type[1], 2);
    EXPECT_FLOAT_EQ(planelat[0][79], -4.0f);
    EXPECT_FLOAT_EQ(planelon[59][0], 13.0f);
    EXPECT_FLOAT_EQ(planelat[10][40], interp(0, -5, 79, -4, 40, 1));
    EXPECT_FLOAT_EQ(planey[3][3], 0);
    EXPECT_EQ(is_water[3][3], 1);
    EXPECT_EQ(msc.coast_num, 0);
    // Its folder is missing too: the save warns and the tile stays changed.
    msc.ter_dirty = 1;
    expect_alert("I could not save the file!");
    writeout(200);
    EXPECT_EQ(msc.ter_dirty * 10 + (int)alerts_seen().size(), 11);

    // A file of another version or letter counts as missing; one cut in its vertices is fatal.
    msc.lat = 33, msc.lon = -119;
    writeout(200);
    const std::string good = read_file(tile_file);
    for (auto [at, value] : {std::pair{1, 5}, {1, 3}, {0, 'x'}}) {
        std::string f = good;
        f[at] = (char)value;
        write_file(tile_file, f);
        planey[0][0] = 7;
        read_terrain();
        EXPECT_FLOAT_EQ(planey[0][0], 0) << "byte " << at << " made " << value;   // laid blank
    }
    write_file(tile_file, good.substr(0, 1000));
    EXPECT_FATAL_ALERT(read_terrain(), "File-scanning error!");
    write_file(tile_file, good.substr(0, good.size() - 498 * 40 - 35)), read_terrain();   // cut 5 bytes into slot 1's name
    EXPECT_STREQ(msc.ter_tex_name[2], "Untitled");   // the slots behind are free
    // A folder in the tile's place: the save warns, and the editor keeps the changes.
    std::remove((root + tile_file).c_str()), write_file(std::string(tile_file) + "/in the way", ""), msc.ter_dirty = 1;
    expect_alert("I could not put the saved file"), writeout(200); EXPECT_EQ(msc.ter_dirty * 10 + (int)alerts_seen().size(), 12);
    // The coast holds 3000 points of a tile; one more is fatal.
    std::string pairs = "I\r\n1 version\r\n";
    for (int k = 0; k <= coast_cap; k++) pairs += "33.5 -118.5\n";
    write_file("additional nav data/coastlines/+030-120.cst", pairs);
    EXPECT_FATAL_ALERT(read_coast(), "Too many coastline points!");
}

// Names that leave their folder are kept and written back, never opened, and
// a tile full of them gives one warning.
TEST_F(TileFile, NamesOutsideTheirFolderAreKeptButNotOpened)
{
    for (const char* outside : {"/etc/passwd", "../../secret", "rocks/../../up", "textures:..:x"})
        EXPECT_EQ(name_leaves_folder(outside), 1) << outside;
    for (const char* inside : {"shore/rocks", "a..b/..c"}) EXPECT_EQ(name_leaves_folder(inside), 0) << inside;

    put_obstacle(0, 8, 33.5f, -118.5f, 90, "../../../etc/passwd");
    put_obstacle(1, 8, 33.5f, -118.4f, 90, "/abs/object");
    put_obstacle(2, 99, 0, 0, 0);
    C_to_C("../outside", msc.ter_tex_name[0]);
    planetex[0][0] = 2000;
    writeout(200);
    const std::string written = read_file(tile_file);
    expect_alert("A name in this tile points outside its folder!");
    read_terrain();
    EXPECT_STREQ(obj_name[0], "../../../etc/passwd");
    EXPECT_STREQ(msc.ter_tex_name[0], "../outside");
    ASSERT_EQ(alerts_seen().size(), 1u);   // once a tile read, for the first name
    EXPECT_NE(alerts_seen()[0].find("../../../etc/passwd"), std::string::npos) << alerts_seen()[0];
    writeout(200);
    EXPECT_EQ(read_file(tile_file), written);
}

// The coast's limit, and the log that its fatal alert asks the user to send
// (open_error_log puts it beside the program, the stand-in folder here).
using Coast = WorldTest;
