// Batched drawing and the map's kept picture against drawing one primitive at
// a time (gl_batching 0): the same scenes, read back from the back buffer,
// must match pixel for pixel.
#include "window_fixture.h"
#include "app/Main.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_funct.h"

using BatchedDrawing = WindowTest;

// Every glDrawArrays of the editor's code comes through here (the test program
// is linked with --wrap=glDrawArrays) and is counted.
static long arrays_sent;
extern "C" void __real_glDrawArrays(GLenum mode, GLint first, GLsizei count);
extern "C" void __wrap_glDrawArrays(GLenum mode, GLint first, GLsizei count) { arrays_sent++, __real_glDrawArrays(mode, first, count); }

// The back buffer after draw, from a buffer cleared to the same colour and
// the panel drawn over it, as a frame draws it.
template <typename F>
static std::vector<unsigned char> drawn(int batching, F draw)
{
    gl_batching = batching;
    glClearColor(0.1f, 0.2f, 0.3f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    OGL_plot_background();
    draw();
    OGL_flush();
    gl_batching = 1;
    return grab_back_buffer();
}

// Pixels that differ between two back buffers, in the box from (x0, y0) w by h (all of them by default).
static int pixels_differing(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b, int x0 = 0,
                            int y0 = 0, int w = canvas_w, int h = canvas_h)
{
    int n = 0;
    for (int y = y0; y < y0 + h; y++)
        for (int x = x0; x < x0 + w; x++) n += std::memcmp(px_at(a.data(), x, y), px_at(b.data(), x, y), 3) != 0;
    return n;
}

// Runs of two colours that overlap, rectangles, a frame, text inside the run,
// a line to itself, lines clipped, a reversed rectangle, and more lines than a store holds.
static void primitive_scene()
{
    mnw.win_x = 7;
    OGL_batch_begin();
    for (int k = 0; k < 40; k++) OGL_line(k % 3 ? 0 : 8, 10 + k * 3, 20, 60 + k, 120 - k * 2);
    OGL_line(7, 20, 150, 120, 150), OGL_line(9, 20, 152, 120, 152);   // colours apart in their red only
    OGL_fillrect(3, 200, 30, 40, 25);
    OGL_line(8, 195, 28, 250, 60);
    OGL_framerect(4, 210, 40, 30, 30);
    OGL_string(7, 220, 50, "Mixed text", 999, 6, 101);
    OGL_line(8, 300, 300, 300, 300);
    OGL_line(8, 100, 500, 200, 550);
    OGL_scissors(300, 200, 200, 150);   // what went before stays whole, what comes in it is cut
    for (int k = 0; k < 30; k++) OGL_line(k % 2 ? 3 : 5, 250 + 10 * k, 180, 260 + 10 * k, 380);
    OGL_scissors_end();
    OGL_fillrect(8, 320, 320, -5, 5);
    OGL_fillrect(9, 330.5f, 300.25f, 10.5f, 7.75f);
    for (int k = 0; k < 5000; k++) OGL_line(k % 7 == 0 ? 2 : 1, 400 + k % 300, 400 + k % 97, 402 + k % 300, 405 + k % 89);
    OGL_batch_end();
    OGL_line(6, 5, 590, 700, 500);
    mnw.win_x = 0;
}

TEST_F(BatchedDrawing, PrimitivesMatchOneAtATimeAndTextLightsOnlyItsGlyphs)
{
    const auto one = drawn(0, primitive_scene), batched = drawn(1, primitive_scene);
    EXPECT_GT(pixels_differing(one, drawn(0, [] {})), 5000);   // lit on the cleared buffer
    EXPECT_EQ(pixels_differing(one, batched), 0);
    long arrays_before = 0;   // 500 lines of one colour go out together: their lines, then their end points
    drawn(1, [&] { arrays_before = arrays_sent, OGL_batch_begin(); for (int k = 0; k < 500; k++) OGL_line(3, k, 10, k, 90); OGL_batch_end(); });
    EXPECT_EQ(arrays_sent - arrays_before, 2);
    std::string row;   // the line at y 150 from x 20 to 120, the window 7 units in: both ends lit, no more
    for (int x = 26; x <= 128; x++) row += has_colour(px_at(one.data(), x, 150), 7) ? '7' : '.';
    EXPECT_EQ(row, "." + std::string(101, '7') + ".");
    auto box = [] { OGL_fillrect(3, 220, 40, 20, 20); };   // an M on a box: of its cell only the glyph changes
    const auto m = drawn(0, [&] { box(), OGL_string(7, 227, 50, "M", 999, 6, 101); });
    int lit = 0;
    for (int x = 227; x < 232; x++) for (int y = 48; y < 58; y++) lit += has_colour(px_at(m.data(), x, y), 7);
    EXPECT_TRUE(lit > 10 && pixels_differing(m, drawn(0, box), 227, 48, 5, 10) == lit) << lit;
    mnw.scr_x = 400, mnw.scr_y = 300, mnw.win_x = 10;   // the scissors' box at half scale, the window's origin added
    MACIBM_set_scale();
    int b[4];
    OGL_scissor_box(100, 50, 200, 100, b);
    EXPECT_EQ(std::vector<int>(b, b + 4), (std::vector<int>{canvas_place.left + 55, canvas_place.bottom + 25, 100, 50}));
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
        for (int j = 20; j < 70; j++) is_water[i][j] = (i * 7 + j * 3) % 11 == 0, planey[i][j] = (float)((i * 13 + j * 29) % 400);
    for (int n = 0; n < 30; n++) {
        obj_type[n] = 1 + (n + 1) % 8;   // slot 0 with a symbol: the first slot is drawn like any other
        obj_lat[n] = 33.5f + 0.0035f * (n % 6), obj_lon[n] = -118.5f + 0.005f * (n / 6);
    }
    obj_type[40] = 2, obj_lat[40] = 33.9f, obj_lon[40] = -118.1f;   // far from the cluster
    msc.coast_num = 4;
    for (int n = 0; n < 4; n++) coast_lat[n] = obj_lat[sel] + 0.002f * n, coast_lon[n] = obj_lon[sel] - 0.003f + 0.002f * n;
    apt_wrl_max = rwy_wrl_max = apt_lo_ind[0] = apt_hi_ind[0] = 0;
    rwy_lat[0] = 33.45f, rwy_lon[0] = -118.52f, rwy_hdng[0] = 35, rwy_len[0] = 9000, rwy_width[0] = 150;
    msc.screen = screen, msc.obj_sel = sel, msc.show_tex = textured;
    msc.sel_row = 28, msc.sel_col = 36;   // under the runway
    for (int k = 0; k < zoom_steps; k++) APPLICATION_handlemenu(cmd_zoom_in);
    obj_type[35] = 4, obj_lat[35] = ret_lat(300), obj_lon[35] = ret_lon(785, 300);   // by the map's east edge, when zoomed in
    assign_terrain_texes(0, 0);
}

// Obstacles of kind 3 in the free slots from 41 on, in a column west of the
// cluster; called again, the same obstacles move a little north.
static void add_obstacles(int count)
{
    for (int n = 41; n < 41 + count; n++) {
        obj_lat[n] = 33.2f + 0.01f * (n - 41) + (obj_type[n] == 3 ? 0.002f : 0.0f);
        obj_lon[n] = -118.8f, obj_type[n] = 3;
    }
}

// What a test changes between two frames; each must be seen on the map.
struct map_case {
    int screen, textured, zoom_steps;
    void (*change)();
    char redraw;   // the change has the map drawn 'w'hole, an 'a'rea about it again, or only the selected obstacle on 't'op
};

static const map_case map_cases[] = {
    {201, 0, 0, [] { obj_lat[sel + 1] += 0.001f; }, 'a'},   // an obstacle moved north
    {201, 1, 0, [] { planey[30][40] += 120; }, 'a'},      // a vertex raised
    {201, 0, 5, [] { msc.obj_sel = 40; }, 'a'},            // another obstacle selected, far off
    {201, 0, 0, [] { obj_lon[sel - 1] += 0.001f; }, 'a'},   // an obstacle moved east
    {201, 1, 5, [] { msc.show_tex = !msc.show_tex; }, 'w'},
    {200, 0, 0, [] { obj_type[sel + 6] = 0; }, 'a'},       // an obstacle dropped
    {200, 1, 5, [] { is_water[30][40] = !is_water[30][40]; }, 'a'},
    {201, 0, 0, [] { obj_lat[sel] += 0.0015f, obj_lon[sel] += 0.001f; }, 't'},   // the selected one dragged
    {201, 1, 5, [] { obj_lat[sel] += 0.0015f, obj_lon[sel] += 0.001f; }, 't'},
    {200, 0, 5, [] { planelat[28][36] += 0.004f, planelon[28][36] -= 0.003f; }, 'a'},   // a vertex dragged
    {200, 1, 0, [] { planelat[28][36] += 0.004f, planelon[28][36] -= 0.003f; }, 'a'},
    {200, 0, 0, [] { planelon[59][40] -= 0.01f; }, 'a'},   // a vertex of the east edge moved in: the panel shows
    {200, 0, 0, [] { planelon[59][41] += 0.05f; }, 'a'},   // one moved out past its cells' old reach
    {201, 0, 0, [] { add_obstacles(32); }, 'a'},   // as many new or moved obstacles as an area takes
    {201, 0, 0, [] { add_obstacles(33); }, 'w'},   // one more: the map is drawn whole
    {200, 0, 0, [] { planey[30][40] += 1000; }, 'w'},     // the highest vertex lifted: the shading changes
    {200, 0, 5, [] { msc.sel_col++; }, 'a'},               // the next vertex selected
    {201, 0, 0, [] { msc.obj_sel = sel + 1; }, 'a'},
    // A later obstacle 7 units east, its bar over the east end of the selected one's: drawn again over it.
    {201, 0, 0, [] { msc.obj_sel = 40, obj_type[40] = obj_type[41] = 4, obj_lat[41] = obj_lat[40], obj_lon[41] = obj_lon[40] + 0.0147f; }, 'a'},
    {201, 0, 0, [] { msc.screen = 401 - msc.screen; }, 'w'},       // to the terrain screen and back
    {200, 0, 5, [] { msc.coast_num = 7 - msc.coast_num; }, 'w'},   // the last coast point gone, then back
    {200, 1, 0, [] { apt_wrl_max = -1 - apt_wrl_max; }, 'w'},      // the airport gone, then back
};

TEST_F(BatchedDrawing, MapAndItsKeptPictureMatchTheWholeDrawing)
{
    load_stock_textures();
    for (const float width : {800.0f, 640.0f})   // the canvas at its own size and at 0.8
        for (const map_case& c : map_cases) {
            SCOPED_TRACE(testing::Message() << "canvas " << width << ", case " << &c - map_cases);
            mnw.scr_x = width, mnw.scr_y = width * 0.75f;
            MACIBM_set_scale();
            OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
            craft_tile(c.screen, c.textured, c.zoom_steps);
            drop_map_picture();
            // Frame 1 draws the map whole and keeps it; frame 2 shows the kept
            // picture with the selected obstacle in its next colour; frames 3 and
            // 4 come after the change, made once and again, and must show it;
            // frame 5 shows the picture as the change left it.
            std::vector<unsigned char> frames[5], ref[5];
            const int flash[5] = {5, 20, 30, 31, 32};
            for (int k = 0; k < 5; k++) {
                const bool changed = k == 2 || k == 3;
                if (changed) c.change(), assign_terrain_texes(0, 0);
                const int whole_before = map_whole_draws, areas_before = map_area_draws;
                frames[k] = drawn(1, [&] { obj_flash = flash[k], plot_TF_terrain(); });
                EXPECT_EQ(map_whole_draws - whole_before, k == 0 || (changed && c.redraw == 'w')) << "frame " << k + 1;
                // The kept picture stays as it is until a change, which is drawn again around itself.
                if (k < 3) {
                    EXPECT_EQ(map_area_draws - areas_before, k == 2 && c.redraw == 'a') << "frame " << k + 1;
                }
            }
            craft_tile(c.screen, c.textured, c.zoom_steps);
            for (int k = 0; k < 5; k++) {
                if (k == 2 || k == 3) c.change(), assign_terrain_texes(0, 0);
                ref[k] = drawn(0, [&] { obj_flash = flash[k], plot_TF_terrain(); });
                EXPECT_EQ(pixels_differing(frames[k], ref[k]), 0) << "frame " << k + 1;
            }
            EXPECT_GT(pixels_differing(ref[1], ref[2]), 0);
            if (c.screen == 201) {
                EXPECT_GT(pixels_differing(ref[0], ref[1]), 0) << "the selected one flashes";
            }
        }
}

// An obstacle moved to another square, and later the ground at its new place
// changed: the redraw there finds it among the moved ones, the first slot too.
TEST_F(BatchedDrawing, GroundChangedUnderAMovedObstacleKeepsItsSymbol)
{
    craft_tile(200, 0, 0);
    drop_map_picture();
    void (*const changes[])() = {[] {}, [] { is_water[20][30] ^= 1; }, [] { obj_lat[0] = 33.8f, obj_lon[0] = -118.2f; },
                                 [] { is_water[46][62] ^= 1; }};
    const int areas_before = map_area_draws;
    std::vector<unsigned char> shown;
    for (auto change : changes) {
        change(), assign_terrain_texes(0, 0);
        shown = drawn(1, [] { plot_TF_terrain(); });
    }
    EXPECT_EQ(map_area_draws - areas_before, 3);
    drop_map_picture();
    EXPECT_EQ(pixels_differing(shown, drawn(1, [] { plot_TF_terrain(); })), 0);
}

// A crowd of obstacles of every kind, at places anywhere within their pixels,
// stamped in a whole drawing, against each symbol drawn line by line, on
// canvases of five scales.
TEST_F(BatchedDrawing, StampedCrowdMatchesSymbolsDrawnLineByLine)
{
    load_stock_textures();
    for (const float width : {800.0f, 640.0f, 700.0f, 1000.0f, 1400.0f}) {
        SCOPED_TRACE(testing::Message() << "canvas " << width);
        mnw.scr_x = width, mnw.scr_y = width * 0.75f;
        MACIBM_set_scale();
        OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
        craft_tile(201, 0, 0);
        const auto without = drawn(0, [] { plot_TF_terrain(); });
        unsigned seed = 7;
        for (int n = 100; n < 3100; n++) {
            seed = seed * 1103515245u + 12345u;
            obj_type[n] = 1 + (int)(seed >> 16) % 8;
            obj_lat[n] = 33.0f + (float)((seed >> 4) % 4096) / 4096.0f;
            obj_lon[n] = -119.0f + (float)(n % 997) / 997.0f;
        }
        drop_map_picture();
        const int stamped_before = stamped_draws;
        const auto stamped = drawn(1, [] { obj_flash = 5, plot_TF_terrain(); });
        EXPECT_EQ(stamped_draws - stamped_before, 1);
        const auto one = drawn(0, [] { obj_flash = 5, plot_TF_terrain(); });
        EXPECT_GT(pixels_differing(one, without), 10000);
        EXPECT_EQ(pixels_differing(stamped, one), 0);
    }
}

// Text drawn after the kept picture (or the stamps, which are put back the
// same way) is tinted by its colour as text drawn alone is.
TEST_F(BatchedDrawing, TextAfterTheMapKeepsItsColour)
{
    craft_tile(200, 0, 0);
    drop_map_picture();
    mnw.mouse_x = 300, mnw.mouse_y = 300;
    const auto alone = drawn(1, [] { draw_pointer_readout(); });
    const auto after = drawn(1, [] { plot_TF_terrain(), plot_TF_terrain(), draw_pointer_readout(); });
    EXPECT_GT(pixels_differing(alone, drawn(1, [] {})), 100);   // the readout is there
    EXPECT_EQ(pixels_differing(alone, after, 0, 5, 160, 40), 0);
}
