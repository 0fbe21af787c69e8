// The terrain view and the terrain screen on the real window: what the map
// draws, read back from the back buffer, and what one frame of the screen does
// with the mouse.
#include "window_fixture.h"
#include "app/Main.h"
#include "app/Panel_layout.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"

#include <SDL2/SDL.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

static std::vector<unsigned char> shot;

static void draw_map()
{
    plot_TF_terrain();
    shot = grab_back_buffer();
}

static int shows(int x, int y, int col) { return has_colour(px_at(shot.data(), x, y), col); }

// The middle of cell (i, j) as drawn, in whole pixels, and the pixel there.
static std::pair<int, int> cell_middle(int i, int j)
{
    return {(int)(flt_plotx[i][j] + flt_plotx[i + 1][j + 1]) / 2, (int)(flt_ploty[i][j] + flt_ploty[i + 1][j + 1]) / 2};
}
static const unsigned char* cell_px(int i, int j) { return px_at(shot.data(), cell_middle(i, j).first, cell_middle(i, j).second); }

static pixel_set of_colour(int col, int x0 = 168, int y0 = 5, int w = 628, int h = 574)
{
    pixel_set s;
    for (int x = x0; x < x0 + w; x++)
        for (int y = y0; y < y0 + h; y++)
            if (shows(x, y, col)) s.insert({x, y});
    return s;
}

// A modal window the map raises is counted and closed in its first frame.
static std::map<int, int> windows_shown;
static long long fake_ms;

static long long close_modal_windows()
{
    if (mnw.win_id) windows_shown[mnw.win_id]++, mnw.win_id = 0;
    return fake_ms += 20;
}

static void frame_at(float x, float y, int click, int down = 1, int repeat = 0)
{
    mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = down, mnw.mouse_repeat = repeat;
    handle_map();
    mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
}

static void place_vertices(float x0, float dx, float y0, float dy)
{
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) flt_plotx[i][j] = x0 + dx * i, flt_ploty[i][j] = y0 + dy * j;
}

static int orientation_of(int i, int j)
{
    for (int o = 0; o < st_count; o++) {
        set_orientation(58, 78, o, 0);
        if (!std::memcmp(planest[58][78], planest[i][j], sizeof planest[i][j])) return o;
    }
    return -1;
}

// A flat water tile at 33 N 119 W with no features, at zoom 1, its vertices
// placed. The pump's clock closes any modal window at once.
struct TerrainTest : ScriptedTest {
    void SetUp() override
    {
        ScriptedTest::SetUp();
        set_msc_defaults();
        lay_flat_grid();
        clear_feature_tables();
        std::memset(planetex, 0, sizeof planetex);
        std::memset(planest, 0, sizeof planest);
        apt_wrl_max = -1;
        msc.sel_row = msc.sel_col = 1;   // the red frame out of the way
        msc.obj_sel = -1, obj_flash = tex_list_top = 0;
        start_script(close_modal_windows);
        windows_shown.clear();
        plot_TF_terrain();
    }
};
using TerrainView = TerrainTest;
using TerrainScreen = TerrainTest;

TEST_F(TerrainView, WaterByItsSlopeLandByHeightAndGridOnlyAboveZoomTwo)
{
    // Level water is dark blue, water on a slope light blue.
    planey[8][8] = 1, draw_map();
    auto rgb = [](const unsigned char* p) { return p[0] << 16 | p[1] << 8 | p[2]; };
    EXPECT_EQ(rgb(cell_px(5, 5)), 0x000099);
    EXPECT_EQ(rgb(cell_px(7, 7)), 0x6666FF);
    EXPECT_EQ(of_colour(8).size(), 32u);   // the selected vertex's red frame, 4 either side: 9 pixels a side
    planey[8][8] = 0;
    std::memset(is_water, 0, sizeof is_water), draw_map();   // all at 0 m: low -1, high 1, f 0.5
    EXPECT_NEAR(cell_px(5, 5)[0], 0.1 * 255, 1);
    EXPECT_NEAR(cell_px(5, 5)[1], 0.4 * 255, 1);
    planey[40][40] = planey[41][40] = planey[40][41] = planey[41][41] = 10, draw_map();   // low -1, high 11
    EXPECT_NEAR(cell_px(40, 40)[1], 0.8 * 11 / 12 * 255, 1);
    EXPECT_NEAR(cell_px(5, 5)[1], 0.8 / 12 * 255, 1);
    msc.map_zoom = 2.0f, draw_map();
    EXPECT_EQ(of_colour(18).size(), 0u);
    msc.map_zoom = 2.05f, draw_map();
    EXPECT_GT(of_colour(18).size(), 1000u);
    const auto [cx, cy] = cell_middle(10, 35);
    EXPECT_EQ(of_colour(18, cx - 5, cy - 4, 11, 9).size(), 0u) << cx << "," << cy;   // the lines stay on the cells' edges
    // A vertex moved north: the grid's line along its row rises to it.
    planelat[11][10] += 0.005f, draw_map();
    const int mx = (int)std::lround((flt_plotx[10][10] + flt_plotx[11][10]) / 2);
    const int my = (int)std::lround((flt_ploty[10][10] + flt_ploty[11][10]) / 2);
    EXPECT_TRUE(shows(mx, my - 1, 18) || shows(mx, my, 18) || shows(mx, my + 1, 18)) << mx << "," << my;
}

