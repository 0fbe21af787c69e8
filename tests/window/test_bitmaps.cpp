// Bitmaps into textures and into the panel buffer, every alert of a load, and
// the background panel baked from a screen's bitmap and drawn pixel for pixel.
#include "bitmap_files.h"
#include "window_fixture.h"

#include "hl/Hl_funct.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

// Test bitmaps live in a folder that stands in for the program's. A fatal
// alert ends the process and takes the window with it, so each runs in a fresh
// run of this program, which finds the folder of its parent in the environment.
static const char* const root_variable = "TF_BITMAP_TEST_ROOT";

static std::string shared_root()
{
    if (const char* inherited = std::getenv(root_variable)) return inherited;
    char folder[] = "/tmp/tf_bitmaps_XXXXXX";
    if (!mkdtemp(folder)) return "";
    setenv(root_variable, folder, 1);
    return folder;
}

// Text as a POSIX extended regular expression that matches only itself.
static std::string literal(const std::string& text)
{
    std::string re;
    for (char c : text) {
        if (std::string(".[]{}()\\*+?^$|").find(c) != std::string::npos) re += '\\';
        re += c;
    }
    return re;
}

static std::string last_line_of(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::string line, last;
    while (std::getline(in, line))
        if (!line.empty()) last = line;
    return last;
}

