// Numeric and string helpers, the packed codes of the scenery store, and the
// terrain texture derivation.
#include "hl/Hl_funct.h"
#include "hl/Hl_file.h"
#include "hl/Hl_types.h"

#include <cmath>
#include <cstring>

// ---- range tests and limits --------------------------------------------------------

// One step of wrapping only: a value more than a span outside stays outside.
int intwrap(int v, int lo, int hi)
{
    if (v < lo) return v + (hi - lo + 1);
    if (v > hi) return v - (hi - lo + 1);
    return v;
}

float fltwrap(float v, float lo, float hi)
{
    if (v < lo) return v + (hi - lo);
    if (v > hi) return v - (hi - lo);
    return v;
}


// ---- arithmetic ------------------------------------------------------------------------

int intround(float x) { return x < 0 ? (int)(x - 0.5f) : (int)(x + 0.5f); }

float sqr(float x) { return x * x; }

float pythag(float a, float b) { return std::sqrt(a * a + b * b); }

float interp(float x1, float y1, float x2, float y2, float x, int extrapolate)
{
    if (x2 == x1) return (y2 + y1) * 0.5f;
    float y = (y2 - y1) / (x2 - x1) * (x - x1) + y1;
    if (extrapolate) return y;
    return fltlim(y, fltmin2(y1, y2), fltmax2(y1, y2));
}

// One edge of a convex clockwise region in a y-down plane. The steep or flat
// form is chosen so that the division is never by the small difference.
int inside_cw_reg(float x1, float y1, float x2, float y2, float px, float py, float margin)
{
    float dx = x2 - x1;
    float dy = y2 - y1;
    if (std::fabs(dx) > std::fabs(dy)) {
        float yl = (dy / dx) * (px - x1) + y1;
        if (x2 < x1) return py - margin < yl;
        return py + margin > yl;
    }
    if (dy == 0) return 0;   // an edge of zero length encloses nothing
    float xl = (dx / dy) * (py - y1) + x1;
    if (y2 < y1) return px + margin > xl;
    return px - margin < xl;
}

// ---- swaps -------------------------------------------------------------------------------

void bol_switch(int* a, int* b)
{
    int keep = *a;
    *a = *b;
    *b = keep;
}

void str_switch(char* a, char* b)
{
    C_to_C(a, C_s);
    C_to_C(b, a);
    C_to_C(C_s, b);
}

// ---- characters, numbers and text ------------------------------------------------------

int char_to_int(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c == '+') return 1;
    if (c == '-') return -1;
    return 0;
}

char int_to_char(int n) { return (n >= 1 && n <= 9) ? (char)('0' + n) : '0'; }

int str_is_int(const char* s)
{
    for (; *s; s++)
        if (*s < '0' || *s > '9') return 0;
    return 1;
}

int str_to_int(const char* s)
{
    int len = (int)std::strlen(s);
    if (len < 1 || len > 5 || !str_is_int(s)) return -1;
    int v = 0;
    for (int k = 0; k < len; k++) v = v * 10 + (s[k] - '0');
    return v;
}

// Decimal text without leading zeros. The hundred-thousands digit goes through
// int_to_char, so the range is -999999 to 999999.
void int_to_str(int n, char* out)
{
    int v = n < 0 ? -n : n;
    int k = 0;
    if (n < 0) out[k++] = '-';
    if (v > 99999) out[k++] = int_to_char(v / 100000);
    if (v > 9999) out[k++] = (char)('0' + (v / 10000) % 10);
    if (v > 999) out[k++] = (char)('0' + (v / 1000) % 10);
    if (v > 99) out[k++] = (char)('0' + (v / 100) % 10);
    if (v > 9) out[k++] = (char)('0' + (v / 10) % 10);
    out[k++] = (char)('0' + v % 10);
    out[k] = 0;
}

void C_to_C(const char* src, char* dst)
{
    if (src == nullptr) return;
    std::memmove(dst, src, std::strlen(src) + 1);
}

void C_plus_C(const char* a, const char* b, char* dst)
{
    size_t la = std::strlen(a);
    size_t lb = std::strlen(b);
    std::memmove(dst + la, b, lb + 1);   // b first, in case dst overlaps a
    std::memmove(dst, a, la);
}

