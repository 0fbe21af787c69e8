// Draws the bitmaps that stand beside the program: the font atlases with the
// list knob and the mouse arrow, the menu tile, the nine terrain textures, the
// panels of the four screens and the splash. Every picture is an uncompressed
// 24-bit BMP, rows bottom up, as the program's reader expects.
//
// Usage: tf_gen_bitmaps <folder "Norsuite Resources">
// A file is rewritten only when its bytes change, so builds stay quiet and a
// file's time stamp means something.
#include "app/Panel_layout.h"
#include "hl/Hl_graph.h"
#include "tools/bmp_file.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// ---- the picture being drawn ------------------------------------------------------------------

using rgb = bmp_rgb;

const int pic_cap_w = 800, pic_cap_h = 600;
static rgb pic[pic_cap_w * pic_cap_h];   // row 0 at the bottom, as in the file
static int pic_w, pic_h;

const rgb magenta = {255, 0, 255};

static void begin_picture(int w, int h, rgb fill)
{
    pic_w = w;
    pic_h = h;
    for (int k = 0; k < w * h; k++) pic[k] = fill;
}

static void put(int x, int y, rgb c)
{
    if (x >= 0 && y >= 0 && x < pic_w && y < pic_h) pic[y * pic_w + x] = c;
}

// Every pixel from (x1, y1) to (x2, y2), both corners included.
static void fill(int x1, int y1, int x2, int y2, rgb c)
{
    for (int y = y1; y <= y2; y++)
        for (int x = x1; x <= x2; x++) put(x, y, c);
}

static rgb mix(rgb a, rgb b, float f)
{
    if (f < 0) f = 0;
    if (f > 1) f = 1;
    return {(unsigned char)std::lround(a.r + (b.r - a.r) * f),
            (unsigned char)std::lround(a.g + (b.g - a.g) * f),
            (unsigned char)std::lround(a.b + (b.b - a.b) * f)};
}

static rgb scaled(rgb c, float f)
{
    auto one = [f](int v) {
        long s = std::lround(v * f);
        return (unsigned char)(s < 0 ? 0 : s > 255 ? 255 : s);
    };
    return {one(c.r), one(c.g), one(c.b)};
}

// ---- writing a file only when it changed ---------------------------------------------------------

static int files_written, files_kept, files_failed;

static void write_if_changed(const std::filesystem::path& path, const std::string& bytes)
{
    std::ifstream old(path, std::ios::binary);
    if (old) {
        std::string had((std::istreambuf_iterator<char>(old)), std::istreambuf_iterator<char>());
        if (had == bytes) {
            files_kept++;
            return;
        }
    }
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    std::filesystem::path temp = path;
    temp += ".tmp";
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), (std::streamsize)bytes.size());
    out.close();
    if (!out) {
        std::fprintf(stderr, "tf_gen_bitmaps: can't write %s\n", temp.c_str());
        files_failed++;
        return;
    }
    std::filesystem::rename(temp, path, ec);
    if (ec) {
        std::fprintf(stderr, "tf_gen_bitmaps: can't place %s\n", path.c_str());
        files_failed++;
        return;
    }
    files_written++;
}

static std::filesystem::path resources_root;

// name: the resource path below "Norsuite Resources", with '/' between folders.
static void save_picture(const char* name)
{
    write_if_changed(resources_root / (std::string(name) + ".BMP"),
                     bmp_bytes(pic_w, pic_h, [](int x, int y) { return pic[y * pic_w + x]; }));
}

// ---- glyphs -----------------------------------------------------------------------------------------

