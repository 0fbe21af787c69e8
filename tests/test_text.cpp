// Text and numbers drawn into rgb_array, where each character is its 5 by 7
// pattern stamped at its place, and on OpenGL, where each is a quad of its
// font's atlas cell.
#include "drawn.h"
#include "window_fixture.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <string>

struct TextTest : ::testing::Test {
    void SetUp() override { OGL_assign_colortable(), mnw.win_x = mnw.win_y = 0; }
};

struct placed { int c, x, y; };

// The pixels of single characters, each standing on its (x, y).
static pixel_set stamps(std::initializer_list<placed> chars, pixel_set s = {})
{
    for (const placed& p : chars) s = stamped(std::string(1, (char)p.c).c_str(), p.x, p.y, 6, s);
    return s;
}

static pixel_set baked_number(float value, int digits, int decimals, float spacing, int signed_flag,
                              float x = 100, float y = 50)
{
    return baked([&] { OGL_number(7, x, y, value, digits, decimals, spacing, signed_flag, 101); });
}

TEST_F(TextTest, NumberFieldShowsLeadingZerosTheStopAndCommas)
{
    EXPECT_EQ(baked_number(7, 3, 0, 6, 0), stamped("007", 100, 50, 6));
    EXPECT_EQ(std::vector<int>(px_at(rgb_array, 101, 56), px_at(rgb_array, 101, 56) + 3), (std::vector<int>{0, 255, 0}));   // values are pure green
    // The stop half a step right of the digit before the units and one unit
    // lower; half rounds up on the scaled value.
    EXPECT_EQ(baked_number(0.125f, 3, 2, 6, 0), stamped(".", 103, 49, 6, stamped("013", 100, 50, 6)));
    // Separators only at spacing 10, and only where the field reaches that place.
    EXPECT_EQ(baked_number(1234567, 7, 0, 10, 0), stamped(",     ,", 105, 50, 5, stamped("1234567", 100, 50, 10)));
    EXPECT_EQ(baked_number(1234.5f, 5, 1, 10, 0), stamps({{',', 105, 50}, {'.', 135, 49}}, stamped("12345", 100, 50, 10)));
    EXPECT_EQ(baked_number(123, 3, 0, 10, 0), stamped("123", 100, 50, 10));
    EXPECT_EQ(baked_number(1234, 4, 0, 6, 0), stamped("1234", 100, 50, 6));
    // Eight places at most: the top one is not reduced, so 12 there shows as 0.
    EXPECT_EQ(baked_number(123456792.0f, 8, 0, 6, 0), stamped("03456792", 100, 50, 6));
    EXPECT_EQ(baked_number(10000000, 8, 0, 6, 0), stamped("10000000", 100, 50, 6));   // 100.00000 degrees
}

TEST_F(TextTest, NumberTooWideForItsFieldShowsTheShortFormAndTheSignSixLeft)
{
    auto short_form = [](const char* mxe) { return stamped(".", 103, 49, 6, stamped(mxe, 100, 50, 6)); };
    EXPECT_EQ(baked_number(123456, 5, 3, 6, 0), short_form("12x5"));   // decimals play no part
    EXPECT_EQ(baked_number(999.6f, 3, 0, 6, 0), short_form("10x3"));
    EXPECT_EQ(baked_number(1e12f, 3, 0, 6, 0), short_form("10x0"));    // exponent 12 shows 0
    EXPECT_EQ(baked_number(999.4f, 3, 0, 6, 0), stamped("999", 100, 50, 6));
    // The sign only when asked for and not rounded away, six left whatever the spacing.
    EXPECT_EQ(baked_number(-0.004f, 3, 2, 6, 1), stamped(".", 103, 49, 6, stamped("000", 100, 50, 6)));
    EXPECT_EQ(baked_number(-5, 1, 0, 6, 0), stamped("5", 100, 50, 6));
    EXPECT_EQ(baked_number(-123456, 3, 0, 6, 1), stamped("-", 94, 50, 6, short_form("12x5")));
    mnw.win_x = 20;   // start rounded to a whole unit after the origin is added
    EXPECT_EQ(baked_number(-5, 1, 0, 10, 1, 79.6f, 49.5f), stamped("- 5", 94, 50, 3));
}

// ---- on OpenGL ----------------------------------------------------------------------------------

using TextAtlas = WindowTest;

// One vertex as fed back: window x, y and texture s, t, in 1/256 units
// (positions) and texels of a 256 atlas (coordinates), exact for all of them.
using fed_vertex = std::array<long, 4>;

