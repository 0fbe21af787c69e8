// The menus and the obstacle screen as a person uses them: the real program
// on an X server of its own, driven with xdotool. Menu places come from the
// program's own menu file, read here by the same reader.
#include "app/Panel_layout.h"
#include "bitmap_files.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "hl/Hl_graph.h"
#include "platform/Hl_mnw.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <X11/Xutil.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <set>
#include <signal.h>
#include <vector>

namespace fs = std::filesystem;

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

static std::vector<bmp_rgb> grab(int x1, int y1, int x2, int y2)
{
    std::vector<bmp_rgb> px;
    XImage* im = XGetImage(x_server, DefaultRootWindow(x_server), x1, 599 - y2, x2 - x1 + 1, y2 - y1 + 1, AllPlanes, ZPixmap);
    for (int row = 0; im && row <= y2 - y1; row++)
        for (int col = 0; col <= x2 - x1; col++) {
            unsigned long p = XGetPixel(im, col, row);
            px.push_back({(unsigned char)(p >> 16), (unsigned char)(p >> 8), (unsigned char)p});
        }
    if (im) XDestroyImage(im);
    return px;
}
static bool same(const std::vector<bmp_rgb>& a, const std::vector<bmp_rgb>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(bmp_rgb)) == 0;
}

static void xdo(const std::string& args) { output_of("DISPLAY=" + display + " xdotool " + args); }
static std::string to(float x, float y) { return "mousemove " + std::to_string((int)x) + " " + std::to_string(600 - (int)y) + " "; }
static void key(const char* name) { xdo(std::string("key ") + name); }