// Lower case letters of the atlases: nine rows from the top, the last two below
// the baseline for descenders; bit 0x10 is the leftmost pixel.
static const unsigned char lower_case[26][9] = {
    {0x00, 0x00, 0x0E, 0x01, 0x0F, 0x11, 0x0F, 0x00, 0x00},   // a
    {0x10, 0x10, 0x16, 0x19, 0x11, 0x11, 0x1E, 0x00, 0x00},   // b
    {0x00, 0x00, 0x0E, 0x10, 0x10, 0x11, 0x0E, 0x00, 0x00},   // c
    {0x01, 0x01, 0x0D, 0x13, 0x11, 0x11, 0x0F, 0x00, 0x00},   // d
    {0x00, 0x00, 0x0E, 0x11, 0x1F, 0x10, 0x0E, 0x00, 0x00},   // e
    {0x06, 0x09, 0x08, 0x1C, 0x08, 0x08, 0x08, 0x00, 0x00},   // f
    {0x00, 0x00, 0x0F, 0x11, 0x11, 0x11, 0x0F, 0x01, 0x0E},   // g
    {0x10, 0x10, 0x16, 0x19, 0x11, 0x11, 0x11, 0x00, 0x00},   // h
    {0x04, 0x00, 0x0C, 0x04, 0x04, 0x04, 0x0E, 0x00, 0x00},   // i
    {0x02, 0x00, 0x06, 0x02, 0x02, 0x02, 0x02, 0x12, 0x0C},   // j
    {0x10, 0x10, 0x12, 0x14, 0x18, 0x14, 0x12, 0x00, 0x00},   // k
    {0x0C, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E, 0x00, 0x00},   // l
    {0x00, 0x00, 0x1A, 0x15, 0x15, 0x11, 0x11, 0x00, 0x00},   // m
    {0x00, 0x00, 0x16, 0x19, 0x11, 0x11, 0x11, 0x00, 0x00},   // n
    {0x00, 0x00, 0x0E, 0x11, 0x11, 0x11, 0x0E, 0x00, 0x00},   // o
    {0x00, 0x00, 0x1E, 0x11, 0x11, 0x11, 0x1E, 0x10, 0x10},   // p
    {0x00, 0x00, 0x0F, 0x11, 0x11, 0x11, 0x0F, 0x01, 0x01},   // q
    {0x00, 0x00, 0x16, 0x19, 0x10, 0x10, 0x10, 0x00, 0x00},   // r
    {0x00, 0x00, 0x0F, 0x10, 0x0E, 0x01, 0x1E, 0x00, 0x00},   // s
    {0x08, 0x08, 0x1C, 0x08, 0x08, 0x09, 0x06, 0x00, 0x00},   // t
    {0x00, 0x00, 0x11, 0x11, 0x11, 0x13, 0x0D, 0x00, 0x00},   // u
    {0x00, 0x00, 0x11, 0x11, 0x11, 0x0A, 0x04, 0x00, 0x00},   // v
    {0x00, 0x00, 0x11, 0x11, 0x15, 0x15, 0x0A, 0x00, 0x00},   // w
    {0x00, 0x00, 0x11, 0x0A, 0x04, 0x0A, 0x11, 0x00, 0x00},   // x
    {0x00, 0x00, 0x11, 0x11, 0x11, 0x11, 0x0F, 0x01, 0x0E},   // y
    {0x00, 0x00, 0x1F, 0x02, 0x04, 0x08, 0x1F, 0x00, 0x00},   // z
};

// The program's own patterns draw a backtick as an underscore; the atlas has room for the real thing.
static const unsigned char backtick[9] = {0x08, 0x04, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};

// The nine rows of c: seven above the baseline, two below it.
static void glyph_of(int c, unsigned char rows[9])
{
    if (c >= 'a' && c <= 'z') {
        std::memcpy(rows, lower_case[c - 'a'], 9);
        return;
    }
    if (c == '`') {
        std::memcpy(rows, backtick, 9);
        return;
    }
    std::memcpy(rows, glyph_rows(c), 7);
    rows[7] = rows[8] = 0;
}

// Stamps nine rows with the baseline at y, each pattern pixel sx by sy pixels.
static void stamp_rows(int x, int y, const unsigned char rows[9], int sx, int sy, rgb c)
{
    for (int r = 0; r < 9; r++)
        for (int k = 0; k < 5; k++)
            if (rows[r] & (0x10 >> k))
                fill(x + k * sx, y + (6 - r) * sy, x + k * sx + sx - 1, y + (6 - r) * sy + sy - 1, c);
}

static int text_width(const char* text, int scale)
{
    int n = (int)std::strlen(text);
    return n ? (n * 6 - 1) * scale : 0;
}

// Panel text: the program's own 5 by 7 capitals, baseline at y.
static void draw_text(float x, float y, const char* text, int align, int scale, rgb c)
{
    int left = (int)std::lround(x);
    if (align == align_right) left -= text_width(text, scale);
    if (align == align_centre) left -= text_width(text, scale) / 2;
    for (int k = 0; text[k]; k++) {
        if (text[k] != ' ') {
            unsigned char rows[9] = {};
            std::memcpy(rows, glyph_rows(text[k]), 7);
            stamp_rows(left + 6 * k * scale, (int)std::lround(y), rows, scale, scale, c);
        }
    }
}

// Mixed-case text with real lower case, for the splash.
static void draw_title(int x, int y, const char* text, int scale, rgb c)
{
    for (int k = 0; text[k]; k++) {
        unsigned char rows[9];
        glyph_of(text[k], rows);
        stamp_rows(x + 6 * k * scale, y, rows, scale, scale, c);
    }
}

// ---- font atlases -----------------------------------------------------------------------------------

const int cell_w = 6, cell_h = 22, glyph_w = 5, glyph_h = 20;
const int glyph_base = 4;                  // texel rows below the baseline, for descenders
const int cells_per_row = 21;
const rgb ink = {255, 255, 255};

static void cell_origin(int cell, int column_shift, int* x, int* y)
{
    *x = (cell % cells_per_row + column_shift) * cell_w;
    *y = (cell / cells_per_row) * cell_h;
}

// One character in its cell: 5 texels a row, two texel rows for each pattern row,
// as the quad maps 20 texels onto 10 units.
static void stamp_cell(int cell, int column_shift, int c)
{
    int x, y;
    cell_origin(cell, column_shift, &x, &y);
    unsigned char rows[9];
    glyph_of(c, rows);
    stamp_rows(x, y + glyph_base, rows, 1, 2, ink);
}