static std::string log_start(const std::string& l1, const std::string& l2, const std::string& l3,
                             const std::string& l4)
{
    return "MACIBM_alert: " + l1 + " " + l2 + " " + l3 + " " + l4 + ", GetLastError=";
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

static int tex_parameter(int id, GLenum name)
{
    GLint value = 0;
    OGL_bindtex(id);
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
}

static std::vector<unsigned char> rgba(bmp_rgb c, int a) { return {c.r, c.g, c.b, (unsigned char)a}; }
static std::vector<unsigned char> at(const unsigned char* p, int bytes) { return std::vector<unsigned char>(p, p + bytes); }

const bmp_rgb magenta = {255, 0, 255};

class BitmapTest : public WindowTest {
protected:
    std::string root;   // with a closing '/'
    std::string kept_app_path;
    int kept_screen = 0;
    int width = -1, height = -1;

    void SetUp() override
    {
        WindowTest::SetUp();
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        root = shared_root() + "/";
        ASSERT_GT(root.size(), 1u);
        kept_app_path = app_path;
        kept_screen = msc.screen;
        C_to_C(root.c_str(), app_path);
        max_texture_size_override = 0;
    }
    void TearDown() override
    {
        C_to_C(kept_app_path.c_str(), app_path);
        msc.screen = kept_screen;   // a screen without a panel, for the other tests' paints
        max_texture_size_override = 0;
        mnw.win_id = 0;
        to_array = 0;
        std::filesystem::remove_all(root);
        unsetenv(root_variable);
    }

    // Writes name (colon-separated, no extension) below the stand-in folder.
    std::string put(std::string name, const std::string& bytes)
    {
        std::string file = root + name + ".BMP";
        for (size_t k = root.size(); k < file.size(); k++)
            if (file[k] == ':') file[k] = '/';
        write_bytes(file, bytes);
        return file;
    }

    int load(int mode, int id_or_x, int y, int kind, const std::string& name)
    {
        return OGL_texbmp(mode, id_or_x, y, kind, name.c_str(), &width, &height, 1.0f);
    }

    // The load ends the process with status 0, shows the four lines and logs them.
    void expect_fatal(const std::function<void()>& statement, const std::string& l1, const std::string& l2,
                      const std::string& l3, const std::string& l4)
    {
        const std::string log = root + "Error.out";
        std::remove(log.c_str());
        const std::string shown = "Norsuite Message\n" + l1 + "\n\n" + l2 + "\n\n" + l3 + "\n\n" + l4 + "\n";
        EXPECT_EXIT(
            {
                err.close();
                err.clear();
                err.open(log, std::ios::out | std::ios::trunc);
                platform_push_key_code(0x0D);   // Return answers the alert's O.K.
                statement();
            },
            ::testing::ExitedWithCode(0), literal(shown));
        EXPECT_EQ(last_line_of(log).rfind(log_start(l1, l2, l3, l4), 0), 0u) << last_line_of(log);
    }
};

static bmp_rgb grey(int, int) { return {128, 128, 128}; }

TEST_F(BitmapTest, EveryBadHeaderIsFatalInTheOrderOfItsChecks)
{
    const std::string good = bmp_bytes(4, 4, grey);
    struct bad_header {
        int at, size;
        unsigned int value;
        const char *l1, *l2;
    } cases[] = {
        {0, 1, 'P', "Trying to read a texture bitmap that is not a bitmap", ""},
        {18, 4, 1025, "Bitmap too wide! (max is 1024)", ""},
        {22, 4, 1025, "Bitmap too tall! (max is 1024)", ""},
        {28, 2, 32, "Wrong bitmap color depth for texture!", "We need 24-bit color."},
        {30, 4, 1, "Bitmap is compressed!", ""},
    };
    for (const bad_header& c : cases) {
        std::string bytes = good;
        put_le(bytes, c.at, c.value, c.size);
        const std::string file = put("pics:bad", bytes);
        expect_fatal([&] { load(-100, 61, 0, 0, "pics:bad"); }, c.l1, c.l2, "", file);
    }
    // Too wide and 8 bits: the width is looked at first.
    std::string both = good;
    put_le(both, 18, 2000, 4);
    put_le(both, 28, 8, 2);
    const std::string file = put("pics:both", both);
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:both"); }, "Bitmap too wide! (max is 1024)", "", "", file);
}

TEST_F(BitmapTest, ShortFilesAndEmptyPicturesStopTheLoad)
{
    const std::string good = bmp_bytes(4, 4, grey);
    const std::string scan[3] = {"File-scanning error!", "grf_inf.fail", "file:"};
    std::string file = put("pics:cut", good.substr(0, 40));
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:cut"); }, scan[0], scan[1], scan[2], file);
    // The header is whole, but the last row holds one pixel of four.
    file = put("pics:short", good.substr(0, 54 + 3 * 12 + 3));
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:short"); }, scan[0], scan[1], scan[2], file);
    expect_fatal([&] { load(-101, 0, 0, 0, "pics:short"); }, scan[0], scan[1], scan[2], file);

    for (int field : {18, 22}) {
        for (int size : {0, -4}) {
            std::string bytes = good;
            put_le(bytes, field, (unsigned int)size, 4);
            file = put("pics:empty", bytes);
            expect_fatal([&] { load(-100, 61, 0, 0, "pics:empty"); }, "Bitmap has no pixels!",
                         "Its width and height must both be at least 1.", "", file);
        }
    }
}

TEST_F(BitmapTest, PicturesBeyondTheScratchAreaOrTheCanvasAreFatal)
{
    std::string file = put("pics:big", bmp_bytes(1024, 1024, grey));
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:big"); }, "OGL_texbmp data out of bounds!", file, "", "");
    file = put("pics:keyed", bmp_bytes(1024, 512, grey));
    expect_fatal([&] { load(-100, 61, 0, -105, "pics:keyed"); }, "OGL_texbmp data out of bounds!", file, "", "");
    file = put("pics:hundred", bmp_bytes(100, 4, grey));
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:hundred"); },
                 "Trying to read a texture that is not a power of 2!", file, "", "");
    file = put("pics:twelve", bmp_bytes(4, 12, grey));
    expect_fatal([&] { load(-100, 61, 0, 0, "pics:twelve"); },
                 "Trying to read a texture that is not a power of 2!", file, "", "");

    put("pics:strip", bmp_bytes(200, 10, grey));
    mnw.win_x = 200;   // 200 + 400 + 200 fits exactly; one more does not
    EXPECT_EQ(load(-101, 400, 0, 0, "pics:strip"), 1);
    const std::string edge[4] = {"OGL_texbmp out of bounds!",
                                 "An instrument of a custom cockpit may lie too close to the edge of the screen.",
                                 "Move it further in from the edge.",
                                 "Perhaps a bitmap is too large (over 800x600) as well."};
    expect_fatal([&] { load(-101, 401, 0, 0, "pics:strip"); }, edge[0], edge[1], edge[2], edge[3]);
    expect_fatal([&] { load(-101, -201, 0, 0, "pics:strip"); }, edge[0], edge[1], edge[2], edge[3]);
    mnw.win_x = 0;
    expect_fatal([&] { load(-101, 0, 591, 0, "pics:strip"); }, edge[0], edge[1], edge[2], edge[3]);
}

