// The obstacle screen, one frame at a time; its drawing goes to rgb_array.
#include "world_fixture.h"
#include "drawn.h"
#include "app/Panel_layout.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "hl/Hl_graph.h"

#include <cstring>

struct Obstacles : WorldTest {
    void SetUp() override { WorldTest::SetUp(), to_array = 1, msc.obj_tool = 95; }
    void TearDown() override { to_array = 0, WorldTest::TearDown(); }
    static void at(float x, float y, int click, int down = 1)
    {
        mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = down, mnw.tip[0] = 0;
        handle_obs();
    }
    static void on(float lat, float lon, int click, int down = 1) { at(ret_x(lon, lat), ret_y(lat), click, down); }
    static void put(int n, int kind, float lat, float lon) { obj_type[n] = kind, obj_lat[n] = lat, obj_lon[n] = lon; }
};

TEST_F(Obstacles, NewObstaclesInheritAndTheFieldsFollowTheKind)
{
    put(1, 9, 33.5f, -118.5f), put(2, 3, 33.5f, -118.5f), obj_hddz[2] = 250;   // slot 1 holds a kind no tool makes
    on(33.5f, -118.5f, 1);
    msc.obj_tool = 5;
    on(33.4f, -118.4f, 1);
    EXPECT_NEAR(obj_lat[0], 33.4f, 1e-4);   // where the press was
    EXPECT_NEAR(obj_lon[0], -118.4f, 1e-4);
    EXPECT_EQ(msc.obj_sel * 10000 + obj_type[0] * 1000 + obj_hddz[0], 5250);
    const std::string full(name_len, 'a');
    std::memset(obj_name[0], 'a', name_len);   // a full slot: no terminator
    msc.obj_tool = 8;
    on(33.3f, -118.3f, 1);
    EXPECT_EQ(std::string(obj_name[3], name_len) + std::to_string(obj_hddz[3]), full + "0.000000");
    std::memset(rgb_array, 0, sizeof rgb_array);
    at(149, 238, 1);   // the heading's last digit, upper half
    EXPECT_EQ(obj_hddz[3], 1);
    // The name drawn whole, in capitals as all panel text, and nothing after it.
    EXPECT_EQ(written(-1, obs_name_x, obs_name_y, 300, 7), stamped(std::string(name_len, 'A').c_str(), obs_name_x, obs_name_y));
    EXPECT_EQ(std::string(mnw.tip).rfind("This is the HEADING of this obstacle, in degrees.", 0), 0u);
    msc.obj_tool = 2;
    on(33.2f, -118.2f, 1);
    EXPECT_EQ(obj_hddz[4], 1);   // a heading comes in as a height
    at(149, 279, 1);   // the height's last digit
    EXPECT_EQ(obj_hddz[4], 2);
    EXPECT_STREQ(mnw.tip, "This is the HEIGHT of this obstacle, in feet.");
    obj_type[4] = 7;
    at(149, 279, 1);
    EXPECT_EQ(obj_hddz[4] * 10 + mnw.tip[0], 20);
    for (int n = 0; n < obj_cap; n++) put(n, 1, 50, 10);   // a full table refuses a new one, with a warning
    msc.obj_sel = 7;
    expect_alert("The obstacle table is full!");
    on(33.5f, -118.5f, 1);
    EXPECT_EQ(msc.obj_sel * 10 + (int)alerts_seen().size(), 71);
    msc.obj_tool = 0, on(33.5f, -118.5f, 1);   // the delete tool on a tile with none: another tile's slot 0 stays
    EXPECT_EQ(obj_type[0] * 10 + msc.obj_sel, 17);
    put(0, 2, 33.5f, -118.5f), on(33.5f, -118.5f, 1);   // and on the one it holds, slot 0 goes
    EXPECT_EQ(obj_type[0] * 10 + msc.obj_sel, 0);
    // A frame here derives the tile's textures as the terrain screen does: mountain blocks from (1, 1).
    std::memset(is_water, 0, sizeof is_water);
    for (int i = 0; i < grid_ni; i++) std::fill(planey[i], planey[i] + grid_nj, 200.0f * i);   // a slope of 0.13
    at(-50, -50, 0);
    EXPECT_TRUE(planetex[1][40] != 54 && planetex[31][77] == 54);
}
