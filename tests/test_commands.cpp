// The map projection and the zoom, pan and editing commands.
#include "app/Main.h"
#include "app/Terrain.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>
#include <cmath>

class MapView : public ::testing::Test {
protected:
    void SetUp() override
    {
        con.rad_to_deg = 180.0f / 3.1415927f;
        con.deg_to_rad = 1.0f / con.rad_to_deg;
        set_msc_defaults();
    }
};

TEST_F(MapView, TileCornersAtZoomOne)
{
    EXPECT_FLOAT_EQ(ret_x(-119, 33), 168);
    EXPECT_FLOAT_EQ(ret_y(33), 5);
    EXPECT_FLOAT_EQ(ret_y(34), 578);
    msc.lat = 0;
    msc.lon = 0;
    EXPECT_FLOAT_EQ(ret_x(1, 0), 741);
    EXPECT_NEAR(ret_x(1, 1), 168 + 573 * std::cos(1.0 * M_PI / 180), 1e-3);   // the east edge leans
    msc.lat = -34;
    EXPECT_GT(ret_x(1, -33), ret_x(1, -34));   // south of the equator the north edge is wider
}

TEST_F(MapView, InverseGivesThePointBack)
{
    const float zooms[3] = {1, 2.0736f, 31.9f};
    for (float zoom : zooms) {
        msc.map_zoom = zoom;
        msc.map_dlat = 0.31f;
        msc.map_dlon = -0.2f;
        for (float lat = 33; lat <= 34; lat += 0.125f)
            for (float lon = -119; lon <= -118; lon += 0.125f) {
                float x = ret_x(lon, lat), y = ret_y(lat);
                EXPECT_NEAR(ret_lat(y), lat, 2e-5);
                EXPECT_NEAR(ret_lon(x, y), lon, 2e-5);
            }
    }
}

TEST_F(MapView, ZoomScalesDistanceFromTheOrigin)
{
    float x1 = ret_x(-118.5f, 33.5f) - 168, y1 = ret_y(33.5f) - 5;
    msc.map_zoom = 2;
    EXPECT_FLOAT_EQ(ret_x(-118.5f, 33.5f) - 168, 2 * x1);
    EXPECT_FLOAT_EQ(ret_y(33.5f) - 5, 2 * y1);
    msc.map_dlat = 0.5f;   // panning north moves the content down
    EXPECT_LT(ret_y(33.5f), 5 + 2 * y1);
}

TEST_F(MapView, PoleDoesNotStopTheProgram)
{
    msc.lat = 89;
    float lon = ret_lon(400, 578);   // latitude 90: no east-west scale left
    EXPECT_TRUE(std::isfinite(lon));
}

TEST_F(MapView, MapZoomStopsAfterNineteenSteps)
{
    int steps = 0;
    for (int k = 0; k < 40; k++) {
        float before = msc.map_zoom;
        handle_zoom(cmd_zoom_in);
        if (msc.map_zoom != before) steps++;
    }
    EXPECT_EQ(steps, 19);
    EXPECT_NEAR(msc.map_zoom, 31.95, 0.01);
    // Each step moved the view by a tenth of the new visible degree: a geometric series.
    EXPECT_NEAR(msc.map_dlat, 0.5 * (1 - std::pow(1 / 1.2, 19)), 1e-4);
}

TEST_F(MapView, ZoomOutAtOneResetsTheView)
{
    handle_zoom(cmd_pan_up);
    handle_zoom(cmd_pan_left);
    EXPECT_FLOAT_EQ(msc.map_dlat, 0.1f);
    EXPECT_FLOAT_EQ(msc.map_dlon, -0.1f);
    handle_zoom(cmd_zoom_out);
    EXPECT_FLOAT_EQ(msc.map_zoom, 1);
    EXPECT_FLOAT_EQ(msc.map_dlat, 0);
    EXPECT_FLOAT_EQ(msc.map_dlon, 0);
    for (int k = 0; k < 12; k++) handle_zoom(cmd_pan_right);
    EXPECT_FLOAT_EQ(msc.map_dlon, 0.9999f);
}

TEST_F(MapView, ZoomInMovesTheViewByTheNewStep)
{
    handle_zoom(cmd_zoom_in);
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.2f);
    EXPECT_FLOAT_EQ(msc.map_dlat, 0.1f / 1.2f);
    handle_zoom(cmd_pan_down);
    EXPECT_FLOAT_EQ(msc.map_dlat, 0);
}