// A coast point is a dot as many pixels across as the zoom.
TEST_F(TerrainView, CoastDotsGrowWithTheZoomAndRunwaysShowOnTheirTile)
{
    msc.coast_num = 1, coast_lat[0] = 33.01f, coast_lon[0] = -118.99f;
    for (const int zoom : {1, 3}) {
        msc.map_zoom = (float)zoom, draw_map();
        EXPECT_EQ(of_colour(0).size(), (size_t)(zoom * zoom)) << "zoom " << zoom;
    }
    // A runway in the middle of the tile to the east shows in grey (15) on that tile only.
    apt_wrl_max = rwy_wrl_max = apt_lo_ind[0] = apt_hi_ind[0] = 0;
    rwy_lat[0] = 33.5f, rwy_lon[0] = -117.5f, rwy_hdng[0] = 0, rwy_len[0] = 9000, rwy_width[0] = 3000,
    msc.map_zoom = 1, draw_map();
    EXPECT_EQ(of_colour(15).size(), 0u);
    msc.lon = -118, draw_map();
    // Its middle at (406, 291); 9000 feet north to south are 14 of the map's 573 pixels a degree.
    EXPECT_TRUE(shows(406, 285, 15) && shows(406, 297, 15) && !shows(406, 282, 15) && !shows(406, 300, 15));
}

// The pixels of lines between whole places, both ends lit: along an axis or at 45 degrees.
static pixel_set lines(std::initializer_list<std::array<int, 4>> from_to, int x0, int y0)
{
    pixel_set s;
    for (auto [x1, y1, x2, y2] : from_to)
        for (int n = std::max(std::abs(x2 - x1), std::abs(y2 - y1)), t = 0; t <= n; t++)
            s.insert({x0 + x1 + (n ? (x2 - x1) * t / n : 0), y0 + y1 + (n ? (y2 - y1) * t / n : 0)});
    return s;
}

// Obstacle 0 of the kind standing by the middle of pixel (300, 300), just off
// it (where a line starts on a pixel's very middle, drivers differ on lighting
// it); the white pixels of the map.
static pixel_set symbol_of(int kind)
{
    obj_type[0] = kind;
    obj_lat[0] = ret_lat(300.02f), obj_lon[0] = ret_lon(300.01f, 300.02f), draw_map();
    return of_colour(0);
}

