// Obstacle symbols stamped into a one-bit mask of the map's box.
//
// A symbol is a handful of one-pixel lines, and a tile holds up to 60000
// obstacles: far more lines than a software renderer draws in a frame. Every
// symbol stands on the centre of a pixel, so all symbols of a kind light the
// same pixels about their own. Those pixels are read back once for each scale
// of the canvas, from OpenGL drawing each kind's symbol the ordinary way. A
// whole drawing of the map then sets them in the mask for each obstacle and
// sends the mask as one bitmap, in the one colour that all the obstacles of
// the kept picture share.
#include "app/Terrain.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"

#include <GL/gl.h>

#include <cstdint>
#include <cstring>

// A symbol's pixels are taken in a cell of 64 by 64 about its own pixel, the
// symbol's place at column and row 28, so that a row of the cell shifted by
// up to 7 bits still fits one 64-bit word; the mask has a margin of 64
// pixels about the box so that no stamp needs a bound check.
const int cell = 64, centre = 28, margin = 64;
const int kinds = 9;
const int shape_area_tex = 701;   // what the shapes were drawn over, put back after
constexpr float largest_scale = 6;   // a symbol 4 units either side still fits the cell's first 56 columns
constexpr int mask_bytes_wide = ((int)((map_x2 - map_x1) * largest_scale) + 2 * margin + 63) / 64 * 8;
constexpr int mask_rows = (int)((map_y2 - map_y1) * largest_scale) + 2 * margin;

static struct {
    float pixels_x, pixels_y;  // the pixels a canvas unit they were taken at; 0 before
    uint64_t rows[kinds][cell];   // bit c is column c of the cell, row 0 its bottom
    int low, high;                // the rows with a pixel of any kind; low > high for none
} shapes;

static unsigned char mask[mask_rows * mask_bytes_wide];
static int mask_w, mask_h, box_x, box_y;   // pixels, and the box's corner in the drawable

static int symbol_kind(int k) { return k == 2 || k == 3 || k == 4 || k == 5 || k == 6 || k == 8; }

// Each kind drawn white on black in a cell of its own, three cells a row,
// at the box's corner, and read back; what was there is put back after.
static void take_shapes(const int box[4])
{
    static unsigned char pixels[2 * cell][3 * cell][3];
    const int area[4] = {box[0], box[1], 3 * cell, 2 * cell};
    float clear[4];
    OGL_flush();
    glScissor(area[0], area[1], area[2], area[3]);
    OGL_pixels_to_texels(shape_area_tex, area, 4 * cell, 2 * cell);
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clear);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glClearColor(clear[0], clear[1], clear[2], clear[3]);
    OGL_batch_begin();
    for (int k = 0, q = 0; k < kinds; k++) {
        if (!symbol_kind(k)) continue;
        plot_symbol_at_pixel(k, 0 /* white */, box[0] + (q % 3) * cell + centre, box[1] + (q / 3) * cell + centre);
        q++;
    }
    OGL_batch_end();
    glReadPixels(box[0], box[1], 3 * cell, 2 * cell, GL_RGB, GL_UNSIGNED_BYTE, pixels);
    OGL_texels_to_pixels(shape_area_tex, area, 0.75f, 1.0f);
    glScissor(box[0], box[1], box[2], box[3]);
    shapes.low = cell;
    shapes.high = -1;
    for (int k = 0, q = 0; k < kinds; k++) {
        for (int r = 0; r < cell; r++) {
            uint64_t bits = 0;
            for (int c = 0; symbol_kind(k) && c < cell; c++) {
                const unsigned char* p = pixels[(q / 3) * cell + r][(q % 3) * cell + c];
                if (p[0] | p[1] | p[2]) bits |= uint64_t(1) << c;
            }
            shapes.rows[k][r] = bits;
            if (bits && r < shapes.low) shapes.low = r;
            if (bits && r > shapes.high) shapes.high = r;
        }
        q += symbol_kind(k);
    }
    shapes.pixels_x = flat_view.pixels_x;
    shapes.pixels_y = flat_view.pixels_y;
}

int stamps_begin(const int box[4])
{
    if (flat_view.pixels_x > largest_scale || flat_view.pixels_y > largest_scale) return 0;
    if (box[2] < 3 * cell || box[3] < 2 * cell) return 0;
    if (box[2] + 2 * margin > mask_bytes_wide * 8 || box[3] + 2 * margin > mask_rows) return 0;
    if (shapes.pixels_x != flat_view.pixels_x || shapes.pixels_y != flat_view.pixels_y) take_shapes(box);
    mask_w = (box[2] + 2 * margin + 63) / 64 * 64;
    mask_h = box[3] + 2 * margin;
    box_x = box[0];
    box_y = box[1];
    std::memset(mask, 0, (size_t)mask_h * (mask_w / 8));
    return 1;
}

// The mask's bit of column c is bit c % 8 of byte c / 8 (sent least
// significant first), so that a row of a shape, shifted, lands in one
// little-endian word. Every kind is stamped over the same rows, those where
// any kind has a pixel: a loop of the same length for each obstacle costs
// less than a mispredicted end of the loop for each.
static void stamp(int kind, int px, int py)
{
    const int col = px - box_x + margin - centre, row = py - box_y + margin - centre;
    if (!intrange(kind, 0, kinds - 1) || !intrange(col, 0, mask_w - cell) || !intrange(row, 0, mask_h - cell)) return;
    const int stride = mask_w / 8, shift = col % 8;
    unsigned char* at = mask + (size_t)row * stride + col / 8;
    for (int r = shapes.low; r <= shapes.high; r++) {
        const uint64_t bits = shapes.rows[kind][r];
        unsigned char* p = at + (size_t)r * stride;
        uint64_t word;
        std::memcpy(&word, p, 8);
        word |= bits << shift;
        std::memcpy(p, &word, 8);
    }
}

void stamp_symbols(const unsigned char* shown, const int* kind, const int* px, const int* py, int count)
{
    for (int n = 0; n < count; n++)
        if (shown[n]) stamp(kind[n], px[n], py[n]);
}

int stamped_draws;

void stamps_draw(int col)
{
    stamped_draws++;
    OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off, sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(col, 1.0f);
    glRasterPos2f(OGL_canvas_x(box_x + 0.5f), OGL_canvas_y(box_y + 0.5f));
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_TRUE);
    glBitmap(mask_w, mask_h, margin, margin, 0, 0, mask);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
}
