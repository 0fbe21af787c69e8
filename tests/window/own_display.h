// The real program on an X server of its own, of any screen size, with or
// without a window manager: a folder with a copy of the program and its data,
// the server, the program, its window and what the screen shows.
#pragma once
#include "bitmap_files.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <X11/Xutil.h>

#include <cmath>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <signal.h>
#include <vector>

namespace own_display {

namespace fs = std::filesystem;


struct screen_run {
    std::string dir, display;
    pid_t xvfb = 0, wm = 0, program = 0;
    Display* x = nullptr;
    Window window = 0;
    bool settled = false;   // the start's frame-rate warning is past
};
inline screen_run run;

struct window_box {
    int x, y, w, h;   // the drawable on the root window
};

inline std::string in_dir(const std::string& rel) { return run.dir + "/" + rel; }

inline bool eventually(const std::function<bool()>& holds, int ms = 15000)
{
    for (int waited = 0; waited < ms; waited += 20, usleep(20000))
        if (holds()) return true;
    return holds();
}

inline void start_xvfb(const char* screen)
{
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    run.xvfb = fork();
    if (run.xvfb == 0) {
        close(fds[0]);
        int log = open(in_dir("xvfb.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(log, 1);
        dup2(log, 2);
        const std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen, "-nolisten", "tcp", "-noreset",
               (char*)nullptr);
        _exit(90);
    }
    close(fds[1]);
    std::string number;
    char c = 0;
    pollfd p = {fds[0], POLLIN, 0};
    while (c != '\n' && poll(&p, 1, 60000) == 1 && read(fds[0], &c, 1) == 1) number += c;
    close(fds[0]);
    ASSERT_TRUE(c == '\n' && !number.empty()) << "Xvfb gave no display";
    run.display = ":" + std::to_string(std::atoi(number.c_str()));
    run.x = XOpenDisplay(run.display.c_str());
    ASSERT_NE(run.x, nullptr);
}

// A window manager, for the frame, the title bar and the usable area.
inline void start_window_manager()
{
    run.wm = fork();
    if (run.wm == 0) {
        setenv("DISPLAY", run.display.c_str(), 1);
        int log = open(in_dir("wm.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(log, 1);
        dup2(log, 2);
        execlp("openbox", "openbox", "--sm-disable", (char*)nullptr);
        _exit(90);
    }
    const Atom check = XInternAtom(run.x, "_NET_SUPPORTING_WM_CHECK", False);
    ASSERT_TRUE(eventually([&] {
        Atom type;
        int format;
        unsigned long n, after;
        unsigned char* data = nullptr;
        XGetWindowProperty(run.x, DefaultRootWindow(run.x), check, 0, 1, False, AnyPropertyType, &type, &format, &n,
                           &after, &data);
        if (data) XFree(data);
        return n > 0;
    })) << "the window manager did not come up";
}

// A resolution preference asks the window for this size.
inline void ask_window_size(int w, int h)
{
    std::ofstream(in_dir("config/Norvane/Norvane Resolution.prf"), std::ios::binary)
        << "I\r\n543 version\r\n" << w << "\r\n" << h << "\r\n32\r\n0\r\n";
}

inline void start_program()
{
    run.program = fork();
    if (run.program == 0) {
        setenv("DISPLAY", run.display.c_str(), 1);
        setenv("XDG_CONFIG_HOME", in_dir("config").c_str(), 1);
        int log = open(in_dir("program.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(log, 2);
        if (chdir(run.dir.c_str()) == 0) execl(in_dir("tileforger").c_str(), "tileforger", (char*)nullptr);
        _exit(90);
    }
    run.window = find_program_window(run.program, run.display);
    ASSERT_NE(run.window, 0ul) << "no window of the program appeared";
}

inline window_box box_of_window()
{
    XWindowAttributes a;
    XGetWindowAttributes(run.x, run.window, &a);
    int x = 0, y = 0;
    Window child;
    XTranslateCoordinates(run.x, run.window, DefaultRootWindow(run.x), 0, 0, &x, &y, &child);
    return {x, y, a.width, a.height};
}

inline std::string screen_size()
{
    const Screen* s = DefaultScreenOfDisplay(run.x);
    XSync(run.x, False);
    return std::to_string(WidthOfScreen(s)) + "x" + std::to_string(HeightOfScreen(s));
}

inline std::vector<unsigned long> grab(int x, int y, int w, int h)
{
    std::vector<unsigned long> px;
    XImage* im = XGetImage(run.x, DefaultRootWindow(run.x), x, y, w, h, AllPlanes, ZPixmap);
    if (!im) return px;
    for (int r = 0; r < h; r++)
        for (int c = 0; c < w; c++) px.push_back(XGetPixel(im, c, r) & 0xFFFFFF);
    XDestroyImage(im);
    return px;
}


// The folder of a run: the program with the build's menus and textures, panels
// of its own (every pixel of a different colour), a splash of one colour, a
// copy of the sample data that saves may change, and an empty preference folder.
inline void stage_run()
{
    run = screen_run{};
    char dir[] = "/tmp/tf_own_XXXXXX";
    ASSERT_TRUE(mkdtemp(dir));
    run.dir = dir;
    const fs::path build = fs::path(TF_PROGRAM_PATH).parent_path();
    fs::copy_file(TF_PROGRAM_PATH, in_dir("tileforger"));
    for (const fs::directory_entry& e : fs::directory_iterator(build / "Norsuite Resources"))
        if (e.path().filename() != "bitmaps") {
            fs::create_directories(in_dir("Norsuite Resources"));
            fs::create_symlink(e.path(), in_dir("Norsuite Resources/" + e.path().filename().string()));
        }
    const std::string panel = bmp_bytes(800, 600, panel_pixel);
    for (const char* name : screen_panel_files)
        write_bytes(in_dir("Norsuite Resources/bitmaps/TileFrgr/") + name + ".BMP", panel);
    write_bytes(in_dir("Norsuite Resources/bitmaps/NRST.BMP"),
                bmp_bytes(800, 600, [](int, int) { return bmp_rgb{0, 0, 0x80}; }));
    fs::copy(fs::path(TF_SOURCE_DIR) / "resources/additional nav data", in_dir("additional nav data"),
             fs::copy_options::recursive);
    std::filesystem::create_directories(in_dir("config/Norvane"));
}

// Ends what a run started; a failed run keeps its folder and a screenshot.
inline void end_run(bool failed)
{
    if (failed) {
        output_of("DISPLAY=" + run.display + " import -window root " + in_dir("failure.png"));
        std::printf("kept for a look: %s\n", run.dir.c_str());
    }
    if (run.x) XCloseDisplay(run.x);
    for (pid_t pid : {run.program, run.wm, run.xvfb})
        if (pid > 0) {
            kill(pid, pid == run.xvfb ? SIGTERM : SIGKILL);
            waitpid(pid, nullptr, 0);
        }
    if (!failed) std::filesystem::remove_all(run.dir);
}

// The editor's preference file, as a quit would have left it.
inline void write_editor_prefs(int screen, int apt_sel, int nav_sel)
{
    std::ofstream(in_dir("config/Norvane/Norvane Tile-Forger.prf"), std::ios::binary)
        << "I\r\n543 version\r\n33\r\n-119\r\n0\r\n" << screen << "\r\n" << apt_sel << "\r\n" << nav_sel << "\r\n";
}

inline void xdo(const std::string& args) { output_of("DISPLAY=" + run.display + " xdotool " + args); }

// Where a canvas unit lands on the root window for a window of this box: the
// canvas is the largest 4:3 area of the window, centred. Worked out here from
// the box alone.
struct screen_point {
    int x, y;
};
inline screen_point on_screen(const window_box& b, float cx, float cy)
{
    const float scale = std::fmin(b.w / 800.0f, b.h / 600.0f);
    const float left = (b.w - 800 * scale) / 2, top = (b.h - 600 * scale) / 2;
    return {b.x + (int)std::lround(left + cx * scale), b.y + (int)std::lround(top + (600 - cy) * scale)};
}

inline void click_at(screen_point p)
{
    output_of("DISPLAY=" + run.display + " xdotool mousemove " + std::to_string(p.x) + " " + std::to_string(p.y) +
              " sleep 0.2 click 1");
}

// The staged panel gives every canvas pixel its own colour (bitmap_files.h).
inline unsigned long panel_colour(int x, int y)
{
    const bmp_rgb c = panel_pixel(x, y);
    return (unsigned long)c.r << 16 | (unsigned long)c.g << 8 | c.b;
}

// The screen is up once the panel shows at a place where no control stands,
// within the blur of a stretched canvas.
inline bool screen_shows(const window_box& b)
{
    const screen_point p = on_screen(b, 3, 300);
    const std::vector<unsigned long> px = grab(p.x, p.y, 1, 1);
    const unsigned long want = panel_colour(3, 300);
    if (px.empty()) return false;
    for (int shift : {0, 8, 16})
        if (std::abs((int)((px[0] >> shift) & 0xFF) - (int)((want >> shift) & 0xFF)) > 3) return false;
    return true;
}

// On a machine too busy to draw five frames a second the editor warns once,
// early in the run, of a low frame rate: the run waits a moment for that
// warning and answers it, so that no later click lands on it.
inline bool screen_ready(const window_box& b)
{
    if (run.settled) return eventually([&] { return screen_shows(b); });
    if (!eventually([&] { return screen_shows(b); })) return false;
    run.settled = true;
    auto warned = [] {
        std::ifstream log(in_dir("Error.out"));
        std::string text((std::istreambuf_iterator<char>(log)), {});
        return text.find("extremely low frame-rate") != std::string::npos;
    };
    if (!eventually(warned, 1500)) return true;
    output_of("DISPLAY=" + run.display + " xdotool key Return");
    return eventually([&] { return screen_shows(b); });
}

// The pointer rests near the top right corner of the canvas, over no
// control, where a drawn pointer hides nothing that is watched.
inline void park(const window_box& b)
{
    const screen_point p = on_screen(b, 760, 560);
    output_of("DISPLAY=" + run.display + " xdotool mousemove " + std::to_string(p.x) + " " + std::to_string(p.y));
    usleep(300000);
}

}   // namespace own_display