// Cell 0, for every character the maps don't know: an open box.
static void stamp_unknown_cell(int column_shift)
{
    int x, y;
    cell_origin(0, column_shift, &x, &y);
    const int y1 = y + glyph_base, y2 = y + glyph_base + 13;
    fill(x, y1, x + glyph_w - 1, y1, ink);
    fill(x, y2, x + glyph_w - 1, y2, ink);
    fill(x, y1, x, y2, ink);
    fill(x + glyph_w - 1, y1, x + glyph_w - 1, y2, ink);
}

// The whole general map of a face: cell 0, digits, both cases and the 28 others.
static void stamp_general_face(int column_shift)
{
    stamp_unknown_cell(column_shift);
    for (int c = 0x21; c <= 0x7E; c++) {
        int cell = font_cell(c, 101);
        if (cell > 0) stamp_cell(cell, column_shift, c);
    }
}

static void stamp_digit_face()
{
    for (const char* p = "0123456789.,-_"; *p; p++) stamp_cell(font_cell(*p, 104), 0, *p);
}

// Texel rectangle of a quad's texture coordinates: x1, y1 inclusive, x2, y2 exclusive.
static void tex_rect(const float st[4], int size, int* x1, int* y1, int* x2, int* y2)
{
    *x1 = (int)std::lround(st[0] * size);
    *y1 = (int)std::lround(st[1] * size);
    *x2 = (int)std::lround(st[2] * size);
    *y2 = (int)std::lround(st[3] * size);
}

// The knob of the name lists: drawn opaque, so it fills its rectangle; a raised
// grey block with three grip lines.
static void draw_list_knob()
{
    int x1, y1, x2, y2;
    tex_rect(knob_tex, 128, &x1, &y1, &x2, &y2);
    fill(x1, y1, x2 - 1, y2 - 1, {150, 156, 166});
    fill(x1, y2 - 2, x2 - 1, y2 - 1, {214, 218, 224});            // lit top
    fill(x1, y1, x1, y2 - 1, {214, 218, 224});                    // lit left
    fill(x1, y1, x2 - 1, y1 + 1, {62, 66, 74});                   // shaded bottom
    fill(x2 - 1, y1, x2 - 1, y2 - 1, {62, 66, 74});               // shaded right
    const int mid = (y1 + y2) / 2;
    for (int k = -1; k <= 1; k++) {
        fill(x1 + 3, mid + 5 * k - 1, x2 - 4, mid + 5 * k - 1, {92, 96, 104});
        fill(x1 + 3, mid + 5 * k, x2 - 4, mid + 5 * k, {226, 230, 236});
    }
}

// The mouse arrow: white with a black rim, tip at the top left texel. The
// sprite is 12 by 34 texels for 14 by 18 units, so each row is drawn twice.
static void draw_mouse_arrow()
{
    static const char* shape[17] = {
        "B...........", "BB..........", "BWB.........", "BWWB........",
        "BWWWB.......", "BWWWWB......", "BWWWWWB.....", "BWWWWWWB....",
        "BWWWWWWWB...", "BWWWWWWWWB..", "BWWWWWBBBBB.", "BWWBWWB.....",
        "BWB.BWWB....", "BB..BWWB....", "B....BWWB...", ".....BWWB...",
        "......BB....",
    };
    int x1, y1, x2, y2;
    tex_rect(arrow_tex, 128, &x1, &y1, &x2, &y2);
    for (int r = 0; r < 17; r++)
        for (int k = 0; k < 12; k++) {
            char p = shape[r][k];
            if (p == '.') continue;
            rgb c = p == 'B' ? rgb{0, 0, 0} : rgb{255, 255, 255};
            put(x1 + k, y2 - 1 - 2 * r, c);
            put(x1 + k, y2 - 2 - 2 * r, c);
        }
}

static void make_interface_atlas(const char* name, int with_sprites)
{
    begin_picture(128, 128, magenta);
    stamp_general_face(0);
    if (with_sprites) {
        draw_list_knob();
        draw_mouse_arrow();
    }
    save_picture(name);
}

// The panel atlas: the general face twice (fonts 102 and 103, the second 21
// columns further right) and the digit map of font 104.
static void make_panel_atlas()
{
    begin_picture(256, 256, magenta);
    stamp_general_face(0);
    stamp_general_face(cells_per_row);
    stamp_digit_face();
    save_picture("textures/paneltext");
}

// ---- the menu tile ------------------------------------------------------------------------------------

static unsigned hash3(int x, int y, int seed)
{
    unsigned h = (unsigned)x * 374761393u + (unsigned)y * 668265263u + (unsigned)seed * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return h ^ (h >> 16);
}

static float hash01(int x, int y, int seed) { return (hash3(x, y, seed) & 0xFFFF) / 65535.0f; }

