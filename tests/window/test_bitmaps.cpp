// Bitmaps into textures and into the panel buffer, every alert of a load, and
// the background panel baked from a screen's bitmap and drawn pixel for pixel.
#include "bitmap_files.h"
#include "window_fixture.h"

#include "hl/Hl_funct.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <regex>
#include <string>
#include <vector>

// Test bitmaps live in a folder that stands in for the program's. A fatal
// alert ends the process and takes the window with it, so each runs in a fresh
// run of this program, which finds the folder of its parent in the environment.
static const char* const root_variable = "TF_BITMAP_TEST_ROOT";

static std::string shared_root()
{
    char folder[] = "/tmp/tf_bitmaps_XXXXXX";
    if (!std::getenv(root_variable) && mkdtemp(folder)) setenv(root_variable, folder, 1);
    return std::getenv(root_variable) ? std::getenv(root_variable) : "";
}

// Text as a POSIX extended regular expression that matches only itself.
static std::string literal(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.\[\]{}()\\*+?^$|])"), R"(\$&)");
}

// The RGBA texels of one level of a texture.
static std::vector<unsigned char> texels(int id, int level, int* w, int* h)
{
    OGL_bindtex(id);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, w);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_HEIGHT, h);
    std::vector<unsigned char> px((size_t)*w * *h * 4 + 4);
    glGetTexImage(GL_TEXTURE_2D, level, GL_RGBA, GL_UNSIGNED_BYTE, px.data());
    return px;
}

// A parameter of texture id, times 10000, plus another.
static int tex_parameters(int id, GLenum name, GLenum other)
{
    GLint value = 0, other_value = 0;
    OGL_bindtex(id);
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    glGetTexParameteriv(GL_TEXTURE_2D, other, &other_value);
    return value * 10000 + other_value;
}

static std::vector<unsigned char> rgba(bmp_rgb c, int a) { return {c.r, c.g, c.b, (unsigned char)a}; }
static std::vector<unsigned char> at(const unsigned char* p, int bytes) { return {p, p + bytes}; }
static bmp_rgb grey(int, int) { return {128, 128, 128}; }
const bmp_rgb magenta = {255, 0, 255};

class BitmapTest : public WindowTest {
protected:
    std::string root = shared_root() + "/", kept_app_path = app_path;   // root: with a closing '/'
    int kept_screen = msc.screen, kept_first_update = have_done_first_update, width = -1, height = -1;

    void SetUp() override
    {
        WindowTest::SetUp();
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        ASSERT_GT(root.size(), 1u);
        C_to_C(root.c_str(), app_path);
    }
    void TearDown() override
    {
        C_to_C(kept_app_path.c_str(), app_path);
        msc.screen = kept_screen;   // a screen without a panel, for the other tests' paints
        have_done_first_update = kept_first_update;
        max_texture_size_override = mnw.win_id = to_array = use_blend = 0;
        if (root.size() > 1) std::filesystem::remove_all(root);
        unsetenv(root_variable);
    }

    // Writes name (colon-separated, no extension) below the stand-in folder.
    std::string put(std::string name, const std::string& bytes)
    {
        std::replace(name.begin(), name.end(), ':', '/');
        write_bytes(root + name + ".BMP", bytes);
        return root + name + ".BMP";
    }

    int load(int mode, int id_or_x, int y, int kind, const std::string& name)
    {
        return OGL_texbmp(mode, id_or_x, y, kind, name.c_str(), &width, &height, 1.0f);
    }

    // The statement ends the process with status 0 after showing the alert's
    // four lines, "@" standing for the file.
    void expect_fatal(const std::function<void()>& statement, const std::vector<std::string>& lines,
                      const std::string& file = "")
    {
        std::string shown = "Norsuite Message";
        for (const std::string& l : lines) shown += (shown.size() > 16 ? "\n\n" : "\n") + (l == "@" ? file : l);
        shown += "\n";
        expect_alert(lines.at(0));
        EXPECT_EXIT(
            {
                platform_push_key_code(0x0D);   // Return answers the alert's O.K.
                statement();
            },
            ::testing::ExitedWithCode(0), literal(shown));
    }
};

