// The platform layer on Linux.
#include "platform/Hl_mnw.h"
#include "app/Main.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_file.h"
#include "hl/Hl_types.h"
#include "hl/Hl_graph.h"

#include <SDL2/SDL.h>
#include <GL/gl.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

std::ofstream err;
int ogl_ready;

// ---- the two base folders -----------------------------------------------------------

void platform_app_folder(char* out)
{
    char exe[path_len] = {0};
    ssize_t n = readlink("/proc/self/exe", exe, sizeof exe - 1);
    if (n <= 0) {
        C_to_C("./", out);
        return;
    }
    exe[n] = 0;
    // The program's folder must leave room for the resource names behind it.
    if (n > path_len - 120)
        MACIBM_alert("The folder of the program has too long a path:", exe,
                     "Move the program to a folder with a shorter path.", "", alert_fatal);
    char* last = std::strrchr(exe, path_sep);
    if (last) last[1] = 0;
    C_to_C(exe, out);
}

// $XDG_CONFIG_HOME/Norvane/, or $HOME/.config/Norvane/ when that is unset.
void platform_preference_folder(char* out)
{
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    if (xdg && *xdg) std::snprintf(out, path_len, "%s/Norvane/", xdg);
    else std::snprintf(out, path_len, "%s/.config/Norvane/", home ? home : ".");
}

int platform_last_error() { return errno; }

// ---- start and end --------------------------------------------------------------------

static void build_paths()
{
    char prefs[path_len];
    platform_preference_folder(prefs);
    C_plus_C(prefs, "Norvane Tile-Forger.prf", gen_path);
    C_plus_C(prefs, "Norvane Resolution.prf", res_path);
    platform_app_folder(app_path);
    C_to_C(app_path, wrk_path);
    C_plus_C(app_path, "additional nav data/custom objects/", obj_path);
    C_plus_C(app_path, "additional nav data/custom terrain textures/", ter_path);
    C_plus_C(app_path, "Norsuite Resources/situations/", sit_path);
    C_plus_C(app_path, "Norsuite Resources/logbooks/", log_path);
}

// The unit constants, each at float precision and in this order.
void fill_constants()
{
    const float pi = 3.1415927f;
    con.ft_to_m = 0.3048f;
    con.m_to_ft = 1.0f / con.ft_to_m;
    con.rad_to_deg = 180.0f / pi;
    con.deg_to_rad = 1.0f / con.rad_to_deg;
    con.nm_to_m = con.ft_to_m * 6076.1155f;
}

// ---- the log -----------------------------------------------------------------------

char err_path[500];

// $XDG_STATE_HOME/Norvane/, or $HOME/.local/state/Norvane/ when that is unset.
void platform_state_folder(char* out)
{
    const char* xdg = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    if (xdg && *xdg) std::snprintf(out, path_len, "%s/Norvane/", xdg);
    else std::snprintf(out, path_len, "%s/.local/state/Norvane/", home ? home : ".");
}

// Makes the folder and every folder above it that is missing.
static void make_folders(const char* folder)
{
    char part[path_len];
    C_to_C(folder, part);
    for (char* p = part + 1; *p; p++) {
        if (*p != path_sep) continue;
        *p = 0;
        mkdir(part, 0755);
        *p = path_sep;
    }
}

static int open_log_in(const char* folder, std::ios::openmode mode)
{
    std::snprintf(err_path, sizeof err_path, "%sError.out", folder);
    err.clear();
    err.open(err_path, std::ios::out | mode);
    return err.is_open();
}

void open_error_log(int fresh)
{
    if (err.is_open()) err.close();
    const std::ios::openmode mode = fresh ? std::ios::trunc : std::ios::app;
    if (app_path[0] && open_log_in(app_path, mode)) return;
    char state[path_len];
    platform_state_folder(state);
    make_folders(state);
    open_log_in(state, mode);
}

const char* error_log_path()
{
    if (!err.is_open()) open_error_log(0);
    return err_path;
}

// ---- the window as the display -------------------------------------------------------
//
// The editor never changes the monitor's mode. What the system calls its display
// is the drawable of its own window: mnw.scr_x by mnw.scr_y are the pixels of the
// 4:3 canvas inside it, and the rest of a window of another shape is a black bar
// on two sides.

canvas_rect canvas_place;                  // where the canvas stands in the drawable
static int drawable_w, drawable_h;         // the window's drawable, in pixels

// Factors of 800 by 600 that a new window is offered at, largest last.
static const float window_factors[] = {1.0f, 1.25f, 1.5f, 1.75f, 2.0f, 2.5f, 3.0f};

canvas_rect platform_fit_canvas(int w, int h)
{
    canvas_rect c;
    if (w * 3 <= h * 4) {          // as wide as the drawable, bars above and below
        c.width = w;
        c.height = w * 3 / 4;
    } else {                       // as high as the drawable, bars left and right
        c.height = h;
        c.width = h * 4 / 3;
    }
    c.left = (w - c.width) / 2;
    c.top = (h - c.height) / 2;
    c.bottom = h - c.height - c.top;
    return c;
}

int platform_canvas_point(const canvas_rect& c, int px, int py, int* cx, int* cy)
{
    *cx = intlim(px - c.left, 0, c.width - 1);
    *cy = intlim(py - c.top, 0, c.height - 1);
    return *cx == px - c.left && *cy == py - c.top;
}

