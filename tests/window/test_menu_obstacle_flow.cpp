// The menus and the obstacle screen as a person uses them: the real program
// on an X server of its own, driven with xdotool. Menu places come from the
// program's own menu file, read here by the same reader.
#include <gtest/gtest.h>

#include "app/Panel_layout.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"
#include "program_run.h"

#include <X11/Xutil.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <poll.h>
#include <signal.h>
#include <vector>

namespace fs = std::filesystem;
using pixels = std::vector<unsigned long>;   // 0xRRGGBB, rows from the top

static std::string dir, display;
static pid_t xvfb, program;
static Display* x_server;
static std::string in_dir(const std::string& rel) { return dir + "/" + rel; }
static const std::string tile = "additional nav data/Earth/+030-120/+033-119.env";

static bool eventually(const std::function<bool()>& holds, int ms = 15000)
{
    for (int waited = 0; waited < ms && !::testing::Test::HasFatalFailure(); waited += 20, usleep(20000))
        if (holds()) return true;
    return false;
}

// Canvas pixels x1..x2 by y1..y2, edges included.
static pixels grab(int x1, int y1, int x2, int y2)
{
    pixels px;
    XImage* im = XGetImage(x_server, DefaultRootWindow(x_server), x1, 599 - y2, x2 - x1 + 1, y2 - y1 + 1, AllPlanes, ZPixmap);
    for (int row = 0; im && row <= y2 - y1; row++)
        for (int col = 0; col <= x2 - x1; col++) px.push_back(XGetPixel(im, col, row) & 0xFFFFFF);
    if (im) XDestroyImage(im);
    return px;
}
static bool shows(int x, int y, int col)
{
    auto byte = [&](int k) { return (unsigned long)std::lround(col_rgb[col][k] * 255); };
    return grab(x, y, x, y).at(0) == (byte(0) << 16 | byte(1) << 8 | byte(2));
}
static bool alert_up() { return shows(205, 298, 12); }
static bool prompt_up() { return shows(400, 285, 12) && !shows(247, 295, 12); }

static void xdo(const std::string& args) { output_of("DISPLAY=" + display + " xdotool " + args); }
static std::string to(float x, float y) { return "mousemove " + std::to_string((int)x) + " " + std::to_string(600 - (int)y) + " "; }

// The region changes after the action, which comes once the region is still.
static bool changes(const std::function<void()>& act, int x1, int y1, int x2, int y2)
{
    pixels before = grab(x1, y1, x2, y2);
    EXPECT_TRUE(eventually([&] {
        usleep(100000);
        return before == (before = grab(x1, y1, x2, y2));
    })) << "the region moves on its own";
    act();
    return eventually([&] { return before != grab(x1, y1, x2, y2); });
}
// On the map screens the mouse must be seen by a frame (the readout follows it) before a press.
static void mouse_to(float x, float y) { ASSERT_TRUE(changes([&] { xdo(to(x, y)); }, 18, 10, 160, 40)) << "no readout"; }
static void click_on_map(float x, float y)
{
    mouse_to(x, y);
    xdo("click 1");
}
static void obstacle_tool(int k)
{
    const float y = obs_tool_lamp_y[k];
    ASSERT_TRUE(changes([&] { click_on_map(obs_tool_lamp_x + 5, y + 5); }, 10, y, 19, y + 9)) << "lamp " << k;
}

// The first item that gives the command: its menu's title, then the item.
static void by_menu(int command)
{
    for (int m = 0; m < menu_cap; m++)
        for (int i = 0; i < menu_item_cap; i++) {
            if (!mnw.item_name[m][i][0] || mnw.item_name[m][i][0] == '-' || mnw.item_cmd[m][i] != command) continue;
            const int x1 = mnw.item_x1[m][i], y1 = mnw.item_y1[m][i], x2 = mnw.item_x2[m][i], y2 = mnw.item_y2[m][i];
            ASSERT_TRUE(changes([&] { xdo(to(mnw.title_x1[m] + 2, 590) + "click 1"); }, x1, y1, x2, y2)) << "menu " << m;
            xdo(to((x1 + x2) / 2, (y1 + y2) / 2) + "click 1");
            return;
        }
    FAIL() << "no item gives command " << command;
}