// The vertices that a drawing sends down the pipeline, without repeats (a
// quad may come back as two triangles that share two corners).
template <typename F>
static std::set<fed_vertex> fed_back(F draw)
{
    static GLfloat buf[1 << 16];
    glFeedbackBuffer(sizeof buf / sizeof buf[0], GL_3D_COLOR_TEXTURE, buf);
    glRenderMode(GL_FEEDBACK);
    draw();
    const int n = glRenderMode(GL_RENDER);
    EXPECT_GE(n, 0) << "feedback buffer overflow";
    std::set<fed_vertex> out;
    for (int k = 0; k < n;) {
        const int token = (int)buf[k++];
        EXPECT_EQ(token, GL_POLYGON_TOKEN);
        if (token != GL_POLYGON_TOKEN) break;
        const int count = (int)buf[k++];
        for (int v = 0; v < count; v++, k += 3 + 4 + 4)   // position, colour, texture
            out.insert({std::lround(buf[k] * 256), std::lround(buf[k + 1] * 256), std::lround(buf[k + 7] * 256),
                        std::lround(buf[k + 8] * 256)});
    }
    return out;
}

// The atlas quads of glyphs, each given as x, y, column, row and atlas size:
// the cell at column, row of 6 by 22 texels, its glyph 5 by 20, on the canvas
// from (x, y - 2) to (x + 5, y + 8).
static std::set<fed_vertex> quads(std::initializer_list<std::array<float, 5>> glyphs)
{
    std::set<fed_vertex> s;
    for (const auto& [x, y, column, row, atlas] : glyphs) {
        const long k = std::lround(256 / atlas);   // texels of the 256 grid per atlas texel
        const long s0 = std::lround(column) * 6 * k, t0 = std::lround(row) * 22 * k, s1 = s0 + 5 * k, t1 = t0 + 20 * k;
        const long left = std::lround(x * 256), right = std::lround((x + 5) * 256);
        const long bottom = std::lround((y - 2) * 256), top = std::lround((y + 8) * 256);
        s.insert({{left, bottom, s0, t0}, {left, top, s0, t1}, {right, top, s1, t1}, {right, bottom, s1, t0}});
    }
    return s;
}

TEST_F(TextAtlas, AtlasQuadOfEachFontAndMap)
{
    // Cells 21 a row. The general map: digits from cell 1, capitals and small
    // letters taking turns from 11 ('A' 11, 'z' 62), the others from 63 in the
    // order !@#$%^&*()-_+=[]|\':;<.>,?/` ('!' 63, '-' 73, '/' 89, '`' 90);
    // '"' and '~' have no cell of their own. Font 103 stands 21 columns further
    // right. The digit map of font 104: digits from 91, then . , - _ (98, 101,
    // 104), and no cell for 'A'.
    const struct { int font; char c; float column, row, atlas; } cases[] = {
        {101, 'A', 11, 0, 128}, {100, 'z', 20, 2, 128}, {101, '0', 1, 0, 128}, {101, '!', 0, 3, 128},
        {101, '-', 10, 3, 128}, {101, '`', 6, 4, 128}, {101, '"', 0, 0, 128}, {101, '~', 0, 0, 128},
        {102, '/', 5, 4, 256}, {103, '5', 27, 0, 256}, {104, '7', 14, 4, 256}, {104, '.', 17, 4, 256},
        {104, '_', 20, 4, 256}, {104, 'A', 0, 0, 256}};
    mnw.win_x = 50, mnw.win_y = 100;
    for (const auto& a : cases) {
        const char text[2] = {a.c, 0};   // the start rounded to 150, 301
        EXPECT_EQ(fed_back([&] { OGL_string(7, 100.4f, 200.6f, text, 999, 6, a.font); }),
                  quads({{150, 301, a.column, a.row, a.atlas}})) << a.font << " " << a.c;
        // Fonts 100 and 101 are cut from texture 154, 102 and 103 from 156; 104 keeps what is bound.
        EXPECT_EQ(([] { GLint t; glGetIntegerv(GL_TEXTURE_BINDING_2D, &t); return t; })(), a.atlas == 128 ? 154 : 156) << a.font;
    }
    // One quad a character, spaces skipped; a number's stop lands between units
    // on OpenGL; '.' is cell 85.
    EXPECT_EQ(fed_back([] { OGL_string(7, 100, 201, "a b", 999, 6, 101); }),
              quads({{150, 301, 12, 0, 128}, {162, 301, 14, 0, 128}}));
    EXPECT_EQ(fed_back([] { OGL_number(7, 100, 200, 12.5f, 3, 1, 5, 0, 101); }),
              quads({{150, 300, 2, 0, 128}, {157.5f, 299, 1, 4, 128}, {155, 300, 3, 0, 128}, {160, 300, 6, 0, 128}}));
}
