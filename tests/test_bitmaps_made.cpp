// The bitmaps that the build draws beside the program: files the reader takes,
// atlas cells that hold the characters the font maps send there, terrain
// textures whose grass lies where the derivation expects it, and panels whose
// labels stand clear of the controls that the screens draw live.
#include "app/Panel_layout.h"
#include "hl/Hl_graph.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#ifndef TF_BUILD_DIR
#define TF_BUILD_DIR ".."
#endif

namespace {

struct bmp {
    std::vector<unsigned char> bytes;
    int w = 0, h = 0;
};

struct rgb3 {
    int r, g, b;
    bool operator==(const rgb3& o) const { return r == o.r && g == o.g && b == o.b; }
    bool operator!=(const rgb3& o) const { return !(*this == o); }
};

const rgb3 key = {255, 0, 255};
const rgb3 white = {255, 255, 255};

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
    if (b.bytes.size() >= 54) {
        b.w = (int)field(b, 18, 4);
        b.h = (int)field(b, 22, 4);
    }
    return b;
}

// Pixel (x, y), row 0 at the bottom, read as the program's reader does: from byte 54.
rgb3 at(const bmp& b, int x, int y)
{
    const int row = (b.w * 3 + 3) & ~3;
    const unsigned char* p = &b.bytes[54 + y * row + x * 3];
    return {p[2], p[1], p[0]};
}

bool power_of_two(int v) { return v > 0 && (v & (v - 1)) == 0; }

struct expected_file {
    const char* name;
    int w, h;
    int texture;     // 1: must be a power of two each way
    int square;      // 1: loaded with a mipmap chain, so square
};

const expected_file all_files[] = {
    {"textures/interfacetext", 128, 128, 1, 0},
    {"textures/interfacetext_alt", 128, 128, 1, 0},
    {"textures/paneltext", 256, 256, 1, 0},
    {"textures/interface/menuitems", 128, 32, 1, 0},
    {"textures/terrain/wat", 0, 0, 1, 1},
    {"textures/terrain/grs", 0, 0, 1, 1},
    {"textures/terrain/mnt", 0, 0, 1, 1},
    {"textures/terrain/grs_wat_h", 0, 0, 1, 1},
    {"textures/terrain/grs_wat_c", 0, 0, 1, 1},
    {"textures/terrain/wat_grs_c", 0, 0, 1, 1},
    {"textures/terrain/grs_mnt_h", 0, 0, 1, 1},
    {"textures/terrain/grs_mnt_c", 0, 0, 1, 1},
    {"textures/terrain/mnt_grs_c", 0, 0, 1, 1},
    {"bitmaps/TileFrgr/TF_MAP", 800, 600, 0, 0},
    {"bitmaps/TileFrgr/TF_OBS", 800, 600, 0, 0},
    {"bitmaps/TileFrgr/TF_APT", 800, 600, 0, 0},
    {"bitmaps/TileFrgr/TF_NAV", 800, 600, 0, 0},
    {"bitmaps/NRST", 800, 600, 0, 0},
};

// ---- atlases ---------------------------------------------------------------------------------

const int cell_w = 6, cell_h = 22;

void cell_origin(int cell, int column_shift, int* x, int* y)
{
    *x = (cell % 21 + column_shift) * cell_w;
    *y = (cell / 21) * cell_h;
}

// The cell must hold c's 5 by 7 pattern, each row two texels high with the
// baseline 4 texels up, white on the key, and nothing else.
void expect_cell_holds_pattern(const bmp& atlas, int cell, int column_shift, int c)
{
    int x0, y0;
    cell_origin(cell, column_shift, &x0, &y0);
    const unsigned char* rows = glyph_rows(c);
    int wrong = 0;
    for (int ty = 0; ty < cell_h; ty++)
        for (int tx = 0; tx < cell_w; tx++) {
            bool set = false;
            if (tx < 5 && ty >= 4 && ty < 18) set = rows[6 - (ty - 4) / 2] & (0x10 >> tx);
            if (at(atlas, x0 + tx, y0 + ty) != (set ? white : key)) wrong++;
        }
    EXPECT_EQ(wrong, 0) << "character '" << char(c) << "' in cell " << cell << " shifted " << column_shift;
}