struct MenuFlows : ::testing::Test {
    void SetUp() override
    {
        char scratch[] = "/tmp/tf_menu_flow_XXXXXX";
        ASSERT_TRUE(mkdtemp(scratch));
        dir = scratch;
        fs::copy_file(TF_PROGRAM_PATH, in_dir("tileforger"));
        fs::copy(fs::path(TF_PROGRAM_PATH).parent_path() / "Norsuite Resources", in_dir("Norsuite Resources"),
                 fs::copy_options::recursive);
        fs::copy(fs::path(TF_SOURCE_DIR) / "resources", dir, fs::copy_options::recursive | fs::copy_options::skip_existing);
        OGL_assign_colortable();
        C_to_C((dir + "/").c_str(), app_path);
        MACIBM_read_menus("Tile-Forger.txt");
        int fds[2];
        ASSERT_EQ(pipe(fds), 0);
        if ((xvfb = fork()) == 0) {
            execlp("Xvfb", "Xvfb", "-displayfd", std::to_string(fds[1]).c_str(), "-screen", "0", "800x600x24", "-nolisten",
                   "tcp", (char*)nullptr);
            _exit(90);
        }
        close(fds[1]);
        char c = 0;
        pollfd p = {fds[0], POLLIN, 0};
        for (display = ":"; c != '\n' && poll(&p, 1, 20000) == 1 && read(fds[0], &c, 1) == 1;) display += c;
        close(fds[0]);
        ASSERT_TRUE((x_server = XOpenDisplay(display.substr(0, display.size() - 1).c_str()))) << "no display";
        display.pop_back();
    }
    static void start()
    {
        if ((program = fork()) == 0) {
            setenv("DISPLAY", display.c_str(), 1);
            setenv("XDG_CONFIG_HOME", in_dir("config").c_str(), 1);
            if (chdir(dir.c_str()) == 0) execl(in_dir("tileforger").c_str(), "tileforger", (char*)nullptr);
            _exit(90);
        }
        ASSERT_NE(find_program_window(program, display), 0ul);
        // A row of the terrain panel as its bitmap has it: the start-up is over.
        std::ifstream in(in_dir("Norsuite Resources/bitmaps/TileFrgr/TF_MAP.BMP"), std::ios::binary);
        const std::string panel((std::istreambuf_iterator<char>(in)), {});
        pixels row;
        for (int x = 24; x <= 160; x++) {
            const unsigned char* p = (const unsigned char*)panel.data() + 54 + 420 * 2400 + 3 * x;
            row.push_back((unsigned long)p[2] << 16 | p[1] << 8 | p[0]);
        }
        ASSERT_TRUE(eventually([&] { return grab(24, 420, 160, 420) == row; })) << "no terrain screen";
        if (eventually(alert_up, 1000)) xdo("key Return");   // a busy machine's low frame-rate warning
    }
    void TearDown() override
    {
        if (HasFailure()) output_of("DISPLAY=" + display + " import -window root " + in_dir("failure.png"));
        if (program > 0 && exit_status(program, 1) == -1) kill(program, SIGKILL), waitpid(program, nullptr, 0);
        if (x_server) XCloseDisplay(x_server);
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
        if (!HasFailure()) fs::remove_all(dir);
        else std::printf("kept for a look: %s\n", dir.c_str());
    }
};

static float lat_at(float y) { return 33 + (y - map_y1) / map_scale; }
static float lon_at(float x, float y) { return -119 + (x - map_x1) / (map_scale * std::cos(lat_at(y) * 0.017453293f)); }

