// The real program as a user meets it: a folder of its own with a copy of the
// program and its data, an X server of its own of any size (so that no other
// test moves its pointer or covers its window), with or without a window
// manager, driven with xdotool and read back pixel by pixel from the screen.
//
// The panels are staged with every pixel of its own colour (bitmap_files.h), so
// that a test sees where the panel shows through. Canvas places are in units,
// y up from the bottom; under an 800 by 600 screen a unit is a pixel. A failed
// run keeps its folder with a screenshot of the end.
#pragma once
#include "bitmap_files.h"
#include "hl/Hl_graph.h"
#include "xvfb.h"

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cmath>
#include <fcntl.h>
#include <functional>
#include <iterator>
#include <signal.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace real_program {

namespace fs = std::filesystem;
using pixels = std::vector<unsigned long>;   // 0xRRGGBB, rows from the top

struct window_box {
    int x, y, w, h;   // the drawable on the root window
};
struct screen_point {
    int x, y;   // on the root window
};

struct program_run {
    std::string dir, display;
    pid_t xvfb = 0, wm = 0, program = 0;
    Display* x = nullptr;
    Window window = 0;
    bool settled = false;                      // the start's frame-rate warning is past
    std::vector<std::string> expected_alerts;   // first lines of the alerts the run means to raise
};
inline program_run run;

inline std::string in_dir(const std::string& rel) { return run.dir + "/" + rel; }