int ink_in(const bmp& atlas, int x1, int y1, int x2, int y2)
{
    int n = 0;
    for (int y = y1; y < y2; y++)
        for (int x = x1; x < x2; x++) n += at(atlas, x, y) != key;
    return n;
}

void tex_rect(const float st[4], int size, int r[4])
{
    for (int k = 0; k < 4; k++) r[k] = (int)(st[k] * size + 0.5f);
}

bool overlap(const int a[4], const int b[4])
{
    return a[0] < b[2] && b[0] < a[2] && a[1] < b[3] && b[1] < a[3];
}

// ---- terrain ---------------------------------------------------------------------------------

bool grass(rgb3 p) { return p.g > p.r + 15 && p.g > p.b + 15; }

int grass_in_row(const bmp& b, int y)
{
    int n = 0;
    for (int x = 0; x < b.w; x++) n += grass(at(b, x, y));
    return n;
}

int grass_in_column(const bmp& b, int x)
{
    int n = 0;
    for (int y = 0; y < b.h; y++) n += grass(at(b, x, y));
    return n;
}

// ---- panels ---------------------------------------------------------------------------------

struct rect { float x1, y1, x2, y2; };     // corners included

bool rects_meet(const rect& a, const rect& b)
{
    return a.x1 <= b.x2 && b.x1 <= a.x2 && a.y1 <= b.y2 && b.y1 <= a.y2;
}

int label_left(const panel_label& l)
{
    int width = ((int)std::strlen(l.text) * 6 - 1) * l.scale;
    int left = (int)(l.x < 0 ? l.x - 0.5f : l.x + 0.5f);
    if (l.align == align_right) left -= width;
    if (l.align == align_centre) left -= width / 2;
    return left;
}

rect label_rect(const panel_label& l)
{
    float left = (float)label_left(l);
    float width = ((float)std::strlen(l.text) * 6 - 1) * l.scale;
    // A heading's shadow stands one pixel right and below.
    return {left, l.y - 1, left + width, l.y + 7 * l.scale - 1};
}

// Where a screen draws in every frame, over its panel.
rect spinner_rect(panel_spinner s) { return {s.x - 3, s.y - 2, s.x + spinner_step * s.digits, s.y + 8}; }
rect cycle_rect(panel_cycle c, int chars) { return {c.x, c.y - 2, c.x + 6 * chars, c.y + 8}; }
rect wheel_rect(panel_wheel w) { return {w.x, w.y - 2, w.x + wheel_step * w.chars, w.y + 8}; }
rect lamp_rect(float x, float y) { return {x, y, x + 9, y + 9}; }
rect box_rect(panel_box b) { return {b.x1, b.y1, b.x2, b.y2}; }
rect list_rect(panel_list l)
{
    return {l.x, l.y + list_bottom_dy - list_arrow_h, l.x + list_knob_dx + list_knob_w,
            l.y + list_top_dy + list_arrow_h};
}
rect edit_line_rect(panel_list l)
{
    return {l.x + list_edit_dx, l.y + list_edit_dy - 2, l.x + list_edit_dx + 240, l.y + list_edit_dy + 8};
}

void add_readout(std::vector<rect>& live)
{
    for (float y : {readout_lat_y, readout_lon_y}) live.push_back({readout_deg_x - 6, y - 2, readout_dec_x + 48, y + 8});
}

std::vector<rect> terrain_live()
{
    std::vector<rect> live = {spinner_rect(ter_lat_spinner), spinner_rect(ter_lon_spinner),
                              spinner_rect(ter_elev_spinner), box_rect(map_area_box)};
    for (float y : ter_tool_lamp_y) live.push_back(lamp_rect(ter_tool_lamp_x, y));
    for (int r = ter_list_first_row; r <= ter_list_last_row; r++) {
        live.push_back(lamp_rect(ter_list_lamp_x, ter_list_lamp_y0 - ter_list_pitch * r));
        float y = ter_list_text_y0 - ter_list_pitch * r;
        live.push_back({ter_list_number_x, y - 2, ter_list_open_box.x2, y + 8});
    }
    add_readout(live);
    return live;
}

