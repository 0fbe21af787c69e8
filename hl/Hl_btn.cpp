// The immediate-mode controls: lamps, cycle buttons, the character wheel and
// the digit spinner. None keeps state of its own; the caller's variable is all.
#include "hl/Hl_btn.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstring>

namespace {

// Lamp colours: lit edge, face, dark edge.
const int lamp_on_cols[3] = {65, 68, 69};
const int lamp_off_cols[3] = {69, 70, 71};
const float lamp_zone = 10.0f;

// Cycle buttons: the arrows' zone is 15 wide, from 17 below y to 23 above,
// split at y + 3 into the lower (back) and upper (forward) halves.
const int cycle_text_col = 66;
const float cycle_w = 15.0f;
const float cycle_lo = -17.0f;
const float cycle_mid = 3.0f;
const float cycle_hi = 23.0f;

// Character wheels and spinners share one column geometry: 10 wide, from 14
// below y to 20 above, with the halves divided at y + 3.
const float place_w = 10.0f;
const float place_lo = -14.0f;
const float place_mid = 3.0f;
const float place_hi = 20.0f;
const float place_text_dx = 3.0f;   // a character stands 3 in from its column's left

const int char_code_last = 36;      // blank, 0 to 9, A to Z
const int max_places = 8;

// The largest value a field of n digits shows is top times this: all nines.
const float all_nines[max_places + 1] = {0.0f,    9.0f,     9.9f,      9.99f,     9.999f,
                                         9.9999f, 9.99999f, 9.999999f, 9.9999999f};

int clicked_in(float x1, float y1, float x2, float y2)
{
    return mnw.mouse_click && fltbox(mnw.mouse_x, mnw.mouse_y, x1, y1, x2, y2);
}

int mouse_in_lower_half(float y, float mid) { return mnw.mouse_y < y + mid; }

// One cycle button over count strings, the variable running from first to
// first + count - 1.
int cycle_button(float x, float y, const char* const* texts, int count, int first, float offset,
                 int* var)
{
    int last = first + count - 1;
    int hit = 0;
    float ax = x + offset;
    if (clicked_in(ax, y + cycle_lo, ax + cycle_w, y + cycle_mid)) {
        *var -= 1;
        hit = 1;
    }
    if (clicked_in(ax, y + cycle_mid, ax + cycle_w, y + cycle_hi)) {
        *var += 1;
        hit = 1;
    }
    *var = intwrap(*var, first, last);
    if (intrange(*var, first, last))
        OGL_text_line(cycle_text_col, x, y, texts[*var - first]);
    return hit;
}

float power_of_ten(int n)
{
    float p = 1.0f;
    for (int i = 0; i < n; i++) p *= 10.0f;
    return p;
}

// The unit of the leftmost digit place.
float field_top(int digits, int decimals) { return power_of_ten(digits - 1) / power_of_ten(decimals); }

// Place k's unit is the one before it times 0.1, each rounded to a float.
void place_steps(int digits, int decimals, float steps[max_places])
{
    steps[0] = field_top(digits, decimals);
    for (int k = 1; k < max_places; k++) steps[k] = steps[k - 1] * 0.1f;
}

// The sum of the units of every place whose column holds the click; a click on
// the line between two columns counts for both.
int step_clicked_places(float x, float y, float* value, int digits, const float steps[max_places])
{
    if (!mnw.mouse_click || !fltrange(mnw.mouse_y, y + place_lo, y + place_hi)) return 0;
    int hit = 0;
    for (int k = 0; k < max_places && k < digits; k++) {
        float left = x + place_w * k;
        if (!fltrange(mnw.mouse_x, left, left + place_w)) continue;
        if (mouse_in_lower_half(y, place_mid))
            *value -= steps[k];
        else
            *value += steps[k];
        hit = 1;
    }
    return hit;
}

void show_help(const char* help)
{
    if (help == nullptr) return;
    size_t len = std::strlen(help);
    if (len < sizeof mnw.tip) {
        C_to_C(help, mnw.tip);
        return;
    }
    std::memcpy(mnw.tip, help, sizeof mnw.tip - 1);
    mnw.tip[sizeof mnw.tip - 1] = 0;
}

}  // namespace