TEST_F(TerrainView, EachKindOfObstacleHasItsSymbol)
{
    EXPECT_EQ(symbol_of(2), lines({{-2, -2, -2, 3}, {-2, 3, 3, 3}, {3, 3, 3, -2}, {3, -2, -2, -2}}, 300, 300));
    EXPECT_EQ(symbol_of(4), lines({{-4, 2, 4, 2}, {-2, -2, -2, 2}, {2, -2, 2, 2}}, 300, 300));
    EXPECT_EQ(symbol_of(5), lines({{-3, 2, 3, 2}, {-3, -2, 3, -2}, {-3, 2, -1, 0}, {-1, 0, -3, -2}, {3, 2, 1, 0}, {1, 0, 3, -2}}, 300, 300));
    EXPECT_EQ(symbol_of(6), lines({{-1, -2, -1, 3}, {-1, 3, 1, 3}, {1, 3, 1, -2}, {1, -2, -1, -2}}, 300, 300));
    EXPECT_EQ(symbol_of(8), lines({{-2, -2, 2, 2}, {3, -2, -1, 2}}, 300, 300));
    EXPECT_TRUE(symbol_of(1).empty() && symbol_of(7).empty());
    // Two steep lines from the bottom corners to the top middle: on the rows
    // between whole places they pass between two pixels, where either may light.
    const pixel_set caret = symbol_of(3);
    EXPECT_EQ(caret.size(), 9u);
    for (auto p : lines({{-2, -2, -2, -2}, {2, -2, 2, -2}, {-1, 0, -1, 0}, {1, 0, 1, 0}, {0, 2, 0, 2}}, 300, 300))
        EXPECT_EQ(caret.count(p), 1u) << p.first << "," << p.second;
    for (auto [x, y] : caret) EXPECT_TRUE(std::abs(x - 300) <= 2 && std::abs(y - 300) <= 2) << x << "," << y;
    const pixel_set square = symbol_of(2);   // selected on the obstacle screen: a colour a frame, also over a kept map
    msc.obj_sel = 0, msc.screen = 201, obj_flash = 6;
    draw_map(), draw_map();
    EXPECT_EQ(of_colour(8, 290, 290, 20, 20), square);
    msc.obj_sel = -1, msc.screen = 200;
    obj_lat[0] = 33, draw_map();   // on the tile's south edge, the map's lowest row: still drawn
    EXPECT_GT(of_colour(0).size(), 2u);
}

// Cells 10 by 5 units from (200, 10); vertex (10, 10) moved 8 units east.
TEST_F(TerrainScreen, CellToolsWorkOnTheQuadrilateralAsDrawn)
{
    place_vertices(200, 10, 10, 5);
    msc.ter_tool = 1, frame_at(790, 210, 1);   // selected on the east edge's vertex 40: the inner one beside it
    EXPECT_EQ(msc.sel_row * 100 + msc.sel_col, (grid_i - 1) * 100 + 40);
    frame_at(400, 11, 1);   // by the south edge's vertex of row 20: the inner one above it
    EXPECT_EQ(msc.sel_row * 100 + msc.sel_col, 2001);
    frame_at(201, 100, 1);   // by the west edge's vertex 18: the inner one beside it
    EXPECT_EQ(msc.sel_row * 100 + msc.sel_col, 118);
    flt_plotx[10][10] = 308;
    int before[grid_ni][grid_nj];
    std::memcpy(before, is_water, sizeof before);
    msc.ter_tool = 2, frame_at(302, 59, 1);   // in the square of (10, 9), but west of its moved edge
    EXPECT_EQ(is_water[9][9], 0);
    is_water[9][9] = 1, frame_at(300, 52, 1);   // on the edge between (9, 8) and (10, 8): neither
    frame_at(200, 30, 1);   // on the tile's west edge
    EXPECT_EQ(std::memcmp(before, is_water, sizeof before), 0);
    frame_at(205, 32, 1);   // inside the first column's cell (0, 4), and back
    EXPECT_EQ(is_water[0][4], 0);
    frame_at(205, 32, 0);   // held in the next frames: once a click
    frame_at(205, 32, 1);
    EXPECT_EQ(is_water[0][4], 1);

    msc.ter_tool = 4, msc.ter_tex = 3, frame_at(255, 103, 1);   // cell (5, 18)
    EXPECT_EQ(planetex[5][18], 2002u);
    EXPECT_EQ(msc.show_tex, 1);
    msc.ter_tool = 3, frame_at(255, 103, 1);
    frame_at(265, 103, 1);   // a stock cell is derived again at once
    EXPECT_EQ(orientation_of(5, 18), st_r1);
    EXPECT_EQ(orientation_of(6, 18), st_r0);
    msc.ter_tool = 4, msc.ter_tex = 0;
    frame_at(255, 103, 1);   // the default over a custom cell: derived in the same call
    EXPECT_EQ(planetex[5][18], 50u);
    EXPECT_EQ(orientation_of(5, 18), st_r0);

    for (int o = st_r0; o <= st_r3; o++)   // a quarter turn moves each corner's texture place one corner on
        for (int c = 0; c < 8; c++) EXPECT_EQ(st_table[(o + 1) % 4][c / 4][c % 4], st_table[o][c / 4][(c + 3) % 4]) << o;
    for (const auto& o : st_table)   // turned, mirrored or swapped, the texture's four corners fall on the cell's four
        EXPECT_EQ((std::set<std::pair<float, float>>{{o[0][0], o[1][0]}, {o[0][1], o[1][1]}, {o[0][2], o[1][2]}, {o[0][3], o[1][3]}}).size(), 4u);
    const int next[st_count] = {st_r1, st_r2, st_r3, st_r0, st_r1, st_r3, st_r0};
    for (int o = 0; o < st_count; o++) {
        set_orientation(7, 7, o, 2000);
        rotate_cell(7, 7);
        EXPECT_EQ(orientation_of(7, 7), next[o]) << o;
    }
}