std::vector<rect> obstacle_live()
{
    std::vector<rect> live = {spinner_rect(obs_height_spinner), spinner_rect(obs_heading_spinner),
                              box_rect(obs_chooser_box), box_rect(map_area_box)};
    for (float y : obs_tool_lamp_y) live.push_back(lamp_rect(obs_tool_lamp_x, y));
    add_readout(live);
    return live;
}

std::vector<rect> airport_live()
{
    std::vector<rect> live = {
        list_rect(apt_list), edit_line_rect(apt_list), box_rect(rwy_rows_box), box_rect(apt_diagram_box),
        spinner_rect(apt_elev_spinner), wheel_rect(apt_id_wheel),
        cycle_rect(apt_tower_button, apt_yes_no_chars), cycle_rect(apt_bld_button, apt_yes_no_chars),
        spinner_rect(rwy_lat_spinner), spinner_rect(rwy_lon_spinner), spinner_rect(rwy_num_spinner),
        spinner_rect(rwy_hdng_spinner), spinner_rect(rwy_len_spinner), spinner_rect(rwy_width_spinner),
        cycle_rect(rwy_side_button, rwy_side_chars), cycle_rect(rwy_surface_button, rwy_surface_chars)};
    for (int e = 0; e < 2; e++) {
        live.push_back(cycle_rect(rwy_slope_button[e], rwy_slope_chars));
        live.push_back(cycle_rect(rwy_edge_button[e], rwy_edge_chars));
        live.push_back(cycle_rect(rwy_approach_button[e], rwy_approach_chars));
    }
    return live;
}

std::vector<rect> navaid_live()
{
    std::vector<rect> live = {list_rect(nav_list), edit_line_rect(nav_list), wheel_rect(nav_id_wheel),
                              spinner_rect(nav_lat_spinner), spinner_rect(nav_lon_spinner),
                              spinner_rect(nav_elev_spinner), spinner_rect(nav_hdng_spinner),
                              spinner_rect(nav_slope_spinner), spinner_rect(nav_frq_spinner)};
    for (float y : nav_kind_lamp_y) live.push_back(lamp_rect(nav_kind_lamp_x, y));
    return live;
}

struct panel_case {
    const char* bitmap;
    const panel_label* labels;
    int count;
    std::vector<rect> (*live)();
};

const panel_case panels[] = {
    {"bitmaps/TileFrgr/TF_MAP", ter_labels, label_count(ter_labels), terrain_live},
    {"bitmaps/TileFrgr/TF_OBS", obs_labels, label_count(obs_labels), obstacle_live},
    {"bitmaps/TileFrgr/TF_APT", apt_labels, label_count(apt_labels), airport_live},
    {"bitmaps/TileFrgr/TF_NAV", nav_labels, label_count(nav_labels), navaid_live},
};

// The label's characters stand in the bitmap exactly where the table puts them:
// every set pixel of each pattern has the one ink colour, and the glyph boxes
// hold some other colour around it.
void expect_label_drawn(const bmp& panel, const panel_label& l)
{
    const int left = label_left(l), s = l.scale, y = (int)l.y;
    bool have_ink = false;
    rgb3 ink = {0, 0, 0};
    int off_ink = 0, wrong = 0;
    for (int k = 0; l.text[k]; k++) {
        if (l.text[k] == ' ') continue;
        const unsigned char* rows = glyph_rows(l.text[k]);
        for (int r = 0; r < 7; r++)
            for (int c = 0; c < 5; c++) {
                rgb3 p = at(panel, left + (6 * k + c) * s, y + (6 - r) * s);
                if (!(rows[r] & (0x10 >> c))) {
                    off_ink += have_ink && p != ink;
                    continue;
                }
                if (!have_ink) {
                    ink = p;
                    have_ink = true;
                }
                wrong += p != ink;
            }
    }
    EXPECT_TRUE(have_ink) << l.text;
    EXPECT_EQ(wrong, 0) << "label \"" << l.text << "\" is not where its table puts it";
    EXPECT_GT(off_ink, 0) << l.text;
}

}  // namespace

