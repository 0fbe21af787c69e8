// Text and numbers on both targets: the 5 by 7 stamps in rgb_array, found
// character by character, and the atlas quads that OpenGL is sent.
#include "window_fixture.h"
#include "hl/Hl_funct.h"

#include <array>
#include <cmath>
#include <string>

using TextTest = WindowTest;

// ---- rgb_array -----------------------------------------------------------------------------

struct placed {
    int c;
    int x, y;
};

// The set pixels of seven rows (top first, bit 0x10 leftmost) standing on (x, y).
static pixel_set from_rows(const unsigned char* rows, int x, int y, pixel_set s = {})
{
    for (int r = 0; r < 7; r++)
        for (int c = 0; c < 5; c++)
            if (rows[r] & (0x10 >> c)) s.insert({x + c, y + 6 - r});
    return s;
}

static pixel_set stamps(std::initializer_list<placed> chars, pixel_set s = {})
{
    for (const placed& p : chars) s = from_rows(glyph_rows(p.c), p.x, p.y, s);
    return s;
}

static int has_colour(const unsigned char* p, int col)
{
    for (int k = 0; k < 3; k++)
        if (p[k] != intround(col_rgb[col][k] * 255.0f)) return 0;
    return 1;
}

// Written pixels of rgb_array; with a colour given, only those of that colour.
static pixel_set array_pixels(int col = -1)
{
    pixel_set lit;
    for (int y = 0; y < canvas_h; y++)
        for (int x = 0; x < canvas_w; x++) {
            const unsigned char* p = px_at(rgb_array, x, y);
            if (p[3] && (col < 0 || has_colour(p, col))) lit.insert({x, y});
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

TEST_F(TextTest, PatternsAsStamped)
{
    const unsigned char a_rows[7] = {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11};
    const unsigned char percent_rows[7] = {0x0F, 0x15, 0x16, 0x0A, 0x0D, 0x15, 0x12};
    const unsigned char four_rows[7] = {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02};
    const unsigned char backslash_rows[7] = {0x00, 0x10, 0x08, 0x04, 0x02, 0x01, 0x00};
    const unsigned char underscore_rows[7] = {0, 0, 0, 0, 0, 0, 0x1F};
    pixel_set expected = from_rows(a_rows, 10, 20);
    expected = from_rows(percent_rows, 16, 20, expected);
    expected = from_rows(four_rows, 22, 20, expected);
    expected = from_rows(backslash_rows, 34, 20, expected);   // the space stamps nothing
    expected = from_rows(a_rows, 40, 20, expected);           // lower case is the capital
    expected = from_rows(underscore_rows, 46, 20, expected);  // no pattern of its own
    expected = from_rows(underscore_rows, 52, 20, expected);
    EXPECT_EQ(baked_string("A%4 \\a\"\x80", 10, 20, 999, 6), expected);

    // In the colour chosen, at the start rounded to a whole unit with the window origin added.
    mnw.win_x = 100;
    mnw.win_y = 50;
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    OGL_string(8, 10.5f, 20.4f, "A", 999, 6, 101);
    to_array = 0;
    EXPECT_EQ(array_pixels(8), from_rows(a_rows, 111, 70));
    EXPECT_EQ(array_pixels(), array_pixels(8));

    for (int c = 'a'; c <= 'z'; c++)
        EXPECT_EQ(0, std::memcmp(glyph_rows(c), glyph_rows(c - 'a' + 'A'), 7)) << (char)c;
    std::string without_own;
    for (int c = 0x21; c <= 0x7C; c++)
        if (!(c >= 'a' && c <= 'z') && c != '_' && std::memcmp(glyph_rows(c), underscore_rows, 7) == 0)
            without_own += (char)c;
    EXPECT_EQ(without_own, "\"`{");
    for (int c : {0x7D, 0x7E, 0x7F, 0x01, 0x0A, -56, 300})
        EXPECT_EQ(0, std::memcmp(glyph_rows(c), underscore_rows, 7)) << c;
    const unsigned char blank[7] = {};
    EXPECT_EQ(0, std::memcmp(glyph_rows(' '), blank, 7));
}

TEST_F(TextTest, NumberFieldShowsLeadingZerosTheStopAndCommas)
{
    EXPECT_EQ(baked_number(7, 3, 0, 6, 0), stamps({{'0', 100, 50}, {'0', 106, 50}, {'7', 112, 50}}));
    // The stop half a step right of the units digit and one unit lower.
    EXPECT_EQ(baked_number(12.5f, 3, 1, 6, 0),
              stamps({{'1', 100, 50}, {'.', 109, 49}, {'2', 106, 50}, {'5', 112, 50}}));
    EXPECT_EQ(baked_number(0.125f, 3, 2, 6, 0),   // half rounds up on the scaled value
              stamps({{'0', 100, 50}, {'.', 103, 49}, {'1', 106, 50}, {'3', 112, 50}}));

    // Separators only at spacing 10, and only where the field reaches that place.
    EXPECT_EQ(baked_number(12345, 5, 0, 10, 0),
              stamps({{'1', 100, 50}, {',', 115, 50}, {'2', 110, 50}, {'3', 120, 50}, {'4', 130, 50}, {'5', 140, 50}}));
    EXPECT_EQ(baked_number(1234567, 7, 0, 10, 0),
              stamps({{'1', 100, 50}, {',', 105, 50}, {'2', 110, 50}, {'3', 120, 50}, {'4', 130, 50},
                      {',', 135, 50}, {'5', 140, 50}, {'6', 150, 50}, {'7', 160, 50}}));
    EXPECT_EQ(baked_number(1234.5f, 5, 1, 10, 0),
              stamps({{'1', 100, 50}, {',', 105, 50}, {'2', 110, 50}, {'3', 120, 50}, {'.', 135, 49},
                      {'4', 130, 50}, {'5', 140, 50}}));
    EXPECT_EQ(baked_number(12345, 5, 0, 6, 0),
              stamps({{'1', 100, 50}, {'2', 106, 50}, {'3', 112, 50}, {'4', 118, 50}, {'5', 124, 50}}));
    EXPECT_EQ(baked_number(123, 3, 0, 10, 0), stamps({{'1', 100, 50}, {'2', 110, 50}, {'3', 120, 50}}));

    // Eight places at most: the top one is not reduced, so 12 or 10 there shows as 0.
    EXPECT_EQ(baked_number(123456792.0f, 8, 0, 6, 0),
              stamps({{'0', 100, 50}, {'3', 106, 50}, {'4', 112, 50}, {'5', 118, 50}, {'6', 124, 50},
                      {'7', 130, 50}, {'9', 136, 50}, {'2', 142, 50}}));
    pixel_set zeros;
    for (int k = 0; k < 8; k++) zeros = stamps({{'0', 100 + 6 * k, 50}}, zeros);
    EXPECT_EQ(baked_number(1e8f, 8, 0, 6, 0), zeros);
}

TEST_F(TextTest, NumberTooWideForItsFieldShowsTheShortForm)
{
    auto short_form = [](char m1, char m2, char e) {
        return stamps({{'.', 103, 49}, {m1, 100, 50}, {m2, 106, 50}, {'x', 112, 50}, {e, 118, 50}});
    };
    EXPECT_EQ(baked_number(123456, 5, 0, 6, 0), short_form('1', '2', '5'));
    EXPECT_EQ(baked_number(999.6f, 3, 0, 6, 0), short_form('1', '0', '3'));
    EXPECT_EQ(baked_number(998.6f, 2, 0, 6, 0), short_form('9', '9', '2'));
    EXPECT_EQ(baked_number(123456, 5, 3, 6, 0), short_form('1', '2', '5'));   // decimals play no part
    EXPECT_EQ(baked_number(1e12f, 3, 0, 6, 0), short_form('1', '0', '0'));    // exponent 12 shows 0
    EXPECT_EQ(baked_number(999.4f, 3, 0, 6, 0), stamps({{'9', 100, 50}, {'9', 106, 50}, {'9', 112, 50}}));
}

TEST_F(TextTest, NumberSignSixLeftWhateverTheSpacing)
{
    EXPECT_EQ(baked_number(-0.004f, 3, 2, 6, 1),   // rounds to zero: no sign
              stamps({{'0', 100, 50}, {'.', 103, 49}, {'0', 106, 50}, {'0', 112, 50}}));
    EXPECT_EQ(baked_number(-5, 1, 0, 6, 0), stamps({{'5', 100, 50}}));
    EXPECT_EQ(baked_number(-5, 1, 0, 10, 1), stamps({{'-', 94, 50}, {'5', 100, 50}}));
    EXPECT_EQ(baked_number(-123456, 3, 0, 6, 1),
              stamps({{'-', 94, 50}, {'.', 103, 49}, {'1', 100, 50}, {'2', 106, 50}, {'x', 112, 50}, {'5', 118, 50}}));
    mnw.win_x = 20;   // start rounded to a whole unit after the origin is added
    EXPECT_EQ(baked_number(-5, 1, 0, 6, 1, 79.6f, 49.5f), stamps({{'-', 94, 50}, {'5', 100, 50}}));
}

TEST_F(TextTest, WrapBreaksBeforeAWordThatWouldPassTheEdge)
{
    // Two two-letter words in a width of 12: the second goes 10 lower, back at the start.
    EXPECT_EQ(baked_string("ab cd", 50, 100, 12, 6),
              stamps({{'a', 50, 100}, {'b', 56, 100}, {'c', 50, 90}, {'d', 56, 90}}));
    // A word wider than the width breaks after every character until the rest fits.
    EXPECT_EQ(baked_string("abcdef", 50, 100, 12, 6),
              stamps({{'a', 50, 100}, {'b', 50, 90}, {'c', 50, 80}, {'d', 50, 70}, {'e', 50, 60}, {'f', 56, 60}}));
    // The look-ahead counts 6 a character whatever the advance: after the space
    // "bc" ends at 20 + 12 = 32 and after "b" the "c" at 30 + 6 = 36, both
    // inside 38, though at an advance of 10 they reach 40.
    EXPECT_EQ(baked_string("a bc", 0, 100, 38, 10), stamps({{'a', 0, 100}, {'b', 20, 100}, {'c', 30, 100}}));
    EXPECT_EQ(baked_string("a bc", 0, 100, 31, 10), stamps({{'a', 0, 100}, {'b', 0, 90}, {'c', 10, 90}}));
    EXPECT_EQ(baked_string("ab cd", 50, 100, 999, 6),
              stamps({{'a', 50, 100}, {'b', 56, 100}, {'c', 68, 100}, {'d', 74, 100}}));
}

TEST_F(TextTest, NewlinesBreakOnlyWhenWrappingAndNeverFirst)
{
    EXPECT_EQ(baked_string("a\nb", 0, 100, 100, 6), stamps({{'a', 0, 100}, {'b', 0, 90}}));
    EXPECT_EQ(baked_string("a\nb", 0, 100, 799, 6), stamps({{'a', 0, 100}, {'b', 0, 90}}));
    // From 800 on no wrapping at all: the newline neither draws nor moves.
    EXPECT_EQ(baked_string("a\nb", 0, 100, 800, 6), stamps({{'a', 0, 100}, {'b', 6, 100}}));
    EXPECT_EQ(baked_string("\nab", 0, 100, 100, 6), stamps({{'a', 0, 100}, {'b', 6, 100}}));
    // A newline after a character that already broke the line breaks once more.
    EXPECT_EQ(baked_string("abc\nd", 0, 100, 12, 6),
              stamps({{'a', 0, 100}, {'b', 0, 90}, {'c', 0, 80}, {'d', 0, 60}}));
}

TEST_F(TextTest, TooltipHelpTextInTheBoxWrapsAtItsWidth)
{
    mnw.mouse_x = 500;
    mnw.mouse_y = 300;
    auto bake_tip = [](const std::string& tip, float* left, float* base) {
        std::strcpy(mnw.tip, tip.c_str());
        float x, y, w, h;
        MACIBM_tooltip_box(&x, &y, &w, &h);
        *left = x + 3;
        *base = y + h - 10;
        baked([] { MACIBM_draw_tooltip(); });
        return array_pixels(78);
    };
    float left, base;
    pixel_set help = bake_tip("Hi", &left, &base);
    EXPECT_EQ(help, stamps({{'H', (int)left, (int)base}, {'i', (int)left + 6, (int)base}}));

    // 66 characters need 396 units; 394 are free, so the first stands alone.
    help = bake_tip(std::string(66, 'x'), &left, &base);
    pixel_set expected = stamps({{'x', (int)left, (int)base}});
    for (int k = 0; k < 65; k++) expected = stamps({{'x', (int)left + 6 * k, (int)base - 10}}, expected);
    EXPECT_EQ(help, expected);
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
    const int per_vertex = 3 + 4 + 4;
    for (int k = 0; k < n;) {
        const int token = (int)buf[k++];
        EXPECT_EQ(token, GL_POLYGON_TOKEN);
        if (token != GL_POLYGON_TOKEN) break;
        const int count = (int)buf[k++];
        for (int v = 0; v < count; v++, k += per_vertex)
            out.insert({std::lround(buf[k] * 256), std::lround(buf[k + 1] * 256), std::lround(buf[k + 7] * 256),
                        std::lround(buf[k + 8] * 256)});
    }
    return out;
}

// The atlas quad of a glyph in the cell at column, row: 6 by 22 texels a cell,
// 5 by 20 the glyph, in an atlas of the given size, on the canvas from
// (x, y - 2) to (x + 5, y + 8).
static void add_quad(std::set<fed_vertex>& s, float x, float y, int column, int row, int atlas)
{
    const long k = 256 / atlas;   // texels of the 256 grid per atlas texel
    const long s0 = column * 6 * k, t0 = row * 22 * k, s1 = s0 + 5 * k, t1 = t0 + 20 * k;
    const long left = std::lround(x * 256), right = std::lround((x + 5) * 256);
    const long bottom = std::lround((y - 2) * 256), top = std::lround((y + 8) * 256);
    s.insert({{left, bottom, s0, t0}, {left, top, s0, t1}, {right, top, s1, t1}, {right, bottom, s1, t0}});
}

TEST_F(TextTest, AtlasQuadOfEachFontAndMap)
{
    struct atlas_case {
        int font;
        char c;
        int column, row, atlas;
    };
    const atlas_case cases[] = {
        {101, 'A', 11, 0, 128},   // cell 11
        {101, '9', 10, 0, 128},   // cell 10
        {100, 'z', 20, 2, 128},   // cell 62
        {101, '!', 0, 3, 128},    // cell 63, the first of the others
        {101, '`', 6, 4, 128},    // cell 90, the last
        {101, '"', 0, 0, 128},    // no cell of its own
        {101, '\xE9', 0, 0, 128},
        {102, '/', 5, 4, 256},    // cell 89
        {103, '5', 27, 0, 256},   // cell 6, 21 columns further right
        {103, 'z', 41, 2, 256},
        {104, '7', 14, 4, 256},   // digit map: cell 98
        {104, '-', 19, 4, 256},   // cell 103
        {104, '_', 20, 4, 256},   // cell 104
        {104, ':', 0, 0, 256},
        {104, 'A', 0, 0, 256},
    };
    mnw.win_x = 50;
    mnw.win_y = 100;
    for (const atlas_case& a : cases) {
        const char text[2] = {a.c, 0};
        std::set<fed_vertex> expected;
        add_quad(expected, 150, 301, a.column, a.row, a.atlas);   // start rounded to 150, 301
        EXPECT_EQ(fed_back([&] { OGL_string(7, 100.4f, 200.6f, text, 999, 6, a.font); }), expected)
            << a.font << " " << a.c;
    }

    // One quad a character, spaces skipped; a number's stop lands between units on OpenGL.
    std::set<fed_vertex> expected;
    add_quad(expected, 150, 301, 12, 0, 128);
    add_quad(expected, 162, 301, 14, 0, 128);
    EXPECT_EQ(fed_back([] { OGL_string(7, 100, 201, "a b", 999, 6, 101); }), expected);
    expected.clear();
    add_quad(expected, 150, 300, 2, 0, 128);
    add_quad(expected, 157.5f, 299, 1, 4, 128);   // '.' is cell 85
    add_quad(expected, 155, 300, 3, 0, 128);
    add_quad(expected, 160, 300, 6, 0, 128);
    EXPECT_EQ(fed_back([] { OGL_number(7, 100, 200, 12.5f, 3, 1, 5, 0, 101); }), expected);
}

static GLint bound_texture()
{
    GLint id;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &id);
    return id;
}

TEST_F(TextTest, TextStateAndAtlasBinding)
{
    use_blend = 0;
    OGL_string(7, 0, 0, "a", 999, 6, 101);
    EXPECT_EQ(bound_texture(), 154);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D) && glIsEnabled(GL_ALPHA_TEST) && !glIsEnabled(GL_BLEND));
    use_blend = 1;
    OGL_number(7, 0, 0, 1, 1, 0, 6, 0, 103);
    EXPECT_EQ(bound_texture(), 156);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D) && !glIsEnabled(GL_ALPHA_TEST) && glIsEnabled(GL_BLEND));
    use_blend = 0;
    // Font 104 and, for numbers, font 100 draw from whatever is bound.
    OGL_bindtex(4321);
    OGL_string(7, 0, 0, "1", 999, 6, 104);
    OGL_number(7, 0, 0, 1, 1, 0, 6, 0, 100);
    EXPECT_EQ(bound_texture(), 4321);
    OGL_string(7, 0, 0, "a", 999, 6, 100);
    EXPECT_EQ(bound_texture(), 154);
    OGL_bindtex(0);
    EXPECT_EQ(glGetError(), (GLenum)GL_NO_ERROR);
}
