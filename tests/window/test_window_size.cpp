// The editor's window on displays of other sizes, as a user meets it: the real
// program on an X server of its own, sized by itself or by the resolution
// preference, resized from outside, and clicked through xdotool where a
// control stands at the window's scale. The monitor's mode never changes.
#include "bitmap_files.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <X11/Xutil.h>

#include <cmath>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <signal.h>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct screen_run {
    std::string dir, display;
    pid_t xvfb = 0, wm = 0, program = 0;
    Display* x = nullptr;
    Window window = 0;
};
screen_run run;

struct window_box {
    int x, y, w, h;   // the drawable on the root window
};

std::string in_dir(const std::string& rel) { return run.dir + "/" + rel; }

bool eventually(const std::function<bool()>& holds, int ms = 15000)
{
    for (int waited = 0; waited < ms; waited += 20, usleep(20000))
        if (holds()) return true;
    return holds();
}

void start_xvfb(const char* screen)
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
void start_window_manager()
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
void ask_window_size(int w, int h)
{
    std::ofstream(in_dir("config/Norvane/Norvane Resolution.prf"), std::ios::binary)
        << "I\r\n543 version\r\n" << w << "\r\n" << h << "\r\n32\r\n0\r\n";
}

void start_program()
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

window_box box_of_window()
{
    XWindowAttributes a;
    XGetWindowAttributes(run.x, run.window, &a);
    int x = 0, y = 0;
    Window child;
    XTranslateCoordinates(run.x, run.window, DefaultRootWindow(run.x), 0, 0, &x, &y, &child);
    return {x, y, a.width, a.height};
}

std::string screen_size()
{
    const Screen* s = DefaultScreenOfDisplay(run.x);
    XSync(run.x, False);
    return std::to_string(WidthOfScreen(s)) + "x" + std::to_string(HeightOfScreen(s));
}

std::vector<unsigned long> grab(int x, int y, int w, int h)
{
    std::vector<unsigned long> px;
    XImage* im = XGetImage(run.x, DefaultRootWindow(run.x), x, y, w, h, AllPlanes, ZPixmap);
    if (!im) return px;
    for (int r = 0; r < h; r++)
        for (int c = 0; c < w; c++) px.push_back(XGetPixel(im, c, r) & 0xFFFFFF);
    XDestroyImage(im);
    return px;
}

// Where a canvas unit lands on the root window for a window of this box: the
// canvas is the largest 4:3 area of the window, centred. Worked out here from
// the box alone.
struct screen_point {
    int x, y;
};
screen_point on_screen(const window_box& b, float cx, float cy)
{
    const float scale = std::fmin(b.w / 800.0f, b.h / 600.0f);
    const float left = (b.w - 800 * scale) / 2, top = (b.h - 600 * scale) / 2;
    return {b.x + (int)std::lround(left + cx * scale), b.y + (int)std::lround(top + (600 - cy) * scale)};
}

// The tool lamps of the terrain screen, 10 units square from their bottom left.
const float lamp_x = 10, lamp_y[5] = {459, 390, 324, 280, 236};

std::vector<unsigned long> lamp_pixels(const window_box& b, int tool)
{
    const screen_point top_left = on_screen(b, lamp_x, lamp_y[tool] + 9);
    const screen_point bottom_right = on_screen(b, lamp_x + 9, lamp_y[tool]);
    return grab(top_left.x, top_left.y, bottom_right.x - top_left.x + 1, bottom_right.y - top_left.y + 1);
}

void click_at(screen_point p)
{
    output_of("DISPLAY=" + run.display + " xdotool mousemove " + std::to_string(p.x) + " " + std::to_string(p.y) +
              " sleep 0.2 click 1");
}

// The staged panel gives every canvas pixel its own colour (bitmap_files.h).
unsigned long panel_colour(int x, int y)
{
    const bmp_rgb c = panel_pixel(x, y);
    return (unsigned long)c.r << 16 | (unsigned long)c.g << 8 | c.b;
}

// The screen is up once the panel shows at a place where no control stands,
// within the blur of a stretched canvas.
bool screen_shows(const window_box& b)
{
    const screen_point p = on_screen(b, 3, 300);
    const std::vector<unsigned long> px = grab(p.x, p.y, 1, 1);
    const unsigned long want = panel_colour(3, 300);
    if (px.empty()) return false;
    for (int shift : {0, 8, 16})
        if (std::abs((int)((px[0] >> shift) & 0xFF) - (int)((want >> shift) & 0xFF)) > 3) return false;
    return true;
}

