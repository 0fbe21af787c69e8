// The airport screen: the list of the world's airports, the runways of the
// selected one, their fields, a scale drawing, and the buttons that add and
// delete. The runways of airport a are the run apt_lo_ind[a] to apt_hi_ind[a]
// of the runway table; the runs follow each other in table order with no gap,
// and everything here keeps them so.
#include "app/Airports.h"
#include "app/Panel_layout.h"
#include "app/Screens.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstring>

int rwy_list_top;   // runways of the selected airport scrolled off the top of the list
int rwy_list_apt;   // the airport rwy_list_top belongs to

// ---- records ------------------------------------------------------------------------------------

void cop_aptrwy(int kind, int dst, int src)
{
    if (kind == 1) {
        apt_h[dst] = apt_h[src];
        apt_twr[dst] = apt_twr[src];
        apt_bld[dst] = apt_bld[src];
        apt_lo_ind[dst] = apt_lo_ind[src];
        apt_hi_ind[dst] = apt_hi_ind[src];
        C_to_C(apt_id[src], apt_id[dst]);
        C_to_C(apt_name[src], apt_name[dst]);
    }
    if (kind == 10) {
        rwy_lat[dst] = rwy_lat[src];
        rwy_lon[dst] = rwy_lon[src];
        rwy_num[dst] = rwy_num[src];
        rwy_lcr[dst] = rwy_lcr[src];
        rwy_hdng[dst] = rwy_hdng[src];
        rwy_len[dst] = rwy_len[src];
        rwy_width[dst] = rwy_width[src];
        rwy_code[dst] = rwy_code[src];
    }
}

// The counts of both tables may fall to -1: deleting the last airport empties
// the table, as an empty apt.dat leaves it, so that a save drops it too.

// The runs of the airports behind the selected one move by step; the
// selected airport's run ends step further.
static void shift_runs(int step)
{
    apt_hi_ind[msc.apt_sel] += step;
    for (int a = msc.apt_sel + 1; a <= apt_wrl_max; a++) {
        apt_lo_ind[a] += step;
        apt_hi_ind[a] += step;
    }
}

// A new runway at msc.rwy_sel, lying on the runway it goes in ahead of.
static void add_runway()
{
    rwy_wrl_max = intlim(rwy_wrl_max + 1, -1, rwy_cap - 1);
    shift_runs(1);
    for (int k = rwy_wrl_max; k > msc.rwy_sel; k--) cop_aptrwy(10, k, k - 1);
    const int r = msc.rwy_sel;
    rwy_lat[r] = rwy_lat[r + 1];
    rwy_lon[r] = rwy_lon[r + 1];
    rwy_num[r] = 0;
    rwy_lcr[r] = 'x';
    rwy_hdng[r] = 0;
    rwy_len[r] = 2000;
    rwy_width[r] = 100;
    int ones[2] = {1, 1};
    rwy_code[r] = lgts_to_code('M', ones, ones, ones);
}

static void delete_runway()
{
    rwy_wrl_max = intlim(rwy_wrl_max - 1, -1, rwy_cap - 1);
    shift_runs(-1);
    for (int k = msc.rwy_sel; k <= rwy_wrl_max; k++) cop_aptrwy(10, k, k + 1);
}

// A new airport at msc.apt_sel with an empty run behind the airport before it,
// then a runway of its own from its first moment.
static void add_airport()
{
    apt_wrl_max = intlim(apt_wrl_max + 1, -1, apt_cap - 1);
    for (int k = apt_wrl_max; k > msc.apt_sel; k--) cop_aptrwy(1, k, k - 1);
    const int a = msc.apt_sel;
    apt_h[a] = 0;
    apt_twr[a] = 0;
    apt_bld[a] = 0;
    C_to_C("0000", apt_id[a]);
    C_to_C("Untitled", apt_name[a]);
    const int hi_before = a > 0 ? apt_hi_ind[a - 1] : -1;
    apt_lo_ind[a] = hi_before + 1;
    apt_hi_ind[a] = hi_before;
    msc.rwy_sel = apt_lo_ind[a];
    adddel_aptrwy(10, 1, 1);
}