TEST_F(BitmapTest, MissingPanelIsFatalButAMissingTextureIsWhite)
{
    msc.screen = 201;
    expect_fatal([] { MACIBM_startwind(0); }, "Can't open bitmap!",
                 root + "Norsuite Resources/bitmaps/TileFrgr/TF_OBS.BMP", "", "");

    for (int n = 0; n < 16; n++) rgb_array[4 * n + 3] = 77;   // alpha bytes stay as they are
    EXPECT_EQ(load(-100, 71, 0, -105, "pics:none"), 0);
    EXPECT_EQ(width * 10 + height, 44);
    int w, h;
    std::vector<unsigned char> px = texels(71, 0, &w, &h);
    ASSERT_EQ(w * 10 + h, 44);
    for (int n = 0; n < 16; n++) EXPECT_EQ(at(&px[4 * n], 4), (std::vector<unsigned char>{255, 255, 255, 77})) << n;
}

TEST_F(BitmapTest, RowsArePaddedToFourBytesAndReadBottomUp)
{
    auto pixel = [](int x, int y) { return bmp_rgb{(unsigned char)(40 * x + 1), (unsigned char)(40 * y + 1), 7}; };
    // Width 3: 9 bytes of pixels and 3 of padding a row, the padding not black.
    put("pics:three", bmp_bytes(3, 3, pixel, 0xEE));
    EXPECT_EQ(load(-101, 10, 20, 0, "pics:three"), 1);
    EXPECT_EQ(width * 10 + height, 33);
    for (int y = 0; y < 3; y++)
        for (int x = 0; x < 3; x++) EXPECT_EQ(at(px_at(rgb_array, 10 + x, 20 + y), 4), rgba(pixel(x, y), 255)) << x << y;
    EXPECT_EQ(lit_pixels(1), rect_pixels(10, 20, 3, 3));

    // Width 4: no padding; the texture is packed at three bytes a pixel.
    put("pics:four", bmp_bytes(4, 2, pixel, 0xEE));
    EXPECT_EQ(load(-100, 61, 0, 0, "pics:four"), 1);
    int w, h;
    std::vector<unsigned char> px = texels(61, 0, &w, &h);
    ASSERT_EQ(w * 10 + h, 42);
    for (int y = 0; y < 2; y++)
        for (int x = 0; x < 4; x++) {
            EXPECT_EQ(at(rgb_array + (y * 4 + x) * 3, 3), at(&rgba(pixel(x, y), 0)[0], 3));
            EXPECT_EQ(at(&px[(y * 4 + x) * 4], 4), rgba(pixel(x, y), 255));
        }
    EXPECT_EQ(tex_parameter(61, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(tex_parameter(61, GL_TEXTURE_WRAP_S), GL_REPEAT);
}

TEST_F(BitmapTest, MagentaIsSkippedOnThePanelKeyedOutOrKeptOnTextures)
{
    const bmp_rgb red = {255, 0, 0}, blue = {0, 0, 255}, near = {255, 0, 254};
    const bmp_rgb row[4] = {red, magenta, magenta, blue};
    put("pics:row", bmp_bytes(4, 1, [&](int x, int) { return row[x]; }));
    mnw.win_x = 200;   // the panel position is window-relative
    mnw.win_y = 198;
    unsigned char* kept = rgb_array + (258 * 800 + 251) * 4;
    kept[0] = 1, kept[1] = 2, kept[2] = 3, kept[3] = 200;
    EXPECT_EQ(load(-101, 50, 60, 0, "pics:row"), 1);
    EXPECT_EQ(at(px_at(rgb_array, 250, 258), 4), rgba(red, 255));
    EXPECT_EQ(at(px_at(rgb_array, 251, 258), 4), (std::vector<unsigned char>{1, 2, 3, 200}));
    EXPECT_EQ(at(px_at(rgb_array, 252, 258), 4), (std::vector<unsigned char>{0, 0, 0, 0}));
    EXPECT_EQ(at(px_at(rgb_array, 253, 258), 4), rgba(blue, 255));

    const bmp_rgb square[4] = {magenta, red, near, magenta};
    put("pics:square", bmp_bytes(2, 2, [&](int x, int y) { return square[2 * y + x]; }));
    EXPECT_EQ(load(-100, 63, 0, -105, "pics:square"), 1);
    EXPECT_EQ(tex_parameter(63, GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    EXPECT_EQ(load(-100, 155, 0, -105, "pics:square"), 1);
    EXPECT_EQ(tex_parameter(155, GL_TEXTURE_MIN_FILTER), GL_NEAREST);   // the font atlases stay sharp
    EXPECT_EQ(load(-100, 65, 0, 0, "pics:square"), 1);
    int w, h;
    std::vector<unsigned char> keyed = texels(155, 0, &w, &h), plain = texels(65, 0, &w, &h);
    for (int n = 0; n < 4; n++) {
        const std::vector<unsigned char> keyed_out = {0, 0, 0, 0};
        EXPECT_EQ(at(&keyed[4 * n], 4), n == 0 || n == 3 ? keyed_out : rgba(square[n], 255)) << n;
        EXPECT_EQ(at(&plain[4 * n], 4), rgba(square[n], 255)) << n;
    }
}

// The truncated mean of each two by two block of an RGB level.
static std::vector<int> halved(const std::vector<int>& level, int w, int h)
{
    std::vector<int> next((size_t)(w / 2) * (h / 2) * 3);
    for (int y = 0; y < h / 2; y++)
        for (int x = 0; x < w / 2; x++)
            for (int k = 0; k < 3; k++) {
                auto src = [&](int sx, int sy) { return level[(sy * w + sx) * 3 + k]; };
                next[(y * (w / 2) + x) * 3 + k] =
                    (src(2 * x, 2 * y) + src(2 * x + 1, 2 * y) + src(2 * x, 2 * y + 1) + src(2 * x + 1, 2 * y + 1)) / 4;
            }
    return next;
}

TEST_F(BitmapTest, NonSquareMipmapWarnsAndStopsWhenOneSideIsOne)
{
    auto pixel = [](int x, int y) {
        return bmp_rgb{(unsigned char)((x * 37 + y * 11) & 0xFF), (unsigned char)(x * 4), (unsigned char)(255 - y * 7)};
    };
    const std::string file = put("pics:wide", bmp_bytes(64, 32, pixel));
    ::testing::internal::CaptureStderr();
    platform_push_key_code(0x0D);   // Return closes the warning, and the load goes on
    EXPECT_EQ(load(-100, 57, 0, -104, "pics:wide"), 1);
    const std::string shown = ::testing::internal::GetCapturedStderr();
    const std::string l2 = "You have defined a NON-SQUARE texture for minification!";
    const std::string l3 = "NON-SQUARE textures are fine for everything but minified files!";
    EXPECT_NE(shown.find("WHOA!\n\n" + l2 + "\n\n" + l3 + "\n\n" + file), std::string::npos) << shown;
    EXPECT_EQ(last_line_of("Error.out").rfind(log_start("WHOA!", l2, l3, file), 0), 0u);

    std::vector<int> expected;
    for (int y = 0; y < 32; y++)
        for (int x = 0; x < 64; x++) expected.insert(expected.end(), {pixel(x, y).r, pixel(x, y).g, pixel(x, y).b});
    int w = 64, h = 32;
    for (int level = 0; level <= 5; level++) {
        int tw, th;
        std::vector<unsigned char> px = texels(57, level, &tw, &th);
        ASSERT_EQ(tw * 100 + th, w * 100 + h) << "level " << level;
        int wrong = 0;
        for (int n = 0; n < w * h; n++)
            for (int k = 0; k < 3; k++) wrong += px[4 * n + k] != expected[3 * n + k];
        EXPECT_EQ(wrong, 0) << "level " << level;
        expected = halved(expected, w, h);
        w /= 2;
        h /= 2;
    }
    int tw, th;
    texels(57, 6, &tw, &th);
    EXPECT_EQ(tw, 0);   // no level past the one with a side of 1
    EXPECT_EQ(tex_parameter(57, GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
    EXPECT_EQ(tex_parameter(57, GL_TEXTURE_WRAP_T), GL_CLAMP);

    // A square one goes down to 1 by 1 without a word.
    put("pics:square", bmp_bytes(8, 8, pixel));
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(load(-100, 2001, 0, -104, "pics:square"), 1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    texels(2001, 3, &tw, &th);
    EXPECT_EQ(tw * 10 + th, 11);
    EXPECT_EQ(tex_parameter(2001, GL_TEXTURE_WRAP_S), GL_REPEAT);
}

TEST_F(BitmapTest, ScaleHalvesWhileThePictureExceedsTheTextureLimit)
{
    auto pixel = [](int x, int y) { return bmp_rgb{(unsigned char)x, (unsigned char)y, (unsigned char)(x >> 8 | (y >> 8) << 1)}; };
    put("pics:large", bmp_bytes(512, 512, pixel));
    max_texture_size_override = 512;
    EXPECT_EQ(load(-100, 67, 0, 0, "pics:large"), 1);
    EXPECT_EQ(width * 10000 + height, 5120512);

    max_texture_size_override = 256;
    EXPECT_EQ(load(-100, 67, 0, 0, "pics:large"), 1);
    EXPECT_EQ(width * 10000 + height, 2560256);
    int w, h;
    std::vector<unsigned char> px = texels(67, 0, &w, &h);
    ASSERT_EQ(w * 10000 + h, 2560256);
    int wrong = 0;   // of each two by two block the last pixel read survives
    for (int y = 0; y < 256; y++)
        for (int x = 0; x < 256; x++) wrong += at(&px[(y * 256 + x) * 4], 4) != rgba(pixel(2 * x + 1, 2 * y + 1), 255);
    EXPECT_EQ(wrong, 0);

    put("pics:wide", bmp_bytes(1024, 512, pixel));
    max_texture_size_override = 256;
    EXPECT_EQ(load(-100, 67, 0, 0, "pics:wide"), 1);
    EXPECT_EQ(width * 10000 + height, 2560128);
}

TEST_F(BitmapTest, NamesBecomePathsBelowTheProgramFolderOnce)
{
    put("pics:solid", bmp_bytes(2, 2, grey));
    EXPECT_EQ(load(-100, 69, 0, 0, "pics:solid"), 1);
    EXPECT_EQ(load(-100, 69, 0, 0, root + "pics:solid"), 1);   // app_path already there
    EXPECT_EQ(width * 10 + height, 22);
    write_bytes(root + "pics/lower.bmp", bmp_bytes(2, 2, grey));
    EXPECT_EQ(load(-100, 69, 0, 0, "pics:lower"), 0);   // the extension is ".BMP" exactly
    EXPECT_EQ(width * 10 + height, 44);
}

TEST_F(BitmapTest, ScreenPanelIsBakedAndDrawnPixelForPixel)
{
    put("Norsuite Resources:bitmaps:TileFrgr:TF_MAP", bmp_bytes(800, 600, panel_pixel));
    msc.screen = 200;
    mnw.win_id = 996;
    mnw.win_x = 200;
    mnw.mouse_click = mnw.mouse_down = 1;
    mnw.open_menu = 3;
    MACIBM_startwind(0);
    EXPECT_EQ(mnw.win_id, 0);
    EXPECT_EQ(mnw.win_x + mnw.win_y, 0.0f);
    EXPECT_EQ(mnw.win_w * 1000 + mnw.win_h, 800600.0f);
    EXPECT_EQ(mnw.mouse_click + mnw.mouse_down + to_array, 0);
    EXPECT_EQ(mnw.open_menu, -1);

    int w, h;
    std::vector<unsigned char> corner = texels(534, 0, &w, &h);   // column 6, row 4
    ASSERT_EQ(w * 1000 + h, 128128);
    EXPECT_EQ(at(&corner[(87 * 128 + 31) * 4], 4), rgba(panel_pixel(799, 599), 255));
    EXPECT_EQ(tex_parameter(534, GL_TEXTURE_MAG_FILTER), GL_NEAREST);

    OGL_plot_background();
    std::vector<unsigned char> frame = grab_back_buffer();
    int wrong = 0;
    for (int y = 0; y < canvas_h; y++)
        for (int x = 0; x < canvas_w; x++) {
            const bmp_rgb c = panel_pixel(x, y);
            const unsigned char* p = px_at(frame.data(), x, y);
            wrong += p[0] != c.r || p[1] != c.g || p[2] != c.b;
        }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(at(px_at(frame.data(), 799, 599), 3), at(&corner[(87 * 128 + 31) * 4], 3));
}

TEST_F(BitmapTest, ModalWindowFrameStandsOverTheScreenLeftBehind)
{
    reset_drawing_state(1.0f);   // the screen below: all blue
    MACIBM_startwind(996);
    EXPECT_EQ(mnw.win_x * 1000 + mnw.win_y, 200198.0f);
    EXPECT_EQ(mnw.win_w * 1000 + mnw.win_h, 400195.0f);
    OGL_plot_background();
    std::vector<unsigned char> frame = grab_back_buffer();
    auto rgb = [&](int x, int y) { return at(px_at(frame.data(), x, y), 3); };
    EXPECT_EQ(rgb(10, 10), (std::vector<unsigned char>{0, 0, 255}));
    EXPECT_EQ(rgb(193, 300), (std::vector<unsigned char>{0, 0, 255}));
    EXPECT_EQ(rgb(300, 300), (std::vector<unsigned char>{153, 153, 153}));   // the face, colour 12
    EXPECT_EQ(rgb(196, 300), (std::vector<unsigned char>{102, 102, 102}));   // the border, colour 18
    EXPECT_EQ(rgb(230, 398), (std::vector<unsigned char>{51, 51, 51}));      // an engraved title line
    EXPECT_EQ(rgb(230, 397), (std::vector<unsigned char>{153, 153, 153}));
    EXPECT_EQ(px_at(rgb_array, 10, 10)[3], 0);

    const int origins[3][3] = {{997, 250, 245}, {998, 240, 52}, {999, 240, 52}};
    for (const auto& o : origins) {
        MACIBM_startwind(o[0]);
        EXPECT_EQ(mnw.win_x * 1000 + mnw.win_y, o[1] * 1000.0f + o[2]) << o[0];
    }
    use_blend = 1;   // a stretched panel is filtered and clamped
    load_rgbarray_into_baktex(0);
    EXPECT_EQ(tex_parameter(500, GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    EXPECT_EQ(tex_parameter(500, GL_TEXTURE_WRAP_S), GL_CLAMP);
}

TEST_F(BitmapTest, PaintRebakesTheCurrentWindowAndDestroyReturnsToTheScreen)
{
    put("Norsuite Resources:bitmaps:TileFrgr:TF_APT", bmp_bytes(800, 600, panel_pixel));
    msc.screen = 202;
    const int kept_first_update = have_done_first_update;
    have_done_first_update = 0;
    mnw.open_menu = 2;
    IBM_handlewin(mnw.hwnd, msg_paint, 0, 0);
    EXPECT_EQ(have_done_first_update, 1);
    EXPECT_EQ(mnw.open_menu, -1);
    int w, h;
    EXPECT_EQ(at(&texels(534, 0, &w, &h)[(87 * 128 + 31) * 4], 4), rgba(panel_pixel(799, 599), 255));

    MACIBM_startwind(997);
    EXPECT_EQ(at(&texels(534, 0, &w, &h)[(87 * 128 + 31) * 4], 4), (std::vector<unsigned char>{0, 0, 0, 0}));
    IBM_handlewin(mnw.hwnd, msg_paint, 0, 0);   // a repaint keeps the window
    EXPECT_EQ(mnw.win_id, 997);
    IBM_handlewin(mnw.hwnd, msg_destroy, 0, 0);
    EXPECT_EQ(mnw.win_id, 0);
    EXPECT_EQ(mnw.win_x + mnw.win_y, 0.0f);
    EXPECT_EQ(at(&texels(534, 0, &w, &h)[(87 * 128 + 31) * 4], 4), rgba(panel_pixel(799, 599), 255));
    have_done_first_update = kept_first_update;
}

TEST_F(BitmapTest, EachFrameDrawsThePanelFirst)
{
    MACIBM_restart_pump();
    const int kept_first_update = have_done_first_update;
    have_done_first_update = 1;
    reset_drawing_state(1.0f);   // the screen below: all blue
    MACIBM_startwind(996);
    mnw.mouse_x = mnw.mouse_y = 0;   // the drawn pointer lies off the probes
    MACIBM_event_proc();
    std::vector<unsigned char> frame = grab_back_buffer();
    have_done_first_update = kept_first_update;
    EXPECT_EQ(at(px_at(frame.data(), 196, 300), 3), (std::vector<unsigned char>{102, 102, 102}));
    EXPECT_EQ(at(px_at(frame.data(), 10, 10), 3), (std::vector<unsigned char>{0, 0, 255}));
}