TEST(BitmapsMade, EveryFileIsOneTheReaderTakes)
{
    for (const expected_file& f : all_files) {
        SCOPED_TRACE(f.name);
        bmp b = load(f.name);
        ASSERT_GE(b.bytes.size(), 54u) << "missing or cut short";
        EXPECT_EQ(field(b, 0, 2), 0x4D42u);
        EXPECT_EQ(field(b, 28, 2), 24u);
        EXPECT_EQ(field(b, 30, 4), 0u);
        EXPECT_EQ(field(b, 10, 4), 54u) << "the reader takes the pixels from byte 54";
        EXPECT_GT(b.w, 0);
        EXPECT_GT(b.h, 0);
        EXPECT_LE(b.w, 1024);
        EXPECT_LE(b.h, 1024);
        const size_t row = (b.w * 3 + 3) & ~3;
        EXPECT_EQ(b.bytes.size(), 54 + row * b.h);
        if (f.w) {
            EXPECT_EQ(b.w, f.w);
            EXPECT_EQ(b.h, f.h);
        }
        if (f.texture) {
            EXPECT_TRUE(power_of_two(b.w) && power_of_two(b.h));
            // A texture is read into a scratch area of 1920000 bytes, four a pixel when keyed.
            EXPECT_LT(b.w * b.h * 4, 1920000);
        }
        if (f.square) {
            EXPECT_EQ(b.w, b.h);
            EXPECT_GE(b.w, 64);
        }
    }
}

TEST(BitmapsMade, AtlasCellsHoldTheGlyphsTheMapSendsThere)
{
    const char* sample = "09AMQZ!%/?@|(:_";
    bmp inter = load("textures/interfacetext");
    bmp panel = load("textures/paneltext");
    ASSERT_EQ(inter.w, 128);
    ASSERT_EQ(panel.w, 256);
    for (const char* p = sample; *p; p++) {
        expect_cell_holds_pattern(inter, font_cell(*p, 101), 0, *p);
        expect_cell_holds_pattern(panel, font_cell(*p, 102), 0, *p);
        expect_cell_holds_pattern(panel, font_cell(*p, 103), 21, *p);
    }
    for (const char* p = "0123456789.,-_"; *p; p++) expect_cell_holds_pattern(panel, font_cell(*p, 104), 0, *p);
}

TEST(BitmapsMade, EveryMappedCharacterHasItsOwnInkInsideItsGlyph)
{
    bmp atlas = load("textures/interfacetext");
    ASSERT_EQ(atlas.w, 128);
    std::vector<int> cells = {0};
    for (int c = 0x21; c <= 0x7E; c++)
        if (font_cell(c, 101) > 0) cells.push_back(font_cell(c, 101));
    EXPECT_EQ(cells.size(), 1u + 10 + 26 + 26 + 28);
    for (int cell : cells) {
        int x, y;
        cell_origin(cell, 0, &x, &y);
        EXPECT_GT(ink_in(atlas, x, y, x + 5, y + 20), 0) << "cell " << cell << " is empty";
        EXPECT_EQ(ink_in(atlas, x + 5, y, x + 6, y + cell_h), 0) << "cell " << cell << " bleeds right";
        EXPECT_EQ(ink_in(atlas, x, y + 20, x + 6, y + cell_h), 0) << "cell " << cell << " bleeds up";
    }
    // Lower case has shapes of its own, not the capitals again.
    for (int c = 'a'; c <= 'z'; c++) {
        int xl, yl, xu, yu, same = 0;
        cell_origin(font_cell(c, 101), 0, &xl, &yl);
        cell_origin(font_cell(c - 32, 101), 0, &xu, &yu);
        for (int ty = 0; ty < 20; ty++)
            for (int tx = 0; tx < 5; tx++) same += at(atlas, xl + tx, yl + ty) == at(atlas, xu + tx, yu + ty);
        EXPECT_LT(same, 100) << char(c);
    }
    // Cell 0 is not blank: an unmapped character shows as a box.
    EXPECT_EQ(font_cell('"', 101), 0);
    EXPECT_EQ(font_cell('{', 101), 0);
}

