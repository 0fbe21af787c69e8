// Alerts, the save prompt and the splash: the system's own small modal
// windows, each a loop of frames on the stack of the call that raised it.
#include "platform/Hl_mnw.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"

#include <SDL2/SDL.h>

#include <cstdio>
#include <cstdlib>

char g_cs1[500], g_cs2[500], g_cs3[500], g_cs4[500];
int (*alert_watcher)(const char*, const char*, const char*, const char*, int) = nullptr;

static const char* const about_lines[4] = {
    "Tile-Forger, the scenery editor of the Norsuite family, by the Norvane team.",
    "Norsuite Version 5.54.",
    "Questions and reports go to the Norvane support desk named in the manual.",
    "Updates of Norvane and its tools are on the Norvane web site.",
};

const int col_text = 30;   // black text on the grey face of a window

// The bevel of a button: left and top edges in one colour, right and bottom in
// the other. Light over dark reads as raised, dark over light as pressed.
void MACIBM_button(float x1, float y1, float x2, float y2, int raised)
{
    int first = raised ? col_light_edge : col_dark_edge;
    int second = raised ? col_dark_edge : col_light_edge;
    OGL_line(first, x1, y1, x1, y2);
    OGL_line(first, x1, y2, x2, y2);
    OGL_line(second, x2, y2, x2, y1);
    OGL_line(second, x2, y1, x1, y1);
}

// A button of the modal windows: its box and one unit outside it.
static void double_bevel(float x1, float y1, float x2, float y2, int raised)
{
    MACIBM_button(x1, y1, x2, y2 - 1, raised);
    MACIBM_button(x1 - 1, y1 - 1, x2 + 1, y2, raised);
}

// ---- the alert --------------------------------------------------------------------------

// One line in the log for every alert. For kind 107 the fourth argument is a
// number, and the log shows it as the alert does.
static void log_alert(const char* l1, const char* l2, const char* l3, const char* l4)
{
    if (!err.is_open()) open_error_log(0);
    err << "MACIBM_alert: " << l1 << " " << l2 << " " << l3 << " " << l4
        << ", GetLastError=" << platform_last_error() << ", winerror.h for strings" << line_end;
    err.flush();
}

// The lines also go to standard error, for whoever started the editor from a
// terminal, and as the only sign of the alert when no display can show it.
static void echo_to_terminal()
{
    std::fprintf(stderr, "Norsuite Message\n%s\n\n%s\n\n%s\n\n%s\n", g_cs1, g_cs2, g_cs3, g_cs4);
    std::fflush(stderr);
}

// Before the system can draw its own alert: the platform's message box.
static void show_message_box()
{
    char text[4 * 500 + 8];
    std::snprintf(text, sizeof text, "%s\n\n%s\n\n%s\n\n%s", g_cs1, g_cs2, g_cs3, g_cs4);
    if (SDL_WasInit(SDL_INIT_VIDEO))
        SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, "Norsuite Message", text, nullptr);
}

static void set_alert_lines(const char* l1, const char* l2, const char* l3, const char* l4, int kind)
{
    const char* const given[4] = {l1, l2, l3, l4};
    char* const lines[4] = {g_cs1, g_cs2, g_cs3, g_cs4};
    for (int k = 0; k < 4; k++) C_to_C(kind == alert_about ? about_lines[k] : given[k], lines[k]);
}

static int ok_pressed()
{
    return (mnw.mouse_click && fltbox(mnw.mouse_x, mnw.mouse_y, 20, 15, 380, 30)) || return_hit;
}

// Frames of the alert window until O.K. is clicked or Return pressed; the
// pressed button flashes for one swap.
static void run_alert_window(int fatal)
{
    MACIBM_startwind(996);
    while (mnw.win_id == 996) {
        MACIBM_event_proc();
        if (!ok_pressed()) continue;
        double_bevel(20, 15, 380, 30, 0);
        OGL_sbuf();
        if (fatal) mnw.win_id = 0;
        else MACIBM_startwind(0);
    }
}

void MACIBM_alert(const char* line1, const char* line2, const char* line3,
                  const void* line4, int kind)
{
    char number[16] = {0};
    const char* fourth = (const char*)line4;
    if (kind == alert_fatal_number) {
        int_to_str(*(const int*)line4, number);
        fourth = number;
    }
    int fatal = kind == alert_fatal || kind == alert_fatal_number;
    log_alert(line1, line2, line3, fourth);
    set_alert_lines(line1, line2, line3, fourth, kind);
    echo_to_terminal();
    if (alert_watcher && alert_watcher(line1, line2, line3, fourth, kind)) {
    } else if (!ogl_ready) show_message_box();
    else run_alert_window(fatal);
    if (fatal) {
        gdone = 1;
        MACIBM_finishup();
        std::exit(0);
    }
}