// The menu background is this tile times a mid grey, so it is drawn light: a
// quiet brushed surface.
static void make_menu_tile()
{
    begin_picture(128, 32, {0, 0, 0});
    for (int y = 0; y < 32; y++) {
        float row = 0.6f * hash01(0, y, 5) - 0.3f;
        for (int x = 0; x < 128; x++) {
            float v = 236 + 6 * row + 4 * (hash01(x, y, 7) - 0.5f);
            unsigned char g = (unsigned char)std::lround(v);
            put(x, y, {g, g, (unsigned char)std::min(255, g + 3)});
        }
    }
    save_picture("textures/interface/menuitems");
}

// ---- terrain textures ------------------------------------------------------------------------------

const int ter_size = 128;

// Value noise on a lattice that repeats every period cells, so a texture tiles.
static float lattice_noise(float s, float t, int period, int seed)
{
    float x = s * period, y = t * period;
    int x0 = (int)std::floor(x), y0 = (int)std::floor(y);
    float fx = x - x0, fy = y - y0;
    fx = fx * fx * (3 - 2 * fx);
    fy = fy * fy * (3 - 2 * fy);
    auto at = [&](int i, int j) {
        return hash01(((i % period) + period) % period, ((j % period) + period) % period, seed);
    };
    float a = at(x0, y0) + (at(x0 + 1, y0) - at(x0, y0)) * fx;
    float b = at(x0, y0 + 1) + (at(x0 + 1, y0 + 1) - at(x0, y0 + 1)) * fx;
    return a + (b - a) * fy;
}

static float fractal_noise(float s, float t, int seed)
{
    float sum = 0, weight = 0.5f, total = 0;
    for (int period = 4; period <= 32; period *= 2) {
        sum += weight * lattice_noise(s, t, period, seed + period);
        total += weight;
        weight *= 0.5f;
    }
    return sum / total;
}

static rgb grass_at(float s, float t)
{
    float n = fractal_noise(s, t, 11);
    rgb c = scaled({72, 126, 50}, 0.84f + 0.32f * n);
    float tuft = lattice_noise(s, t, 64, 12);
    if (tuft > 0.78f) c = mix(c, {96, 146, 60}, (tuft - 0.78f) * 3);
    if (tuft < 0.2f) c = mix(c, {52, 98, 40}, (0.2f - tuft) * 3);
    return c;
}

static rgb water_at(float s, float t)
{
    float n = fractal_noise(s, t, 23);
    float ripple = std::sin(6.2831853f * (8 * t + 1.5f * n + 0.25f * std::sin(6.2831853f * 2 * s)));
    rgb c = scaled({34, 82, 148}, 0.9f + 0.2f * n);
    if (ripple > 0.6f) c = mix(c, {64, 118, 178}, (ripple - 0.6f) * 1.2f);
    return c;
}

// Rock lit from the north-west: the slope of a noise relief shades it.
static float relief(float s, float t)
{
    return fractal_noise(s, t, 37) + 0.2f * lattice_noise(s, t, 32, 39);
}

static rgb rock_at(float s, float t)
{
    const float e = 1.0f / ter_size;
    float east = relief(s + e, t) - relief(s - e, t);
    float north = relief(s, t + e) - relief(s, t - e);
    float light = 0.92f + 4.0f * (north - east) + 0.08f * (hash01((int)(s * ter_size), (int)(t * ter_size), 45) - 0.5f);
    light = light < 0.55f ? 0.55f : light > 1.3f ? 1.3f : light;
    rgb c = mix({118, 100, 82}, {148, 144, 136}, lattice_noise(s, t, 8, 41));
    return scaled(c, light);
}

// 0 at the border of the texture, 1 a little way in: shore lines wobble inside
// the texture but meet its edges at exactly the same place in every picture.
static float edge_window(float v)
{
    float a = (v - 0.05f) / 0.2f, b = (0.95f - v) / 0.2f;
    float w = a < b ? a : b;
    return w < 0 ? 0 : w > 1 ? 1 : w;
}

// How far a point lies into the open water or rock (positive) or into the
// grass (negative), in texture widths. The grass band is shore_band wide.
const float shore_band = 0.3f, shore_round = 0.2f;
enum shore_shape { shape_none = -1, shape_half, shape_corner, shape_inside };

static float shore_depth(int shape, float s, float t)
{
    float depth;
    if (shape == shape_half) {
        depth = s - shore_band;                       // grass along s = 0
    } else if (shape == shape_corner) {
        float u = s - shore_band, v = (1 - shore_band) - t;   // grass along s = 0 and t = 1
        if (u < shore_round && v < shore_round && u > -shore_band && v > -shore_band)
            depth = shore_round - std::hypot(shore_round - u, shore_round - v);
        else
            depth = u < v ? u : v;
    } else {
        depth = std::hypot(1 - s, t) - shore_band;    // grass in the corner s = 1, t = 0
    }
    float wobble = 2 * (lattice_noise(s, t, 8, 51) - 0.5f) * 0.05f;
    return depth + wobble * edge_window(s) * edge_window(t);
}