TEST_F(MapView, AirportDiagramZoomIsNotSymmetric)
{
    msc.screen = 202;
    handle_zoom(cmd_zoom_in);
    handle_zoom(cmd_pan_left);
    EXPECT_FLOAT_EQ(msc.apt_dx, 50);
    handle_zoom(cmd_zoom_out);
    EXPECT_FLOAT_EQ(msc.apt_zoom, 0.9375f);
    EXPECT_FLOAT_EQ(msc.apt_dx, 0);   // below 1.01 the pans are held at 0
    handle_zoom(cmd_zoom_out);
    EXPECT_FLOAT_EQ(msc.apt_zoom, 0.9375f);
    for (int k = 0; k < 15; k++) handle_zoom(cmd_zoom_in);
    EXPECT_GE(msc.apt_zoom, 9.3132257f);
    EXPECT_LT(msc.apt_zoom, 9.3132257f * 1.25f);
    for (int k = 0; k < 50; k++) handle_zoom(cmd_pan_right);
    EXPECT_FLOAT_EQ(msc.apt_dx, -2000);
}

TEST_F(MapView, NavaidScreenHasNoZoom)
{
    msc.screen = 203;
    handle_zoom(cmd_zoom_in);
    handle_zoom(cmd_pan_up);
    EXPECT_FLOAT_EQ(msc.map_zoom, 1);
    EXPECT_FLOAT_EQ(msc.apt_zoom, 1);
    EXPECT_FLOAT_EQ(msc.map_dlat, 0);
}

TEST_F(MapView, ToolCyclesOnTheirScreensOnly)
{
    for (int expect : {1, 2, 3, 4, 0}) {
        cycle_tool();
        EXPECT_EQ(msc.ter_tool, expect);
    }
    msc.screen = 201;
    for (int expect : {0, 96, 95}) {
        cycle_tool();
        EXPECT_EQ(msc.obj_tool, expect);
    }
    msc.obj_tool = 3;   // outside its cycle: stays
    cycle_tool();
    EXPECT_EQ(msc.obj_tool, 3);
    msc.screen = 202;
    cycle_tool();
    EXPECT_EQ(msc.ter_tool, 0);
}

class FlattenWater : public MapView {
protected:
    void corners(float sw, float nw, float se, float ne)
    {
        for (int i = 0; i < 60; i++)
            for (int j = 0; j < 80; j++) {
                planey[i][j] = 0;
                is_water[i][j] = 0;
            }
        is_water[10][10] = 1;
        planey[10][10] = sw;
        planey[10][11] = nw;
        planey[11][10] = se;
        planey[11][11] = ne;
    }
    void expect_corners(float sw, float nw, float se, float ne)
    {
        EXPECT_FLOAT_EQ(planey[10][10], sw);
        EXPECT_FLOAT_EQ(planey[10][11], nw);
        EXPECT_FLOAT_EQ(planey[11][10], se);
        EXPECT_FLOAT_EQ(planey[11][11], ne);
    }
};

TEST_F(FlattenWater, OddCornerIsPulledToTheOtherThree)
{
    const float odd[4][4] = {{10, 10, 10, 12}, {10, 10, 12, 10}, {10, 12, 10, 10}, {12, 10, 10, 10}};
    for (auto& c : odd) {
        corners(c[0], c[1], c[2], c[3]);
        flatten_water();
        expect_corners(10, 10, 10, 10);
    }
    corners(9.6f, 10.4f, 10.0f, 12);
    flatten_water();
    expect_corners(10, 10, 10, 10);
}

TEST_F(FlattenWater, OtherPatternsAndLandAreLeftAlone)
{
    corners(10, 10, 12, 12);
    flatten_water();
    expect_corners(10, 10, 12, 12);
    corners(10.2f, 10.2f, 10.2f, 10.2f);
    flatten_water();
    expect_corners(10.2f, 10.2f, 10.2f, 10.2f);
    corners(-1000, -1000, -1000, 5);   // a level of -999 or below counts as none
    flatten_water();
    expect_corners(-1000, -1000, -1000, 5);
    corners(10, 10, 10, 12);
    is_water[10][10] = 0;
    msc.ter_dirty = 0;
    flatten_water();
    expect_corners(10, 10, 10, 12);
    EXPECT_EQ(msc.ter_dirty, 0);
}
