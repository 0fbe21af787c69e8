// Text and numbers on both targets: the 5 by 7 stamps in rgb_array, found
// character by character, and the atlas quads that OpenGL is sent.
#include "window_fixture.h"
#include "hl/Hl_funct.h"

#include <array>
#include <cmath>
#include <string>

using TextTest = WindowTest;

// ---- rgb_array -----------------------------------------------------------------------------

struct placed { int c, x, y; };

// The pixels of the characters' patterns, each standing on its (x, y).
static pixel_set stamps(std::initializer_list<placed> chars, pixel_set s = {})
{
    for (const placed& p : chars)
        for (int r = 0; r < 7; r++)
            for (int c = 0; c < 5; c++)
                if (glyph_rows(p.c)[r] & (0x10 >> c)) s.insert({p.x + c, p.y + 6 - r});
    return s;
}

// The characters of text from (x, y) on, advance apart; a space stamps nothing.
static pixel_set line(const char* text, int x, int y, int advance, pixel_set s = {})
{
    for (int k = 0; text[k]; k++) s = stamps({{text[k], x + k * advance, y}}, s);
    return s;
}

// Written pixels of rgb_array; with a colour given, only those of that colour.
static pixel_set array_pixels(int col = -1)
{
    pixel_set lit;
    for (int y = 0; y < canvas_h; y++)
        for (int x = 0; x < canvas_w; x++) {
            const unsigned char* p = px_at(rgb_array, x, y);
            int same = 1;
            for (int k = 0; k < 3 && col >= 0; k++) same &= p[k] == intround(col_rgb[col][k] * 255.0f);
            if (p[3] && same) lit.insert({x, y});
        }
    return lit;
}

template <typename F>
static pixel_set baked(F draw)
{
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    draw();
    to_array = 0;
    return array_pixels();
}

static pixel_set baked_string(const char* text, float x, float y, float wrap, float advance)
{
    return baked([&] { OGL_string(7, x, y, text, wrap, advance, 101); });
}

static pixel_set baked_number(float value, int digits, int decimals, float spacing, int signed_flag,
                              float x = 100, float y = 50)
{
    return baked([&] { OGL_number(7, x, y, value, digits, decimals, spacing, signed_flag, 101); });
}

TEST_F(TextTest, StringsStampThePatternsOfTheirCharacters)
{
    // The space stamps nothing; lower case is the capital; a character without
    // a pattern of its own takes the underscore's.
    EXPECT_EQ(baked_string("A% a\"\x80", 10, 20, 999, 6),
              stamps({{'A', 10, 20}, {'%', 16, 20}, {'A', 28, 20}, {'_', 34, 20}, {'_', 40, 20}}));
    for (int c : {0x22, 0x60, 0x7B, 0x7D, 0x7F, 0x0A, -56, 300})   // '"', '`', '{', '}' and outside
        EXPECT_EQ(0, std::memcmp(glyph_rows(c), glyph_rows('_'), 7)) << c;
    EXPECT_NE(0, std::memcmp(glyph_rows('|'), glyph_rows('_'), 7));   // the last with a pattern of its own

    // In the colour chosen, at the start rounded to a whole unit with the window origin added.
    mnw.win_x = 100, mnw.win_y = 50;
    EXPECT_EQ(baked([] { OGL_string(8, 10.5f, 20.4f, "A", 999, 6, 101); }), stamps({{'A', 111, 70}}));
    EXPECT_EQ(array_pixels(8), stamps({{'A', 111, 70}}));
}