static rgb shore_water(float depth, float s, float t)
{
    if (depth < 0) return grass_at(s, t);
    if (depth < 0.035f) return mix({200, 186, 136}, {182, 168, 120}, lattice_noise(s, t, 32, 61));
    if (depth < 0.12f) return mix({78, 148, 172}, water_at(s, t), (depth - 0.035f) / 0.085f);
    return water_at(s, t);
}

static rgb shore_rock(float depth, float s, float t)
{
    if (depth < 0) return grass_at(s, t);
    float f = depth / 0.1f + 0.6f * (lattice_noise(s, t, 32, 71) - 0.5f);
    return mix({104, 96, 70}, rock_at(s, t), f);
}

enum ground { ground_grass, ground_water, ground_rock };

static void make_terrain(const char* name, int base, int shape)
{
    begin_picture(ter_size, ter_size, {0, 0, 0});
    for (int y = 0; y < ter_size; y++)
        for (int x = 0; x < ter_size; x++) {
            float s = (x + 0.5f) / ter_size, t = (y + 0.5f) / ter_size;
            rgb c;
            if (shape == shape_none)
                c = base == ground_grass ? grass_at(s, t) : base == ground_water ? water_at(s, t) : rock_at(s, t);
            else if (base == ground_water)
                c = shore_water(shore_depth(shape, s, t), s, t);
            else
                c = shore_rock(shore_depth(shape, s, t), s, t);
            put(x, y, c);
        }
    save_picture((std::string("textures/terrain/") + name).c_str());
}

static void make_terrain_textures()
{
    make_terrain("wat", ground_water, shape_none);
    make_terrain("grs", ground_grass, shape_none);
    make_terrain("mnt", ground_rock, shape_none);
    make_terrain("grs_wat_h", ground_water, shape_half);
    make_terrain("grs_wat_c", ground_water, shape_corner);
    make_terrain("wat_grs_c", ground_water, shape_inside);
    make_terrain("grs_mnt_h", ground_rock, shape_half);
    make_terrain("grs_mnt_c", ground_rock, shape_corner);
    make_terrain("mnt_grs_c", ground_rock, shape_inside);
}

// ---- panel furniture --------------------------------------------------------------------------------

const rgb panel_back = {46, 50, 57};
const rgb panel_light = {82, 88, 98};
const rgb panel_dark = {24, 26, 30};
const rgb field_back = {14, 17, 20};
const rgb map_back = {16, 24, 34};
const rgb button_face = {74, 80, 90};
const rgb button_light = {128, 134, 144};
const rgb button_dark = {30, 32, 37};
const rgb arrow_ink = {190, 196, 204};
const rgb tick_ink = {86, 96, 92};
const rgb tone_colour[4] = {
    {210, 206, 192},    // label
    {236, 198, 112},    // heading
    {132, 140, 148},    // hint
    {232, 232, 224},    // button caption
};

// A one-pixel bevel around (x1, y1)-(x2, y2): lit on top and left when raised.
static void bevel(int x1, int y1, int x2, int y2, int raised, rgb light, rgb dark)
{
    rgb top = raised ? light : dark, bottom = raised ? dark : light;
    fill(x1, y2, x2, y2, top);
    fill(x1, y1, x1, y2, top);
    fill(x1, y1, x2, y1, bottom);
    fill(x2, y1, x2, y2, bottom);
}

// A sunken dark field whose inside is (x1, y1)-(x2, y2).
static void sunken_field(int x1, int y1, int x2, int y2, rgb inside)
{
    fill(x1, y1, x2, y2, inside);
    bevel(x1 - 1, y1 - 1, x2 + 1, y2 + 1, 0, panel_light, panel_dark);
}

static void button(panel_box b)
{
    int x1 = (int)b.x1, y1 = (int)b.y1, x2 = (int)b.x2, y2 = (int)b.y2;
    fill(x1, y1, x2, y2, button_face);
    bevel(x1, y1, x2, y2, 1, button_light, button_dark);
}

enum arrow_dir { dir_up, dir_down, dir_left, dir_right };

// A solid triangle of the given height pointing dir, centred on (cx, cy).
static void triangle(int cx, int cy, int height, int dir, rgb c)
{
    for (int k = 0; k < height; k++) {
        int half = height - 1 - k;             // k = 0 is the wide base
        int along = k - height / 2;
        switch (dir) {
        case dir_up: fill(cx - half, cy + along, cx + half, cy + along, c); break;
        case dir_down: fill(cx - half, cy - along, cx + half, cy - along, c); break;
        case dir_left: fill(cx - along, cy - half, cx - along, cy + half, c); break;
        default: fill(cx + along, cy - half, cx + along, cy + half, c); break;
        }
    }
}

static void arrow_button(panel_box b, int dir)
{
    button(b);
    triangle((int)((b.x1 + b.x2 + 1) / 2), (int)((b.y1 + b.y2 + 1) / 2), 5, dir, arrow_ink);
}

