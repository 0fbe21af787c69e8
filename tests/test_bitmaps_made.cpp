// The bitmaps that the build draws beside the program: files the reader takes,
// and atlas cells that hold the characters the font maps send there.
#include "app/Panel_layout.h"
#include "hl/Hl_graph.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct bmp {
    std::vector<unsigned char> bytes;
    int w = 0, h = 0;
};

unsigned field(const bmp& b, int offset, int size)
{
    unsigned v = 0;
    for (int k = size - 1; k >= 0; k--) v = (v << 8) | b.bytes[offset + k];
    return v;
}

// name: resource path below "Norsuite Resources", '/' between folders, no extension.
bmp load(const std::string& name)
{
    bmp b;
    std::ifstream in(std::string(TF_BUILD_DIR) + "/Norsuite Resources/" + name + ".BMP", std::ios::binary);
    b.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (b.bytes.size() >= 54) b.w = (int)field(b, 18, 4), b.h = (int)field(b, 22, 4);
    return b;
}

// Pixel (x, y) as 0xRRGGBB, row 0 at the bottom, read as the program's reader does: from byte 54.
int at(const bmp& b, int x, int y)
{
    const unsigned char* p = &b.bytes[54 + y * ((b.w * 3 + 3) & ~3) + x * 3];
    return p[2] << 16 | p[1] << 8 | p[0];
}

const int key = 0xFF00FF, white = 0xFFFFFF;

// Pixels from (x1, y1) up to but not including (x2, y2) for which is(pixel) holds.
template <typename F>
int count(const bmp& b, int x1, int y1, int x2, int y2, F is)
{
    int n = 0;
    for (int y = y1; y < y2; y++)
        for (int x = x1; x < x2; x++) n += is(at(b, x, y));
    return n;
}

bool inked(int p) { return p != key; }

// Cells of an atlas are 6 by 22 texels, 21 to a row; column_shift moves them right.
int cell_x(int cell, int column_shift = 0) { return (cell % 21 + column_shift) * 6; }
int cell_y(int cell) { return cell / 21 * 22; }

// The cell must hold c's 5 by 7 pattern, each row two texels high with the
// baseline 4 texels up, white on the key, and nothing else.
void expect_cell_holds_pattern(const bmp& atlas, int cell, int column_shift, int c)
{
    const unsigned char* rows = glyph_rows(c);
    int wrong = 0;
    for (int ty = 0; ty < 22; ty++)
        for (int tx = 0; tx < 6; tx++) {
            const bool set = tx < 5 && ty >= 4 && ty < 18 && (rows[6 - (ty - 4) / 2] & (0x10 >> tx));
            wrong += at(atlas, cell_x(cell, column_shift) + tx, cell_y(cell) + ty) != (set ? white : key);
        }
    EXPECT_EQ(wrong, 0) << "character '" << char(c) << "' in cell " << cell << " shifted " << column_shift;
}


}  // namespace

TEST(BitmapsMade, AtlasCellsHoldTheGlyphsTheMapsSendThere)
{
    bmp inter = load("textures/interfacetext"), panel = load("textures/paneltext");
    ASSERT_EQ(inter.w * 1000 + panel.w, 128256);
    // Lower case and the backtick have shapes of their own, with descenders:
    // ink inside the glyph's 5 by 20 texels only, and not the capital's (or '@').
    for (int c = 0x21; c <= 0x7E; c++) {
        const int cell = font_cell(c, 101), x = cell_x(cell), y = cell_y(cell);
        const int ux = cell_x(font_cell(c - 32, 101)), uy = cell_y(font_cell(c - 32, 101));
        const bool own_shape = (c >= 'a' && c <= 'z') || c == '`';
        if (cell == 0) continue;
        if (!own_shape) {
            expect_cell_holds_pattern(inter, cell, 0, c);
            expect_cell_holds_pattern(panel, font_cell(c, 102), 0, c);
            expect_cell_holds_pattern(panel, font_cell(c, 103), 21, c);
            continue;
        }
        EXPECT_EQ(count(inter, x, y, x + 6, y + 22, inked), count(inter, x, y, x + 5, y + 20, inked)) << char(c);
        int same = 0;
        for (int t = 0; t < 100; t++) same += at(inter, x + t % 5, y + t / 5) == at(inter, ux + t % 5, uy + t / 5);
        EXPECT_LT(same, 100) << char(c);
    }
    for (const char* p = "0123456789.,-_"; *p; p++) expect_cell_holds_pattern(panel, font_cell(*p, 104), 0, *p);
    // Cell 0, where an unmapped character goes, is not blank: it shows a box.
    EXPECT_GT(count(inter, 0, 0, 5, 20, inked), 0);

    // The knob is drawn with the key showing black, so all of it is opaque; the
    // arrow's tip is its top left texel, and around the arrow the key shows through.
    int knob[4], arrow[4];
    for (int k = 0; k < 4; k++) knob[k] = (int)(knob_tex[k] * 128 + 0.5f), arrow[k] = (int)(arrow_tex[k] * 128 + 0.5f);
    const int arrow_ink = count(inter, arrow[0], arrow[1], arrow[2], arrow[3], inked);
    EXPECT_EQ(count(inter, knob[0], knob[1], knob[2], knob[3], inked), (knob[2] - knob[0]) * (knob[3] - knob[1]));
    EXPECT_TRUE(inked(at(inter, arrow[0], arrow[3] - 1)));
    EXPECT_TRUE(arrow_ink > 60 && arrow_ink < (arrow[2] - arrow[0]) * (arrow[3] - arrow[1]) * 2 / 3) << arrow_ink;
}
