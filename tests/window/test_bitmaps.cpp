// Every alert of a bitmap load, each shown on the real window and closed with
// Return. (Pixels of a load are tested without a window, in test_bitmap_load.)
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

static bmp_rgb grey(int, int) { return {128, 128, 128}; }

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

    // The statement shows the alert, answered with Return, and ends the
    // process with status 0; on standard error the first line, then the file.
    void expect_fatal(const std::function<void()>& statement, const std::string& first, const std::string& file)
    {
        expect_alert(first);
        EXPECT_EXIT((platform_push_key_code(0x0D), statement()), ::testing::ExitedWithCode(0),
                    literal(first) + ".*" + literal(file));
    }
};

TEST_F(BitmapTest, BadHeadersShortFilesAndPicturesPastTheLimitsAreFatal)
{
    const std::string ok = bmp_bytes(4, 4, grey);
    auto with = [](int at, unsigned value, int size, std::string b) { put_le(b, at, value, size); return b; };
    // The alert's first line, and whether it names the file. The header's
    // checks; a file cut in the header, or in the last row, which holds one
    // pixel of four; past the scratch area at four bytes a pixel when keyed. On
    // the panel, in a window at x 200, 200 + 400 + 200 fits exactly; one more does not.
    const struct { std::string bytes; int mode, x, kind; const char* first; bool names_file; } cases[] = {
        {with(0, 'P', 1, ok), -100, 61, 0, "Trying to read a texture bitmap that is not a bitmap", true},
        {with(18, 1025, 4, ok), -100, 61, 0, "Bitmap too wide! (max is 1024)", true},
        {with(28, 32, 2, ok), -100, 61, 0, "Wrong bitmap color depth for texture!", true},
        {with(30, 1, 4, ok), -100, 61, 0, "Bitmap is compressed!", true},
        {with(22, -4u, 4, ok), -100, 61, 0, "Bitmap has no pixels!", true},
        {ok.substr(0, 40), -100, 61, 0, "File-scanning error!", true},
        {ok.substr(0, 54 + 3 * 12 + 3), -101, 0, 0, "File-scanning error!", true},
        {bmp_bytes(1024, 512, grey), -100, 61, -105, "OGL_texbmp data out of bounds!", true},
        {bmp_bytes(4, 12, grey), -100, 61, 0, "Trying to read a texture that is not a power of 2!", true},
        {bmp_bytes(200, 10, grey), -101, 401, 0, "OGL_texbmp out of bounds!", false}};
    mnw.win_x = 200;
    for (const auto& c : cases) {
        const std::string file = put("pics:bad", c.bytes);
        expect_fatal([&] { load(c.mode, c.x, 0, c.kind, "pics:bad"); }, c.first, c.names_file ? file : "");
    }
    EXPECT_EQ(load(-101, 400, 0, 0, "pics:bad"), 1);
    // A missing panel is fatal, where a missing texture is white.
    msc.screen = 201;
    expect_fatal([] { MACIBM_startwind(0); }, "Can't open bitmap!", root + "Norsuite Resources/bitmaps/TileFrgr/TF_OBS.BMP");
}