void app_C(char* dst, const char* src)
{
    std::memmove(dst + std::strlen(dst), src, std::strlen(src) + 1);
}

// ---- runway lighting and surface code -----------------------------------------------------

// Surface letter of the code's leading digit S, 1 to 11.
static const char surface_letter[12] = {0, 'M', 'i', 's', 't', 'u', 'v', 'w', 'x', 'y', 'L', 'h'};

// Steps one group of three digits down through its thresholds; a 0 digit yields 1.
static void group_to_lgts(int group, int* slope, int* runway, int* approach)
{
    *slope = *runway = *approach = 1;
    for (int d = 4; d >= 1; d--)
        if (group >= d * 100) { group -= d * 100; *slope = d; }
    for (int d = 6; d >= 1; d--)
        if (group >= d * 10) { group -= d * 10; *runway = d; }
    for (int d = 6; d >= 1; d--)
        if (group >= d) { group -= d; *approach = d; }
}

void code_to_lgts(int* surface, int slope[2], int runway[2], int approach[2], int code)
{
    *surface = 'M';
    if (code >= 1000000) {
        int k = code / 1000000;
        if (k >= 1 && k <= 11) {
            *surface = surface_letter[k];
            code -= k * 1000000;
        }
    }
    group_to_lgts(code / 1000, &slope[0], &runway[0], &approach[0]);
    group_to_lgts(code % 1000, &slope[1], &runway[1], &approach[1]);
}

int lgts_to_code(int surface, int slope[2], int runway[2], int approach[2])
{
    int code = 0;
    for (int k = 1; k <= 11; k++)
        if (surface_letter[k] == surface) code = k * 1000000;
    const int mult[2] = {1000, 1};
    for (int e = 0; e < 2; e++) {
        if (intrange(slope[e], 1, 4)) code += mult[e] * 100 * slope[e];
        if (intrange(runway[e], 1, 6)) code += mult[e] * 10 * runway[e];
        if (intrange(approach[e], 1, 6)) code += mult[e] * approach[e];
    }
    return code;
}

// ---- identifier characters: 0 blank, 1-10 digits, 11-36 letters ---------------------------

char code_to_char(int code)
{
    if (code == 0) return ' ';
    if (intrange(code, 1, 10)) return (char)('0' + code - 1);
    if (intrange(code, 11, 36)) return (char)('A' + code - 11);
    return '0';
}

int char_to_code(char c)
{
    if (c == ' ') return 0;
    if (c >= '0' && c <= '9') return c - '0' + 1;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 11;
    return 1;
}

// ---- orientations --------------------------------------------------------------------------

// [orientation][0 = s, 1 = t][SW, NW, NE, SE]
const float st_table[st_count][2][4] = {
    {{0, 0, 1, 1}, {0, 1, 1, 0}},   // st_r0
    {{1, 0, 0, 1}, {0, 0, 1, 1}},   // st_r1
    {{1, 1, 0, 0}, {1, 0, 0, 1}},   // st_r2
    {{0, 1, 1, 0}, {1, 1, 0, 0}},   // st_r3
    {{0, 0, 1, 1}, {1, 0, 0, 1}},   // st_flip_t
    {{1, 1, 0, 0}, {0, 1, 1, 0}},   // st_flip_s
    {{0, 1, 1, 0}, {0, 0, 1, 1}},   // st_swap
};

static void store_orientation(float cell[2][2][2], int orientation)
{
    const float* s = st_table[orientation][0];
    const float* t = st_table[orientation][1];
    cell[0][0][0] = s[0]; cell[0][1][0] = s[1]; cell[1][1][0] = s[2]; cell[1][0][0] = s[3];
    cell[0][0][1] = t[0]; cell[0][1][1] = t[1]; cell[1][1][1] = t[2]; cell[1][0][1] = t[3];
}