float platform_window_factor(int usable_w, int usable_h)
{
    float best = 0;
    for (float f : window_factors)
        if (800.0f * f <= usable_w && 600.0f * f <= usable_h) best = f;
    if (best > 0) return best;
    return fltmin2(usable_w / 800.0f, usable_h / 600.0f);   // a display smaller than the canvas
}

void platform_fit_inside(float* w, float* h, int usable_w, int usable_h)
{
    const float shrink = fltmin2(1.0f, fltmin2(usable_w / *w, usable_h / *h));
    *w = std::floor(*w * shrink);
    *h = std::floor(*h * shrink);
}

// Drawable pixels per window unit: 1, or 2 on a display that doubles.
static float pixel_ratio()
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    if (!win) return 1.0f;
    int ww = 0, wh = 0, dw = 0, dh = 0;
    SDL_GetWindowSize(win, &ww, &wh);
    SDL_GL_GetDrawableSize(win, &dw, &dh);
    return ww > 0 && dw > 0 ? (float)dw / ww : 1.0f;
}

// The part of the window's display that windows may take: without the
// desktop's panels.
static SDL_Rect usable_bounds()
{
    const int display = mnw.hwnd ? intlim(SDL_GetWindowDisplayIndex((SDL_Window*)mnw.hwnd), 0, 99) : 0;
    SDL_Rect r = {0, 0, 800, 600};
    if (SDL_GetDisplayUsableBounds(display, &r) != 0) SDL_GetDisplayBounds(display, &r);
    return r;
}

// The window's frame and title bar, once the window manager has told them;
// none before, and none with no window manager.
struct frame_sizes {
    int top, left, bottom, right;
};
static frame_sizes window_frame()
{
    frame_sizes f = {0, 0, 0, 0};
    if (!mnw.hwnd || SDL_GetWindowBordersSize((SDL_Window*)mnw.hwnd, &f.top, &f.left, &f.bottom, &f.right) != 0)
        f = {0, 0, 0, 0};
    return f;
}

// What the window itself may take of the display, in window units.
static void usable_area(int* w, int* h)
{
    const SDL_Rect r = usable_bounds();
    const frame_sizes f = window_frame();
    *w = r.w - f.left - f.right;
    *h = r.h - f.top - f.bottom;
}

// The window centred in the usable area, its frame included.
static void centre_window()
{
    const SDL_Rect r = usable_bounds();
    const frame_sizes f = window_frame();
    int w = 0, h = 0;
    SDL_GetWindowSize((SDL_Window*)mnw.hwnd, &w, &h);
    SDL_SetWindowPosition((SDL_Window*)mnw.hwnd, r.x + f.left + (r.w - f.left - f.right - w) / 2,
                          r.y + f.top + (r.h - f.top - f.bottom - h) / 2);
}

// The window size the user gets when no preference asks for one: the canvas at
// the largest of the offered factors that fits the display, in drawable pixels.
static void default_window_size()
{
    int w, h;
    usable_area(&w, &h);
    const float f = platform_window_factor(w, h) * pixel_ratio();
    mnw.scr_x = std::floor(800.0f * f);
    mnw.scr_y = std::floor(600.0f * f);
}

static int window_size_asked;   // a resolution preference file gave the size

// The canvas follows the drawable: its place, the display size, the scales,
// the blend choice and the viewport.
static void refit_canvas()
{
    SDL_GL_GetDrawableSize((SDL_Window*)mnw.hwnd, &drawable_w, &drawable_h);
    canvas_place = platform_fit_canvas(drawable_w, drawable_h);
    mnw.scr_x = (float)canvas_place.width;
    mnw.scr_y = (float)canvas_place.height;
    MACIBM_set_scale();
    if (ogl_ready) OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
}

// The window takes the size in mnw.scr_x and mnw.scr_y, in drawable pixels, or
// the largest of that shape that the display holds. There is no mode to put back.
int MACIBM_setres(int set)
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    if (!set || !win) return 1;
    float w = mnw.scr_x, h = mnw.scr_y;
    int uw, uh;
    usable_area(&uw, &uh);
    const float ratio = pixel_ratio();
    platform_fit_inside(&w, &h, (int)(uw * ratio), (int)(uh * ratio));
    SDL_SetWindowSize(win, (int)(w / ratio), (int)(h / ratio));
    centre_window();
    refit_canvas();
    return 1;
}

static void choose_display_mode()
{
    mnw.scr_x = 800;
    mnw.scr_y = 600;
    mnw.scr_bits = 16;
    window_size_asked = handle_prefs(2, 5, res_path);   // when the resolution file exists it decides
    if (!window_size_asked) default_window_size();
    if (mnw.scr_x < 1 || mnw.scr_y < 1) default_window_size();
}

void MACIBM_set_scale()
{
    mnw.scale_x = mnw.scr_x * 0.00125f;
    mnw.scale_y = mnw.scr_y * (1.0f / 600.0f);
    int canvas_size = std::fabs(mnw.scr_x - 800.0f) <= 0.5f && std::fabs(mnw.scr_y - 600.0f) <= 0.5f;
    use_blend = canvas_size ? 0 : 1;
}

// ---- the window and its OpenGL context ----------------------------------------------------

void* active_dc;
int is_3dfx;

// The platform's own word on the last failure, cut to fit an alert line.
static const char* sdl_error_line()
{
    static char line[400];
    std::snprintf(line, sizeof line, "%s", SDL_GetError());
    return line;
}

