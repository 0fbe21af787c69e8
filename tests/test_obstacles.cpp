// The obstacle screen, one frame at a time: the pick, the drag, delete and
// place, the fields of each kind and a full table. Drawing goes to rgb_array.
#include "world_fixture.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "hl/Hl_graph.h"

#include <cstring>
#include <fstream>

struct Obstacles : WorldTest {
    void SetUp() override
    {
        WorldTest::SetUp();
        to_array = 1, msc.screen = 201, msc.obj_tool = 95;
    }
    void TearDown() override
    {
        to_array = 0;
        WorldTest::TearDown();
    }
    static void at(float x, float y, int click, int down = 1)
    {
        mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = down, mnw.tip[0] = 0;
        handle_obs();
    }
    // The mouse on the map over a place of the world.
    static void on(float lat, float lon, int click, int down = 1) { at(ret_x(lon, lat), ret_y(lat), click, down); }
    static void put(int n, int kind, float lat, float lon, float hddz = 100)
    {
        obj_type[n] = kind, obj_lat[n] = lat, obj_lon[n] = lon, obj_hddz[n] = hddz;
    }
    static int log_lines()
    {
        std::ifstream in("Error.out");
        std::string line;
        int n = 0;
        while (std::getline(in, line)) n++;
        return n;
    }
};

TEST_F(Obstacles, PickTakesTheNearestOfTheTileAndOnATieTheLowestSlot)
{
    put(3, 2, 33.5f, -118.8f), put(5, 4, 33.5f, -118.8f);
    on(33.5f, -118.9f, 1);
    EXPECT_EQ(msc.obj_sel, 3);
    EXPECT_EQ(msc.ter_dirty, 1);
    put(9, 7, 33.5f, -118.95f);   // an unknown kind still counts
    on(33.5f, -118.9f, 1);
    EXPECT_EQ(msc.obj_sel, 9);
    // Just south of the tile is nearer; the tile's south-east corner itself belongs to it.
    put(1, 1, 32.9995f, -118.002f), put(2, 1, 33.0f, -118.0f);
    on(33.002f, -118.003f, 1);
    EXPECT_EQ(msc.obj_sel, 2);
    obj_type[2] = obj_type[3] = obj_type[5] = obj_type[9] = 0, msc.ter_dirty = 0;
    on(33.5f, -118.9f, 1);
    EXPECT_EQ(msc.obj_sel * 10 + msc.ter_dirty, 21);   // nothing found: the selection stays, the tile is changed
}

TEST_F(Obstacles, MoveJumpsInTheFrameOfThePressAndFollowsWhileHeld)
{
    put(4, 3, 33.5f, -118.5f);
    msc.obj_tool = 96;
    on(33.6f, -118.4f, 1);
    EXPECT_NEAR(obj_lat[4], 33.6f, 1e-4);
    EXPECT_NEAR(obj_lon[4], -118.4f, 1e-4);
    on(33.7f, -118.3f, 0);
    EXPECT_NEAR(obj_lon[4], -118.3f, 1e-4);
    on(33.8f, -118.2f, 0, 0);   // let go
    at(100, 300, 0);            // held beside the map
    EXPECT_NEAR(obj_lat[4], 33.7f, 1e-4);
    EXPECT_NEAR(obj_lon[4], -118.3f, 1e-4);
}

TEST_F(Obstacles, DeleteTakesTheNearestOnEachClickOrPulse)
{
    put(0, 2, 33.5f, -118.5f), put(1, 2, 33.6f, -118.5f), put(2, 2, 33.9f, -118.5f), put(7, 2, 40, 10);
    msc.obj_tool = 0;
    on(33.5f, -118.5f, 1);
    on(33.5f, -118.5f, 0);   // held between pulses
    EXPECT_EQ(obj_type[0] * 10 + obj_type[1], 2);
    on(33.5f, -118.5f, 1);
    on(33.5f, -118.5f, 1);
    on(33.5f, -118.5f, 1);   // the tile is empty: nothing more goes
    EXPECT_EQ(obj_type[2] + obj_type[7], 2);
    EXPECT_EQ(msc.obj_sel, 2);
}

TEST_F(Obstacles, ANewObstacleTakesTheHeightOrObjectOfTheOneBefore)
{
    put(1, 2, 50, 10);   // another tile's obstacle keeps its slot
    put(2, 3, 33.5f, -118.5f, 250);
    on(33.5f, -118.5f, 1);
    msc.obj_tool = 5;
    on(33.4f, -118.4f, 1);
    EXPECT_EQ(msc.obj_sel, 0);
    EXPECT_EQ(obj_type[0] * 1000 + obj_hddz[0], 5250);
    EXPECT_NEAR(obj_lat[0], 33.4f, 1e-4);
    std::memset(obj_name[0], 'a', name_len);   // a full slot, no terminator
    msc.obj_tool = 8;
    on(33.3f, -118.3f, 1);
    EXPECT_EQ(msc.obj_sel, 3);
    EXPECT_EQ(std::string(obj_name[3], name_len), std::string(name_len, 'a'));
    EXPECT_EQ(obj_hddz[3], 0);
    obj_hddz[3] = 90, msc.obj_tool = 2;
    on(33.2f, -118.2f, 1);
    EXPECT_EQ(obj_hddz[4], 90);   // a heading comes in as a height
}

TEST_F(Obstacles, HeightForStandardKindsHeadingForCustomAndNoneElse)
{
    const float height_up = 279, heading_up = 238, last_digit = 149;
    put(0, 1, 33.5f, -118.5f, 100);
    at(last_digit, height_up, 1);
    EXPECT_EQ(obj_hddz[0], 101);
    EXPECT_STREQ(mnw.tip, "This is the HEIGHT of this obstacle, in feet.");
    EXPECT_EQ(msc.ter_dirty, 0);
    for (int kind : {7, 0}) {
        obj_type[0] = kind;
        at(last_digit, height_up, 1);
        at(last_digit, heading_up, 1);
        EXPECT_EQ(obj_hddz[0], 101);
        EXPECT_STREQ(mnw.tip, "");
    }
    obj_type[0] = 8, obj_hddz[0] = 400;
    at(last_digit, heading_up, 0);
    EXPECT_EQ(obj_hddz[0], 360);
    EXPECT_EQ(std::string(mnw.tip).rfind("This is the HEADING of this obstacle, in degrees.", 0), 0u);
}

TEST_F(Obstacles, AFullTableRefusesANewObstacleWithOneWarningAClick)
{
    for (int n = 0; n < obj_cap; n++) put(n, 1, 50, 10);
    msc.obj_sel = 7, msc.obj_tool = 2;
    on(33.5f, -118.5f, 1);
    on(33.5f, -118.5f, 0);
    on(33.5f, -118.5f, 1);
    EXPECT_EQ(log_lines(), 2);
    EXPECT_EQ(last_log_line().rfind("MACIBM_alert: The obstacle table is full! All 60000 obstacle places are taken", 0), 0u);
    EXPECT_EQ(msc.obj_sel, 7);
    obj_type[obj_cap - 1] = 0;
    on(33.5f, -118.5f, 1);
    EXPECT_EQ(msc.obj_sel * 10 + obj_type[obj_cap - 1], 599992);
    EXPECT_EQ(log_lines(), 2);
}