void set_st(int i, int j, float s00, float s01, float s11, float s10,
            float t00, float t01, float t11, float t10, unsigned int tex)
{
    planetex[i][j] = tex;
    float (*cell)[2][2] = planest[i][j];
    cell[0][0][0] = s00; cell[0][1][0] = s01; cell[1][1][0] = s11; cell[1][0][0] = s10;
    cell[0][0][1] = t00; cell[0][1][1] = t01; cell[1][1][1] = t11; cell[1][0][1] = t10;
}

void set_orientation(int i, int j, int orientation, unsigned int tex)
{
    const float* s = st_table[orientation][0];
    const float* t = st_table[orientation][1];
    set_st(i, j, s[0], s[1], s[2], s[3], t[0], t[1], t[2], t[3], tex);
}

// ---- packed terrain code of a tile vertex -------------------------------------------------

// Orientation digit of the negative form, from the largest down: 40000 is st_r0.
static const unsigned int digit_value[4] = {40000, 30000, 20000, 10000};
static const int digit_orientation[4] = {st_r0, st_r1, st_r2, st_r3};

static void decode_negative(int* water, float cell[2][2][2], unsigned int* tex, int code)
{
    // The absolute value is taken unsigned: the most negative int a file may
    // hold has no positive int.
    unsigned int rest = 0u - (unsigned int)code;
    if (rest >= 100000u) { rest -= 100000u; *water = 1; }
    for (int d = 0; d < 4; d++)
        if (rest >= digit_value[d]) {
            rest -= digit_value[d];
            store_orientation(cell, digit_orientation[d]);
        }
    *tex = rest;
}

// The flag form: each flag, from the top bit down, fires when the value is at
// or above it; a later action overrides an earlier one.
static void decode_flags(int* water, float cell[2][2][2], unsigned int* tex, int code)
{
    int rest = code;
    for (int n = 19; n >= 0; n--) {
        int flag = 0x200 << n;
        if (rest >= flag) { rest -= flag; *tex = 2000 + n; }
    }
    const int orient_flags[4] = {0x100, 0x80, 0x40, 0x20};
    const int orient_of_flag[4] = {st_r3, st_r2, st_r1, st_r0};
    for (int k = 0; k < 4; k++)
        if (rest >= orient_flags[k]) { rest -= orient_flags[k]; store_orientation(cell, orient_of_flag[k]); }
    const int other_flags[5] = {0x10, 0x08, 0x04, 0x02, 0x01};
    for (int k = 0; k < 5; k++)
        if (rest >= other_flags[k]) {
            rest -= other_flags[k];
            if (other_flags[k] == 0x04 || other_flags[k] == 0x02) *water = 1;
        }
}

void code_to_state(int* water, float planest_cell[2][2][2], unsigned int* tex, int code)
{
    *tex = 0;
    *water = 0;
    if (code < 0) decode_negative(water, planest_cell, tex, code);
    else decode_flags(water, planest_cell, tex, code);
}

// Only the s values are tested, so a mirrored orientation is written as the
// rotation with the same s values; all-equal s values give no digit.
int state_to_code(int water, float planest_cell[2][2][2], unsigned int tex)
{
    float s00 = planest_cell[0][0][0];
    float s01 = planest_cell[0][1][0];
    float s10 = planest_cell[1][0][0];
    int r = 0;
    if (s01 - s00 > 0.5f) r += 10000;
    if (s00 - s10 > 0.5f) r += 20000;
    if (s00 - s01 > 0.5f) r += 30000;
    if (s10 - s00 > 0.5f) r += 40000;
    return -((water ? 100000 : 0) + r + (int)tex);
}

// ---- terrain texture derivation ----------------------------------------------------------

int t1, t21, t31, t41;

// Stock texture ids.
enum { tex_wat = 50, tex_grs_wat_h, tex_grs_wat_c, tex_wat_grs_c, tex_grs,
       tex_grs_mnt_h, tex_grs_mnt_c, tex_mnt_grs_c, tex_mnt };
const unsigned int first_custom_tex = 2000;

int coast(int i, int j)
{
    unsigned int t = planetex[i][j];
    return t == (unsigned int)t1 || t == (unsigned int)t21 ||
           t == (unsigned int)t31 || t == (unsigned int)t41;
}