TEST_F(TerrainScreen, ZoomTileElevationAndTextureList)
{
    msc.screen = 200, frame_at(131, 569, 0);   // ZOOM + held from an earlier click does nothing; a click zooms once
    EXPECT_FLOAT_EQ(msc.map_zoom, 1);
    frame_at(131, 569, 1);
    EXPECT_FLOAT_EQ(msc.map_zoom, 1.2f);
    msc.screen = 0;
    EXPECT_EQ(texture_list_row(201), -1);
    EXPECT_EQ(texture_list_row(200), 0);
    EXPECT_EQ(texture_list_row(66), 8);
    baked([] { frame_at(-50, -50, 0); });
    EXPECT_EQ(written(-1, 28, 204, 100, 7), stamped("Norvane Defaults", 28, 204));   // the list's top row: the defaults
    frame_at(60, 201, 1);   // the name of the defaults row: no file, no dialog
    EXPECT_EQ(windows_shown.count(win_open_dialog), 0u);
    frame_at(60, 195, 1);   // slot 0's name asks for a file
    EXPECT_EQ(windows_shown.count(win_open_dialog), 1u);
    msc.ter_tex = 5, frame_at(14, 207, 1);   // its lamp lays the stock textures
    EXPECT_EQ(msc.ter_tex, 0);
    frame_at(30, 220, 1);   // up, at the top already
    EXPECT_EQ(tex_list_top, 0);
    tex_list_top = 490, frame_at(30, 60, 1), frame_at(30, 60, 1);
    EXPECT_EQ(tex_list_top, 491);
    frame_at(30, 220, 0, 1, 1);   // held past the delay, between the pulses
    EXPECT_EQ(tex_list_top, 490);
    frame_at(14, 72, 1);    // the lamp of the last row: slot 498
    EXPECT_EQ(msc.ter_tex, 499);
    // Another tile opens with the list back at its top.
    msc.ter_dirty = 0;
    frame_at(ter_lat_spinner.x + 15, ter_lat_spinner.y + 12, 1);   // the units digit's upper half: north
    EXPECT_FLOAT_EQ(msc.lat, 34);
    EXPECT_EQ(tex_list_top, 0);
    frame_at(ter_lon_spinner.x + 25, ter_lon_spinner.y + 12, 1);   // and the longitude's: east
    EXPECT_FLOAT_EQ(msc.lon, -118);
    // A frame without a click leaves the height bit for bit (0.0137 m is not
    // the same after metres to feet and back); a click raises it 1000 ft.
    planey[1][1] = 0.0137f, frame_at(-50, -50, 0);
    EXPECT_EQ(planey[1][1], 0.0137f);
    frame_at(ter_elev_spinner.x + 15, ter_elev_spinner.y + 12, 1);
    EXPECT_NEAR(planey[1][1], 304.8137f, 0.001f);
}

// A water cell is level while its three looked-at edges rise by at most half
// a metre each; more on any one of them shows it in the light blue.
TEST(WaterColour, LevelUpToHalfAMetreAlongEachEdge)
{
    const int dark = 16, light = 4;
    const int i = 20, j = 30;
    const int corner[4][2] = {{i, j}, {i, j + 1}, {i + 1, j + 1}, {i + 1, j}};   // SW, NW, NE, SE
    for (int lifted = 0; lifted < 4; lifted++)
        for (const float rise : {0.5f, 0.51f}) {
            for (auto [ci, cj] : corner) planey[ci][cj] = 10;
            planey[corner[lifted][0]][corner[lifted][1]] += rise;
            EXPECT_EQ(water_cell_colour(i, j), rise > 0.5f ? light : dark) << "corner " << lifted << " by " << rise;
        }
}
