// The editor's window on displays of other sizes, as a user meets it: the real
// program on an X server of its own, sized by itself or by the resolution
// preference, resized from outside, and clicked through xdotool where a
// control stands at the window's scale. The monitor's mode never changes.
#include "real_program.h"

using namespace real_program;

namespace {

// The tool lamps of the terrain screen, 10 units square from their bottom left.
const float lamp_x = 10, lamp_y[5] = {459, 390, 324, 280, 236};

std::vector<unsigned long> lamp_pixels(const window_box& b, int tool)
{
    const screen_point top_left = on_screen(b, lamp_x, lamp_y[tool] + 9), bottom_right = on_screen(b, lamp_x + 9, lamp_y[tool]);
    return grab_root(top_left.x, top_left.y, bottom_right.x - top_left.x + 1, bottom_right.y - top_left.y + 1);
}

// A click in the middle of a lamp lights it.
// The window's place is read anew: a window manager may still move it.
bool click_lights_lamp(window_box b, int tool)
{
    window_box last{};
    if (!eventually([&] {
            last = b;
            b = box_of_window();
            return b.x == last.x && b.y == last.y && screen_shows(b);
        }))
        return false;
    if (!screen_ready(b)) return false;
    const screen_point rest = on_screen(b, 760, 560), middle = on_screen(b, lamp_x + 5, lamp_y[tool] + 5);
    auto mouse_to = [](screen_point p) { return "mousemove " + std::to_string(p.x) + " " + std::to_string(p.y); };
    xdo(mouse_to(rest) + " sleep 0.3");
    const std::vector<unsigned long> before = lamp_pixels(b, tool);
    // The mouse stays on the lamp until a frame has surely taken the press: a
    // move in the same frame would carry the press away with it.
    xdo(mouse_to(middle) + " sleep 0.2 click 1 sleep 1 " + mouse_to(rest));
    return eventually([&] { return lamp_pixels(b, tool) != before; });
}

// The tool in the preference file that the quit writes: the fifth token after
// the kind letter, the version and its word, latitude and longitude.
int tool_after_quit()
{
    send_close();
    EXPECT_EQ(exit_status(300), 0) << "the program did not end on the close";
    std::ifstream in(in_dir("config/Norvane/Norvane Tile-Forger.prf"));
    std::string token;
    for (int k = 0; k < 6 && in >> token; k++) {}
    return in ? std::atoi(token.c_str()) : -1;
}

using WindowSize = RealProgram;

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
                                           display_case{"800x600x24", {0, 0, 800, 600}}));

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

// Resizes from outside once the screen is up, as a user would.
bool resized_to(int w, int h, window_box* b)
{
    if (!eventually([&] { return screen_shows(box_of_window()); })) return false;
    xdo("windowsize " + std::to_string(run.window) + " " + std::to_string(w) + " " + std::to_string(h));
    return eventually([&] {
        *b = box_of_window();
        return b->w == w && b->h == h;
    });
}

TEST_F(WindowSize, ResizedWindowHasBarsAndClicksStillLand)
{
    ASSERT_NO_FATAL_FAILURE(start_program("1920x1080x24"));
    window_box b{};

    // Wider than 4:3: bars of 100 left and right; higher: above and below. At
    // a canvas of 800 by 600 pixels the panel stands pixel for pixel where the bars leave it.
    const struct { int w, h, tool; window_box canvas, bar1, bar2; } shapes[] = {
        {1000, 600, 2, {100, 0, 800, 600}, {0, 0, 100, 600}, {900, 0, 100, 600}},
        {800, 800, 1, {0, 100, 800, 600}, {0, 0, 800, 100}, {0, 700, 800, 100}}};
    for (const auto& c : shapes) {
        ASSERT_TRUE(resized_to(c.w, c.h, &b));
        auto black = [&](window_box r) { return grab_root(b.x + r.x, b.y + r.y, r.w, r.h) == pixels(r.w * r.h, 0); };
        EXPECT_TRUE(eventually([&] {
            return grab_root(b.x + c.canvas.x + 3, b.y + c.canvas.y + 599 - 300, 1, 1) == pixels{panel_colour(3, 300)} &&
                   black(c.bar1) && black(c.bar2);
        })) << "the canvas does not stand between two black bars at " << c.w << "x" << c.h;
        EXPECT_TRUE(click_lights_lamp(b, c.tool));
    }

    // Larger: the canvas is stretched, and the click still lands.
    ASSERT_TRUE(resized_to(1600, 1000, &b));
    EXPECT_TRUE(click_lights_lamp(b, 3));
    EXPECT_EQ(tool_after_quit(), 3);
}

TEST_F(WindowSize, UnderAWindowManagerTheFramedWindowFitsTheDisplay)
{
    ASSERT_NO_FATAL_FAILURE(start_xvfb("1366x768x24"));
    // A window manager, for the frame, the title bar and the usable area.
    run.wm = start_child("wm.log", [] { execlp("openbox", "openbox", "--sm-disable", (char*)nullptr); });
    ASSERT_TRUE(eventually([] {
        return output_of("DISPLAY=" + run.display + " xprop -root _NET_SUPPORTING_WM_CHECK").find("window id") !=
               std::string::npos;
    })) << "the window manager did not come up";
    ASSERT_NO_FATAL_FAILURE(start_program());
    // 1.25 would give 750 rows, which with a title bar no longer fit 768.
    // The window manager places the window after it shows: wait for the
    // screen to stand where the window is.
    window_box b{};
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.w == 800 && b.h == 600 && screen_shows(b);
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
    xdo("key F11");
    EXPECT_TRUE(eventually([&] {
        b = box_of_window();
        return b.x == 0 && b.y == 0 && b.w == 1366 && b.h == 768;
    })) << "full screen window at " << b.x << "," << b.y << " " << b.w << "x" << b.h;
    EXPECT_EQ(screen_size(), "1366x768");
    EXPECT_TRUE(click_lights_lamp(b, 3));
    xdo("key F11");
    EXPECT_TRUE(eventually([&] { return box_of_window().w == 800; }));
    EXPECT_EQ(tool_after_quit(), 3);
}

}   // namespace