// The dark field behind a spinner's digits, with a small mark above and below
// each digit for its two halves.
static void spinner_field(panel_spinner s)
{
    int x1 = (int)s.x - (s.is_signed ? 5 : 1), x2 = (int)spinner_end(s);
    int y = (int)s.y;
    sunken_field(x1, y - 4, x2, y + 10, field_back);
    for (int k = 0; k < s.digits; k++) {
        int cx = (int)(s.x + spinner_step * k + spinner_inset + 2);
        triangle(cx, y + 14, 3, dir_up, tick_ink);
        triangle(cx, y - 8, 3, dir_down, tick_ink);
    }
}

// A cycle button: a field behind its text and the two arrows at x + offset.
static void cycle_field(panel_cycle b, int chars)
{
    int x = (int)b.x, y = (int)b.y;
    sunken_field(x - 2, y - 4, x + 6 * chars, y + 10, field_back);
    int cx = (int)(b.x + b.offset + cycle_zone_w / 2);
    triangle(cx, y + 16, 4, dir_up, arrow_ink);
    triangle(cx, y - 10, 4, dir_down, arrow_ink);
}

static void wheel_field(panel_wheel w)
{
    int x = (int)w.x, y = (int)w.y;
    sunken_field(x, y - 4, x + (int)wheel_step * w.chars, y + 10, field_back);
    for (int k = 0; k < w.chars; k++) {
        int cx = (int)(w.x + wheel_step * k + wheel_inset + 2);
        triangle(cx, y + 14, 3, dir_up, tick_ink);
        triangle(cx, y - 8, 3, dir_down, tick_ink);
    }
}

// A dark socket one pixel around where a lamp is drawn.
static void lamp_socket(float x, float y)
{
    fill((int)x - 1, (int)y - 1, (int)x + 9, (int)y + 9, panel_dark);
}

// A name list: the rows, the knob strip with its arrows, and the edit line.
static void name_list_fields(panel_list l)
{
    int x = (int)l.x, y = (int)l.y;
    int top = (int)(l.y + list_top_dy), bottom = (int)(l.y + list_bottom_dy);
    sunken_field(x, bottom - 14, x + (int)list_rows_w + 10, top + 14, field_back);
    int kx = (int)(l.x + list_knob_dx);
    sunken_field(kx, bottom, kx + (int)list_knob_w - 1, top, {30, 33, 38});
    arrow_button({float(kx), float(top + 1), float(kx + list_knob_w - 1), top + list_arrow_h}, dir_up);
    arrow_button({float(kx), bottom - list_arrow_h, float(kx + list_knob_w - 1), float(bottom - 1)}, dir_down);
    sunken_field(x, y + (int)list_edit_dy - 5, x + (int)list_rows_w + 10, y + (int)list_edit_dy + 10, field_back);
}

static void draw_labels(const panel_label* labels, int count)
{
    for (int k = 0; k < count; k++) {
        const panel_label& l = labels[k];
        if (l.tone == tone_heading) draw_text(l.x + l.scale, l.y - l.scale, l.text, l.align, l.scale, panel_dark);
        draw_text(l.x, l.y, l.text, l.align, l.scale, tone_colour[l.tone]);
    }
}

// The background of every screen: a calm panel under the menu bar.
static void panel_base()
{
    begin_picture(canvas_w, canvas_h, panel_back);
    fill(0, (int)menu_bar_y, canvas_w - 1, canvas_h - 1, {98, 102, 110});
    fill(0, (int)menu_bar_y, canvas_w - 1, (int)menu_bar_y, panel_dark);
    fill(0, (int)menu_bar_y + 1, canvas_w - 1, (int)menu_bar_y + 1, {124, 128, 136});
}

// ---- the two map screens ---------------------------------------------------------------------------

static void map_field()
{
    sunken_field((int)map_x1, (int)map_y1, (int)map_x2, (int)map_y2, map_back);
}

static void zoom_and_pan()
{
    button(zoom_in_box);
    button(zoom_out_box);
    arrow_button(pan_up_box, dir_up);
    arrow_button(pan_down_box, dir_down);
    arrow_button(pan_left_box, dir_left);
    arrow_button(pan_right_box, dir_right);
}

// A small ring, a tick and a double tick behind the degrees, minutes and seconds.
static void readout_marks(float y)
{
    int top = (int)y + 6;
    int dx = (int)(readout_deg_x + readout_spacing * readout_deg_digits);
    const rgb c = tone_colour[tone_hint];
    put(dx, top - 1, c);
    put(dx + 1, top, c);
    put(dx + 2, top - 1, c);
    put(dx + 1, top - 2, c);
    int mx = (int)(readout_min_x + readout_spacing * readout_min_digits) + 1;
    fill(mx, top - 2, mx, top, c);
    int sx = (int)(readout_sec_x + readout_spacing * readout_sec_digits) + 1;
    fill(sx, top - 2, sx, top, c);
    fill(sx + 2, top - 2, sx + 2, top, c);
}

static void pointer_readout()
{
    sunken_field(4, 1, 160, 49, field_back);
    readout_marks(readout_lat_y);
    readout_marks(readout_lon_y);
    draw_labels(readout_labels, label_count(readout_labels));
}