inline std::string file_text(const std::string& rel)
{
    std::ifstream in(in_dir(rel), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline std::string output_of(const std::string& cmd)
{
    std::string out;
    char buf[256];
    FILE* p = popen(cmd.c_str(), "r");
    while (p && fgets(buf, sizeof buf, p)) out += buf;
    if (p) pclose(p);
    return out;
}

inline void xdo(const std::string& args) { output_of("DISPLAY=" + run.display + " xdotool " + args); }

// Polls every 20 ms for at most ms milliseconds; after a failed step nothing more is waited for.
inline bool eventually(const std::function<bool()>& holds, int ms = 15000)
{
    for (int waited = 0; waited < ms && !::testing::Test::HasFatalFailure(); waited += 20, usleep(20000))
        if (holds()) return true;
    return !::testing::Test::HasFatalFailure() && holds();
}

// The program's exit status after at most the given tenths of a second, -1 if it still runs.
inline int exit_status(int tenths)
{
    for (int status = 0; tenths-- > 0; usleep(100000))
        if (waitpid(run.program, &status, WNOHANG) == run.program) {
            run.program = 0;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 999;
        }
    return -1;
}

// What a window manager sends when the user closes a window.
inline void send_close()
{
    XEvent e = {};
    e.xclient.type = ClientMessage, e.xclient.window = run.window;
    e.xclient.message_type = XInternAtom(run.x, "WM_PROTOCOLS", False), e.xclient.format = 32;
    e.xclient.data.l[0] = (long)XInternAtom(run.x, "WM_DELETE_WINDOW", False);
    XSendEvent(run.x, run.window, False, NoEventMask, &e);
    XFlush(run.x);
}

inline pid_t start_child(const char* log_name, const std::function<void()>& exec)
{
    const pid_t pid = fork();
    if (pid == 0) {
        setenv("DISPLAY", run.display.c_str(), 1);
        setenv("XDG_CONFIG_HOME", in_dir("config").c_str(), 1);
        const int log = open(in_dir(log_name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(log, 1);
        dup2(log, 2);
        exec();
        _exit(90);
    }
    return pid;
}

inline void start_xvfb(const char* screen = "800x600x24")
{
    const int log = open(in_dir("xvfb.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    run.xvfb = ::start_xvfb(screen, &run.display, log);
    close(log);
    ASSERT_GT(run.xvfb, 0) << "Xvfb gave no display";
    ASSERT_NE(run.x = XOpenDisplay(run.display.c_str()), nullptr);
}

// The folder of a run: the program with the build's menus and textures, the
// staged panels, a splash of one colour, a copy of the sample data that saves
// may change, and an empty preference folder.
inline void stage_run()
{
    run = program_run{};
    char dir[] = "/tmp/tf_run_XXXXXX";
    ASSERT_TRUE(mkdtemp(dir));
    run.dir = dir;
    const fs::path build = fs::path(TF_PROGRAM_PATH).parent_path();
    fs::copy_file(TF_PROGRAM_PATH, in_dir("tileforger"));
    fs::create_directories(in_dir("Norsuite Resources"));
    for (const fs::directory_entry& e : fs::directory_iterator(build / "Norsuite Resources"))
        if (e.path().filename() != "bitmaps")
            fs::create_symlink(e.path(), in_dir("Norsuite Resources/" + e.path().filename().string()));
    const std::string panel = bmp_bytes(800, 600, panel_pixel);
    for (const char* name : screen_panel_files)
        write_bytes(in_dir("Norsuite Resources/bitmaps/TileFrgr/") + name + ".BMP", panel);
    write_bytes(in_dir("Norsuite Resources/bitmaps/NRST.BMP"),
                bmp_bytes(800, 600, [](int, int) { return bmp_rgb{0, 0, 0x80}; }));
    fs::copy(fs::path(TF_SOURCE_DIR) / "resources/additional nav data", in_dir("additional nav data"),
             fs::copy_options::recursive);
    fs::create_directories(in_dir("config/Norvane"));
}

// The editor's preference file, as a quit would have left it.
inline void write_editor_prefs(int screen, int apt_sel = 0, int nav_sel = 0)
{
    std::ofstream(in_dir("config/Norvane/Norvane Tile-Forger.prf"), std::ios::binary)
        << "I\r\n543 version\r\n33\r\n-119\r\n0\r\n" << screen << "\r\n" << apt_sel << "\r\n" << nav_sel << "\r\n";
}

// ---- the screen ------------------------------------------------------------------------------------

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

// Pixels of the root window, w by h from (x, y).
inline pixels grab_root(int x, int y, int w, int h)
{
    pixels px;
    XImage* im = XGetImage(run.x, DefaultRootWindow(run.x), x, y, w, h, AllPlanes, ZPixmap);
    for (int r = 0; im && r < h; r++)
        for (int c = 0; c < w; c++) px.push_back(XGetPixel(im, c, r) & 0xFFFFFF);
    if (im) XDestroyImage(im);
    return px;
}

// Canvas pixels x1..x2 by y1..y2, edges included, of a canvas that fills an 800 by 600 screen.
inline pixels grab(int x1, int y1, int x2, int y2) { return grab_root(x1, 599 - y2, x2 - x1 + 1, y2 - y1 + 1); }
inline unsigned long pixel(int x, int y) { return grab(x, y, x, y).at(0); }

inline unsigned long colour(int col)
{
    OGL_assign_colortable();
    auto byte = [&](int k) { return (unsigned long)std::lround(col_rgb[col][k] * 255); };
    return byte(0) << 16 | byte(1) << 8 | byte(2);
}
inline bool shows(int x, int y, int col) { return pixel(x, y) == colour(col); }
inline unsigned long panel_colour(int x, int y)
{
    const bmp_rgb c = panel_pixel(x, y);
    return (unsigned long)c.r << 16 | (unsigned long)c.g << 8 | c.b;
}
// Where a canvas unit lands on the root window for a window of this box: the
// canvas is the largest 4:3 area of the window, centred.
inline screen_point on_screen(const window_box& b, float cx, float cy)
{
    const float scale = std::fmin(b.w / 800.0f, b.h / 600.0f);
    const float left = (b.w - 800 * scale) / 2, top = (b.h - 600 * scale) / 2;
    return {b.x + (int)std::lround(left + cx * scale), b.y + (int)std::lround(top + (600 - cy) * scale)};
}

// The screen is up once the panel shows at a place where no control stands,
// within the blur of a stretched canvas.
inline bool screen_shows(const window_box& b)
{
    const screen_point p = on_screen(b, 3, 300);
    const pixels px = grab_root(p.x, p.y, 1, 1);
    const unsigned long want = panel_colour(3, 300);
    if (px.empty()) return false;
    for (int shift : {0, 8, 16})
        if (std::abs((int)((px[0] >> shift) & 0xFF) - (int)((want >> shift) & 0xFF)) > 3) return false;
    return true;
}

// On a machine too busy to draw five frames a second the editor warns once,
// early in the run, of a low frame rate: the run waits a moment for that
// warning and answers it, so that no later click lands on it.
inline bool screen_ready(const window_box& b = {0, 0, 800, 600})
{
    if (!eventually([&] { return screen_shows(b); })) return false;
    if (run.settled) return true;
    run.settled = true;
    if (!eventually([] { return file_text("Error.out").find("extremely low frame-rate") != std::string::npos; }, 1500))
        return true;
    xdo("key Return");
    return eventually([&] { return screen_shows(b); });
}

inline void start_program(const char* screen = "800x600x24")
{
    if (!run.x) {
        ASSERT_NO_FATAL_FAILURE(start_xvfb(screen));
    }
    run.window = 0, run.settled = false;
    run.program = start_child("program.log", [] {
        if (chdir(run.dir.c_str()) == 0) execl(in_dir("tileforger").c_str(), "tileforger", (char*)nullptr);
    });
    const std::string search = "search --all --pid " + std::to_string(run.program) + " --name '^Tile-Forger$'";
    for (int k = 0; k < 600 && !run.window && exit_status(1) == -1; k++)
        run.window = std::strtoul(output_of("DISPLAY=" + run.display + " xdotool " + search).c_str(), nullptr, 10);
    ASSERT_NE(run.window, 0ul) << "no window of the program appeared";
}

// Ends what a run started; a failed run keeps its folder and a screenshot.
inline void end_run()
{
    // Every alert the program logged must be one the run announced (or the busy
    // machine's frame-rate warning).
    std::istringstream log(file_text("Error.out"));
    const std::string head = "MACIBM_alert: ";
    for (std::string line; std::getline(log, line);) {
        if (line.rfind(head, 0) != 0 || line.find("extremely low frame-rate") != std::string::npos) continue;
        bool announced = false;
        for (const std::string& first : run.expected_alerts)
            announced |= line.compare(head.size(), first.size(), first) == 0;
        EXPECT_TRUE(announced) << "an alert the run did not announce: " << line;
    }
    const bool failed = ::testing::Test::HasFailure();
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
    if (!failed) fs::remove_all(run.dir);
    run = program_run{};
}

struct RealProgram : ::testing::Test {
    void SetUp() override { stage_run(); }
    void TearDown() override { end_run(); }
};

// ---- the user's hands, on a canvas that fills an 800 by 600 screen -----------------------------------

inline std::string to(float x, float y)
{
    return "mousemove " + std::to_string((int)x) + " " + std::to_string(600 - (int)y) + " ";
}
// A click where no frame needs to see the mouse first (a modal window answers
// at the press). The mouse then rests for a moment: a move that fell into the
// frame of the press would carry the press away with it.
inline void click(float x, float y)
{
    xdo(to(x, y) + "sleep 0.2 click 1");
    usleep(500000);
}

// The canvas region changes after the action, which comes once the region is still.
inline bool changes(const std::function<void()>& act, int x1, int y1, int x2, int y2)
{
    pixels before = grab(x1, y1, x2, y2);
    EXPECT_TRUE(eventually([&] {
        usleep(100000);
        return before == (before = grab(x1, y1, x2, y2));
    })) << "the region moves on its own";
    act();
    return eventually([&] { return before != grab(x1, y1, x2, y2); });
}

// On the map screens a frame must see the mouse in its place (the pointer
// readout follows it) before a press: the press and a later move must not
// fall into one frame.
inline pixels readout() { return grab(18, 10, 160, 40); }
inline void move_to(float x, float y)
{
    const pixels before = readout();
    xdo(to(x, y));
    ASSERT_TRUE(eventually([&] { return readout() != before; })) << "the pointer readout did not follow the mouse";
}
inline void click_on_map(float x, float y)
{
    move_to(x, y);
    xdo("click 1");
    usleep(400000);   // as in click: the next move must not share the press's frame
}
// The pointer rests east of the tile, over no control: a pointer drawn there hides nothing that is watched.
inline void park() { move_to(760, 560); }

// The button held at (x, y) until done() holds, as the map's tools want it down for a frame.
inline bool hold_until(float x, float y, const std::function<bool()>& done)
{
    move_to(x, y);
    xdo("mousedown 1");
    const bool held = eventually(done);
    xdo("mouseup 1");
    return held;
}

// Presses at one place, moves to another, and lets go once a frame has seen the mouse there.
inline void drag(float x1, float y1, float x2, float y2)
{
    move_to(x1, y1);
    xdo("mousedown 1");
    move_to(x2, y2);
    xdo("mouseup 1");
}

// The alert's square and the save prompt inside it, told apart by the prompt's dark border.
inline bool alert_up() { return shows(205, 298, 12); }
inline bool prompt_up() { return shows(400, 285, 12) && shows(247, 295, 18); }
const screen_point prompt_save = {320, 297}, prompt_dont = {320, 267}, prompt_cancel = {480, 267};

inline void answer_prompt(screen_point button)
{
    ASSERT_TRUE(eventually(prompt_up)) << "no save prompt";
    click(button.x, button.y);
    ASSERT_TRUE(eventually([] { return !prompt_up(); })) << "the save prompt stayed";
}

}   // namespace real_program