static SDL_GLContext gl_context;

int platform_video_up()
{
    if (SDL_WasInit(SDL_INIT_VIDEO)) return 1;
    // A full-screen window must stay up when another program takes the focus.
    SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return 0;
    // With no display SDL falls back on drivers that show nothing: no use here.
    const char* driver = SDL_GetCurrentVideoDriver();
    if (driver && (std::strcmp(driver, "offscreen") == 0 || std::strcmp(driver, "dummy") == 0)) {
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
        SDL_SetError("No display was found to show the window on.");
        return 0;
    }
    return 1;
}

// Colour sizes at least those of the display depth: 5 6 5 for 16 bits, 8 8 8 from 24.
static void set_gl_attributes(int depth_bits)
{
    int bits = (int)mnw.scr_bits;
    int red = intlim(bits / 3, 1, 8);
    int green = intlim(bits - 2 * red, 1, 8);
    SDL_GL_SetAttribute(SDL_GL_RED_SIZE, red);
    SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, green);
    SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, red);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, depth_bits);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_COMPATIBILITY);
}

// The depth buffer is asked for at 32 bits, else the closest that is offered.
// The window is an ordinary one of the desktop: framed, movable, resizable.
static void create_window()
{
    const int depths[4] = {32, 24, 16, 0};
    const Uint32 flags = SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI | SDL_WINDOW_HIDDEN;
    SDL_Window* win = nullptr;
    for (int k = 0; k < 4 && !win; k++) {
        set_gl_attributes(depths[k]);
        win = SDL_CreateWindow(window_title, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                               (int)mnw.scr_x, (int)mnw.scr_y, flags);
    }
    if (!win) MACIBM_alert("Can't create window!", sdl_error_line(), "", "", alert_fatal);
    mnw.hwnd = win;
    SDL_SetWindowMinimumSize(win, 200, 150);
}

// A window manager tells the size of its frame only once the window is on
// screen: wait a moment for it, so that the frame counts when the window is
// sized. With no window manager there is no frame and nothing comes.
static void wait_for_frame_size()
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    for (int k = 0; k < 25; k++) {
        int top = 0;
        if (SDL_GetWindowBordersSize(win, &top, nullptr, nullptr, nullptr) == 0 && top > 0) return;
        SDL_PumpEvents();
        SDL_Delay(10);
    }
}

static void show_window_and_make_context()
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    if (active_windstyle != 0) {
        SDL_ShowWindow(win);
        wait_for_frame_size();
    }
    if (!window_size_asked) default_window_size();
    MACIBM_setres(1);
    active_dc = win;
    gl_context = SDL_GL_CreateContext(win);
    if (!gl_context)
        MACIBM_alert("Can't choose pixel format!",
                     "This almost certainly means that you do not have the machine in 16-bit color, like you need to.",
                     "To set 16-bit color, first close this dialog box. Then right-mouse-click on your desktop.",
                     "Select 'Properties' from the resulting menu, select 'Settings' from the resulting window, and select 16-bit color.",
                     alert_fatal);
    if (SDL_GL_MakeCurrent(win, gl_context) != 0)
        MACIBM_alert("SetPixelFormat failed.", sdl_error_line(), "", "", alert_fatal);
    OGL_forget_state();
    SDL_GL_SetSwapInterval(1);   // frames come as fast as the display takes them
    SDL_StopTextInput();         // keys come as key codes only
}

int renderer_is_3dfx(const char* name)
{
    return std::strncmp(name, "3Dfx", 4) == 0 || std::strncmp(name, "3dfx", 4) == 0 ||
           std::strncmp(name, "Mesa", 4) == 0;
}

int renderer_is_generic(const char* name) { return std::strcmp(name, "GENERIC") == 0; }

static void check_renderer()
{
    const char* name = (const char*)glGetString(GL_RENDERER);
    if (!name) name = "";
    if (renderer_is_generic(name))
        MACIBM_alert("I can not find a 3-D accelerator card that can handle OpenGL that has correctly installed drivers.",
                     "I will still let you run the simulator, but the frame rate will NOT allow for a good simulation.",
                     "For you to fly realistically, you must use Norvane version Basic, or get a 3-D accelerator card that can handle OpenGL.",
                     "The Norvane web site lists the 3-D cards that are known to work well.",
                     alert_warning);
    is_3dfx = renderer_is_3dfx(name);
}

static void set_fixed_gl_state()
{
    const GLfloat no_ambient[4] = {0, 0, 0, 0};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, no_ambient);
    glDisable(GL_INDEX_LOGIC_OP);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_TEXTURE_1D);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glFrontFace(GL_CW);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glShadeModel(GL_SMOOTH);
    glEnable(GL_DITHER);
    glDisable(GL_NORMALIZE);
    glDisable(GL_COLOR_MATERIAL);
    glDisable(GL_SCISSOR_TEST);
    glAlphaFunc(GL_GREATER, 0.0f);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glHint(GL_FOG_HINT, GL_FASTEST);
}