TEST_F(BitmapTest, BadHeadersShortFilesAndPicturesPastTheLimitsAreFatal)
{
    const std::string ok = bmp_bytes(4, 4, grey);
    auto with = [](int at, unsigned value, int size, std::string b) { put_le(b, at, value, size); return b; };
    const char* edge[3] = {"An instrument of a custom cockpit may lie too close to the edge of the screen.",
                           "Move it further in from the edge.",
                           "Perhaps a bitmap is too large (over 800x600) as well."};
    // The alert's lines. The header's checks; a file cut in the header, or in
    // the last row, which holds one pixel of four; past the scratch area at four
    // bytes a pixel when keyed. On the panel, in a window at x 200, 200 + 400 +
    // 200 fits exactly; one more does not.
    const struct { std::string bytes; int mode, x, y, kind; std::vector<std::string> lines; } cases[] = {
        {with(0, 'P', 1, ok), -100, 61, 0, 0, {"Trying to read a texture bitmap that is not a bitmap", "", "", "@"}},
        {with(18, 1025, 4, ok), -100, 61, 0, 0, {"Bitmap too wide! (max is 1024)", "", "", "@"}},
        {with(28, 32, 2, ok), -100, 61, 0, 0,
         {"Wrong bitmap color depth for texture!", "We need 24-bit color.", "", "@"}},
        {with(30, 1, 4, ok), -100, 61, 0, 0, {"Bitmap is compressed!", "", "", "@"}},
        {with(22, -4u, 4, ok), -100, 61, 0, 0,
         {"Bitmap has no pixels!", "Its width and height must both be at least 1.", "", "@"}},
        {ok.substr(0, 40), -100, 61, 0, 0, {"File-scanning error!", "grf_inf.fail", "file:", "@"}},
        {ok.substr(0, 54 + 3 * 12 + 3), -101, 0, 0, 0, {"File-scanning error!", "grf_inf.fail", "file:", "@"}},
        {bmp_bytes(1024, 512, grey), -100, 61, 0, -105, {"OGL_texbmp data out of bounds!", "@", "", ""}},
        {bmp_bytes(4, 12, grey), -100, 61, 0, 0,
         {"Trying to read a texture that is not a power of 2!", "@", "", ""}},
        {bmp_bytes(200, 10, grey), -101, 401, 0, 0, {"OGL_texbmp out of bounds!", edge[0], edge[1], edge[2]}}};
    mnw.win_x = 200;
    for (const auto& c : cases)
        expect_fatal([&] { load(c.mode, c.x, c.y, c.kind, "pics:bad"); }, c.lines, put("pics:bad", c.bytes));
    EXPECT_EQ(load(-101, 400, 0, 0, "pics:bad"), 1);
    // A missing panel is fatal, where a missing texture is white.
    msc.screen = 201;
    expect_fatal([] { MACIBM_startwind(0); },
                 {"Can't open bitmap!", root + "Norsuite Resources/bitmaps/TileFrgr/TF_OBS.BMP", "", ""});
}

TEST_F(BitmapTest, RowsArePaddedAndReadBottomUpMagentaIsSkippedKeyedOutOrKeptAndAMissingTextureIsWhite)
{
    auto pixel = [](int x, int y) { return bmp_rgb{(unsigned char)(40 * x + 1), (unsigned char)(40 * y + 1), 7}; };
    // Width 3: 9 bytes of pixels and 3 of padding a row, the padding not black.
    // A missing texture is 4 by 4 white, its alpha bytes as they were.
    put("pics:three", bmp_bytes(3, 3, pixel, 0xEE));
    EXPECT_EQ(load(-101, 10, 20, 0, "pics:three"), 1);
    EXPECT_EQ(width * 10 + height, 33);
    for (int n = 0; n < 9; n++)
        EXPECT_EQ(at(px_at(rgb_array, 10 + n % 3, 20 + n / 3), 4), rgba(pixel(n % 3, n / 3), 255)) << n;

    for (int n = 0; n < 16; n++) rgb_array[4 * n + 3] = 77;   // alpha bytes stay as they are
    EXPECT_EQ(load(-100, 71, 0, -105, "pics:none"), 0);
    int w, h;
    std::vector<unsigned char> px = texels(71, 0, &w, &h);
    ASSERT_EQ(width * 1000 + height * 100 + w * 10 + h, 4444);
    for (int n = 0; n < 16; n++) EXPECT_EQ(at(&px[4 * n], 4), (std::vector<unsigned char>{255, 255, 255, 77})) << n;

    const bmp_rgb row[4] = {{255, 0, 0}, magenta, magenta, {0, 0, 255}};
    put("pics:row", bmp_bytes(4, 1, [&](int x, int) { return row[x]; }));
    mnw.win_x = 200, mnw.win_y = 198;   // the panel position is window-relative
    std::memcpy(rgb_array + (258 * 800 + 251) * 4, "\x01\x02\x03\xC8", 4);   // a pixel written before
    EXPECT_EQ(load(-101, 50, 60, 0, "pics:row"), 1);
    EXPECT_EQ(at(px_at(rgb_array, 250, 258), 16),
              (std::vector<unsigned char>{255, 0, 0, 255, 1, 2, 3, 200, 0, 0, 0, 0, 0, 0, 255, 255}));
    // Keyed: only pure magenta goes; font atlases stay sharp.
    const bmp_rgb square[4] = {magenta, {255, 0, 0}, {255, 0, 254}, magenta};
    put("pics:square", bmp_bytes(2, 2, [&](int x, int y) { return square[2 * y + x]; }));
    EXPECT_EQ(load(-100, 63, 0, -105, "pics:square") + load(-100, 155, 0, -105, "pics:square"), 2);
    EXPECT_EQ(tex_parameters(63, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MIN_FILTER), GL_LINEAR * 10001);
    EXPECT_EQ(tex_parameters(155, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MIN_FILTER), GL_NEAREST * 10001);
    EXPECT_EQ(load(-100, 65, 0, 0, "pics:square"), 1);
    EXPECT_EQ(tex_parameters(65, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S), GL_LINEAR * 10000 + GL_REPEAT);
    std::vector<unsigned char> keyed = texels(155, 0, &w, &h), plain = texels(65, 0, &w, &h);
    for (int n = 0; n < 4; n++) {
        EXPECT_EQ(at(&keyed[4 * n], 4), n % 3 == 0 ? std::vector<unsigned char>(4, 0) : rgba(square[n], 255)) << n;
        EXPECT_EQ(at(&plain[4 * n], 4), rgba(square[n], 255)) << n;
    }
}

