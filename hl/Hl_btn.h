// The immediate-mode controls. Each is one call per frame from the screen's
// code: it tests the mouse of mnw, changes the caller's variable through a
// pointer, draws itself, and returns 1 when it was hit in this frame.
// Coordinates are window-relative, y upward; every hit zone includes its edges.
#pragma once

// ---- lamps ---------------------------------------------------------------------------
// A bevelled 9 by 9 lamp with its bottom left at (x, y): bright green face when on.
void block(float x, float y, int on);
// One lamp of a radio group: every lamp of the group points at the same variable
// and a click gives it this lamp's value.
int inonebool(float x, float y, int* var, int value);

// ---- cycle buttons ---------------------------------------------------------------------
// The text of the current value at (x, y); the arrows beside it, at x + offset,
// step the value: the 20 units above y + 3 up, the 20 below down, with a wrap.
// in2textbtn holds 0 or 1; the others 1 to their count.
int in2textbtn(float x, float y, const char* s1, const char* s2, float offset, int* var);
int in4textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               float offset, int* var);
int in6textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               const char* s5, const char* s6, float offset, int* var);
int in9textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               const char* s5, const char* s6, const char* s7, const char* s8, const char* s9,
               float offset, int* var);

// ---- character wheel ---------------------------------------------------------------------
// Each of the n characters of buf steps through blank, 0 to 9 and A to Z: the
// lower half of its column forward, the upper half back. 1 if any changed.
int incharbtn(int col, float x, float y, char* buf, int n);

// ---- digit spinner -----------------------------------------------------------------------
// A number in a row of digit places, each place 10 units wide: a click on the
// upper half of a place adds that place's unit, on the lower half takes it off.
// The value is held within [vmin, vmax] on every call, clicked or not, and the
// help text goes to mnw.tip while the mouse is over the field.
int instdbtn_range(int col, float x, float y, float* value, int digits, int decimals,
                   float vmin, float vmax, const char* help);
// The same with the range the field can show: all nines, negative too if signed_flag.
int instdbtn(int col, float x, float y, float* value, int digits, int decimals, int signed_flag,
             const char* help);

// ---- name list ---------------------------------------------------------------------------
// Thirteen rows of a table of named records with the selected one always in
// the middle row (its centre line at y), a knob strip with arrows at the
// right, and the selected name on the edit line below, copied into
// g_cs_input. Rows first to last may be shown; the selection is held there.
void plot_name_list(float x, float y, char (*names)[40], char (*ids)[5], int* selected, int first, int last);
