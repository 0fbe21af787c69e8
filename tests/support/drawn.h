// What the drawing layer wrote into the panel buffer rgb_array, where each
// character is its 5 by 7 pattern stamped at its place, as sets of pixels.
#pragma once
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"

#include <cstdlib>
#include <cstring>
#include <set>
#include <utility>

using pixel_set = std::set<std::pair<int, int>>;

inline const unsigned char* px_at(const unsigned char* buf, int x, int y) { return buf + (y * canvas_w + x) * 4; }

// The pixel holds colour col of the table, each byte within tolerance.
inline bool has_colour(const unsigned char* p, int col, int tolerance = 1)
{
    for (int k = 0; k < 3; k++)
        if (std::abs(p[k] - intround(col_rgb[col][k] * 255.0f)) > tolerance) return false;
    return true;
}

inline pixel_set rect_pixels(int x0, int y0, int w, int h, pixel_set s = {})
{
    for (int x = x0; x < x0 + w; x++)
        for (int y = y0; y < y0 + h; y++) s.insert({x, y});
    return s;
}

// The pixels of the characters' patterns, the first standing on (x, y), advance apart.
inline pixel_set stamped(const char* text, int x, int y, int advance = 6, pixel_set s = {})
{
    for (int k = 0; text[k]; k++, x += advance)
        for (int r = 0; r < 7; r++)
            for (int c = 0; c < 5; c++)
                if (glyph_rows((unsigned char)text[k])[r] & (0x10 >> c)) s.insert({x + c, y + 6 - r});
    return s;
}

// Pixels of rgb_array in the rectangle written in colour col (any colour: -1).
inline pixel_set written(int col = -1, int x0 = 0, int y0 = 0, int w = canvas_w, int h = canvas_h)
{
    pixel_set s;
    for (int x = x0; x < x0 + w; x++)
        for (int y = y0; y < y0 + h; y++)
            if (px_at(rgb_array, x, y)[3] && (col < 0 || has_colour(px_at(rgb_array, x, y), col, 0))) s.insert({x, y});
    return s;
}

// Draws into a cleared rgb_array and gives what was written.
template <typename F>
pixel_set baked(F draw, int col = -1)
{
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    draw();
    to_array = 0;
    return written(col);
}