static void delete_airport()
{
    const int runways = apt_hi_ind[msc.apt_sel] - apt_lo_ind[msc.apt_sel] + 1;
    msc.rwy_sel = apt_lo_ind[msc.apt_sel];
    for (int k = 0; k < runways; k++) adddel_aptrwy(10, 0, 1);
    apt_wrl_max = intlim(apt_wrl_max - 1, -1, apt_cap - 1);
    for (int k = msc.apt_sel; k <= apt_wrl_max; k++) cop_aptrwy(1, k, k + 1);
}

// An airport needs a runway slot: with all of them taken the add is refused
// and said so, for nothing may be lost.
static int airport_add_refused()
{
    if (rwy_wrl_max < rwy_cap - 1) return 0;
    MACIBM_alert("The runway table is full!", "A new airport needs a runway of its own, and all 70000 are taken.",
                 "Delete runways you do not need before adding an airport.", "", alert_warning);
    return 1;
}

void adddel_aptrwy(int kind, int add, int inner)
{
    if (!inner) {
        if (kind == 1 && add && (apt_wrl_max >= apt_cap - 1 || airport_add_refused())) return;
        if (kind == 10 && add && rwy_wrl_max >= rwy_cap - 1) return;
        if (kind == 10 && !add && apt_hi_ind[msc.apt_sel] - apt_lo_ind[msc.apt_sel] < 1) return;
        if (kind == 1 && !add && apt_wrl_max < 0) return;
    }
    if (kind == 10 && add) add_runway();
    if (kind == 10 && !add) delete_runway();
    if (kind == 1 && add) add_airport();
    if (kind == 1 && !add) delete_airport();
}

// ---- the runway list --------------------------------------------------------------------------------

static char side_shown(char side) { return side == 'x' ? ' ' : side; }

static char reciprocal_side(char side)
{
    if (side == 'L') return 'R';
    if (side == 'R') return 'L';
    if (side == 'C') return 'C';
    return 'x';
}

void runway_row_text(int r, char out[10])
{
    const int number = rwy_num[r];
    const int reciprocal = number == 99 ? 99 : intwrap(number + 18, 1, 36);
    const int a = intlim(number, 0, 99), b = intlim(reciprocal, 0, 99);
    const char text[10] = {(char)('0' + a / 10), (char)('0' + a % 10), side_shown(rwy_lcr[r]), ' ', '/', ' ',
                           (char)('0' + b / 10), (char)('0' + b % 10), side_shown(reciprocal_side(rwy_lcr[r])), 0};
    std::memcpy(out, text, sizeof text);
}

static void runway_list(int lo, int hi)
{
    if (msc.apt_sel != rwy_list_apt) rwy_list_top = 0;
    rwy_list_apt = msc.apt_sel;
    if (box_clicked(rwy_list_up_box)) rwy_list_top--;
    if (box_clicked(rwy_list_down_box)) rwy_list_top++;
    rwy_list_top = intlim(rwy_list_top, 0, hi - lo);
    for (int w = lo + rwy_list_top, row = 0; w <= hi && row < rwy_rows_shown; w++, row++) {
        char text[10];
        runway_row_text(w, text);
        OGL_text_line(col_value, rwy_row_x, rwy_row_y0 - rwy_row_pitch * row, text);
    }
    msc.rwy_sel = intlim(msc.rwy_sel, lo, hi);
    const int row = msc.rwy_sel - lo - rwy_list_top;
    // The selected row's frame stands 3 units left of its text and 2 below
    // its line; a click takes the row whose frame holds it.
    const float frame_x = rwy_row_x - 3, frame_top = rwy_row_y0 - 2 + rwy_row_pitch;
    if (intrange(row, 0, rwy_rows_shown - 1))
        OGL_framerect(col_value, frame_x, frame_top - rwy_row_pitch * (row + 1), 58, rwy_row_pitch);
    if (box_clicked(rwy_rows_box))
        msc.rwy_sel = (int)(lo + rwy_list_top + (frame_top - mnw.mouse_y) / rwy_row_pitch);
}

// ---- fields --------------------------------------------------------------------------------------------

