// Drawing state and primitives, pixel by pixel on both targets: the back
// buffer of the real window and the panel buffer rgb_array.
#include "bitmap_files.h"
#include "window_fixture.h"
#include "app/Main.h"

#include <SDL2/SDL.h>

#include <algorithm>
#include <array>

using GraphTest = WindowTest;

// The same drawing on both targets must light the same pixels.
template <typename F>
static void expect_on_both(F draw, const pixel_set& expected)
{
    to_array = 1;
    draw();
    to_array = 0;
    EXPECT_EQ(written(), expected) << "rgb_array";
    draw();
    EXPECT_EQ(lit_pixels(), expected) << "OpenGL";
}

TEST_F(GraphTest, LinesIncludeBothEndsWhileRectanglesLeaveTheFarEdge)
{
    // A line of length 10 lights 11 pixels, a rectangle of width 10 ten columns.
    pixel_set expected = rect_pixels(10, 20, 11, 1, rect_pixels(50, 30, 1, 11, rect_pixels(10, 100, 10, 3)));
    expect_on_both([] {
        OGL_line(7, 10, 20, 20, 20);
        OGL_line(7, 50, 30, 50, 40);
        OGL_fillrect(7, 10, 100, 10, 3);
        OGL_fillrect(7, 10, 10, 0, 5);     // empty
        OGL_fillrect(7, 30, 30, -5, 5);    // reversed: nothing in the array, culled on OpenGL
        OGL_fillrect(7, 30, 30, 5, -5);
    }, expected);
}

// The bounds of a set of pixels: left, bottom, width, height.
static std::array<int, 4> bounds(const pixel_set& s)
{
    int x1 = 9999, y1 = 9999, x2 = -1, y2 = -1;
    for (auto [x, y] : s) x1 = std::min(x1, x), y1 = std::min(y1, y), x2 = std::max(x2, x), y2 = std::max(y2, y);
    return {x1, y1, x2 - x1 + 1, y2 - y1 + 1};
}

// Scissors cut to their box, the window's origin added, at the canvas's
// scale: here a canvas of 400 by 300, half a pixel to the unit.
TEST_F(GraphTest, ScissorsCutTheirBoxAtTheCanvasScale)
{
    mnw.scr_x = 400, mnw.scr_y = 300;
    MACIBM_set_scale();
    OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
    OGL_fillrect(7, 0, 0, 800, 600);
    OGL_flush();
    const std::array<int, 4> canvas = bounds(lit_pixels());
    EXPECT_EQ(canvas[2] * 1000 + canvas[3], 400300);
    glClear(GL_COLOR_BUFFER_BIT);
    mnw.win_x = 10, mnw.win_y = 20;
    OGL_scissors(100, 50, 200, 100);
    OGL_fillrect(7, -10, -20, 800, 600);
    OGL_scissors_end();
    OGL_flush();
    mnw.win_x = mnw.win_y = 0;
    EXPECT_EQ(bounds(lit_pixels()), (std::array<int, 4>{canvas[0] + 55, canvas[1] + 35, 100, 50}));
}

static float current(int k)
{
    float c[4];
    glGetFloatv(GL_CURRENT_COLOR, c);
    return c[k];
}

TEST_F(GraphTest, ColourSettingOnEachTarget)
{
    OGL_setcolorINDEX(8, 1.0f);
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);   // lighting off selects white, even when already off
    EXPECT_EQ(current(1), 1.0f);
    OGL_setcolorINDEX(5, 0.99f);
    EXPECT_FLOAT_EQ(current(3), 0.99f);
    OGL_setcolorINDEX(5, 0.991f);
    EXPECT_EQ(current(3), 1.0f);

    r_manual_lighting = g_manual_lighting = b_manual_lighting = 0.5f;
    OGL_setcolorINDEX(49, 1.0f);
    EXPECT_FLOAT_EQ(current(2), 0.4f);
    OGL_setcolorINDEX(54, 1.0f);   // 50 and up are never multiplied
    EXPECT_EQ(current(0), 1.0f);
    OGL_setcolorRGBA(0.8f, 0.6f, 0.4f, 0.3f, 0);
    EXPECT_FLOAT_EQ(current(0) + current(3), 0.4f + 0.3f);
    to_array = 1;
    OGL_setcolorINDEX(5, 0.2f);    // 0.92 0.87 0.67, rounded, no multipliers
    to_array = 0;
    EXPECT_EQ(current_rgb[0] * 65536 + current_rgb[1] * 256 + current_rgb[2], 235 * 65536 + 222 * 256 + 171);
}