static void make_terrain_panel()
{
    panel_base();
    map_field();
    zoom_and_pan();
    spinner_field(ter_lat_spinner);
    spinner_field(ter_lon_spinner);
    for (float y : ter_tool_lamp_y) lamp_socket(ter_tool_lamp_x, y);
    spinner_field(ter_elev_spinner);
    // The custom texture list: lamps and names on one dark field.
    sunken_field(5, (int)ter_list_open_box.y1, (int)ter_list_open_box.x2 + 2, (int)ter_list_open_box.y2, field_back);
    for (int r = ter_list_first_row; r <= ter_list_last_row; r++)
        lamp_socket(ter_list_lamp_x, ter_list_lamp_y0 - ter_list_pitch * r);
    arrow_button(ter_list_up_box, dir_up);
    arrow_button(ter_list_down_box, dir_down);
    pointer_readout();
    draw_labels(ter_labels, label_count(ter_labels));
    save_picture("bitmaps/TileFrgr/TF_MAP");
}

// The map symbol of an obstacle kind, as the map draws it, centred on (x, y).
static void obstacle_symbol(int kind, int x, int y, rgb c)
{
    auto line = [&](int x1, int y1, int x2, int y2) {
        int n = std::max(std::abs(x2 - x1), std::abs(y2 - y1));
        for (int k = 0; k <= n; k++)
            put(x1 + (int)std::lround((x2 - x1) * (float)k / (n ? n : 1)),
                y1 + (int)std::lround((y2 - y1) * (float)k / (n ? n : 1)), c);
    };
    auto frame = [&](int fx, int fy, int w, int h) {
        line(fx, fy, fx, fy + h);
        line(fx, fy + h, fx + w, fy + h);
        line(fx + w, fy + h, fx + w, fy);
        line(fx + w, fy, fx, fy);
    };
    switch (kind) {
    case 2: frame(x - 2, y - 2, 5, 5); break;
    case 3: line(x - 2, y - 2, x, y + 2); line(x + 2, y - 2, x, y + 2); break;
    case 4: line(x - 4, y + 2, x + 4, y + 2); line(x - 2, y - 2, x - 2, y + 2); line(x + 2, y - 2, x + 2, y + 2); break;
    case 5:
        line(x - 3, y + 2, x + 3, y + 2); line(x - 3, y - 2, x + 3, y - 2);
        line(x - 3, y + 2, x - 1, y); line(x - 1, y, x - 3, y - 2);
        line(x + 3, y + 2, x + 1, y); line(x + 1, y, x + 3, y - 2);
        break;
    case 6: frame(x - 1, y - 2, 2, 5); break;
    case 8: line(x - 2, y - 2, x + 2, y + 2); line(x + 3, y - 2, x - 1, y + 2); break;
    }
}

static void make_obstacle_panel()
{
    panel_base();
    map_field();
    zoom_and_pan();
    for (int k = 0; k < 9; k++) {
        lamp_socket(obs_tool_lamp_x, obs_tool_lamp_y[k]);
        obstacle_symbol(obs_tool_value[k], (int)obs_symbol_x, (int)(obs_tool_lamp_y[k] + obs_symbol_dy),
                        {255, 255, 255});
    }
    spinner_field(obs_height_spinner);
    spinner_field(obs_heading_spinner);
    sunken_field((int)obs_chooser_box.x1, (int)obs_chooser_box.y1, (int)obs_chooser_box.x2,
                 (int)obs_chooser_box.y2, field_back);
    pointer_readout();
    draw_labels(obs_labels, label_count(obs_labels));
    save_picture("bitmaps/TileFrgr/TF_OBS");
}

// ---- airports and navaids ---------------------------------------------------------------------------

static void make_airport_panel()
{
    panel_base();
    name_list_fields(apt_list);
    button(apt_delete_box);
    button(apt_add_box);
    sunken_field((int)rwy_rows_box.x1 - 2, (int)rwy_rows_box.y1 - 3, (int)rwy_rows_box.x2 + 2,
                 (int)rwy_rows_box.y2 + 2, field_back);
    arrow_button({rwy_list_up_box.x1, rwy_list_up_box.y1 + 1, rwy_list_up_box.x2, rwy_list_up_box.y2},
                 dir_up);
    arrow_button(rwy_list_down_box, dir_down);
    button(rwy_delete_box);
    button(rwy_add_box);
    sunken_field((int)apt_diagram_box.x1, (int)apt_diagram_box.y1, (int)apt_diagram_box.x2,
                 (int)apt_diagram_box.y2, map_back);
    // A groove between the airport's fields and the runway's.
    fill(8, 104, 790, 104, panel_dark);
    fill(8, 103, 790, 103, panel_light);
    spinner_field(apt_elev_spinner);
    wheel_field(apt_id_wheel);
    cycle_field(apt_tower_button, apt_yes_no_chars);
    cycle_field(apt_bld_button, apt_yes_no_chars);
    spinner_field(rwy_lat_spinner);
    spinner_field(rwy_lon_spinner);
    spinner_field(rwy_num_spinner);
    spinner_field(rwy_hdng_spinner);
    spinner_field(rwy_len_spinner);
    spinner_field(rwy_width_spinner);
    cycle_field(rwy_side_button, rwy_side_chars);
    for (int e = 0; e < 2; e++) {
        cycle_field(rwy_slope_button[e], rwy_slope_chars);
        cycle_field(rwy_edge_button[e], rwy_edge_chars);
        cycle_field(rwy_approach_button[e], rwy_approach_chars);
    }
    cycle_field(rwy_surface_button, rwy_surface_chars);
    draw_labels(apt_labels, label_count(apt_labels));
    save_picture("bitmaps/TileFrgr/TF_APT");
}

