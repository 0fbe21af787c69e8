// The drawing layer's text: fixed-pitch characters, strings with word wrap and
// numbers in a field of digits. On OpenGL a character is a quad cut from an
// atlas bitmap; while to_array is set it is a 5 by 7 pattern stamped into
// rgb_array.
#include "hl/Hl_graph.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <GL/gl.h>

// ---- fonts ------------------------------------------------------------------------------------

// Both atlases have cells of 6 by 22 texels, 21 to a row from the bottom left;
// a glyph takes the lower left 5 by 20 texels of its cell.
struct font_entry {
    int font;
    int atlas;              // texture id; -1: draws from whatever is bound
    float step_s, step_t;   // one cell
    float glyph_s, glyph_t; // the glyph inside it
    int digits_only;        // 1: the digit map, 0: the general map
    int column_shift;       // columns right of the map's own
};

static const font_entry fonts[] = {
    {100, 154, 0.046875f, 0.171875f, 0.0390625f, 0.15625f, 0, 0},
    {101, 154, 0.046875f, 0.171875f, 0.0390625f, 0.15625f, 0, 0},
    {102, 156, 0.0234375f, 0.0859375f, 0.01953125f, 0.078125f, 0, 0},
    {103, 156, 0.0234375f, 0.0859375f, 0.01953125f, 0.078125f, 0, 21},
    {104, -1, 0.0234375f, 0.0859375f, 0.01953125f, 0.078125f, 1, 0},
};

const int atlas_columns = 21;

// An unknown font draws as font 101.
static const font_entry& font_of(int font)
{
    for (const font_entry& f : fonts)
        if (f.font == font) return f;
    return fonts[1];
}

// Characters 63 to 90 of the general map, in cell order.
static const char general_others[] = "!@#$%^&*()-_+=[]|\\':;<.>,?/`";
const int general_others_first = 63;

static int general_cell(int c)
{
    if (c >= '0' && c <= '9') return 1 + (c - '0');
    if (c >= 'A' && c <= 'Z') return 11 + 2 * (c - 'A');
    if (c >= 'a' && c <= 'z') return 12 + 2 * (c - 'a');
    for (int k = 0; general_others[k]; k++)
        if (general_others[k] == c) return general_others_first + k;
    return 0;
}

static int digit_cell(int c)
{
    if (c >= '0' && c <= '9') return 91 + (c - '0');
    if (c == '.') return 101;
    if (c == ',') return 102;
    if (c == '-') return 103;
    if (c == '_') return 104;
    return 0;
}

// The cell number of the map; font 103 takes it atlas_columns further right
// (see OGL_char), so 102 and 103 give the same cell here.
int font_cell(int c, int font)
{
    return font_of(font).digits_only ? digit_cell(c) : general_cell(c);
}

// ---- the 5 by 7 patterns ----------------------------------------------------------------------

// Seven rows from the top; bit 0x10 is the leftmost pixel.
struct glyph_pattern {
    char c;
    unsigned char rows[7];
};