// Each smaller level of a texture holds the means of two by two texels of the one above.
TEST_F(GraphTest, TextureLevelsAreMeansOfTheLevelAbove)
{
    load_stock_textures();
    OGL_bindtex(54);
    int w = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &w);
    ASSERT_GE(w, 64);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    std::vector<unsigned char> above(w * w * 3), below(w * w * 3);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, above.data());
    for (int level = 1; w > 1; level++, w /= 2, above.swap(below)) {
        glGetTexImage(GL_TEXTURE_2D, level, GL_RGB, GL_UNSIGNED_BYTE, below.data());
        for (int y = 0; y < w / 2; y++)
            for (int x = 0; x < w / 2 * 3; x++) {
                const unsigned char* s = &above[(2 * y * w) * 3 + (x / 3) * 6 + x % 3];
                const int mean = (s[0] + s[3] + s[w * 3] + s[w * 3 + 3]) / 4;
                ASSERT_NEAR(below[y * (w / 2) * 3 + x], mean, 1) << "level " << level << " at " << x / 3 << "," << y;
            }
    }
}

// The panel shows, pixel for pixel, what was baked into rgb_array; where the
// baking wrote nothing, what was drawn before stays.
TEST_F(GraphTest, PanelShowsWhatWasBakedPixelForPixel)
{
    for (int y = 0; y < canvas_h; y++)
        for (int x = 0; x < canvas_w; x++) {
            unsigned char* p = rgb_array + (y * canvas_w + x) * 4;
            p[0] = (unsigned char)x, p[1] = (unsigned char)y, p[2] = (unsigned char)(x >> 8 | (y >> 8) << 2 | 0x40);
            p[3] = (x / 50 + y / 50) % 7 ? 255 : 0;
        }
    load_rgbarray_into_baktex(0);
    OGL_plot_background();   // over the black that each test starts from
    const std::vector<unsigned char> shot = grab_back_buffer();
    int wrong = 0;
    for (int y = 0; y < canvas_h; y++)
        for (int x = 0; x < canvas_w; x++) {
            const unsigned char *want = px_at(rgb_array, x, y), *got = px_at(shot.data(), x, y);
            wrong += want[3] ? std::memcmp(want, got, 3) != 0 : (got[0] | got[1] | got[2]) != 0;
        }
    EXPECT_EQ(wrong, 0);
}

// A 24-bit picture loaded as a texture holds the file's pixels, its first row
// the file's bottom one. At three bytes a pixel, 1024 by 512 fits the loader's
// scratch area of 1920000 bytes, and a picture as large as the display's
// textures allow keeps its size.
TEST_F(GraphTest, TextureTexelsAreTheFilesPixels)
{
    auto pixel = [](int x, int y) { return bmp_rgb{(unsigned char)(x * 7 + 5), (unsigned char)(y * 3 + 9), (unsigned char)(x ^ y)}; };
    const std::string folder = "/tmp/tf_texture_" + std::to_string(getpid()) + "/";
    char kept_path[path_len];
    C_to_C(app_path, kept_path);
    // The size, and the display's limit: as wide as it, then as wide and as high.
    for (auto [w, h, limit] : {std::array{1024, 512, 1024}, std::array{64, 64, 64}}) {
        write_bytes(folder + "pic.BMP", bmp_bytes(w, h, pixel));
        C_to_C(folder.c_str(), app_path);
        int width = 0, height = 0;
        max_texture_size_override = limit;
        const int loaded = OGL_texbmp(-100, 61, 0, 0, "pic", &width, &height, 1.0f);
        max_texture_size_override = 0;
        C_to_C(kept_path, app_path);
        ASSERT_EQ(loaded, 1);
        OGL_bindtex(61);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        std::vector<unsigned char> texels(w * h * 3);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
        int wrong = 0;
        for (int y = 0; y < h; y++)
            for (int x = 0; x < w; x++) {
                const bmp_rgb p = pixel(x, y);
                const unsigned char* t = &texels[(y * w + x) * 3];
                wrong += t[0] != p.r || t[1] != p.g || t[2] != p.b;
            }
        EXPECT_EQ(wrong, 0) << w << " by " << h;
    }
    std::filesystem::remove_all(folder);
    // A missing file gives a white texture 4 by 4, whatever the loader held before.
    int width = 0, height = 0;
    std::memset(rgb_array, 0, sizeof rgb_array);
    EXPECT_EQ(OGL_texbmp(-100, 61, 0, 0, "no such picture", &width, &height, 1.0f), 0);
    unsigned char texels[4 * 4 * 3];
    OGL_bindtex(61);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    EXPECT_EQ(std::count(texels, texels + 48, 255) + 1000 * width + 100 * height, 48 + 4400);
}

// The terrain's stock textures, the first to the last, stop at their own edge
// texels, so that no border colour seams the cells.
TEST_F(GraphTest, TerrainTexturesStopAtTheirEdgeTexels)
{
    load_stock_textures();
    for (int id : {50, 58}) {
        OGL_bindtex(id);
        GLint wrap_s = 0, wrap_t = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrap_s);
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, &wrap_t);
        EXPECT_EQ(wrap_s, GL_CLAMP_TO_EDGE) << id;
        EXPECT_EQ(wrap_t, GL_CLAMP_TO_EDGE) << id;
    }
}