static void make_navaid_panel()
{
    panel_base();
    // The fields of the selected navaid on a plate of their own.
    fill(318, 24, 664, 344, {52, 57, 64});
    bevel(318, 24, 664, 344, 1, panel_light, panel_dark);
    name_list_fields(nav_list);
    button(nav_delete_box);
    button(nav_add_box);
    sunken_field(26, (int)nav_kind_lamp_y[7] - 10, 200, (int)nav_kind_lamp_y[0] + 16, {38, 42, 48});
    for (float y : nav_kind_lamp_y) lamp_socket(nav_kind_lamp_x, y);
    wheel_field(nav_id_wheel);
    spinner_field(nav_lat_spinner);
    spinner_field(nav_lon_spinner);
    spinner_field(nav_elev_spinner);
    spinner_field(nav_hdng_spinner);
    spinner_field(nav_slope_spinner);
    spinner_field(nav_frq_spinner);
    draw_labels(nav_labels, label_count(nav_labels));
    save_picture("bitmaps/TileFrgr/TF_NAV");
}

// ---- the splash -------------------------------------------------------------------------------------

// A small imaginary tile in the colours of the stock textures, with its grid.
static void splash_map(int x1, int y1, int x2, int y2)
{
    const int cell = 20;
    for (int y = y1; y <= y2; y++)
        for (int x = x1; x <= x2; x++) {
            float u = (x - x1) / 460.0f, v = (y - y1) / 460.0f;
            float h = fractal_noise(u * 0.5f + 0.1f, v * 0.5f + 0.3f, 3);
            float s = float((x - x1) % cell) / cell, t = float((y - y1) % cell) / cell;
            rgb c;
            if (h < 0.47f) c = water_at(s, t);
            else if (h < 0.478f) c = {200, 186, 136};
            else if (h < 0.64f) c = grass_at(s, t);
            else c = mix(grass_at(s, t), rock_at(s, t), (h - 0.64f) / 0.04f);
            if ((x - x1) % cell == 0 || (y - y1) % cell == 0) c = scaled(c, 0.8f);
            put(x, y, c);
        }
    bevel(x1 - 1, y1 - 1, x2 + 1, y2 + 1, 0, {120, 130, 150}, {8, 10, 16});
}

static void make_splash()
{
    begin_picture(canvas_w, canvas_h, {0, 0, 0});
    for (int y = 0; y < canvas_h; y++) {
        rgb c = mix({10, 16, 30}, {40, 68, 108}, y / float(canvas_h));
        fill(0, y, canvas_w - 1, y, c);
    }
    splash_map(330, 30, 780, 330);
    const char* title = "Tile-Forger";
    const int scale = 7, width = text_width(title, scale);
    draw_title(400 - width / 2 + 3, 470 - 3, title, scale, {6, 10, 20});
    draw_title(400 - width / 2, 470, title, scale, {242, 238, 224});
    draw_text(400, 418, "THE SCENERY EDITOR OF THE NORVANE FLIGHT SIMULATOR", align_centre, 2,
              {236, 198, 112});
    draw_text(400, 560, "NORSUITE", align_centre, 1, {150, 164, 190});
    // Left plain for what the splash draws over it: the text box and the progress slots.
    fill(0, 0, canvas_w - 1, 16, {10, 14, 22});
    fill(0, 17, canvas_w - 1, 17, {52, 66, 92});
    sunken_field(6, 17 + 2, 314, 190, {10, 14, 22});
    save_picture("bitmaps/NRST");
}

// ---- all of them ---------------------------------------------------------------------------------------

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tf_gen_bitmaps <folder \"Norsuite Resources\">\n");
        return 2;
    }
    resources_root = argv[1];
    make_interface_atlas("textures/interfacetext", 1);
    make_interface_atlas("textures/interfacetext_alt", 1);
    make_panel_atlas();
    make_menu_tile();
    make_terrain_textures();
    make_terrain_panel();
    make_obstacle_panel();
    make_airport_panel();
    make_navaid_panel();
    make_splash();
    std::printf("tf_gen_bitmaps: %d written, %d unchanged\n", files_written, files_kept);
    return files_failed ? 1 : 0;
}
