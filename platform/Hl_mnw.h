// The platform layer: start-up and end of the platform, the alert channel,
// the window procedure, the frame pump, and everything else that touches the
// window system.
#pragma once
#include <fstream>

extern std::ofstream err;      // the log "Error.out", one line for each alert
extern char err_path[500];     // where the log is: see open_error_log

// Opens the log "Error.out" in the program's folder, or where that can't be
// written in the state folder; fresh empties it, else lines are added.
void open_error_log(int fresh);
// The log's path, opening it first when it isn't open.
const char* error_log_path();
extern int ogl_ready;          // 1 from the moment the system can draw its own alerts

extern char g_cs1[500], g_cs2[500], g_cs3[500], g_cs4[500];   // the four alert lines

// Alert kinds.
const int alert_about = 105;
const int alert_warning = 106;
const int alert_fatal_number = 107;   // the fourth argument is the address of an int
const int alert_fatal = 108;

void MACIBM_init();
void fill_constants();               // the unit constants of con, at float precision
int MACIBM_setres(int set);           // 1: the window takes mnw.scr_x by mnw.scr_y; 0: nothing to put back
void MACIBM_finishup();
void MACIBM_alert(const char* line1, const char* line2, const char* line3,
                  const void* line4, int kind);
// When set, sees the four lines of every alert (the fourth as text) once they
// are logged and echoed, and gives 1 when it has answered the alert itself:
// the alert then shows nothing, as if O.K. had been pressed at once. The editor leaves it unset; the test programs set it to answer the
// alerts a test announced and to fail a test that raises any other.
extern int (*alert_watcher)(const char* line1, const char* line2, const char* line3, const char* line4, int kind);
void MACIBM_showinit(int advance);
void MACIBM_startwind(int id);
int MACIBM_nuke_alert(const char* name);   // 1 Save, 2 Don't Save, 3 Cancel
void draw_alert_window();
void draw_save_prompt();
void bake_splash();
void MACIBM_handlekey(int key);         // one key-down, with its virtual-key code
extern char g_cs_input[500];           // the one text entry line
char key_character(int key, int shift); // the character a key code types         // the one way of changing windows: bakes its panel
void MACIBM_button(float x1, float y1, float x2, float y2, int raised);

// Platform answers used by the start-up.
void platform_app_folder(char* out);          // folder of the running program, closing separator
void platform_preference_folder(char* out);   // folder of the preference files, closing separator
void platform_state_folder(char* out);        // $XDG_STATE_HOME/Norvane/ or ~/.local/state/Norvane/
int platform_last_error();

// The process instance and show-window value that the entry hands over.
extern void* active_inst;
extern int active_windstyle;

// ---- the window ----------------------------------------------------------------------------
extern void* active_dc;        // what OGL_sbuf swaps: the window
extern int is_3dfx;            // the renderer needs the drawn mouse pointer

void platform_swap(void* dc);  // one frame to the screen
int platform_video_up();       // brings up the video system once; 1 when a display answers

// Scale of the canvas on the display and the blend choice, from mnw.scr_x and mnw.scr_y.
void MACIBM_set_scale();

// The window is the display: the canvas stands in its drawable as the largest
// 4:3 area that fits, centred, with black bars on the two other sides.
struct canvas_rect {
    int left, top, bottom;   // the bars, in drawable pixels
    int width, height;       // the canvas, in drawable pixels: mnw.scr_x and mnw.scr_y
};
extern canvas_rect canvas_place;
canvas_rect platform_fit_canvas(int drawable_w, int drawable_h);
// A drawable pixel (from the top left) as a pixel of the canvas (from its top
// left), kept on the canvas; 1 when it was on the canvas, 0 on a bar.
int platform_canvas_point(const canvas_rect& c, int px, int py, int* cx, int* cy);
// The largest of 1, 1.25, 1.5, 1.75, 2, 2.5 and 3 at which 800 by 600 fits the
// area; a smaller one when even 800 by 600 does not.
float platform_window_factor(int usable_w, int usable_h);
// Shrinks w by h, keeping its shape, until it fits the area.
void platform_fit_inside(float* w, float* h, int usable_w, int usable_h);
const char* const window_title = "Tile-Forger";
// Renderer names: the one that needs the drawn pointer, and the bare software one.
int renderer_is_3dfx(const char* name);
int renderer_is_generic(const char* name);

// ---- messages ------------------------------------------------------------------------------
const unsigned int msg_destroy = 2;
const unsigned int msg_paint = 15;
const unsigned int msg_keydown = 256;
const unsigned int msg_mousemove = 512;
const unsigned int msg_lbuttondown = 513;
const unsigned int msg_lbuttonup = 514;
const unsigned int msg_rbuttondown = 516;
const unsigned int msg_rbuttonup = 517;

// The window procedure. For mouse messages the low 16 bits of lparam are x,
// the high 16 bits y, in display pixels from the top left; for a key, wparam is
// the key code.
long IBM_handlewin(void* hwnd, unsigned int msg, unsigned long wparam, long lparam);
// Takes every waiting platform event and hands each on as a message.
void platform_take_messages();
// The key code of a platform key (virtual-key numbering), 0 when it has none.
int platform_key_code(int sdl_key);
int platform_shift_down();
void platform_push_key_code(int code);   // a key-down into the queue, as if typed

// ---- the frame pump ------------------------------------------------------------------------
extern int return_hit;               // Return went down in this frame
extern int have_done_first_update;   // the window has had its first paint

// One frame of the system: messages, clock, drawing, swap.
void MACIBM_event_proc();

// The millisecond clock the pump reads: monotonic, and replaceable for a
// reproducible run.
extern long long (*platform_clock_ms)();
long long platform_monotonic_ms();
// Forgets what the pump remembers between frames, as at the start of a run.
void MACIBM_restart_pump();

float MACIBM_mouse_rest();           // seconds since the mouse last moved or clicked
int MACIBM_tooltip_due();            // a help text waits and the mouse has rested
// The box of the help text in mnw.tip, window-relative, without its frame.
void MACIBM_tooltip_box(float* x, float* y, float* w, float* h);
void MACIBM_draw_tooltip();

// ---- menus -----------------------------------------------------------------------------------
// The menu bar of the main screen, from the menu file under "Norsuite Resources/menus".
extern float m_x1, m_y1, m_x2, m_y2;   // box around the items of the open menu
void MACIBM_read_menus(const char* file_name);
void MACIBM_create_menu(int menu, int parent, const char* title);
void MACIBM_append_menu(int menu, int item, int command, const char* label);
void MACIBM_handleclick();   // a press at mnw.mouse_x, mnw.mouse_y
void MACIBM_menu_hover();    // with a menu open, the title under the mouse opens
void MACIBM_draw_menus();    // the menu bar and the open menu, over the screen