TEST_F(TextTest, NumberFieldShowsLeadingZerosTheStopAndCommas)
{
    EXPECT_EQ(baked_number(7, 3, 0, 6, 0), line("007", 100, 50, 6));
    // The stop half a step right of the digit before the units and one unit
    // lower; half rounds up on the scaled value.
    EXPECT_EQ(baked_number(0.125f, 3, 2, 6, 0), line(".", 103, 49, 6, line("013", 100, 50, 6)));
    // Separators only at spacing 10, and only where the field reaches that place.
    EXPECT_EQ(baked_number(1234567, 7, 0, 10, 0), line(",     ,", 105, 50, 5, line("1234567", 100, 50, 10)));
    EXPECT_EQ(baked_number(1234.5f, 5, 1, 10, 0), stamps({{',', 105, 50}, {'.', 135, 49}}, line("12345", 100, 50, 10)));
    EXPECT_EQ(baked_number(123, 3, 0, 10, 0), line("123", 100, 50, 10));
    EXPECT_EQ(baked_number(1234, 4, 0, 6, 0), line("1234", 100, 50, 6));
    // Eight places at most: the top one is not reduced, so 12 there shows as 0.
    EXPECT_EQ(baked_number(123456792.0f, 8, 0, 6, 0), line("03456792", 100, 50, 6));
}

TEST_F(TextTest, NumberTooWideForItsFieldShowsTheShortFormAndTheSignSixLeft)
{
    auto short_form = [](const char* mxe) { return line(".", 103, 49, 6, line(mxe, 100, 50, 6)); };
    EXPECT_EQ(baked_number(123456, 5, 3, 6, 0), short_form("12x5"));   // decimals play no part
    EXPECT_EQ(baked_number(999.6f, 3, 0, 6, 0), short_form("10x3"));
    EXPECT_EQ(baked_number(1e12f, 3, 0, 6, 0), short_form("10x0"));    // exponent 12 shows 0
    EXPECT_EQ(baked_number(999.4f, 3, 0, 6, 0), line("999", 100, 50, 6));
    // The sign only when asked for and not rounded away, six left whatever the spacing.
    EXPECT_EQ(baked_number(-0.004f, 3, 2, 6, 1), line(".", 103, 49, 6, line("000", 100, 50, 6)));
    EXPECT_EQ(baked_number(-5, 1, 0, 6, 0), line("5", 100, 50, 6));
    EXPECT_EQ(baked_number(-123456, 3, 0, 6, 1), line("-", 94, 50, 6, short_form("12x5")));
    mnw.win_x = 20;   // start rounded to a whole unit after the origin is added
    EXPECT_EQ(baked_number(-5, 1, 0, 10, 1, 79.6f, 49.5f), line("- 5", 94, 50, 3));
}

TEST_F(TextTest, WrapBreaksBeforeAWordThatWouldPassTheEdgeAndAtNewlines)
{
    // Two two-letter words in a width of 12: the second goes 10 lower, back at the start.
    EXPECT_EQ(baked_string("ab cd", 50, 100, 12, 6), line("ab", 50, 100, 6, line("cd", 50, 90, 6)));
    // A word wider than the width breaks after every character until the rest fits.
    EXPECT_EQ(baked_string("abcdef", 50, 100, 12, 6),
              stamps({{'a', 50, 100}, {'b', 50, 90}, {'c', 50, 80}, {'d', 50, 70}}, line("ef", 50, 60, 6)));
    // The look-ahead counts 6 a character whatever the advance: after the space
    // "bc" ends at 20 + 12 = 32 and after "b" the "c" at 30 + 6 = 36, both
    // inside 38, though at an advance of 10 they reach 40.
    EXPECT_EQ(baked_string("a bc", 0, 100, 38, 10), line("a bc", 0, 100, 10));
    EXPECT_EQ(baked_string("a bc", 0, 100, 31, 10), line("a", 0, 100, 10, line("bc", 0, 90, 10)));
    // A newline breaks only while wrapping, below a width of 800, and never first;
    // after a character that already broke the line it breaks once more.
    EXPECT_EQ(baked_string("a\nb", 0, 100, 799, 6), line("a", 0, 100, 6, line("b", 0, 90, 6)));
    EXPECT_EQ(baked_string("a\nb", 0, 100, 800, 6), line("ab", 0, 100, 6));
    EXPECT_EQ(baked_string("\nab", 0, 100, 100, 6), line("ab", 0, 100, 6));
    EXPECT_EQ(baked_string("abc\nd", 0, 100, 12, 6), stamps({{'a', 0, 100}, {'b', 0, 90}, {'c', 0, 80}, {'d', 0, 60}}));
}