TEST_F(BitmapTest, ScreenPanelIsBakedDrawnPixelForPixelAndRebakedForEachWindow)
{
    put("Norsuite Resources:bitmaps:TileFrgr:TF_MAP", bmp_bytes(800, 600, panel_pixel));
    msc.screen = 200, mnw.win_id = 996, mnw.win_x = 200, mnw.open_menu = 3;
    mnw.mouse_click = mnw.mouse_down = 1;
    MACIBM_startwind(0);   // the menu closed, the clicks forgotten
    EXPECT_EQ(mnw.win_id + mnw.win_x + mnw.win_y + mnw.mouse_click + mnw.mouse_down + to_array, 0);
    EXPECT_EQ(mnw.open_menu, -1);
    int w, h;
    auto corner = [&] { return at(&texels(534, 0, &w, &h)[(87 * 128 + 31) * 4], 4); };   // tile column 6, row 4
    EXPECT_EQ(corner(), rgba(panel_pixel(799, 599), 255));
    EXPECT_EQ(tex_parameters(534, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S), GL_NEAREST * 10000 + GL_REPEAT);
    OGL_plot_background();
    std::vector<unsigned char> frame = grab_back_buffer();
    int wrong = 0;
    for (int n = 0; n < canvas_w * canvas_h; n++)
        wrong += at(&frame[n * 4], 3) != at(&rgba(panel_pixel(n % canvas_w, n / canvas_w), 0)[0], 3);
    EXPECT_EQ(wrong, 0);
    // A paint rebakes the current window's panel; its destruction returns to the screen.
    MACIBM_startwind(997);
    EXPECT_EQ(corner(), std::vector<unsigned char>(4, 0));
    IBM_handlewin(mnw.hwnd, msg_paint, 0, 0);
    EXPECT_EQ(mnw.win_id, 997);
    IBM_handlewin(mnw.hwnd, msg_destroy, 0, 0);
    EXPECT_EQ(mnw.win_id + mnw.win_x + mnw.win_y, 0);
    EXPECT_EQ(corner(), rgba(panel_pixel(799, 599), 255));

    // A window stands over the screen left behind, which shows around it; a
    // stretched panel is filtered and clamped.
    reset_drawing_state(1.0f);   // the screen below: all blue
    MACIBM_startwind(996);
    OGL_plot_background();
    frame = grab_back_buffer();
    auto pixel_at = [&](int x, int y) { return at(px_at(frame.data(), x, y), 3); };
    EXPECT_EQ(pixel_at(193, 300), (std::vector<unsigned char>{0, 0, 255}));
    EXPECT_EQ(pixel_at(300, 300), std::vector<unsigned char>(3, 153));   // the face, colour 12
    EXPECT_EQ(pixel_at(196, 300), std::vector<unsigned char>(3, 102));   // the border, colour 18
    use_blend = 1;
    load_rgbarray_into_baktex(0);
    EXPECT_EQ(tex_parameters(500, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_WRAP_S), GL_LINEAR * 10000 + GL_CLAMP);
    // The frame pump draws the panel first.
    MACIBM_restart_pump();
    reset_drawing_state(1.0f);
    use_blend = 0, have_done_first_update = 1, mnw.mouse_x = mnw.mouse_y = 0;   // the pointer off the probes
    MACIBM_event_proc();
    frame = grab_back_buffer();
    EXPECT_EQ(pixel_at(196, 300), std::vector<unsigned char>(3, 102));
    EXPECT_EQ(pixel_at(10, 10), (std::vector<unsigned char>{0, 0, 255}));
}