// The window starts black, as under a black background brush; after this the
// frame buffer is never cleared.
static void start_black()
{
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    platform_swap(active_dc);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// Clears the bars beside the canvas, where nothing is drawn; the scissor box
// the frame left is put back.
static void clear_bars()
{
    const canvas_rect& c = canvas_place;
    if (c.width == drawable_w && c.height == drawable_h) return;
    GLint box[4];
    glGetIntegerv(GL_SCISSOR_BOX, box);
    const GLboolean scissor = glIsEnabled(GL_SCISSOR_TEST);
    glEnable(GL_SCISSOR_TEST);
    glClearColor(0, 0, 0, 1);
    const int right = drawable_w - c.left - c.width;
    const int bars[4][4] = {{0, 0, c.left, drawable_h},
                            {c.left + c.width, 0, right, drawable_h},
                            {c.left, 0, c.width, c.bottom},
                            {c.left, c.bottom + c.height, c.width, c.top}};
    for (const auto& b : bars)
        if (b[2] > 0 && b[3] > 0) {
            glScissor(b[0], b[1], b[2], b[3]);
            glClear(GL_COLOR_BUFFER_BIT);
        }
    glScissor(box[0], box[1], box[2], box[3]);
    if (!scissor) glDisable(GL_SCISSOR_TEST);
}

void platform_swap(void* dc)
{
    if (!dc) return;
    clear_bars();
    SDL_GL_SwapWindow((SDL_Window*)dc);
}

static void release_window()
{
    if (gl_context) SDL_GL_DeleteContext(gl_context);
    gl_context = nullptr;
    if (mnw.hwnd) SDL_DestroyWindow((SDL_Window*)mnw.hwnd);
    mnw.hwnd = nullptr;
    active_dc = nullptr;
    ogl_ready = 0;
    if (SDL_WasInit(SDL_INIT_VIDEO)) SDL_Quit();
}

// ---- start and end --------------------------------------------------------------------

// The font atlases, the menu background and the spare font. A missing file
// shows as white, with no message.
static void load_interface_textures()
{
    int width, height;
    OGL_texbmp(-100, 156, 0, -105, "Norsuite Resources:textures:paneltext", &width, &height, 1.0f);
    OGL_texbmp(-100, 128, 0, 0, "Norsuite Resources:textures:interface:menuitems", &width, &height, 1.0f);
    OGL_texbmp(-100, 154, 0, -105, "Norsuite Resources:textures:interfacetext", &width, &height, 1.0f);
    OGL_texbmp(-100, 155, 0, -105, "Norsuite Resources:textures:interfacetext_alt", &width, &height, 1.0f);
}

void MACIBM_init()
{
    if (!platform_video_up())
        MACIBM_alert("Can't create window!", sdl_error_line(), "", "", alert_fatal);
    std::memset(&mnw, 0, sizeof mnw);
    std::memset(&con, 0, sizeof con);
    inf_use = 0;
    build_paths();
    open_error_log(1);
    fill_constants();
    OGL_assign_colortable();
    choose_display_mode();
    MACIBM_set_scale();
    create_window();
    show_window_and_make_context();
    check_renderer();
    set_fixed_gl_state();
    start_black();
    OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
    ogl_ready = 1;
    load_interface_textures();
    MACIBM_read_menus("Tile-Forger.txt");
    gdone = 0;
    MACIBM_startwind(-1);
}

void MACIBM_finishup()
{
    MACIBM_setres(0);
    if (err.is_open()) err.close();
    release_window();
}

void* active_inst;
int active_windstyle;


// ---- windows --------------------------------------------------------------------------------

// Title and size of each window. Its origin centres it on the canvas, 5 lower
// for a modal window, to leave room for the title strip above it.
struct window_kind {
    int id;
    const char* title;
    float w, h;
};

static const window_kind window_table[] = {
    {-1, "", 800, 600},       {0, "", 800, 600},          {996, "ALERT", 400, 195},
    {997, "ALERT", 300, 100}, {998, "OPEN", 320, 487},    {999, "SAVE", 320, 487},
};

// Any id outside the table would get the main screen's whole canvas.
static const window_kind& window_of(int id)
{
    for (const window_kind& k : window_table)
        if (k.id == id) return k;
    return window_table[1];
}

static void set_window_geometry(const window_kind& win)
{
    mnw.win_w = win.w;
    mnw.win_h = win.h;
    mnw.win_x = (float)intround((800.0f - win.w) * 0.5f);
    mnw.win_y = (float)intround((600.0f - win.h) * 0.5f) - (win.id > 0 ? 5.0f : 0.0f);
}

// The static labels of each screen, msc.screen 200 to 203.
static const char* const screen_panels[4] = {
    "Norsuite Resources:bitmaps:TileFrgr:TF_MAP",
    "Norsuite Resources:bitmaps:TileFrgr:TF_OBS",
    "Norsuite Resources:bitmaps:TileFrgr:TF_APT",
    "Norsuite Resources:bitmaps:TileFrgr:TF_NAV",
};

// A screen outside 200 to 203 has no panel: its background stays transparent.
static void paint_screen_panel()
{
    if (!intrange(msc.screen, 200, 203)) return;
    int width, height;
    OGL_texbmp(-101, 0, 0, 0, screen_panels[msc.screen - 200], &width, &height, 1.0f);
}

// The frame of a modal window, w by h from its origin: a dark border with room
// for the title strip above, three bevels, the title in the 5 by 7 patterns,
// and three engraved lines left and right of the title where there is room.
static void bake_window_frame(const window_kind& win)
{
    const int col_face = 12;
    const float w = win.w, h = win.h;
    OGL_fillrect(col_frame, -5, -5, w + 10, h + 20);
    OGL_fillrect(col_face, 0, 0, w, h);
    MACIBM_button(-1, -1, w, h, 0);
    MACIBM_button(-5, -5, w + 4, h + 14, 1);
    MACIBM_button(-6, -6, w + 5, h + 15, 1);
    const int half = 6 * (int)std::strlen(win.title) / 2;
    const float mid = w / 2;
    OGL_string(col_dark_edge, mid - half + 1, h + 3, win.title, w - 6, 6, 101);
    OGL_string(col_light_edge, mid - half, h + 4, win.title, w - 6, 6, 101);
    const float a = mid - half - 5, b = mid + half + 4;
    if (!(a > 14 && w - 15 > b)) return;
    for (int k = 1; k <= 3; k++) {
        const float y = h + 3 * k;
        OGL_line(col_dark_edge, 14, y + 2, a, y + 2);
        OGL_line(col_dark_edge, b, y + 2, w - 15, y + 2);
        OGL_line(col_face, 14, y + 1, a, y + 1);
        OGL_line(col_face, b, y + 1, w - 15, y + 1);
    }
}

// Opens a window: drops the mouse state and any open menu, then bakes the
// window's static picture into the 35 panel tiles that each frame draws first.
void MACIBM_startwind(int id)
{
    mnw.mouse_down = 0;
    g_cs_input[0] = 0;
    mnw.open_menu = -1;
    mnw.win_id = id;
    mnw.mouse_click = 0;
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    const window_kind& win = window_of(id);
    set_window_geometry(win);
    if (id > 0) bake_window_frame(win);
    if (id == 0) paint_screen_panel();
    if (id == -1) bake_splash();
    load_rgbarray_into_baktex(0);
    to_array = 0;
}

// ---- the window procedure ------------------------------------------------------------------

// Mouse coordinates leave the message as x and y of 16 bits each, unsigned.
static long pack_point(int x, int y) { return (long)(((unsigned long)(y & 0xFFFF) << 16) | (unsigned long)(x & 0xFFFF)); }

// The mouse on the canvas, relative to the current window's origin, y upward.
static void mouse_moved(long lparam)
{
    float x = (float)((unsigned long)lparam & 0xFFFF);
    float y = (float)(((unsigned long)lparam >> 16) & 0xFFFF);
    mnw.mouse_x = x / mnw.scale_x - mnw.win_x;
    mnw.mouse_y = (mnw.scr_y - y) / mnw.scale_y - mnw.win_y;
}

static void paint()
{
    void* kept = active_dc;
    active_dc = mnw.hwnd;   // the paint bracket's target is the window itself here
    MACIBM_startwind(mnw.win_id);
    active_dc = kept;
    have_done_first_update = 1;
}

long IBM_handlewin(void* hwnd, unsigned int msg, unsigned long wparam, long lparam)
{
    (void)hwnd;
    switch (msg) {
    case msg_keydown:
        MACIBM_handlekey((int)wparam);
        break;
    case msg_mousemove:
        mouse_moved(lparam);
        break;
    case msg_lbuttondown:
    case msg_rbuttondown:
        mnw.mouse_click = 1;
        mnw.mouse_down = 1;
        MACIBM_handleclick();
        break;
    case msg_lbuttonup:
    case msg_rbuttonup:
        mnw.mouse_down = 0;
        mnw.mouse_repeat = 0;
        break;
    case msg_paint:
        paint();
        break;
    case msg_destroy:
        MACIBM_startwind(0);
        break;
    }
    return 0;
}

// ---- platform events as messages ------------------------------------------------------------

// Virtual-key codes of the keys that have one beyond letters, digits, F-keys and the keypad.
static const int key_codes[][2] = {
    {SDLK_LEFT, 0x25}, {SDLK_UP, 0x26}, {SDLK_RIGHT, 0x27}, {SDLK_DOWN, 0x28},
    {SDLK_RETURN, 0x0D}, {SDLK_KP_ENTER, 0x0D}, {SDLK_BACKSPACE, 0x08},
    {SDLK_LSHIFT, 0x10}, {SDLK_RSHIFT, 0x10}, {SDLK_LCTRL, 0x11}, {SDLK_RCTRL, 0x11},
    {SDLK_LALT, 0x12}, {SDLK_RALT, 0x12}, {SDLK_PAUSE, 0x13}, {SDLK_CAPSLOCK, 0x14},
    {SDLK_TAB, 0x09}, {SDLK_ESCAPE, 0x1B}, {SDLK_SPACE, 0x20},
    {SDLK_PAGEUP, 0x21}, {SDLK_PAGEDOWN, 0x22}, {SDLK_END, 0x23}, {SDLK_HOME, 0x24},
    {SDLK_PRINTSCREEN, 0x2C}, {SDLK_INSERT, 0x2D}, {SDLK_DELETE, 0x2E},
    {SDLK_LGUI, 0x5B}, {SDLK_RGUI, 0x5C}, {SDLK_APPLICATION, 0x5D},
    {SDLK_KP_0, 0x60}, {SDLK_KP_MULTIPLY, 0x6A}, {SDLK_KP_PLUS, 0x6B}, {SDLK_KP_MINUS, 0x6D},
    {SDLK_KP_PERIOD, 0x6E}, {SDLK_KP_DIVIDE, 0x6F}, {SDLK_NUMLOCKCLEAR, 0x90}, {SDLK_SCROLLLOCK, 0x91},
    {SDLK_SEMICOLON, 0xBA}, {SDLK_EQUALS, 0xBB}, {SDLK_COMMA, 0xBC}, {SDLK_MINUS, 0xBD},
    {SDLK_PERIOD, 0xBE}, {SDLK_SLASH, 0xBF}, {SDLK_BACKQUOTE, 0xC0},
    {SDLK_LEFTBRACKET, 0xDB}, {SDLK_BACKSLASH, 0xDC}, {SDLK_RIGHTBRACKET, 0xDD}, {SDLK_QUOTE, 0xDE},
};

int platform_key_code(int key)
{
    if (key >= SDLK_a && key <= SDLK_z) return 0x41 + (key - SDLK_a);
    if (key >= SDLK_0 && key <= SDLK_9) return 0x30 + (key - SDLK_0);
    if (key >= SDLK_F1 && key <= SDLK_F12) return 0x70 + (key - SDLK_F1);
    if (key >= SDLK_KP_1 && key <= SDLK_KP_9) return 0x61 + (key - SDLK_KP_1);
    for (const auto& pair : key_codes)
        if (pair[0] == key) return pair[1];
    return 0;
}

// Puts a key-down into the platform's queue as if typed: the next frame
// handles it. Scripted sessions and tests answer alerts this way.
void platform_push_key_code(int code)
{
    SDL_Event e = {};
    e.type = SDL_KEYDOWN;
    e.key.state = SDL_PRESSED;
    if (code >= 0x41 && code <= 0x5A) e.key.keysym.sym = SDLK_a + (code - 0x41);
    if (code >= 0x30 && code <= 0x39) e.key.keysym.sym = SDLK_0 + (code - 0x30);
    for (const auto& pair : key_codes)
        if (pair[1] == code && e.key.keysym.sym == 0) e.key.keysym.sym = pair[0];
    SDL_PushEvent(&e);
}

// The Shift state as it was when the key being handled went down: keys are
// taken in batches, by which time the user may have let Shift go.
static int shift_at_key;
int platform_shift_down() { return shift_at_key; }

// A close from outside (the window manager's close button, an end signal).
static void close_from_outside()
{
    // The quit command, so that the user gets the save prompts; it sets gdone itself.
    APPLICATION_handlemenu(104);
}

// A point of the window, in window units from its top left, as a point of the
// canvas packed for the window procedure; 0 when it lies on a bar.
static int canvas_message_point(int x, int y, long* packed)
{
    const float ratio = pixel_ratio();
    int cx, cy;
    const int on_canvas = platform_canvas_point(canvas_place, (int)(x * ratio), (int)(y * ratio), &cx, &cy);
    *packed = pack_point(cx, cy);
    return on_canvas;
}

// A press on a bar reaches nothing; a release always ends the hold. A press
// brings the mouse to its place first, as the move before it would.
static void mouse_button(const SDL_MouseButtonEvent& b, int down)
{
    unsigned int msg = 0;
    if (b.button == SDL_BUTTON_LEFT) msg = down ? msg_lbuttondown : msg_lbuttonup;
    if (b.button == SDL_BUTTON_RIGHT) msg = down ? msg_rbuttondown : msg_rbuttonup;
    if (!msg) return;
    long point;
    const int on_canvas = canvas_message_point(b.x, b.y, &point);
    if (down && !on_canvas) return;
    if (down) IBM_handlewin(mnw.hwnd, msg_mousemove, 0, point);
    IBM_handlewin(mnw.hwnd, msg, 0, point);
}

static void mouse_moved_to(int x, int y)
{
    long point;
    canvas_message_point(x, y, &point);
    IBM_handlewin(mnw.hwnd, msg_mousemove, 0, point);
}

// F11 puts the window in full screen on the desktop's own mode, and back.
static void toggle_full_screen()
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    const int full = (SDL_GetWindowFlags(win) & SDL_WINDOW_FULLSCREEN_DESKTOP) == SDL_WINDOW_FULLSCREEN_DESKTOP;
    SDL_SetWindowFullscreen(win, full ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP);
}