// Every command by menu (by_menu fails for one that no item gives), on the
// blank tile at 33 N 119 W. Quit asks for the stores changed and ends once they are saved.
TEST_F(MenuFlows, EveryCommandByMenu)
{
    fs::remove(in_dir(tile));
    ASSERT_NO_FATAL_FAILURE(start());
    for (const char* f : {"apt.dat", "nav.dat"}) fs::remove(in_dir("additional nav data/Earth/") + f);
    ASSERT_TRUE(changes([] { by_menu(308); }, 310, 10, 640, 570)) << "no textures";
    // No dark seams: the pixel columns on the edges between cells are as bright as those in their middles.
    const pixels sea = grab(168, 180, 300, 260);
    long edges = 0, middles = 0;
    for (int y = 180; y <= 260; y++)
        for (int i = 2; i < 14; i++) {
            const float w = map_scale * std::cos(lat_at(y) * 0.017453293f) / 59;
            auto bright = [&](float x) {
                const unsigned long p = sea[(260 - y) * 133 + std::lround(x) - 168];
                return (p >> 16) + (p >> 8 & 0xFF) + (p & 0xFF);
            };
            edges += bright(map_x1 + i * w), middles += bright(map_x1 + (i + 0.5f) * w);
        }
    EXPECT_GT(edges, middles * 0.9) << "seams";
    for (int c : {304, 300, 301, 302, 303, 305})
        EXPECT_TRUE(changes([=] { by_menu(c); }, 310, 10, 640, 570)) << "the map did not change by command " << c;
    EXPECT_TRUE(changes([] { by_menu(307); }, 10, 230, 19, 470)) << "no next tool";
    by_menu(309);
    by_menu(0);
    ASSERT_TRUE(eventually(alert_up)) << "no about box";
    xdo("key Return");
    ASSERT_TRUE(eventually([] { return !alert_up(); }));
    // A press on the Screen title over the airport and navaid screens marks their stores changed.
    for (int c : {201, 202, 203, 200}) EXPECT_TRUE(changes([=] { by_menu(c); }, 0, 60, 85, 480)) << "screen " << c;

    by_menu(104);   // airports and navaids changed: Cancel at the first prompt keeps the run
    ASSERT_TRUE(eventually(prompt_up)) << "no save prompt";
    xdo(to(480, 267) + "click 1");
    ASSERT_TRUE(eventually([] { return !prompt_up(); }));
    EXPECT_EQ(exit_status(program, 5), -1);
    for (int c : {101, 102}) by_menu(c);
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir("additional nav data/Earth/nav.dat")); }));
    EXPECT_TRUE(fs::exists(in_dir("additional nav data/Earth/apt.dat")));
    by_menu(104);   // all saved: no prompt
    EXPECT_EQ(exit_status(program, 100), 0);
    program = 0;
}

// Obstacles placed, moved, deleted and given an object; the tile saved by menu and read back.
TEST_F(MenuFlows, TheObstacleJob)
{
    fs::remove(in_dir(tile));
    const std::string object = std::string(19, 'f') + "/" + std::string(25, 'm');   // 45 characters
    fs::create_directories(in_dir("additional nav data/custom objects/" + object.substr(0, 19)));
    std::ofstream(in_dir("additional nav data/custom objects/" + object + ".obj")).close();
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(changes([] { by_menu(201); }, 0, 60, 85, 480)) << "no obstacle screen";
    obstacle_tool(3);
    click_on_map(300, 300);
    click_on_map(400, 200);
    obstacle_tool(4);
    click_on_map(500, 400);
    obstacle_tool(8);
    click_on_map(350, 450);
    ASSERT_TRUE(changes([] { click_on_map(80, 175); }, 240, 240, 250, 260)) << "no open dialog";
    ASSERT_TRUE(changes([] { xdo(to(340, 484) + "click 1"); }, 250, 470, 530, 490)) << "the folder did not open";
    xdo(to(340, 484) + "click 1");
    ASSERT_TRUE(eventually(alert_up)) << "a path of 45 characters gave no alert";
    xdo("key Return");
    ASSERT_TRUE(eventually([] { return !alert_up(); }));
    obstacle_tool(1);
    mouse_to(300, 300);
    xdo("mousedown 1");
    mouse_to(320, 280);
    xdo("mouseup 1");
    obstacle_tool(0);
    click_on_map(400, 200);

    by_menu(100);
    const size_t size = 76805 + 24 + 24 + 56 + 4 + 20000;
    ASSERT_TRUE(eventually([&] { return fs::exists(in_dir(tile)) && fs::file_size(in_dir(tile)) == size; }));
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir("additional nav data/Earth/nav.dat")); }));
    EXPECT_TRUE(fs::exists(in_dir("additional nav data/Earth/apt.dat")));
    std::ifstream in(in_dir(tile), std::ios::binary);
    const std::string b((std::istreambuf_iterator<char>(in)), {});
    auto word = [&](size_t at) { int v; std::memcpy(&v, b.data() + at, 4); return v; };
    auto real = [&](size_t at) { float v; std::memcpy(&v, b.data() + at, 4); return v; };
    const struct { int kind; float x, y, hddz; } records[3] = {{2, 320, 280, 100}, {3, 500, 400, 100}, {8, 350, 450, 0}};
    size_t at = 76805;
    for (const auto& r : records) {
        EXPECT_EQ(word(at), r.kind);
        EXPECT_NEAR(real(at + 4), lat_at(r.y), 1e-3);
        EXPECT_NEAR(real(at + 8), lon_at(r.x, r.y), 1e-3);
        EXPECT_EQ(real(at + 12), r.hddz);
        at += r.kind == 8 ? 56 : 24;
    }
    EXPECT_EQ(b.substr(at - 40, 40), object.substr(0, 40));
    EXPECT_EQ(word(at), 99);
}