TEST(BitmapsMade, KnobAndArrowSitAtTheirTextureCoordinatesClearOfTheGlyphs)
{
    bmp atlas = load("textures/interfacetext");
    ASSERT_EQ(atlas.w, 128);
    int knob[4], arrow[4];
    tex_rect(knob_tex, 128, knob);
    tex_rect(arrow_tex, 128, arrow);
    // The knob is drawn with the key showing black, so all of it is opaque.
    EXPECT_EQ(ink_in(atlas, knob[0], knob[1], knob[2], knob[3]), (knob[2] - knob[0]) * (knob[3] - knob[1]));
    // The arrow's tip is the top left texel; around the arrow the key shows through.
    EXPECT_NE(at(atlas, arrow[0], arrow[3] - 1), key);
    int arrow_ink = ink_in(atlas, arrow[0], arrow[1], arrow[2], arrow[3]);
    EXPECT_GT(arrow_ink, 60);
    EXPECT_LT(arrow_ink, (arrow[2] - arrow[0]) * (arrow[3] - arrow[1]) * 2 / 3);
    for (int c = 0x21; c <= 0x7E; c++) {
        int x, y;
        cell_origin(font_cell(c, 101), 0, &x, &y);
        int glyph[4] = {x, y, x + 5, y + 20};
        EXPECT_FALSE(overlap(glyph, knob)) << char(c);
        EXPECT_FALSE(overlap(glyph, arrow)) << char(c);
    }
}

TEST(BitmapsMade, GrassLiesWhereTheTextureTableExpectsIt)
{
    for (const char* name : {"grs_wat_h", "grs_mnt_h"}) {
        SCOPED_TRACE(name);
        bmp b = load(std::string("textures/terrain/") + name);
        ASSERT_GT(b.w, 0);
        EXPECT_EQ(grass_in_column(b, 0), b.h) << "grass along s = 0";
        EXPECT_EQ(grass_in_column(b, b.w - 1), 0);
    }
    for (const char* name : {"grs_wat_c", "grs_mnt_c"}) {
        SCOPED_TRACE(name);
        bmp b = load(std::string("textures/terrain/") + name);
        ASSERT_GT(b.w, 0);
        EXPECT_EQ(grass_in_column(b, 0), b.h) << "grass along s = 0";
        EXPECT_EQ(grass_in_row(b, b.h - 1), b.w) << "grass along t = 1";
        EXPECT_FALSE(grass(at(b, b.w - 1, 0)));
        EXPECT_FALSE(grass(at(b, b.w * 3 / 4, b.h / 4)));
    }
    for (const char* name : {"wat_grs_c", "mnt_grs_c"}) {
        SCOPED_TRACE(name);
        bmp b = load(std::string("textures/terrain/") + name);
        ASSERT_GT(b.w, 0);
        EXPECT_TRUE(grass(at(b, b.w - 1, 0))) << "grass in the corner s = 1, t = 0";
        EXPECT_EQ(grass_in_column(b, 0), 0);
        EXPECT_EQ(grass_in_row(b, b.h - 1), 0);
        EXPECT_FALSE(grass(at(b, b.w / 2, b.h / 2)));
    }
    bmp g = load("textures/terrain/grs"), w = load("textures/terrain/wat"), m = load("textures/terrain/mnt");
    ASSERT_GT(g.w * w.w * m.w, 0);
    int water_blue = 0;
    for (int y = 0; y < g.h; y++) EXPECT_EQ(grass_in_row(g, y), g.w);
    for (int y = 0; y < w.h; y++) {
        EXPECT_EQ(grass_in_row(w, y), 0);
        EXPECT_EQ(grass_in_row(m, y), 0);
        for (int x = 0; x < w.w; x++) water_blue += at(w, x, y).b > at(w, x, y).r + 40;
    }
    EXPECT_EQ(water_blue, w.w * w.h);
}