// ---- lamps ---------------------------------------------------------------------------

void block(float x, float y, int on)
{
    const int* c = on ? lamp_on_cols : lamp_off_cols;
    OGL_line(c[0], x, y, x + 7, y);
    OGL_line(c[0], x, y + 1, x + 6, y + 1);
    OGL_line(c[0], x, y + 2, x, y + 7);
    OGL_line(c[0], x + 1, y + 2, x + 1, y + 6);
    OGL_fillrect(c[1], x + 2, y + 2, 5, 5);
    OGL_line(c[2], x + 7, y + 1, x + 7, y + 8);
    OGL_line(c[2], x + 8, y, x + 8, y + 8);
    OGL_line(c[2], x + 1, y + 7, x + 6, y + 7);
    OGL_line(c[2], x, y + 8, x + 6, y + 8);
}

int inonebool(float x, float y, int* var, int value)
{
    int hit = clicked_in(x, y, x + lamp_zone, y + lamp_zone);
    if (hit) *var = value;
    block(x, y, *var == value);
    return hit;
}

// ---- cycle buttons ---------------------------------------------------------------------

int in2textbtn(float x, float y, const char* s1, const char* s2, float offset, int* var)
{
    const char* texts[] = {s1, s2};
    return cycle_button(x, y, texts, 2, 0, offset, var);
}

int in4textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               float offset, int* var)
{
    const char* texts[] = {s1, s2, s3, s4};
    return cycle_button(x, y, texts, 4, 1, offset, var);
}

int in6textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               const char* s5, const char* s6, float offset, int* var)
{
    const char* texts[] = {s1, s2, s3, s4, s5, s6};
    return cycle_button(x, y, texts, 6, 1, offset, var);
}

int in9textbtn(float x, float y, const char* s1, const char* s2, const char* s3, const char* s4,
               const char* s5, const char* s6, const char* s7, const char* s8, const char* s9,
               float offset, int* var)
{
    const char* texts[] = {s1, s2, s3, s4, s5, s6, s7, s8, s9};
    return cycle_button(x, y, texts, 9, 1, offset, var);
}

// ---- character wheel ---------------------------------------------------------------------

int incharbtn(int col, float x, float y, char* buf, int n)
{
    int hit = 0;
    for (int i = 0; i < n; i++) {
        float left = x + place_w * i;
        if (!clicked_in(left, y + place_lo, left + place_w, y + place_hi)) continue;
        int step = mouse_in_lower_half(y, place_mid) ? 1 : -1;
        buf[i] = code_to_char(intwrap(char_to_code(buf[i]) + step, 0, char_code_last));
        hit = 1;
    }
    OGL_string(col, x + place_text_dx, y, buf, no_wrap, place_w, panel_font);
    return hit;
}

// ---- digit spinner -----------------------------------------------------------------------

int instdbtn_range(int col, float x, float y, float* value, int digits, int decimals,
                   float vmin, float vmax, const char* help)
{
    float steps[max_places];
    place_steps(digits, decimals, steps);
    int hit = step_clicked_places(x, y, value, digits, steps);
    if (*value < vmin) *value = vmin;
    if (*value > vmax) *value = vmax;
    OGL_number(col, x + place_text_dx, y, *value, digits, decimals, place_w, vmin < 0.0f, panel_font);
    // One place wider than the columns that take clicks.
    if (fltbox(mnw.mouse_x, mnw.mouse_y, x, y + place_lo, x + place_w * (digits + 1), y + place_hi))
        show_help(help);
    return hit;
}

int instdbtn(int col, float x, float y, float* value, int digits, int decimals, int signed_flag,
             const char* help)
{
    int places = intlim(digits, 1, max_places);
    float vmax = field_top(digits, decimals) * all_nines[places];
    float vmin = signed_flag ? -vmax : 0.0f;
    return instdbtn_range(col, x, y, value, digits, decimals, vmin, vmax, help);
}