// The screen region watched changes after the action, which must happen once the region is still.
static bool changes(const std::function<void()>& act, int x1, int y1, int x2, int y2)
{
    std::vector<bmp_rgb> before = grab(x1, y1, x2, y2), again;
    const bool settled = eventually([&] {
        usleep(100000);
        again = grab(x1, y1, x2, y2);
        std::swap(before, again);
        return same(before, again);
    });
    EXPECT_TRUE(settled) << "the region moves on its own";
    act();
    return eventually([&] { return !same(before, grab(x1, y1, x2, y2)); });
}
static auto readout = [] { return grab(18, 10, 160, 40); };
// On the map screens a click waits until a frame has seen the mouse in its place.
static void click_on_map(float x, float y)
{
    ASSERT_TRUE(changes([&] { xdo(to(x, y)); }, 18, 10, 160, 40)) << "the readout did not follow";
    xdo("click 1");
}
static void drag(float x, float y, float x2, float y2)
{
    ASSERT_TRUE(changes([&] { xdo(to(x, y)); }, 18, 10, 160, 40));
    xdo("mousedown 1");
    ASSERT_TRUE(changes([&] { xdo(to(x2, y2)); }, 18, 10, 160, 40));
    xdo("mouseup 1");
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

static bool face_at(int x, int y)
{
    const bmp_rgb p = grab(x, y, x, y).at(0);
    return std::lround(col_rgb[12][0] * 255) == p.r && std::lround(col_rgb[12][1] * 255) == p.g;
}
static bool alert_up() { return face_at(205, 298); }
static bool prompt_up() { return face_at(400, 285) && !face_at(247, 295); }

struct MenuFlows : ::testing::Test {
    void SetUp() override
    {
        char scratch[] = "/tmp/tf_menu_flow_XXXXXX";
        ASSERT_TRUE(mkdtemp(scratch));
        dir = scratch;
        const fs::path build = fs::path(TF_PROGRAM_PATH).parent_path();
        fs::copy_file(TF_PROGRAM_PATH, in_dir("tileforger"));
        fs::copy(build / "Norsuite Resources", in_dir("Norsuite Resources"), fs::copy_options::recursive);
        fs::copy(fs::path(TF_SOURCE_DIR) / "resources", dir, fs::copy_options::recursive | fs::copy_options::skip_existing);
        OGL_assign_colortable();
        C_to_C((dir + "/").c_str(), app_path);
        MACIBM_read_menus("Tile-Forger.txt");
        int fds[2];
        ASSERT_EQ(pipe(fds), 0);
        if ((xvfb = fork()) == 0) {
            close(fds[0]);
            execlp("Xvfb", "Xvfb", "-displayfd", std::to_string(fds[1]).c_str(), "-screen", "0", "800x600x24", "-nolisten",
                   "tcp", (char*)nullptr);
            _exit(90);
        }
        close(fds[1]);
        std::string number;
        char c = 0;
        pollfd p = {fds[0], POLLIN, 0};
        while (c != '\n' && poll(&p, 1, 20000) == 1 && read(fds[0], &c, 1) == 1) number += c;
        close(fds[0]);
        display = ":" + std::to_string(std::atoi(number.c_str()));
        ASSERT_TRUE((x_server = XOpenDisplay(display.c_str()))) << "no display";
    }
    void start()
    {
        if ((program = fork()) == 0) {
            setenv("DISPLAY", display.c_str(), 1);
            setenv("XDG_CONFIG_HOME", in_dir("config").c_str(), 1);
            if (chdir(dir.c_str()) == 0) execl(in_dir("tileforger").c_str(), "tileforger", (char*)nullptr);
            _exit(90);
        }
        ASSERT_NE(find_program_window(program, display), 0ul);
        // The terrain panel as the bitmap has it: the start-up is over.
        std::ifstream in(in_dir("Norsuite Resources/bitmaps/TileFrgr/TF_MAP.BMP"), std::ios::binary);
        const std::string panel((std::istreambuf_iterator<char>(in)), {});
        auto shows_panel = [&] {
            const std::vector<bmp_rgb> px = grab(24, 420, 160, 420);
            for (int x = 24; x <= 160; x++)
                if (px[x - 24].g != (unsigned char)panel[54 + 420 * 2400 + 3 * x + 1]) return false;
            return true;
        };
        ASSERT_TRUE(eventually(shows_panel)) << "no terrain screen";
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

TEST_F(MenuFlows, ObstaclesPlacedMovedAndDeletedAreSavedByTheFileMenu)
{
    fs::remove(in_dir(tile));
    const std::string object = std::string(19, 'f') + "/" + std::string(25, 'm');   // 45 characters
    write_bytes(in_dir("additional nav data/custom objects/" + object + ".obj"), "");
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(changes([] { by_menu(201); }, 10, 140, 160, 300)) << "no obstacle screen";
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
    key("Return");
    ASSERT_TRUE(eventually([] { return !alert_up(); }));
    obstacle_tool(1);
    drag(300, 300, 320, 280);
    obstacle_tool(0);
    click_on_map(400, 200);
    by_menu(100);

    const size_t size = 76805 + 24 + 24 + 56 + 4 + 20000;
    ASSERT_TRUE(eventually([&] { return fs::exists(in_dir(tile)) && fs::file_size(in_dir(tile)) == size; }));
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
    by_menu(104);   // nothing unsaved: no prompt
    EXPECT_EQ(exit_status(program, 100), 0);
    program = 0;
}

TEST_F(MenuFlows, EveryCommandByMenuAndQuitAsksForUnsavedWork)
{
    std::set<int> commands;
    for (int m = 0; m < menu_cap; m++)
        for (int i = 0; i < menu_item_cap; i++)
            if (mnw.item_name[m][i][0] && mnw.item_name[m][i][0] != '-') commands.insert(mnw.item_cmd[m][i]);
    EXPECT_EQ(commands, (std::set<int>{0, 100, 101, 102, 104, 200, 201, 202, 203, 300, 301, 302, 303, 304, 305, 307, 308, 309}));
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(changes([] { by_menu(308); }, 310, 10, 640, 570)) << "no textures";
    // The textured sea west of the island shows no dark seams: the pixel
    // columns on the edges between cells are as bright as those in their middles.
    const std::vector<bmp_rgb> sea = grab(168, 180, 300, 260);
    long edges = 0, middles = 0;
    for (int y = 180; y <= 260; y++)
        for (int i = 2; i < 14; i++) {
            const float w = map_scale * std::cos(lat_at(y) * 0.017453293f) / 59;
            auto bright = [&](float x) { const bmp_rgb p = sea[(260 - y) * 133 + std::lround(x) - 168]; return p.r + p.g + p.b; };
            edges += bright(map_x1 + i * w), middles += bright(map_x1 + (i + 0.5f) * w);
        }
    EXPECT_GT(edges, middles * 0.9) << "seams";
    for (int c : {304, 300, 301, 302, 303, 305})
        EXPECT_TRUE(changes([=] { by_menu(c); }, 310, 10, 640, 570)) << "the map did not change by command " << c;
    for (const char* f : {"apt.dat", "nav.dat", "+030-120/+033-119.env"}) fs::remove(in_dir("additional nav data/Earth/") + f);
    EXPECT_TRUE(changes([] { by_menu(307); }, 10, 230, 19, 470)) << "no next tool";
    by_menu(309);
    for (int c : {101, 102, 100}) by_menu(c);
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir("additional nav data/Earth/apt.dat")); }));
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir("additional nav data/Earth/nav.dat")); }));
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir(tile)); }));
    for (int c : {201, 202, 203, 200}) EXPECT_TRUE(changes([=] { by_menu(c); }, 0, 60, 85, 480)) << "screen " << c;
    by_menu(0);
    ASSERT_TRUE(eventually(alert_up)) << "no about box";
    key("Return");
    ASSERT_TRUE(eventually([] { return !alert_up(); }));
    // A press on the Screen title over the airport and navaid screens marked both changed.
    by_menu(104);
    ASSERT_TRUE(eventually(prompt_up)) << "no save prompt";
    xdo(to(480, 267) + "click 1");   // Cancel
    ASSERT_TRUE(eventually([] { return !prompt_up(); }));
    EXPECT_EQ(exit_status(program, 5), -1);
    by_menu(104);
    int status = -1;
    for (int k = 0; k < 50 && (status = exit_status(program, 2)) == -1; k++)
        if (prompt_up()) xdo(to(320, 267) + "click 1");   // Don't Save, for the airports and the navaids
    EXPECT_EQ(status, 0);
    program = 0;
    EXPECT_TRUE(fs::exists(in_dir("config/Norvane/Norvane Tile-Forger.prf")));
}