// Cells turned and mirrored by the derivation meet edge to edge, so the grass
// band must cross every edge at the same distance from the corner.
TEST(BitmapsMade, ShoresMeetAtTheSameSpotOnEveryEdge)
{
    for (const char* kind : {"wat", "mnt"}) {
        SCOPED_TRACE(kind);
        bmp half = load(std::string("textures/terrain/grs_") + kind + "_h");
        bmp corner = load(std::string("textures/terrain/grs_") + kind + "_c");
        bmp inside = load(std::string("textures/terrain/") + kind + "_grs_c");
        ASSERT_GT(half.w * corner.w * inside.w, 0);
        const int band = grass_in_row(half, 0);
        EXPECT_GT(band, half.w / 8);
        EXPECT_LT(band, half.w / 2);
        EXPECT_EQ(grass_in_row(half, half.h - 1), band);
        EXPECT_EQ(grass_in_row(corner, 0), band);
        EXPECT_EQ(grass_in_column(corner, corner.w - 1), band);
        EXPECT_EQ(grass_in_row(inside, 0), band);
        EXPECT_EQ(grass_in_column(inside, inside.w - 1), band);
        for (int x = 0; x < band; x++) {
            EXPECT_TRUE(grass(at(half, x, 0)));
            EXPECT_TRUE(grass(at(inside, inside.w - 1 - x, 0)));
        }
    }
}

TEST(BitmapsMade, PanelsKeepNoKeyColourAndTheirPlainAreasPlain)
{
    for (const char* name : {"bitmaps/TileFrgr/TF_MAP", "bitmaps/TileFrgr/TF_OBS", "bitmaps/TileFrgr/TF_APT",
                             "bitmaps/TileFrgr/TF_NAV", "bitmaps/NRST"}) {
        SCOPED_TRACE(name);
        bmp b = load(name);
        ASSERT_EQ(b.w, 800);
        int keyed = 0;
        for (int y = 0; y < b.h; y++)
            for (int x = 0; x < b.w; x++) keyed += at(b, x, y) == key;
        EXPECT_EQ(keyed, 0) << "a keyed pixel would show the frame before through the panel";
    }
    auto plain = [](const bmp& b, int x1, int y1, int x2, int y2) {
        int odd = 0;
        for (int y = y1; y <= y2; y++)
            for (int x = x1; x <= x2; x++) odd += at(b, x, y) != at(b, x1, y1);
        return odd;
    };
    for (const char* name : {"bitmaps/TileFrgr/TF_MAP", "bitmaps/TileFrgr/TF_OBS"}) {
        bmp b = load(name);
        ASSERT_EQ(b.w, 800);
        EXPECT_EQ(plain(b, (int)map_x1, (int)map_y1, (int)map_x2, (int)map_y2), 0) << name;
    }
    bmp splash = load("bitmaps/NRST");
    ASSERT_EQ(splash.w, 800);
    EXPECT_EQ(plain(splash, 10, 20, 310, 186), 0) << "the splash's text box";
    EXPECT_EQ(plain(splash, 11, 7, 604, 13), 0) << "the progress slots";
}

TEST(PanelLayout, LabelsStandWhereTheTablesSay)
{
    for (const panel_case& p : panels) {
        SCOPED_TRACE(p.bitmap);
        bmp b = load(p.bitmap);
        ASSERT_EQ(b.w, 800);
        for (int k = 0; k < p.count; k++) expect_label_drawn(b, p.labels[k]);
        if (p.labels == ter_labels || p.labels == obs_labels)
            for (const panel_label& l : readout_labels) expect_label_drawn(b, l);
    }
}

TEST(PanelLayout, LabelsKeepClearOfWhatTheScreensDrawLive)
{
    for (const panel_case& p : panels) {
        SCOPED_TRACE(p.bitmap);
        std::vector<rect> live = p.live();
        std::vector<const panel_label*> labels;
        for (int k = 0; k < p.count; k++) labels.push_back(&p.labels[k]);
        if (p.labels == ter_labels || p.labels == obs_labels)
            for (const panel_label& l : readout_labels) labels.push_back(&l);
        for (size_t k = 0; k < labels.size(); k++) {
            rect r = label_rect(*labels[k]);
            EXPECT_GE(r.x1, 0) << labels[k]->text;
            EXPECT_GE(r.y1, 0) << labels[k]->text;
            EXPECT_LT(r.x2, canvas_w) << labels[k]->text;
            EXPECT_LT(r.y2, menu_bar_y) << labels[k]->text;
            for (const rect& z : live) EXPECT_FALSE(rects_meet(r, z)) << labels[k]->text;
            for (size_t j = k + 1; j < labels.size(); j++)
                EXPECT_FALSE(rects_meet(r, label_rect(*labels[j]))) << labels[k]->text << " / " << labels[j]->text;
        }
    }
}
