// The platform layer on Linux.
#include "platform/Hl_mnw.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_file.h"
#include "hl/Hl_types.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

std::ofstream err;
int ogl_ready;
char g_cs1[500], g_cs2[500], g_cs3[500], g_cs4[500];

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
static void fill_constants()
{
    const float pi = 3.1415927f;
    con.ft_to_m = 0.3048f;
    con.m_to_ft = 1.0f / con.ft_to_m;
    con.rad_to_deg = 180.0f / pi;
    con.deg_to_rad = 1.0f / con.rad_to_deg;
    con.nm_to_m = con.ft_to_m * 6076.1155f;
}

static void open_error_log()
{
    if (err.is_open()) err.close();
    err.clear();
    err.open("Error.out", std::ios::out | std::ios::trunc);
}

void MACIBM_init()
{
    std::memset(&mnw, 0, sizeof mnw);
    std::memset(&con, 0, sizeof con);
    open_error_log();
    inf_use = 0;
    build_paths();
    fill_constants();
    gdone = 0;
}

void MACIBM_finishup()
{
    if (err.is_open()) err.close();
}

// ---- alerts ---------------------------------------------------------------------------

static const char* const about_lines[4] = {
    "Tile-Forger, the scenery editor of the Norsuite family, by the Norvane team.",
    "Norsuite Version 5.54.",
    "Questions and reports go to the Norvane support desk named in the manual.",
    "Updates of Norvane and its tools are on the Norvane web site.",
};

// One line in the log for every alert. For kind 107 the fourth argument is a
// number, and the log shows it as the alert does.
static void log_alert(const char* l1, const char* l2, const char* l3, const char* l4)
{
    if (!err.is_open()) err.open("Error.out", std::ios::out | std::ios::app);
    err << "MACIBM_alert: " << l1 << " " << l2 << " " << l3 << " " << l4
        << ", GetLastError=" << platform_last_error() << ", winerror.h for strings" << line_end;
    err.flush();
}

static void show_without_window()
{
    std::fprintf(stderr, "Norsuite Message\n%s\n\n%s\n\n%s\n\n%s\n", g_cs1, g_cs2, g_cs3, g_cs4);
    std::fflush(stderr);
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
    log_alert(line1, line2, line3, fourth);
    C_to_C(line1, g_cs1);
    C_to_C(line2, g_cs2);
    C_to_C(line3, g_cs3);
    C_to_C(fourth, g_cs4);
    if (kind == alert_about) {
        C_to_C(about_lines[0], g_cs1);
        C_to_C(about_lines[1], g_cs2);
        C_to_C(about_lines[2], g_cs3);
        C_to_C(about_lines[3], g_cs4);
    }
    show_without_window();
    if (kind == alert_fatal || kind == alert_fatal_number) {
        gdone = 1;
        MACIBM_finishup();
        std::exit(0);
    }
}

// The splash progress block. It acts only while the splash is up.
void MACIBM_showinit(int advance)
{
    (void)advance;
    if (mnw.win_id != -1) return;
}

void* active_inst;
int active_windstyle;

// Until the window and the frame pump exist there are no frames to run:
// the run ends after its start-up.
void MACIBM_event_proc() { gdone = 1; }
