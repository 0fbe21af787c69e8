// Batched drawing and the map's kept picture against drawing one primitive at
// a time (gl_batching 0): the same scenes, read back from the back buffer,
// must match pixel for pixel.
#include "window_fixture.h"
#include "app/Main.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_funct.h"

using BatchedDrawing = WindowTest;

// The back buffer after draw, from a buffer cleared to the same colour.
template <typename F>
static std::vector<unsigned char> drawn(int batching, F draw)
{
    gl_batching = batching;
    glClearColor(0.1f, 0.2f, 0.3f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    draw();
    OGL_flush();
    gl_batching = 1;
    return grab_back_buffer();
}

static int pixels_differing(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b)
{
    int n = 0;
    for (size_t k = 0; k < a.size(); k += 4) n += std::memcmp(&a[k], &b[k], 3) != 0;
    return n;
}

static int lit_count(const std::vector<unsigned char>& a, const std::vector<unsigned char>& cleared)
{
    return pixels_differing(a, cleared);
}

// Runs of two colours that overlap, rectangles, a frame, text inside the run,
// a line to itself, a reversed rectangle, and more lines than a store holds.
static void primitive_scene()
{
    mnw.win_x = 7;
    OGL_batch_begin();
    for (int k = 0; k < 40; k++) OGL_line(k % 3 ? 0 : 8, 10 + k * 3, 20, 60 + k, 120 - k * 2);
    OGL_fillrect(3, 200, 30, 40, 25);
    OGL_line(8, 195, 28, 250, 60);
    OGL_framerect(4, 210, 40, 30, 30);
    OGL_string(7, 220, 50, "Mixed text", 999, 6, 101);
    OGL_line(8, 300, 300, 300, 300);
    OGL_fillrect(8, 320, 320, -5, 5);
    OGL_fillrect(9, 330.5f, 300.25f, 10.5f, 7.75f);
    for (int k = 0; k < 5000; k++) OGL_line(k % 7 == 0 ? 2 : 1, 400 + k % 300, 400 + k % 97, 402 + k % 300, 405 + k % 89);
    OGL_batch_end();
    OGL_line(6, 5, 590, 700, 500);
    mnw.win_x = 0;
}

TEST_F(BatchedDrawing, PrimitivesMatchOneAtATime)
{
    const auto one = drawn(0, primitive_scene), batched = drawn(1, primitive_scene);
    EXPECT_GT(lit_count(one, drawn(0, [] {})), 5000);
    EXPECT_EQ(pixels_differing(one, batched), 0);
}

// ---- the map ---------------------------------------------------------------------------------

const int sel = 12;   // the selected obstacle, amid a cluster

// Land and water, heights, a coast near the cluster, a runway, and obstacles
// of every kind 1 to 8 packed close enough to overlap one another.
static void craft_tile(int screen, int textured, int zoom_steps)
{
    set_msc_defaults();
    lay_flat_grid();
    clear_feature_tables();
    for (int i = 10; i < 50; i++)
        for (int j = 20; j < 70; j++) {
            is_water[i][j] = (i * 7 + j * 3) % 11 == 0;
            planey[i][j] = (float)((i * 13 + j * 29) % 400);
        }
    for (int n = 0; n < 30; n++) {
        obj_type[n] = 1 + n % 8;
        obj_lat[n] = 33.5f + 0.0035f * (n % 6);
        obj_lon[n] = -118.5f + 0.005f * (n / 6);
    }
    obj_type[40] = 2;   // far from the cluster
    obj_lat[40] = 33.9f;
    obj_lon[40] = -118.1f;
    msc.coast_num = 4;
    for (int n = 0; n < 4; n++) {
        coast_lat[n] = obj_lat[sel] + 0.002f * n;
        coast_lon[n] = obj_lon[sel] - 0.003f + 0.002f * n;
    }
    apt_wrl_max = rwy_wrl_max = 0;
    apt_lo_ind[0] = apt_hi_ind[0] = 0;
    rwy_lat[0] = 33.45f, rwy_lon[0] = -118.52f, rwy_hdng[0] = 35, rwy_len[0] = 9000, rwy_width[0] = 150;
    msc.screen = screen;
    msc.obj_sel = sel;
    msc.sel_row = 25;
    msc.sel_col = 42;
    msc.show_tex = textured;
    for (int k = 0; k < zoom_steps; k++) APPLICATION_handlemenu(cmd_zoom_in);
    assign_terrain_texes(0, 0);
}

static void map_frame(int flash)
{
    obj_flash = flash;
    plot_TF_terrain();
}

static int picture_was_shown()
{
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    return bound == 700;
}

// What a test changes between two frames; each must be seen on the map.
static void move_north() { obj_lat[sel + 1] += 0.001f; }
static void move_east() { obj_lon[sel - 1] += 0.001f; }
static void raise_vertex() { planey[30][40] += 120; }
static void flood_vertex() { is_water[30][40] = !is_water[30][40]; }
static void toggle_textures() { msc.show_tex = !msc.show_tex; }
static void select_other() { msc.obj_sel = 40; }
static void drop_obstacle() { obj_type[sel + 6] = 0; }

struct map_case {
    int screen, textured, zoom_steps;
    void (*change)();
};

static const map_case map_cases[] = {
    {201, 0, 0, move_north},      {201, 1, 0, raise_vertex}, {201, 0, 5, select_other}, {201, 0, 0, move_east},
    {201, 1, 5, toggle_textures}, {200, 0, 0, drop_obstacle}, {200, 1, 5, flood_vertex},
};

TEST_F(BatchedDrawing, MapAndItsKeptPictureMatchTheWholeDrawing)
{
    load_stock_textures();
    for (const map_case& c : map_cases) {
        SCOPED_TRACE(testing::Message() << "screen " << c.screen << " textured " << c.textured << " zoom steps "
                                        << c.zoom_steps);
        craft_tile(c.screen, c.textured, c.zoom_steps);
        drop_map_picture();
        // Frame 1 draws the map whole and keeps it; frame 2 shows the kept
        // picture with the selected obstacle in its next colour; frame 3 comes
        // after a change and must show it.
        const auto first = drawn(1, [] { map_frame(5); });
        OGL_bindtex(154);
        const auto second = drawn(1, [] { map_frame(20); });
        EXPECT_TRUE(picture_was_shown());
        c.change();
        assign_terrain_texes(0, 0);
        const auto third = drawn(1, [] { map_frame(30); });
        craft_tile(c.screen, c.textured, c.zoom_steps);
        const auto ref_first = drawn(0, [] { map_frame(5); });
        const auto ref_second = drawn(0, [] { map_frame(20); });
        c.change();
        assign_terrain_texes(0, 0);
        const auto ref_third = drawn(0, [] { map_frame(30); });
        EXPECT_EQ(pixels_differing(first, ref_first), 0);
        EXPECT_EQ(pixels_differing(second, ref_second), 0);
        EXPECT_EQ(pixels_differing(third, ref_third), 0);
        EXPECT_GT(pixels_differing(ref_second, ref_third), 0);
        if (c.screen == 201) {
            EXPECT_GT(pixels_differing(ref_first, ref_second), 0) << "the selected one flashes";
        }
    }
}