// The pointer rests over the map, away from the lamps, where a drawn pointer
// hides nothing that is watched.
void park(const window_box& b)
{
    const screen_point p = on_screen(b, 760, 560);
    output_of("DISPLAY=" + run.display + " xdotool mousemove " + std::to_string(p.x) + " " + std::to_string(p.y));
    usleep(300000);
}

// A click in the middle of a lamp lights it.
bool click_lights_lamp(const window_box& b, int tool)
{
    if (!eventually([&] { return screen_shows(b); })) return false;
    park(b);
    const std::vector<unsigned long> before = lamp_pixels(b, tool);
    click_at(on_screen(b, lamp_x + 5, lamp_y[tool] + 5));
    park(b);
    return eventually([&] { return lamp_pixels(b, tool) != before; });
}

// The tool in the preference file that the quit writes: the fifth token after
// the kind letter, the version and its word, latitude and longitude.
int tool_after_quit()
{
    EXPECT_TRUE(send_close(run.display, run.window));
    const int status = exit_status(run.program, 300);
    EXPECT_EQ(status, 0) << "the program did not end on the close";
    run.program = 0;
    std::ifstream in(in_dir("config/Norvane/Norvane Tile-Forger.prf"));
    std::string token;
    for (int k = 0; k < 6 && in >> token; k++) {
    }
    return in ? std::atoi(token.c_str()) : -1;
}

struct WindowSize : ::testing::Test {
    void SetUp() override
    {
        run = screen_run{};
        char dir[] = "/tmp/tf_size_XXXXXX";
        ASSERT_TRUE(mkdtemp(dir));
        run.dir = dir;
        stage_program(TF_PROGRAM_PATH, run.dir);
        // A splash of one colour: the screen is up only once the panel shows.
        write_bytes(in_dir("Norsuite Resources/bitmaps/NRST.BMP"),
                    bmp_bytes(800, 600, [](int, int) { return bmp_rgb{0, 0, 0x80}; }));
        fs::create_directories(in_dir("config/Norvane"));
    }
    void TearDown() override
    {
        if (HasFailure()) {
            output_of("DISPLAY=" + run.display + " import -window root " + in_dir("failure.png"));
            std::printf("kept for a look: %s\n", run.dir.c_str());
        }
        if (run.x) XCloseDisplay(run.x);
        for (pid_t pid : {run.program, run.wm, run.xvfb})
            if (pid > 0) {
                kill(pid, pid == run.xvfb ? SIGTERM : SIGKILL);
                waitpid(pid, nullptr, 0);
            }
        if (!HasFailure()) fs::remove_all(run.dir);
    }
};

struct display_case {
    const char* screen;
    window_box window;   // where the window must come, worked out by hand
};

void PrintTo(const display_case& c, std::ostream* out) { *out << c.screen; }

struct NewWindow : WindowSize, ::testing::WithParamInterface<display_case> {};

// 1920 by 1080: 1.75 is the largest factor whose 1050 rows fit; 1366 by 768: 1.25.
INSTANTIATE_TEST_SUITE_P(Displays, NewWindow,
                         ::testing::Values(display_case{"1920x1080x24", {260, 15, 1400, 1050}},
                                           display_case{"1366x768x24", {183, 9, 1000, 750}},
                                           display_case{"800x600x24", {0, 0, 800, 600}}),
                         [](const ::testing::TestParamInfo<display_case>& p) {
                             return "Screen" + std::string(p.param.screen).substr(0, std::string(p.param.screen).rfind('x'));
                         });

TEST_P(NewWindow, FitsTheDisplayAndAClickLandsOnItsControl)
{
    ASSERT_NO_FATAL_FAILURE(start_xvfb(GetParam().screen));
    const std::string mode = screen_size();
    ASSERT_NO_FATAL_FAILURE(start_program());
    const window_box want = GetParam().window;
    window_box b{};
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.x == want.x && b.y == want.y && b.w == want.w && b.h == want.h;
    })) << "window at " << b.x << "," << b.y << " " << b.w << "x" << b.h;
    EXPECT_TRUE(click_lights_lamp(b, 3)) << "the ROTATE TEXTURE lamp did not light";
    EXPECT_EQ(screen_size(), mode);
    EXPECT_EQ(tool_after_quit(), 3);
    EXPECT_EQ(screen_size(), mode);
}