// A new window size: the canvas is fitted again, the whole drawable cleared
// (the bars stay black), and the current window repainted at the new scale.
static void window_resized(int* paint_due)
{
    refit_canvas();
    glDisable(GL_SCISSOR_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    *paint_due = 1;
}

static void window_event(const SDL_WindowEvent& w, int* paint_due)
{
    if (w.event == SDL_WINDOWEVENT_EXPOSED || w.event == SDL_WINDOWEVENT_SHOWN) *paint_due = 1;
    if (w.event == SDL_WINDOWEVENT_SIZE_CHANGED) window_resized(paint_due);
}

static void dispatch_event(const SDL_Event& e, int* paint_due)
{
    switch (e.type) {
    case SDL_QUIT:
        close_from_outside();
        break;
    case SDL_WINDOWEVENT:
        window_event(e.window, paint_due);
        break;
    case SDL_MOUSEMOTION:
        mouse_moved_to(e.motion.x, e.motion.y);
        break;
    case SDL_MOUSEBUTTONDOWN:
        mouse_button(e.button, 1);
        break;
    case SDL_MOUSEBUTTONUP:
        mouse_button(e.button, 0);
        break;
    case SDL_KEYDOWN: {
        if (e.key.keysym.sym == SDLK_F11) {
            toggle_full_screen();
            break;
        }
        int code = platform_key_code(e.key.keysym.sym);
        shift_at_key = (e.key.keysym.mod & KMOD_SHIFT) ? 1 : 0;
        if (code) IBM_handlewin(mnw.hwnd, msg_keydown, (unsigned long)code, 0);
        break;
    }
    }
}

// Paint notices that come together make one paint message, after the others.
void platform_take_messages()
{
    if (!SDL_WasInit(SDL_INIT_VIDEO)) return;
    int paint_due = 0;
    SDL_Event e;
    while (SDL_PollEvent(&e)) dispatch_event(e, &paint_due);
    if (paint_due) IBM_handlewin(mnw.hwnd, msg_paint, 0, 0);
}

// ---- the frame pump --------------------------------------------------------------------------

int return_hit;
int have_done_first_update;

long long platform_monotonic_ms()
{
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return (long long)ts.tv_sec * 1000 + ts.tv_nsec / 1000000;
}

long long (*platform_clock_ms)() = platform_monotonic_ms;

// What the pump keeps between frames.
struct pump_memory {
    int started;
    long long start_ms;
    int frame_count;
    float time_of_frame5;
    float last_mouse_x, last_mouse_y;
    float last_move;     // time of the last mouse move or click
    float last_click;
    float last_pulse;    // time of the last auto-repeat pulse
};

static const pump_memory fresh_pump = {0, 0, 0, 0.0f, 999.0f, 999.0f, 0.0f, 0.0f, 0.0f};
static pump_memory pump = fresh_pump;

void MACIBM_restart_pump() { pump = fresh_pump; }

static void update_clock()
{
    long long now = platform_clock_ms();
    if (!pump.started) {
        pump.start_ms = now;
        pump.started = 1;
    }
    mnw.time = (float)(now - pump.start_ms) * 0.001f;
}

// Once in a run: frames 5 and 6 more than a second apart mean no 3-D card.
static void watch_frame_rate()
{
    if (pump.frame_count > 6) return;
    pump.frame_count++;
    if (pump.frame_count == 5) pump.time_of_frame5 = mnw.time;
    if (pump.frame_count == 6 && mnw.time - pump.time_of_frame5 > 1.0f)
        MACIBM_alert("I am detecting extremely low frame-rate!",
                     "This may indicate that you do not have a 3-D card with OpenGL capability!",
                     "If you do have a 3-D card with OpenGL capability, then it might not have OpenGL drivers installed!",
                     "The Norvane web site has information on 3-D cards that run Norvane well.",
                     alert_warning);
}

static void track_mouse_rest()
{
    int moved = std::fabs(mnw.mouse_x - pump.last_mouse_x) > 1.0f ||
                std::fabs(mnw.mouse_y - pump.last_mouse_y) > 1.0f;
    if (moved || mnw.mouse_click) pump.last_move = mnw.time;
    if (mnw.mouse_click) pump.last_click = mnw.time;
    pump.last_mouse_x = mnw.mouse_x;
    pump.last_mouse_y = mnw.mouse_y;
    mnw.tip[0] = 0;
}

// A held button pulses mnw.mouse_click five times a second after half a second.
static void auto_repeat()
{
    if (mnw.mouse_down) mnw.mouse_repeat = mnw.time - pump.last_click > 0.5f ? 1 : 0;
    if (mnw.mouse_repeat && mnw.time > pump.last_pulse + 0.2f) {
        pump.last_pulse = mnw.time;
        mnw.mouse_click = 1;
    }
}

static void pulse_colours()
{
    float t = mnw.time;
    float s1 = std::sin(10.0f * t) * 0.2f + 0.8f;
    float s2 = std::sin(25.0f * t) * 0.3f + 0.7f;
    float s3 = std::sin(10.0f * t) * 0.4f + 0.6f;
    OGL_assigncolor(55, 0.2f * s1, s1, 0.2f * s1);
    OGL_assigncolor(56, 0.2f * s2, s2, 0.2f * s2);
    OGL_assigncolor(57, s1, 0.2f * s1, 0.2f * s1);
    OGL_assigncolor(58, s2, 0.2f * s2, 0.2f * s2);
    OGL_assigncolor(59, s3, s3, s3);
    OGL_assigncolor(60, s3, 0.9f * s3, 0.5f * s3);
}

static void draw_current_window()
{
    switch (mnw.win_id) {
    case 996:
        draw_alert_window();
        break;
    case 997:
        draw_save_prompt();
        break;
    case 998:
    case 999:   // the open and save dialog
        opensave_update();
        break;
    default:    // the current screen and its controls
        APPLICATION_update();
        break;
    }
}

// The mouse pointer as a sprite from the interface text atlas.
static void draw_pointer()
{
    const float x = mnw.mouse_x, y = mnw.mouse_y;
    const int alpha = use_blend ? sw_alpha_off : sw_alpha_on;
    const int blend = use_blend ? sw_blend_on : sw_blend_off;
    OGL_2dquad(154, col_lights_off, 1.0f,
               x, y - 18, 0.90625f, 0.734375f,
               x, y, 0.90625f, 1.0f,
               x + 14, y, 1.0f, 1.0f,
               x + 14, y - 18, 1.0f, 0.734375f,
               sw_tex_on, alpha, blend);
}

float MACIBM_mouse_rest() { return mnw.time - pump.last_move; }

int MACIBM_tooltip_due() { return mnw.tip[0] != 0 && MACIBM_mouse_rest() > 1.0f; }

// 400 wide, 10 higher for every 60 characters; opens left of the mouse and up,
// kept 10 inside the canvas sides and between 10 and 580 in y.
void MACIBM_tooltip_box(float* x, float* y, float* w, float* h)
{
    *w = 400.0f;
    *h = (float)((int)std::strlen(mnw.tip) / 60) * 10.0f + 45.0f;
    *x = fltlim(mnw.mouse_x - *w, 10.0f - mnw.win_x, 790.0f - mnw.win_x - *w);
    *y = fltlim(mnw.mouse_y, 10.0f - mnw.win_y, 580.0f - mnw.win_y - *h);
}

void MACIBM_draw_tooltip()
{
    float x, y, w, h;
    MACIBM_tooltip_box(&x, &y, &w, &h);
    const float x2 = x + w, y2 = y + h;
    OGL_fillrect(col_frame, x - 5, y - 5, w + 10, h + 10);
    OGL_fillrect(col_black, x, y, w, h);
    MACIBM_button(x - 1, y - 1, x2, y2, 0);
    MACIBM_button(x - 5, y - 5, x2 + 5, y2 + 5, 1);
    MACIBM_button(x - 6, y - 6, x2 + 4, y2 + 4, 1);
    OGL_string(78, x + 3, y2 - 10, mnw.tip, w - 6, 6, 101);
}

// One frame. Nested calls from modal loops run the same steps on the same state.
void MACIBM_event_proc()
{
    return_hit = 0;
    mnw.mouse_click = 0;
    if (mnw.win_id == -1) mnw.win_id = 0;
    MACIBM_menu_hover();
    platform_take_messages();
    if (!have_done_first_update) return;
    update_clock();
    watch_frame_rate();
    track_mouse_rest();
    auto_repeat();
    pulse_colours();
    OGL_plot_background();
    draw_current_window();
    MACIBM_draw_menus();
    if (is_3dfx) draw_pointer();
    if (MACIBM_tooltip_due()) MACIBM_draw_tooltip();
    OGL_sbuf();
}

// ---- keyboard entry --------------------------------------------------------------------------

char g_cs_input[500];

const int vk_backspace = 0x08, vk_return = 0x0D, vk_shift = 0x10;
const int vk_left = 0x25, vk_up = 0x26, vk_right = 0x27, vk_down = 0x28;

// Code of an arrow as the key map takes it, or 0 for any other key.
static int arrow_code(int key)
{
    if (key == vk_left) return 31488;
    if (key == vk_up) return 32256;
    if (key == vk_right) return 31744;
    if (key == vk_down) return 32000;
    return 0;
}

// The character of a key code, by the Shift state. Caps Lock is not read.
char key_character(int key, int shift)
{
    static const char shifted_digits[10] = {')', '!', '@', '#', '$', '%', '^', '&', '*', '('};
    static const int punctuation[10][3] = {
        {0xBD, '-', '_'}, {0xBB, '=', '+'}, {0xDB, '[', '{'}, {0xDD, ']', '}'}, {0xBA, ';', ':'},
        {0xBC, ',', '<'}, {0xBE, '.', '>'}, {0xBF, '/', '?'}, {0xC0, '`', '~'}, {0xDC, '\\', '|'},
    };
    int low = key & 0xFF;
    if (low >= 0x41 && low <= 0x5A) return (char)(shift ? low : low + 0x20);
    if (low >= 0x30 && low <= 0x39) return shift ? shifted_digits[low - 0x30] : (char)low;
    for (const auto& p : punctuation)
        if (p[0] == low) return (char)(shift ? p[2] : p[1]);
    return (char)low;
}

// The name of the selected record on the airport and navaid screens is the
// text under entry; other screens edit only g_cs_input.
// A selection outside the table's records (an empty table, a stale
// preference) edits no name.
static char* name_under_entry()
{
    if (msc.screen == 202 && intrange(msc.apt_sel, 0, apt_wrl_max)) return apt_name[msc.apt_sel];
    if (msc.screen == 203 && intrange(msc.nav_sel, 0, nav_cap - 1)) return nav_name[msc.nav_sel];
    return nullptr;
}

// A name row holds 39 characters: a key beyond that changes nothing, so
// the row after it is never touched.
static void store_name(char* name)
{
    if (name && std::strlen(g_cs_input) < (size_t)name_len) C_to_C(g_cs_input, name);
}

static void edit_text(int key, char c)
{
    char* name = name_under_entry();
    if (name) C_to_C(name, g_cs_input);
    int n = intlim((int)std::strlen(g_cs_input), 0, 175);
    if (key == vk_backspace) {
        if (n > 0) g_cs_input[n - 1] = 0;
    } else if (key != vk_shift && key != vk_return) {
        g_cs_input[n] = c;
        g_cs_input[n + 1] = 0;
    }
    store_name(name);
}

void MACIBM_handlekey(int key)
{
    int arrow = arrow_code(key);
    char c = key_character(key, platform_shift_down());
    if (key == vk_return) return_hit = 1;
    if (mnw.win_id != 999) APPLICATION_handlekey(arrow != 0, arrow ? arrow : c);
    if (arrow || c == '+' || c == '=' || c == '-' || c == '_') return;
    edit_text(key, c);
}