static void yes_no_field(panel_cycle c, int* flag)
{
    int on = *flag ? 1 : 0;
    in2textbtn(c.x, c.y, " no", "yes", c.offset, &on);
    *flag = on;
}

static void airport_fields(int a)
{
    spinner_field(apt_elev_spinner, &apt_h[a], "This is the airport elevation, in feet, above sea level.");
    wheel_field(apt_id_wheel, apt_id[a]);
    yes_no_field(apt_tower_button, &apt_twr[a]);
    yes_no_field(apt_bld_button, &apt_bld[a]);
}

static int side_position(char side)
{
    if (side == 'L') return 2;
    if (side == 'C') return 3;
    if (side == 'R') return 4;
    return 1;
}

// Surface letters and their selector positions: 'M' 1, 'i' 2, 's' to 'y' 3 to 9.
// The two surfaces with no position give 0.
int surface_position(int letter)
{
    if (letter == 'M') return 1;
    if (letter == 'i') return 2;
    return intrange(letter, 's', 'y') ? letter - 0x70 : 0;
}

int surface_letter_of(int position)
{
    if (position == 1) return 'M';
    if (position == 2) return 'i';
    return position + 0x70;
}

// The surface selector. A surface with no position of its own shows by its
// code number and stays as it is until the user steps the selector.
static void surface_field(int* letter)
{
    int position = surface_position(*letter);
    if (position) {
        in9textbtn(rwy_surface_button.x, rwy_surface_button.y, "     asphalt    ", "    concrete    ",
                   "      grass     ", "      dirt      ", "     gravel     ", "asphalt helipad ",
                   "concrete helipad", "  grass helipad ", "  dirt helipad  ", rwy_surface_button.offset, &position);
        *letter = surface_letter_of(position);
        return;
    }
    const char* shown = *letter == 'L' ? "   surface 10   " : "   surface 11   ";
    position = 1;
    if (in9textbtn(rwy_surface_button.x, rwy_surface_button.y, shown, shown, shown, shown, shown, shown, shown, shown,
                   shown, rwy_surface_button.offset, &position))
        *letter = surface_letter_of(position);
}

static void light_fields(int slope[2], int runway[2], int approach[2])
{
    for (int e = 0; e < 2; e++) {
        const panel_cycle s = rwy_slope_button[e], l = rwy_edge_button[e], a = rwy_approach_button[e];
        in4textbtn(s.x, s.y, "  none", "  VASI", "  PAPI", "PAPI-20", s.offset, &slope[e]);
        in6textbtn(l.x, l.y, "  none", "  MIRL", "  REIL", "  RCLS", "  TDZL", "taxiway", l.offset, &runway[e]);
        in6textbtn(a.x, a.y, "none             ", "SSALR short app 1", "SALS  short app 2", "ALSF1 full app 1 ",
                   "ALSF2 full app 2 ", "ODALS rabbit only", a.offset, &approach[e]);
    }
}

static void runway_fields(int r)
{
    int surface, slope[2], runway[2], approach[2];
    code_to_lgts(&surface, slope, runway, approach, rwy_code[r]);
    int side = side_position(rwy_lcr[r]);
    float number = (float)rwy_num[r];
    spinner_field(rwy_lat_spinner, &rwy_lat[r], "This is the latitude of the center of the runway.");
    spinner_field(rwy_lon_spinner, &rwy_lon[r], "This is the longitude of the center of the runway.");
    spinner_field(rwy_num_spinner, &number, "This is the runway number at one end of the runway.");
    heading_field(rwy_hdng_spinner, &rwy_hdng[r],
                  "This is the heading of the runway, when looking down it from the same end of the runway you used for the number above.");
    spinner_field(rwy_len_spinner, &rwy_len[r], "This is the length of the runway, not including any over-runs.");
    spinner_field(rwy_width_spinner, &rwy_width[r], "This is the width of the runway, not including any over-runs.");
    rwy_num[r] = (int)number;
    in4textbtn(rwy_side_button.x, rwy_side_button.y, "x", "L", "C", "R", rwy_side_button.offset, &side);
    light_fields(slope, runway, approach);
    rwy_lcr[r] = "xxLCR"[intlim(side, 1, 4)];
    surface_field(&surface);
    rwy_code[r] = lgts_to_code(surface, slope, runway, approach);
}