TEST_F(WindowSize, AskedSizeLargerThanTheDisplayShrinksToFit)
{
    ask_window_size(2048, 1536);
    ASSERT_NO_FATAL_FAILURE(start_xvfb("1366x768x24"));
    ASSERT_NO_FATAL_FAILURE(start_program());
    window_box b{};
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.x == 171 && b.y == 0 && b.w == 1024 && b.h == 768;
    })) << "window at " << b.x << "," << b.y << " " << b.w << "x" << b.h;
    EXPECT_TRUE(click_lights_lamp(b, 4));
    EXPECT_EQ(tool_after_quit(), 4);
}

// Resizes from outside once the screen is up, as a user would.
bool resized_to(int w, int h, window_box* b)
{
    if (!eventually([&] { return screen_shows(box_of_window()); })) return false;
    output_of("DISPLAY=" + run.display + " xdotool windowsize " + std::to_string(run.window) + " " +
              std::to_string(w) + " " + std::to_string(h));
    return eventually([&] {
        *b = box_of_window();
        return b->w == w && b->h == h;
    });
}

TEST_F(WindowSize, ResizedWindowHasBarsAndClicksStillLand)
{
    ASSERT_NO_FATAL_FAILURE(start_xvfb("1920x1080x24"));
    ASSERT_NO_FATAL_FAILURE(start_program());
    window_box b{};

    // Wider than 4:3: bars of 100 left and right. At a canvas of 800 by 600
    // pixels the panel stands pixel for pixel where the bars leave it.
    ASSERT_TRUE(resized_to(1000, 600, &b));
    EXPECT_TRUE(eventually([&] {
        return grab(b.x + 100 + 3, b.y + 599 - 300, 1, 1) == std::vector<unsigned long>{panel_colour(3, 300)} &&
               grab(b.x, b.y, 100, 600) == std::vector<unsigned long>(100 * 600, 0) &&
               grab(b.x + 900, b.y, 100, 600) == std::vector<unsigned long>(100 * 600, 0);
    })) << "the canvas does not stand between two black bars";
    EXPECT_TRUE(click_lights_lamp(b, 2));

    // Higher than 4:3: bars of 100 above and below.
    ASSERT_TRUE(resized_to(800, 800, &b));
    EXPECT_TRUE(eventually([&] {
        return grab(b.x + 3, b.y + 100 + 599 - 300, 1, 1) == std::vector<unsigned long>{panel_colour(3, 300)} &&
               grab(b.x, b.y, 800, 100) == std::vector<unsigned long>(800 * 100, 0) &&
               grab(b.x, b.y + 700, 800, 100) == std::vector<unsigned long>(800 * 100, 0);
    })) << "the canvas does not stand between two black bars";
    EXPECT_TRUE(click_lights_lamp(b, 1));

    // Larger: the canvas is stretched, and the click still lands.
    ASSERT_TRUE(resized_to(1600, 1000, &b));
    EXPECT_TRUE(click_lights_lamp(b, 3));
    EXPECT_EQ(tool_after_quit(), 3);
}

TEST_F(WindowSize, UnderAWindowManagerTheFramedWindowFitsTheDisplay)
{
    ASSERT_NO_FATAL_FAILURE(start_xvfb("1366x768x24"));
    ASSERT_NO_FATAL_FAILURE(start_window_manager());
    ASSERT_NO_FATAL_FAILURE(start_program());
    // 1.25 would give 750 rows, which with a title bar no longer fit 768.
    window_box b{};
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.w == 800 && b.h == 600;
    })) << "window of " << b.w << "x" << b.h;
    Window root, parent, *children = nullptr;
    unsigned int n = 0;
    XQueryTree(run.x, run.window, &root, &parent, &children, &n);
    if (children) XFree(children);
    EXPECT_NE(parent, root) << "the window manager gave the window no frame";
    EXPECT_GT(b.y, 10) << "no room was left for the title bar";
    EXPECT_TRUE(b.x >= 0 && b.x + b.w <= 1366 && b.y + b.h <= 768);
    EXPECT_TRUE(click_lights_lamp(b, 2));

    // F11 makes the window full screen at the desktop's own mode, and back.
    const std::string key_f11 = "DISPLAY=" + run.display + " xdotool key F11";
    output_of(key_f11);
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.x == 0 && b.y == 0 && b.w == 1366 && b.h == 768;
    })) << "full screen window at " << b.x << "," << b.y << " " << b.w << "x" << b.h;
    EXPECT_EQ(screen_size(), "1366x768");
    EXPECT_TRUE(click_lights_lamp(b, 3));
    output_of(key_f11);
    EXPECT_TRUE(eventually([&] { return box_of_window().w == 800; }));
    EXPECT_EQ(tool_after_quit(), 3);
}

}   // namespace
