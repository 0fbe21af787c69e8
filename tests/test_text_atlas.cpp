// Text on OpenGL: the atlas quads that each font sends and the state it draws in.
#include "window_fixture.h"
#include "hl/Hl_funct.h"

#include <array>
#include <cmath>
#include <set>

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