// ---- name list ------------------------------------------------------------------------------

namespace {

int list_dragging;   // the knob is held; shared by every list, one list a screen

const float list_top = 54, list_bottom = -53;
const float knob_strip_dx = 280, knob_strip_w = 15, knob_h = 13, knob_w = 14;
const float arrow_h = 14, rows_w = 261;
const int list_text_col = 7, list_hot_col = 56, list_edit_col = 65;

void list_arrows(float sx, float top, float bottom, int* selected)
{
    if (list_dragging || !(mnw.mouse_click || mnw.mouse_repeat)) return;
    if (fltbox(mnw.mouse_x, mnw.mouse_y, sx, top, sx + knob_strip_w, top + arrow_h)) *selected -= 1;
    if (fltbox(mnw.mouse_x, mnw.mouse_y, sx, bottom - arrow_h, sx + knob_strip_w, bottom)) *selected += 1;
}

void list_knob_drag(float sx, float top, float bottom, int* selected, int first, int last)
{
    if ((mnw.mouse_down || list_dragging) && fltbox(mnw.mouse_x, mnw.mouse_y, sx, bottom, sx + knob_strip_w, top)) {
        list_dragging = 1;
        *selected = (int)interp(top - 7, (float)first, bottom + 7, (float)last, mnw.mouse_y, 1);
    }
    if (!mnw.mouse_down) list_dragging = 0;
}

void draw_list_knob(float sx, float knob_bottom)
{
    OGL_2dquad(154, 0, 1.0f, sx, knob_bottom, 0.7734375f, 0.78125f, sx, knob_bottom + knob_h, 0.7734375f, 0.984375f,
               sx + knob_w, knob_bottom + knob_h, 0.8828125f, 0.984375f, sx + knob_w, knob_bottom, 0.8828125f,
               0.78125f, sw_tex_on, sw_alpha_off, sw_blend_off);
}

// The selected name on the edit line, with a pulsing cursor behind it.
void draw_edit_line(float x, float y, const char* name)
{
    C_to_C(name, g_cs_input);
    OGL_text_line(list_edit_col, x + 3, y - 90, g_cs_input);
    const float cx = x + 3 + panel_advance * (float)std::strlen(g_cs_input);
    OGL_line(list_hot_col, cx, y - 91, cx, y - 84);
}

}   // namespace

void plot_name_list(float x, float y, char (*names)[40], char (*ids)[5], int* selected, int first, int last)
{
    const float top = y + list_top, bottom = y + list_bottom, sx = x + knob_strip_dx;
    if (last < first) {   // an empty table: nothing to select or edit
        *selected = first;
        g_cs_input[0] = 0;
        OGL_framerect(list_edit_col, x + 5, y - 5, rows_w, 10);
        return;
    }
    const float knob_centre = interp((float)first, top - 7, (float)last, bottom + 7, (float)*selected, 1);
    list_arrows(sx, top, bottom, selected);
    if (clicked_in(x, bottom - arrow_h, x + rows_w, top + arrow_h))
        *selected = (int)(*selected - (mnw.mouse_y - y - 7) * 0.1f);   // the whole value truncated
    list_knob_drag(sx, top, bottom, selected, first, last);
    *selected = intlim(*selected, first, last);
    draw_list_knob(sx, knob_centre - 7);
    draw_edit_line(x, y, names[*selected]);
    for (int k = -6; k <= 6; k++) {
        const int r = *selected + k;
        if (!intrange(r, first, last)) continue;
        const int col = k == 0 ? list_hot_col : list_text_col;
        OGL_text_line(col, x + 8, y - 10 * k - 3, names[r]);
        OGL_text_line(col, x + 242, y - 10 * k - 3, ids[r]);
    }
    OGL_framerect(list_edit_col, x + 5, y - 5, rows_w, 10);
}
