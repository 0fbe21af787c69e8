// The bitmap loader: a picture read into the panel buffer rgb_array lands
// pixel for pixel at its place; every fault of a file is fatal and names it.
#include "bitmap_files.h"
#include "hl/Hl_graph.h"
#include "world_fixture.h"

#include <cstdlib>
#include <cstring>
#include <vector>

class BitmapLoad : public WorldTest {
protected:
    int width = 0, height = 0;
    int load(int mode, int id_or_x, int y, const char* name)
    {
        return OGL_texbmp(mode, id_or_x, y, 0, name, &width, &height, 1.0f);
    }
};

static std::vector<int> rgba_at(int x, int y)
{
    const unsigned char* p = rgb_array + (y * canvas_w + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

TEST_F(BitmapLoad, PanelRowsLandBottomUpAndMagentaLeavesWhatWasThere)
{
    // Width 3: 9 bytes of pixels and 3 of padding a row, the padding not black;
    // the middle pixel magenta.
    auto pixel = [](int x, int y) {
        if (x == 1 && y == 1) return bmp_rgb{255, 0, 255};
        return bmp_rgb{(unsigned char)(40 * x + 1), (unsigned char)(40 * y + 1), 7};
    };
    write_file("pics/three.BMP", bmp_bytes(3, 3, pixel, 0xEE));
    std::memset(rgb_array, 0, sizeof rgb_array);
    std::memcpy(rgb_array + (21 * canvas_w + 11) * 4, "\x01\x02\x03\xC8", 4);   // a pixel written before
    ASSERT_EQ(load(-101, 10, 20, "pics:three"), 1);
    EXPECT_EQ(width * 10 + height, 33);
    // The corners; the middle as it was; the padding is not a pixel.
    const struct { int x, y; std::vector<int> rgba; } pixels[] = {
        {10, 20, {1, 1, 7, 255}}, {12, 20, {81, 1, 7, 255}}, {10, 22, {1, 81, 7, 255}}, {12, 22, {81, 81, 7, 255}},
        {11, 21, {1, 2, 3, 200}}, {13, 20, {0, 0, 0, 0}}};
    for (const auto& p : pixels) EXPECT_EQ(rgba_at(p.x, p.y), p.rgba) << p.x << "," << p.y;
}

// 1024 by 1024 at three bytes a pixel is more than the 1920000 bytes of the
// scratch area: the load stops at the first pixel that would pass its end, so
// the rest of rgb_array (and what lies behind it) is never written.
TEST_F(BitmapLoad, TexturePastTheScratchAreaIsFatalBeforeAByteLandsBehindIt)
{
    write_file("pics/big.BMP", bmp_bytes(1024, 1024, [](int, int) { return bmp_rgb{128, 128, 128}; }));
    const int scratch_end = canvas_w * canvas_h * 4;
    std::memset(rgb_array + scratch_end, 0x5A, rgb_page_bytes - scratch_end);
    auto load_and_check_tail = [this] {
        alert_watcher = [](const char*, const char*, const char*, const char*, int) -> int {
            for (int k = canvas_w * canvas_h * 4; k < rgb_page_bytes; k++)
                if (rgb_array[k] != 0x5A) std::_Exit(3);
            std::_Exit(0);
        };
        load(-100, 61, 0, "pics:big");
    };
    EXPECT_FATAL_ALERT(load_and_check_tail(), "OGL_texbmp data out of bounds!");
}

TEST_F(BitmapLoad, BadHeadersShortFilesAndPicturesPastTheLimitsAreFatal)
{
    const std::string ok = bmp_bytes(4, 4, [](int, int) { return bmp_rgb{128, 128, 128}; });
    auto with = [](int at, unsigned value, int size, std::string b) { put_le(b, at, value, size); return b; };
    auto grey = [](int w, int h) { return bmp_bytes(w, h, [](int, int) { return bmp_rgb{128, 128, 128}; }); };
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
        {grey(1024, 512), -100, 61, -105, "OGL_texbmp data out of bounds!", true},
        {grey(4, 12), -100, 61, 0, "Trying to read a texture that is not a power of 2!", true},
        {grey(200, 10), -101, 401, 0, "OGL_texbmp out of bounds!", false}};
    mnw.win_x = 200;
    for (const auto& c : cases) {
        write_file("pics/bad.BMP", c.bytes);
        EXPECT_FATAL_ALERT(OGL_texbmp(c.mode, c.x, 0, c.kind, "pics:bad", &width, &height, 1.0f), c.first);
        EXPECT_TRUE(log_begins(c.first));
        EXPECT_EQ(last_log_line().find(root + "pics/bad.BMP") != std::string::npos, c.names_file) << c.first;
    }
    EXPECT_EQ(load(-101, 400, 0, "pics:bad"), 1);
    // At a scale of 2 it reaches twice as far: from 200 + 201 it passes the edge.
    EXPECT_FATAL_ALERT(OGL_texbmp(-101, 201, 0, 0, "pics:bad", &width, &height, 2.0f), "OGL_texbmp out of bounds!");
    EXPECT_FATAL_ALERT(load(-101, 0, 591, "pics:bad"), "OGL_texbmp out of bounds!");   // 10 rows from 591 pass the top
    // A missing panel is fatal, where a missing texture is white.
    msc.screen = 201;
    EXPECT_FATAL_ALERT(MACIBM_startwind(0), "Can't open bitmap!");
    EXPECT_NE(last_log_line().find(root + "Norsuite Resources/bitmaps/TileFrgr/TF_OBS.BMP"), std::string::npos);
}