TEST_F(TextTest, TooltipHelpTextInTheBoxWrapsAtItsWidth)
{
    mnw.mouse_x = 500, mnw.mouse_y = 300;
    std::strcpy(mnw.tip, std::string(66, 'x').c_str());
    float x, y, w, h;
    MACIBM_tooltip_box(&x, &y, &w, &h);
    const int left = (int)x + 3, base = (int)(y + h) - 10;
    baked([] { MACIBM_draw_tooltip(); });
    // 66 characters need 396 units; 394 are free, so the first stands alone.
    pixel_set expected = stamps({{'x', left, base}});
    for (int k = 0; k < 65; k++) expected = stamps({{'x', left + 6 * k, base - 10}}, expected);
    EXPECT_EQ(array_pixels(78), expected);
}

// ---- OpenGL ------------------------------------------------------------------------------------

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

TEST_F(TextTest, AtlasQuadOfEachFontAndMap)
{
    // Cells 11 and 62; 63 and 90, the first and last of the others; '"' has
    // no cell of its own; cell 89, and cell 6 21 columns further right; the
    // digit map's cells 98 and 104, and none for 'A'.
    const struct { int font; char c; float column, row, atlas; } cases[] = {
        {101, 'A', 11, 0, 128}, {100, 'z', 20, 2, 128}, {101, '!', 0, 3, 128}, {101, '`', 6, 4, 128},
        {101, '"', 0, 0, 128}, {102, '/', 5, 4, 256}, {103, '5', 27, 0, 256}, {104, '7', 14, 4, 256},
        {104, '_', 20, 4, 256}, {104, 'A', 0, 0, 256}};
    mnw.win_x = 50, mnw.win_y = 100;
    for (const auto& a : cases) {
        const char text[2] = {a.c, 0};   // the start rounded to 150, 301
        EXPECT_EQ(fed_back([&] { OGL_string(7, 100.4f, 200.6f, text, 999, 6, a.font); }),
                  quads({{150, 301, a.column, a.row, a.atlas}})) << a.font << " " << a.c;
    }
    // One quad a character, spaces skipped; a number's stop lands between units
    // on OpenGL; '.' is cell 85.
    EXPECT_EQ(fed_back([] { OGL_string(7, 100, 201, "a b", 999, 6, 101); }),
              quads({{150, 301, 12, 0, 128}, {162, 301, 14, 0, 128}}));
    EXPECT_EQ(fed_back([] { OGL_number(7, 100, 200, 12.5f, 3, 1, 5, 0, 101); }),
              quads({{150, 300, 2, 0, 128}, {157.5f, 299, 1, 4, 128}, {155, 300, 3, 0, 128}, {160, 300, 6, 0, 128}}));
}

TEST_F(TextTest, TextStateAndAtlasBinding)
{
    auto bound = [] { GLint id; glGetIntegerv(GL_TEXTURE_BINDING_2D, &id); return id; };
    // The alpha test where a unit is a pixel, blending where the canvas is stretched.
    use_blend = 0;
    OGL_string(7, 0, 0, "a", 999, 6, 101);
    EXPECT_TRUE(bound() == 154 && glIsEnabled(GL_TEXTURE_2D) && glIsEnabled(GL_ALPHA_TEST) && !glIsEnabled(GL_BLEND));
    use_blend = 1;
    OGL_number(7, 0, 0, 1, 1, 0, 6, 0, 103);
    EXPECT_TRUE(bound() == 156 && glIsEnabled(GL_TEXTURE_2D) && !glIsEnabled(GL_ALPHA_TEST) && glIsEnabled(GL_BLEND));
    use_blend = 0;
    // Font 104 and, for numbers, font 100 draw from whatever is bound.
    OGL_bindtex(4321);
    OGL_string(7, 0, 0, "1", 999, 6, 104);
    OGL_number(7, 0, 0, 1, 1, 0, 6, 0, 100);
    EXPECT_EQ(bound(), 4321);
    OGL_string(7, 0, 0, "a", 999, 6, 100);
    EXPECT_EQ(bound(), 154);
    OGL_bindtex(0);
    EXPECT_EQ(glGetError(), (GLenum)GL_NO_ERROR);
}
