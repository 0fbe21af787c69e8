// Small numeric and string helpers, the runway and identifier codes, the
// decoding of a tile's packed terrain code, and the derivation of terrain
// textures from the user's water flags and elevations.
#pragma once

// ---- range tests and limits (both ends always included) -------------------------
// The smallest are defined here, so that loops over whole tables inline them.
inline int intrange(int v, int lo, int hi) { return lo <= v && v <= hi; }
// Written as two comparisons so that a NaN fails both and gives 0.
inline int fltrange(float v, float lo, float hi) { return lo <= v && v <= hi; }
inline int fltbox(float x, float y, float x1, float y1, float x2, float y2)
{
    return x1 <= x && x <= x2 && y1 <= y && y <= y2;
}
inline int intlim(int v, int lo, int hi) { return v < lo ? lo : (v > hi ? hi : v); }
inline float fltlim(float v, float lo, float hi) { return v < lo ? lo : (v > hi ? hi : v); }
int intwrap(int v, int lo, int hi);
float fltwrap(float v, float lo, float hi);
inline int intmin2(int a, int b) { return a < b ? a : b; }
inline float fltmin2(float a, float b) { return a < b ? a : b; }
inline float fltmax2(float a, float b) { return a > b ? a : b; }

// ---- arithmetic ------------------------------------------------------------------------
int intround(float x);
float sqr(float x);
float pythag(float a, float b);
float interp(float x1, float y1, float x2, float y2, float x, int extrapolate);
int inside_cw_reg(float x1, float y1, float x2, float y2, float px, float py, float margin);

// ---- swaps ---------------------------------------------------------------------------------
void bol_switch(int* a, int* b);
void str_switch(char* a, char* b);

// ---- characters, numbers and text ------------------------------------------------------------
int char_to_int(char c);
char int_to_char(int n);
int str_is_int(const char* s);
int str_to_int(const char* s);
void int_to_str(int n, char* out);
void C_to_C(const char* src, char* dst);
void C_plus_C(const char* a, const char* b, char* dst);
void app_C(char* dst, const char* src);

// ---- runway lighting and surface code, identifier characters ----------------------------------
void code_to_lgts(int* surface, int slope[2], int runway[2], int approach[2], int code);
int lgts_to_code(int surface, int slope[2], int runway[2], int approach[2]);
char code_to_char(int code);
int char_to_code(char c);

// ---- packed terrain code of a tile vertex ---------------------------------------------------------
// planest_cell points at planest[i][j], the [2][2][2] texture coordinates of one cell.
void code_to_state(int* water, float planest_cell[2][2][2], unsigned int* tex, int code);
int state_to_code(int water, float planest_cell[2][2][2], unsigned int tex);

// ---- terrain texture derivation ----------------------------------------------------------------------
// The seven orientations of a texture on a cell, as s,t at SW, NW, NE, SE.
enum { st_r0, st_r1, st_r2, st_r3, st_flip_t, st_flip_s, st_swap, st_count };
extern const float st_table[st_count][2][4];   // [orientation][s or t][SW, NW, NE, SE]

extern int t1, t21, t31, t41;   // texture ids of the border pass under way

void set_st(int i, int j, float s00, float s01, float s11, float s10,
            float t00, float t01, float t11, float t10, unsigned int tex);
void set_orientation(int i, int j, int orientation, unsigned int tex);
int coast(int i, int j);
void new_border(int t1_, int t2, int t21_, int t31_, int t41_);
void assign_terrain_texes(int a, int b);