// ---- the order of an airport's runways -------------------------------------------------------------

struct runway_record {
    float lat, lon, hdng, len, width;
    int num, code;
    char lcr;
};

static runway_record take_runway(int r)
{
    return {rwy_lat[r], rwy_lon[r], rwy_hdng[r], rwy_len[r], rwy_width[r], rwy_num[r], rwy_code[r], rwy_lcr[r]};
}

static void put_runway(int r, const runway_record& w)
{
    rwy_lat[r] = w.lat, rwy_lon[r] = w.lon, rwy_hdng[r] = w.hdng, rwy_len[r] = w.len, rwy_width[r] = w.width;
    rwy_num[r] = w.num, rwy_code[r] = w.code, rwy_lcr[r] = w.lcr;
}

// Runway p belongs behind runway q: a 99 behind any other number, and of two
// alike in that the one with the smaller length plus width.
static int comes_after(int p, int q)
{
    if ((rwy_num[p] == 99) != (rwy_num[q] == 99)) return rwy_num[p] == 99;
    return rwy_len[p] + rwy_width[p] < rwy_len[q] + rwy_width[q];
}

// The order ranks runways by one key, so with every neighbour in order the
// whole run is, and the exchanges below would find nothing: a long run then
// costs one pass a frame, not n * n. (The files and the fields give finite
// lengths and widths only, so no NaN breaks the ranking.)
static int run_in_order(int lo, int hi)
{
    for (int r = lo; r < hi; r++)
        if (comes_after(r, r + 1)) return 0;
    return 1;
}

// The exchange goes through a local record, so that no slot of a full table
// serves as scratch; the selection stays on its runway.
void sort_runways(int lo, int hi)
{
    if (run_in_order(lo, hi)) return;
    for (int a = lo; a <= hi; a++)
        for (int b = lo; b <= hi; b++) {
            if (!comes_after(intmin2(a, b), a < b ? b : a)) continue;
            const runway_record kept = take_runway(a);
            cop_aptrwy(10, a, b);
            put_runway(b, kept);
            if (msc.rwy_sel == a) msc.rwy_sel = b;
            else if (msc.rwy_sel == b) msc.rwy_sel = a;
        }
}

// ---- the screen ------------------------------------------------------------------------------------------

static void add_delete_buttons()
{
    if (box_clicked(apt_delete_box)) adddel_aptrwy(1, 0, 0);
    if (box_clicked(apt_add_box)) adddel_aptrwy(1, 1, 0);
    if (apt_wrl_max < 0) return;
    if (box_clicked(rwy_delete_box)) adddel_aptrwy(10, 0, 0);
    if (box_clicked(rwy_add_box)) adddel_aptrwy(10, 1, 0);
}

void handle_apt()
{
    plot_name_list(apt_list.x, apt_list.y, apt_name, apt_id, &msc.apt_sel, 0, apt_wrl_max);
    if (apt_wrl_max < 0) {   // an empty table: only a new airport can be made
        if (box_clicked(apt_add_box)) adddel_aptrwy(1, 1, 0);
        return;
    }
    const int lo = apt_lo_ind[msc.apt_sel], hi = apt_hi_ind[msc.apt_sel];
    runway_list(lo, hi);
    if (hi < lo) msc.rwy_sel = lo;   // an airport with no runway: a new one goes in at its place
    add_delete_buttons();
    if (apt_wrl_max < 0) return;
    msc.apt_sel = intlim(msc.apt_sel, 0, apt_wrl_max);
    const int a = msc.apt_sel, first = apt_lo_ind[a], last = apt_hi_ind[a];
    airport_fields(a);
    if (last < first) return;
    msc.rwy_sel = intlim(msc.rwy_sel, first, last);
    runway_fields(msc.rwy_sel);
    OGL_airport(a, &msc.rwy_sel, apt_diagram_box.x1, apt_diagram_box.y1, apt_diagram_box.x2, apt_diagram_box.y2,
                msc.apt_dx, msc.apt_dy, msc.apt_zoom);
    sort_runways(first, last);
}