static const glyph_pattern patterns[] = {
    {'!', {0x04, 0x04, 0x04, 0x04, 0x04, 0x00, 0x04}},
    {'#', {0x00, 0x0A, 0x1F, 0x0A, 0x1F, 0x0A, 0x00}},
    {'$', {0x0E, 0x15, 0x14, 0x0E, 0x05, 0x15, 0x0E}},
    {'%', {0x0F, 0x15, 0x16, 0x0A, 0x0D, 0x15, 0x12}},
    {'&', {0x0C, 0x12, 0x14, 0x08, 0x15, 0x12, 0x0D}},
    {'\'', {0x04, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {'(', {0x04, 0x08, 0x10, 0x10, 0x10, 0x08, 0x04}},
    {')', {0x04, 0x02, 0x01, 0x01, 0x01, 0x02, 0x04}},
    {'*', {0x00, 0x04, 0x15, 0x0E, 0x15, 0x04, 0x00}},
    {'+', {0x00, 0x04, 0x04, 0x1F, 0x04, 0x04, 0x00}},
    {',', {0x00, 0x00, 0x00, 0x00, 0x04, 0x04, 0x08}},
    {'-', {0x00, 0x00, 0x00, 0x1F, 0x00, 0x00, 0x00}},
    {'.', {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04}},
    {'/', {0x01, 0x01, 0x02, 0x02, 0x04, 0x04, 0x08}},
    {'0', {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
    {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x04}},
    {'2', {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}},
    {'3', {0x0E, 0x11, 0x01, 0x06, 0x01, 0x11, 0x0E}},
    {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}},
    {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}},
    {'6', {0x0E, 0x10, 0x1E, 0x11, 0x11, 0x11, 0x0E}},
    {'7', {0x1F, 0x01, 0x01, 0x02, 0x04, 0x04, 0x04}},
    {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}},
    {'9', {0x0E, 0x11, 0x11, 0x11, 0x0F, 0x01, 0x0E}},
    {':', {0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x04}},
    {';', {0x00, 0x00, 0x04, 0x00, 0x00, 0x04, 0x08}},
    {'<', {0x00, 0x02, 0x04, 0x08, 0x04, 0x02, 0x00}},
    {'=', {0x00, 0x00, 0x1E, 0x00, 0x1E, 0x00, 0x00}},
    {'>', {0x00, 0x08, 0x04, 0x02, 0x04, 0x08, 0x00}},
    {'?', {0x0E, 0x11, 0x01, 0x02, 0x04, 0x00, 0x04}},
    {'@', {0x0E, 0x11, 0x1D, 0x15, 0x1E, 0x10, 0x0E}},
    {'A', {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}},
    {'B', {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E}},
    {'C', {0x0E, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0E}},
    {'D', {0x1E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x1E}},
    {'E', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x1F}},
    {'F', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10}},
    {'G', {0x0E, 0x11, 0x10, 0x10, 0x13, 0x11, 0x0F}},
    {'H', {0x11, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}},
    {'I', {0x0E, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E}},
    {'J', {0x01, 0x01, 0x01, 0x01, 0x01, 0x11, 0x0E}},
    {'K', {0x11, 0x12, 0x14, 0x18, 0x14, 0x12, 0x11}},
    {'L', {0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1F}},
    {'M', {0x11, 0x1B, 0x15, 0x11, 0x11, 0x11, 0x11}},
    {'N', {0x11, 0x19, 0x15, 0x13, 0x11, 0x11, 0x11}},
    {'O', {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
    {'P', {0x1E, 0x11, 0x11, 0x1E, 0x10, 0x10, 0x10}},
    {'Q', {0x0E, 0x11, 0x11, 0x11, 0x15, 0x13, 0x0F}},
    {'R', {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x11}},
    {'S', {0x0E, 0x11, 0x10, 0x0E, 0x01, 0x11, 0x0E}},
    {'T', {0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04}},
    {'U', {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
    {'V', {0x11, 0x11, 0x11, 0x11, 0x11, 0x0A, 0x04}},
    {'W', {0x11, 0x11, 0x11, 0x11, 0x15, 0x1B, 0x11}},
    {'X', {0x11, 0x0A, 0x04, 0x04, 0x04, 0x0A, 0x11}},
    {'Y', {0x11, 0x11, 0x0A, 0x04, 0x04, 0x04, 0x04}},
    {'Z', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x10, 0x1F}},
    {'[', {0x06, 0x04, 0x04, 0x04, 0x04, 0x04, 0x06}},
    {'\\', {0x00, 0x10, 0x08, 0x04, 0x02, 0x01, 0x00}},
    {']', {0x0C, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0C}},
    {'^', {0x04, 0x0A, 0x11, 0x00, 0x00, 0x00, 0x00}},
    {'_', {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x1F}},
    {'|', {0x04, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04}},
};

static const unsigned char blank_rows[7] = {0, 0, 0, 0, 0, 0, 0};

static const unsigned char* own_pattern(int c)
{
    for (const glyph_pattern& p : patterns)
        if (p.c == c) return p.rows;
    return nullptr;
}

// Lower case takes the capital's pattern; a code with no pattern of its own
// (double quote, backtick, left brace, and everything outside '!' to '|')
// takes the underscore's. Space is blank.
const unsigned char* glyph_rows(int c)
{
    if (c == ' ') return blank_rows;
    if (c >= 'a' && c <= 'z') c += 'A' - 'a';
    const unsigned char* rows = own_pattern(c);
    return rows ? rows : own_pattern('_');
}

// ---- characters -------------------------------------------------------------------------------

void OGL_sub_character(float x, float y, const int pattern[35])
{
    const int px = intround(x), py = intround(y);
    for (int r = 0; r < 7; r++)
        for (int c = 0; c < 5; c++)
            if (pattern[r * 5 + c]) BUF_point(px + c, py + 6 - r);
}

static void stamp_char(float x, float y, int c)
{
    const unsigned char* rows = glyph_rows(c);
    int pattern[35];
    for (int r = 0; r < 7; r++)
        for (int k = 0; k < 5; k++) pattern[r * 5 + k] = (rows[r] >> (4 - k)) & 1;
    OGL_sub_character(x, y, pattern);
}

// Four vertices of the current GL_QUADS batch, so only between glBegin(GL_QUADS)
// and glEnd: 5 wide and 10 high, from 2 below y to 8 above it. x and y already
// hold the window origin.
void OGL_char(float x, float y, int c, int font)
{
    if (c == ' ') return;
    if (to_array) {
        stamp_char(x, y, c);
        return;
    }
    const font_entry& f = font_of(font);
    const int cell = font_cell(c, font);
    const float s = (float)(cell % atlas_columns + f.column_shift) * f.step_s;
    const float t = (float)(cell / atlas_columns) * f.step_t;
    glTexCoord2f(s, t);
    glVertex2f(x, y - 2);
    glTexCoord2f(s, t + f.glyph_t);
    glVertex2f(x, y + 8);
    glTexCoord2f(s + f.glyph_s, t + f.glyph_t);
    glVertex2f(x + 5, y + 8);
    glTexCoord2f(s + f.glyph_s, t);
    glVertex2f(x + 5, y - 2);
}

// ---- strings and numbers ----------------------------------------------------------------------

// Textured, with the alpha test where a unit is a pixel and blending where the
// canvas is stretched; then the text's colour.
static void text_state(int col)
{
    if (use_blend)
        OGL_setstate(sw_fog_off, sw_tex_on, sw_light_off, sw_alpha_off, sw_blend_on,
                     sw_depth_off, sw_dwrite_off);
    else
        OGL_setstate(sw_fog_off, sw_tex_on, sw_light_off, sw_alpha_on, sw_blend_off,
                     sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(col, 1.0f);
}

static void bind_font_atlas(int font)
{
    if (font >= 100 && font <= 103) OGL_bindtex(font_of(font).atlas);
}

const float line_pitch = 10.0f;
const float lookahead_width = 6.0f;   // per character, whatever the advance

// Where the word from text[i] on would end if it went on from x.
static float word_end(const char* text, int i, float x)
{
    for (; text[i] != 0 && text[i] != ' '; i++) x += lookahead_width;
    return x;
}

void OGL_string(int col, float x, float y, const char* text, float wrap_width, float advance, int font)
{
    const float x0 = (float)intround(x + mnw.win_x);
    float cx = x0;
    float cy = (float)intround(y + mnw.win_y);
    const int wrapping = wrap_width < 800.0f;
    text_state(col);
    bind_font_atlas(font);
    glBegin(GL_QUADS);
    for (int i = 0; text[i] != 0;) {
        if (text[i] != '\n') {
            OGL_char(cx, cy, text[i], font);
            cx += advance;
        }
        i++;
        if (!wrapping) continue;
        // Tested after each character, so a line breaks where the rest of
        // the next word would pass the right edge, and after a newline.
        if (x0 + wrap_width < word_end(text, i, cx)) {
            cx = x0;
            cy -= line_pitch;
        }
        if (text[i] == '\n') {
            cx = x0;
            cy -= line_pitch;
        }
    }
    glEnd();
}

void OGL_text_line(int col, float x, float y, const char* text) { OGL_string(col, x, y, text, no_wrap, panel_advance, panel_font); }

const int max_number_digits = 8;
const float stop_offset = 1.5f;        // spacings right of the digit before the units
const float comma_spacing = 10.0f;     // separators only at the spinners' spacing

// value x 10^decimals rounded half up. Values beyond any field saturate, so the
// conversion stays defined; they show in the overflow form or as leading 0.
static long long scaled_number(float v, int decimals)
{
    float power = 1.0f;
    for (int k = 0; k < decimals; k++) power *= 10.0f;
    const float scaled = v * power + 0.5f;
    const float limit = 1.0e18f;
    if (!(scaled < limit)) return (long long)limit;
    return (long long)scaled;
}

static int digits_needed(long long n)
{
    int m = 1;
    for (long long bound = 9; bound <= 9999999 && n > bound; bound = bound * 10 + 9) m++;
    return m;
}

static void draw_digit(float x, float y, long long d, int font)
{
    OGL_char(x, y, int_to_char(d > 9 ? 10 : (int)d), font);
}

// Exactly `digits` digits with leading zeros, the stop and, at spacing 10,
// thousands and millions separators. The top place is not reduced, so a
// value that needs more than 8 digits shows a 0 there.
static void number_field(float x, float y, long long n, int digits, int decimals, float spacing, int font)
{
    long long place_value = 10000000;
    for (int p = max_number_digits - 1; p >= 0; p--, place_value /= 10) {
        if (p >= 1 && decimals == p) OGL_char(x + stop_offset * spacing, y - 1, '.', font);
        if (digits > p) {
            x += spacing;
            const long long d = n / place_value;
            draw_digit(x, y, p == max_number_digits - 1 ? d : d % 10, font);
        }
        if ((p == 6 || p == 3) && spacing == comma_spacing && digits - decimals >= p + 1)
            OGL_char(5 + x - (float)decimals * spacing, y, ',', font);
    }
}

// Four cells: M.MxE, M.M times 10 to the E.
static void number_overflow(float x, float y, float v, float spacing, int font)
{
    int e = 2;
    while (v >= 999.0f && e < 99) {
        v /= 10.0f;
        e++;
    }
    if (!(v < 999.0f)) v = 999.0f;   // infinity or not a number
    const int m = intround(v);
    OGL_char(x + stop_offset * spacing, y - 1, '.', font);
    draw_digit(x + spacing, y, m / 100, font);
    draw_digit(x + 2 * spacing, y, (m % 100) / 10, font);
    OGL_char(x + 3 * spacing, y, 'x', font);
    draw_digit(x + 4 * spacing, y, e, font);
}

void OGL_number(int col, float x, float y, float value, int digits, int decimals, float spacing,
                int signed_flag, int font)
{
    float cx = (float)intround(x + mnw.win_x);
    const float cy = (float)intround(y + mnw.win_y);
    text_state(col);
    // Font 100 is the menus' face: a number in it draws from whatever is bound.
    if (font != 100) bind_font_atlas(font);
    glBegin(GL_QUADS);
    const int negative = value < 0.0f;
    const float v = negative ? -value : value;
    const long long n = scaled_number(v, decimals);
    const int m = digits_needed(n);
    if (signed_flag && negative && n != 0) OGL_char(cx - 6, cy, '-', font);
    cx -= spacing;   // the first digit lands on the start position
    if (m > digits) number_overflow(cx, cy, v, spacing, font);
    else number_field(cx, cy, n, digits, decimals, spacing, font);
    glEnd();
}