// What each frame draws in the alert window.
void draw_alert_window()
{
    const char* const lines[4] = {g_cs1, g_cs2, g_cs3, g_cs4};
    for (int k = 0; k < 4; k++) OGL_string(col_text, 10, 180 - 40 * k, lines[k], 380, 6, 101);
    OGL_text_line(col_text, 195, 19, "O.K.");
    double_bevel(20, 15, 380, 30, 1);
}

// ---- the save prompt ------------------------------------------------------------------------

struct prompt_button {
    float x, y;
    const char* label;
    int answer;
};
static const prompt_button prompt_buttons[3] = {
    {20, 45, "     Save", 1}, {20, 15, "  Don't Save", 2}, {180, 15, "    Cancel", 3}};

void draw_save_prompt()
{
    OGL_string(col_text, 20, 80, g_cs1, 260, 6, 101);
    for (const prompt_button& b : prompt_buttons) {
        OGL_text_line(col_text, b.x + 10, b.y + 4, b.label);
        double_bevel(b.x, b.y, b.x + 100, b.y + 15, 1);
    }
}

// Asks "Save changes to <name> first?": 1 Save, 2 Don't Save, 3 Cancel. Only
// the mouse answers; a window change from elsewhere counts as Cancel.
int MACIBM_nuke_alert(const char* name)
{
    C_plus_C("Save changes to ", name, g_cs1);
    app_C(g_cs1, " first?");
    MACIBM_startwind(997);
    while (mnw.win_id == 997) {
        MACIBM_event_proc();
        if (!mnw.mouse_click) continue;
        for (const prompt_button& b : prompt_buttons) {
            if (!fltbox(mnw.mouse_x, mnw.mouse_y, b.x, b.y, b.x + 100, b.y + 15)) continue;
            double_bevel(b.x, b.y, b.x + 100, b.y + 15, 0);
            OGL_sbuf();
            MACIBM_startwind(0);
            return b.answer;
        }
    }
    return 3;
}

// ---- the splash ------------------------------------------------------------------------------

const int col_slot = 30, col_block = 7;

static void bake_progress_slots()
{
    for (int x = 11; x <= 601; x += 5) OGL_fillrect(col_slot, (float)x, 7, 3, 6);
}

// The splash's picture, its row of progress slots and a box of advice.
void bake_splash()
{
    int width, height;
    OGL_texbmp(-101, 0, 0, 0, "Norsuite Resources:bitmaps:NRST", &width, &height, 1.0f);
    MACIBM_showinit(0);
    OGL_fillrect(col_slot, 10, 20, 300, 166);
    OGL_line(col_dark_edge, 10, 20, 10, 186);
    OGL_line(col_dark_edge, 10, 186, 310, 186);
    OGL_line(col_frame, 310, 186, 310, 20);
    OGL_line(col_frame, 310, 20, 10, 20);
    OGL_string(6, 15, 175,
               "A joystick is optional here: the editor works with the mouse and a few keys. "
               "For flying, any joystick with a throttle and a twist grip serves well.",
               280, 6, 101);
    OGL_string(6, 15, 115,
               "A 3-D card with OpenGL drivers draws the map and the tile's textures smoothly; "
               "any card of the last years will do.",
               280, 6, 101);
    OGL_string(3, 15, 65, "Updates of Norvane and its tools are on the Norvane web site.", 280, 6, 101);
    OGL_string(12, 15, 35, "Tile-Forger, part of the Norsuite family.", 280, 6, 101);
}

// The progress block: with 0 the row of slots is baked; with 1 the block moves
// one slot to the right, up to the last slot at 601. Nothing once the splash
// has gone. The loads call this hundreds of times in a fraction of a second:
// the block is shown only when a display's frame (16 ms) has passed since it
// was last shown, since each showing costs a whole repaint and a swap.
void MACIBM_showinit(int advance)
{
    static float p = 6;
    static long long shown_ms = -1000;
    if (mnw.win_id != -1) return;
    if (advance == 0) {
        bake_progress_slots();
        return;
    }
    p = fltlim(p + 5, 0, 601);
    const long long now = platform_clock_ms();
    if (now - shown_ms < 16 && now >= shown_ms) return;
    shown_ms = now;
    OGL_plot_background();
    OGL_fillrect(col_block, p, 7, 2, 5);
    OGL_line(1, p, 12, p + 2, 12);
    OGL_line(1, p, 7, p, 12);
    OGL_line(19, p, 7, p + 2, 7);
    OGL_line(19, p + 2, 7, p + 2, 12);
    OGL_sbuf();
}