static void reset_cells()
{
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (planetex[i][j] < first_custom_tex)
                set_orientation(i, j, st_r0, is_water[i][j] ? tex_wat : tex_grs);
}

static int water_near_block(int i, int j)
{
    for (int p = i - 1; p <= i + 2; p++)
        for (int q = j - 1; q <= j + 2; q++)
            if (is_water[p][q]) return 1;
    return 0;
}

// Slope at the block's south-west vertex, from its east and north neighbours,
// in single precision. The two gradients are added, not combined as a vector.
static float block_slope(int i, int j)
{
    float dist_e = (planelon[i + 1][j] - planelon[i][j]) * 60.0f * con.nm_to_m *
                   std::cos(planelat[i][j] * con.deg_to_rad);
    float dist_n = (planelat[i][j + 1] - planelat[i][j]) * 60.0f * con.nm_to_m;
    float rise_e = planey[i + 1][j] - planey[i][j];
    float rise_n = planey[i][j + 1] - planey[i][j];
    return std::fabs(rise_e / dist_e) + std::fabs(rise_n / dist_n);
}

static void mark_mountains(int a, int b)
{
    for (int i = a + 1; i < a + grid_i - 2; i += 2)
        for (int j = b + 1; j < b + grid_j - 2; j += 2) {
            if (water_near_block(i, j)) continue;
            if (!((double)block_slope(i, j) > 0.1)) continue;
            for (int di = 0; di < 2; di++)
                for (int dj = 0; dj < 2; dj++)
                    if (planetex[i + di][j + dj] < first_custom_tex) planetex[i + di][j + dj] = tex_mnt;
        }
}

// One border rule: where the condition holds, the cell takes tex in orientation.
static void border_rule(int i, int j, int holds, int tex, int orientation)
{
    if (holds) set_orientation(i, j, orientation, (unsigned int)tex);
}

static void border_cell(int i, int j, int t2)
{
    int im = intlim(i - 1, 0, grid_i - 1), ip = intlim(i + 1, 0, grid_i - 1);
    int jm = intlim(j - 1, 0, grid_j - 1), jp = intlim(j + 1, 0, grid_j - 1);
    unsigned int g = (unsigned int)t2;
    int W = planetex[im][j] == g, E = planetex[ip][j] == g;
    int S = planetex[i][jm] == g, N = planetex[i][jp] == g;
    int SW = planetex[im][jm] == g, NW = planetex[im][jp] == g;
    int SE = planetex[ip][jm] == g, NE = planetex[ip][jp] == g;
    int cW = coast(im, j), cE = coast(ip, j), cS = coast(i, jm), cN = coast(i, jp);

    border_rule(i, j, W && N, t31, st_r0);
    border_rule(i, j, W && S, t31, st_flip_t);
    border_rule(i, j, E && N, t31, st_flip_s);
    border_rule(i, j, E && S, t31, st_swap);
    border_rule(i, j, W && cS && cN, t21, st_r0);
    border_rule(i, j, E && cS && cN, t21, st_r2);
    border_rule(i, j, S && cW && cE, t21, st_r3);
    border_rule(i, j, N && cW && cE, t21, st_r1);
    border_rule(i, j, SW && cW && cS, t41, st_r1);
    border_rule(i, j, NW && cW && cN, t41, st_r2);
    border_rule(i, j, SE && cE && cS, t41, st_r0);
    border_rule(i, j, NE && cE && cN, t41, st_r3);
}

void new_border(int t1_, int t2, int t21_, int t31_, int t41_)
{
    t1 = t1_;
    t21 = t21_;
    t31 = t31_;
    t41 = t41_;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (planetex[i][j] == (unsigned int)t1) border_cell(i, j, t2);
}

void assign_terrain_texes(int a, int b)
{
    reset_cells();
    mark_mountains(a, b);
    new_border(tex_mnt, tex_grs, tex_grs_mnt_h, tex_grs_mnt_c, tex_mnt_grs_c);
    new_border(tex_wat, tex_grs, tex_grs_wat_h, tex_grs_wat_c, tex_wat_grs_c);
}
