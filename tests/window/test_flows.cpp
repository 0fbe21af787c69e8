// The editor as a person uses it: the real program in a folder of its own with
// a copy of the resources and an empty preference folder, on an X server of
// its own (so that no other test moves its pointer or covers its window),
// driven with xdotool and read back pixel by pixel from the screen.
//
// Places are canvas units, y up from the bottom; under an 800 by 600 screen a
// unit is a pixel. A failed flow keeps its folder with a screenshot of the end.
#include "app/Panel_layout.h"
#include "bitmap_files.h"
#include "hl/Hl_graph.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <X11/Xutil.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <signal.h>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;

static bool operator==(bmp_rgb a, bmp_rgb b) { return a.r == b.r && a.g == b.g && a.b == b.b; }
static bool operator!=(bmp_rgb a, bmp_rgb b) { return !(a == b); }
static std::ostream& operator<<(std::ostream& out, bmp_rgb c)
{
    return out << "rgb(" << (int)c.r << "," << (int)c.g << "," << (int)c.b << ")";
}

// ---- one run: an X server, a folder, the program ---------------------------------------------

struct flow_run {
    std::string dir, display;
    pid_t xvfb, program;
    Display* x;
    Window window;
    std::string panel;   // the bytes of TF_MAP.BMP as the program reads it
    std::vector<std::string> expected_alerts;   // first lines of the alerts the flow means to raise
};
static flow_run run;

static std::string in_dir(const std::string& rel) { return run.dir + "/" + rel; }
static std::string tile_file(const char* name) { return in_dir("additional nav data/Earth/+030-120/") + name; }

static bool program_runs() { return run.program > 0 && waitpid(run.program, nullptr, WNOHANG) == 0; }

// Polls every 20 ms for at most ms milliseconds; after a failed step of the
// flow nothing more is waited for.
static bool eventually(const std::function<bool()>& holds, int ms = 15000)
{
    if (::testing::Test::HasFatalFailure()) return false;
    for (int waited = 0; waited < ms; waited += 20, usleep(20000))
        if (holds()) return true;
    return holds();
}

static void start_display()
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
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset",
               (char*)nullptr);
        _exit(90);
    }
    close(fds[1]);
    // The server writes its number and a line end once it listens; it dies if
    // the pipe is gone before the line end.
    std::string number;
    char c = 0;
    pollfd p = {fds[0], POLLIN, 0};
    while (c != '\n' && poll(&p, 1, 20000) == 1 && read(fds[0], &c, 1) == 1) number += c;
    close(fds[0]);
    ASSERT_TRUE(c == '\n' && number[0] >= '0' && number[0] <= '9') << "Xvfb gave no display";
    run.display = ":" + std::to_string(std::atoi(number.c_str()));
    run.x = XOpenDisplay(run.display.c_str());
    ASSERT_NE(run.x, nullptr) << "no connection to " << run.display;
}

// The program beside the generated bitmaps and the sample data of the source tree.
static void stage_copy()
{
    const fs::path build = fs::path(TF_PROGRAM_PATH).parent_path();
    fs::copy_file(TF_PROGRAM_PATH, in_dir("tileforger"));
    fs::copy(build / "Norsuite Resources", in_dir("Norsuite Resources"), fs::copy_options::recursive);
    fs::copy(fs::path(TF_SOURCE_DIR) / "resources", run.dir, fs::copy_options::recursive | fs::copy_options::skip_existing);
    fs::create_directories(in_dir("config"));
    std::ifstream in(in_dir("Norsuite Resources/bitmaps/TileFrgr/TF_MAP.BMP"), std::ios::binary);
    run.panel.assign(std::istreambuf_iterator<char>(in), {});
}

// ---- the screen ------------------------------------------------------------------------------------

// Canvas pixels x1..x2 by y1..y2, edges included.
static std::vector<bmp_rgb> grab(int x1, int y1, int x2, int y2)
{
    std::vector<bmp_rgb> px;
    XImage* im = XGetImage(run.x, DefaultRootWindow(run.x), x1, 599 - y2, x2 - x1 + 1, y2 - y1 + 1, AllPlanes, ZPixmap);
    if (!im) return px;
    for (int row = 0; row <= y2 - y1; row++)
        for (int col = 0; col <= x2 - x1; col++) {
            unsigned long p = XGetPixel(im, col, row);
            px.push_back({(unsigned char)(p >> 16), (unsigned char)(p >> 8), (unsigned char)p});
        }
    XDestroyImage(im);
    return px;
}

static bmp_rgb pixel(int x, int y) { return grab(x, y, x, y).at(0); }

static bmp_rgb colour(int c)
{
    OGL_assign_colortable();
    auto byte = [](float v) { return (unsigned char)std::lround(v * 255); };
    return {byte(col_rgb[c][0]), byte(col_rgb[c][1]), byte(col_rgb[c][2])};
}
static const int col_face = 12, col_water = 16, col_selection = 8, col_border = 18, col_folder = 78;

static bool box_has(int x1, int y1, int x2, int y2, bmp_rgb c)
{
    for (bmp_rgb p : grab(x1, y1, x2, y2))
        if (p == c) return true;
    return false;
}

static int le_int(const std::string& bytes, size_t at)
{
    int v;
    std::memcpy(&v, bytes.data() + at, 4);
    return v;
}
static float le_float(const std::string& bytes, size_t at)
{
    float v;
    std::memcpy(&v, bytes.data() + at, 4);
    return v;
}

static bmp_rgb bmp_pixel(const std::string& bytes, int x, int y)
{
    const size_t at = le_int(bytes, 10) + (size_t)y * ((le_int(bytes, 18) * 3 + 3) & ~3) + x * 3;
    return {(unsigned char)bytes[at + 2], (unsigned char)bytes[at + 1], (unsigned char)bytes[at]};
}

static bool shows_panel(int x, int y) { return pixel(x, y) == bmp_pixel(run.panel, x, y); }

// Pixels of the box that differ from the panel bitmap, its transparent magenta left out.
static int off_panel(int x1, int y1, int x2, int y2)
{
    const std::vector<bmp_rgb> px = grab(x1, y1, x2, y2);
    int wrong = 0, k = 0;
    for (int y = y2; y >= y1; y--)
        for (int x = x1; x <= x2; x++, k++) {
            bmp_rgb want = bmp_pixel(run.panel, x, y);
            if (!(want == bmp_rgb{255, 0, 255}) && px.at(k) != want) wrong++;
        }
    return wrong;
}

// ---- where things are --------------------------------------------------------------------------------

// A place of the open tile on the canvas at zoom 1 and no pan, as the map draws it.
struct canvas_point {
    int x, y;
};
static canvas_point place_of(float tile_lat, float tile_lon, float i, float j)
{
    const float lat = tile_lat + j / 79, lon = tile_lon + i / 59;
    return {(int)std::lround(map_x1 + (lon - tile_lon) * map_scale * std::cos(lat * 0.017453293f)),
            (int)std::lround(map_y1 + (lat - tile_lat) * map_scale)};
}

// In the map, east of the tile, over no control: a pointer drawn there hides nothing that is checked.
static const canvas_point park_place = {760, 560};
// The save prompt lies wholly inside the alert's square: it is told apart by its dark border.
static const canvas_point prompt_face = {250 + 150, 245 + 40}, prompt_border = {250 - 3, 245 + 50};
static const canvas_point alert_face = {200 + 5, 198 + 100};
static const canvas_point prompt_save = {250 + 70, 245 + 52}, prompt_dont = {250 + 70, 245 + 22};
static const canvas_point prompt_cancel = {250 + 230, 245 + 22}, alert_ok = {200 + 200, 198 + 22};
static const canvas_point dialog_face = {240 + 3, 52 + 200}, dialog_first_row = {240 + 100, 52 + 432};

static std::vector<bmp_rgb> lat_digits()
{
    return grab(ter_lat_spinner.x, ter_lat_spinner.y - 14, spinner_end(ter_lat_spinner), ter_lat_spinner.y + 20);
}
static std::vector<bmp_rgb> readout() { return grab(18, 10, 160, 40); }
static std::vector<bmp_rgb> lamp(int tool)
{
    return grab(ter_tool_lamp_x, ter_tool_lamp_y[tool], ter_tool_lamp_x + 9, ter_tool_lamp_y[tool] + 9);
}
static bool face_at(canvas_point p) { return pixel(p.x, p.y) == colour(col_face); }
static bool prompt_up()
{
    return face_at(prompt_face) && pixel(prompt_border.x, prompt_border.y) == colour(col_border);
}

// ---- the user's hands ------------------------------------------------------------------------------

// Clicks in a modal window, which has no pointer readout to wait on, answer at
// the press; on the main screen a click waits until a frame has seen the mouse
// in its place (the press and a later move must not fall into one frame).
static void xdo(const std::string& args) { output_of("DISPLAY=" + run.display + " xdotool " + args); }
static std::string to(canvas_point p)
{
    return "mousemove " + std::to_string(p.x) + " " + std::to_string(600 - p.y) + " ";
}
static void click(canvas_point p) { xdo(to(p) + "click 1"); }
static void key(const char* name) { xdo(std::string("key ") + name); }

static void move_to(canvas_point p)
{
    const std::vector<bmp_rgb> before = readout();
    xdo(to(p));
    ASSERT_TRUE(eventually([&] { return readout() != before; })) << "the pointer readout did not follow the mouse";
}
static void park() { move_to(park_place); }

// A click on the main screen that must change what watched() shows.
static bool click_changes(canvas_point p, const std::function<std::vector<bmp_rgb>()>& watched)
{
    move_to(p);
    const std::vector<bmp_rgb> before = watched();
    xdo("click 1");
    return eventually([&] { return watched() != before; });
}

// The button held at p until done() holds, as the map's tools want it down for a frame.
static bool hold_until(canvas_point p, const std::function<bool()>& done)
{
    move_to(p);
    xdo("mousedown 1");
    const bool held = eventually(done);
    xdo("mouseup 1");
    return held;
}

// Presses at from, moves to there, and lets go once a frame has seen the mouse there.
static bool drag(canvas_point from, canvas_point there)
{
    move_to(from);
    xdo("mousedown 1");
    const std::vector<bmp_rgb> before = readout();
    xdo(to(there));
    const bool seen = eventually([&] { return readout() != before; });
    xdo("mouseup 1");
    return seen;
}

static void choose_tool(int tool)
{
    const canvas_point lamp_middle = {(int)ter_tool_lamp_x + 5, (int)ter_tool_lamp_y[tool] + 5};
    ASSERT_TRUE(click_changes(lamp_middle, [=] { return lamp(tool); })) << "tool lamp " << tool << " did not light";
    park();
}

// The units digit of the latitude spinner: its upper half steps north, the lower half south.
static canvas_point latitude_digit(int sign)
{
    return {(int)ter_lat_spinner.x + 15, (int)ter_lat_spinner.y + (sign > 0 ? 12 : -6)};
}
static void step_latitude(int sign)
{
    move_to(latitude_digit(sign));
    xdo("click 1");
}

// On a clean tile the neighbour opens at once and the digits change.
static void open_tile(int sign)
{
    ASSERT_TRUE(click_changes(latitude_digit(sign), lat_digits)) << "the latitude did not change";
    park();
}

static void answer_prompt(canvas_point button)
{
    ASSERT_TRUE(eventually(prompt_up)) << "no save prompt";
    click(button);
    ASSERT_TRUE(eventually([] { return !prompt_up(); })) << "the save prompt stayed";
}

// Presses a cell of the tile at (lat, -119) a little right of and below its
// middle, and watches the middle, which a drawn pointer would not cover.
static bool press_cell_until_not_water(float tile_lat, int i, int j)
{
    const canvas_point middle = place_of(tile_lat, -119, i + 0.5f, j + 0.5f);
    EXPECT_EQ(pixel(middle.x, middle.y), colour(col_water)) << "cell " << i << "," << j << " is not flat water";
    const bool changed = hold_until({middle.x + 2, middle.y - 2},
                                    [=] { return pixel(middle.x, middle.y) != colour(col_water); });
    park();
    return changed;
}

// ---- start and end -----------------------------------------------------------------------------------

static void start_program()
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
    ASSERT_TRUE(eventually([] { return off_panel(24, 420, 160, 478) == 0; })) << "the terrain panel did not show";
}

static std::string error_log()
{
    std::ifstream log(in_dir("Error.out"));
    return std::string((std::istreambuf_iterator<char>(log)), {});
}

// The program logs every alert; each must be one the flow announced.
static void expect_only_announced_alerts()
{
    std::istringstream log(error_log());
    const std::string head = "MACIBM_alert: ";
    for (std::string line; std::getline(log, line);) {
        if (line.rfind(head, 0) != 0) continue;
        bool announced = false;
        for (const std::string& first : run.expected_alerts) announced |= line.compare(head.size(), first.size(), first) == 0;
        EXPECT_TRUE(announced) << "an alert the flow did not announce: " << line;
    }
}

struct Flows : ::testing::Test {
    void SetUp() override
    {
        run = flow_run{};
        char dir[] = "/tmp/tf_flow_XXXXXX";
        ASSERT_TRUE(mkdtemp(dir));
        run.dir = dir;
        stage_copy();
        start_display();
    }
    void TearDown() override
    {
        expect_only_announced_alerts();
        if (HasFailure()) {
            output_of("DISPLAY=" + run.display + " import -window root " + in_dir("failure.png"));
            std::printf("kept for a look: %s\n", run.dir.c_str());
        }
        if (program_runs()) kill(run.program, SIGKILL);
        if (run.program > 0) waitpid(run.program, nullptr, 0);
        if (run.x) XCloseDisplay(run.x);
        if (run.xvfb > 0) {
            kill(run.xvfb, SIGTERM);
            waitpid(run.xvfb, nullptr, 0);
        }
        if (!HasFailure()) fs::remove_all(run.dir);
    }
};

// ---- the flows ---------------------------------------------------------------------------------------

// Start, move between tiles, edit one, save it, and find it again on disk and
// on the map; back on the sample tile all is as it was.
TEST_F(Flows, ATileIsEditedSavedAndOpenedAgain)
{
    ASSERT_FALSE(fs::exists(in_dir("config/Norvane")));
    start_program();
    XWindowAttributes a;
    ASSERT_TRUE(XGetWindowAttributes(run.x, run.window, &a));
    EXPECT_TRUE(a.x == 0 && a.y == 0 && a.width == 800 && a.height == 600) << a.x << " " << a.y << " " << a.width;
    park();
    // Labels of the tools, the heading above them, the map east of the tile: the panel as drawn.
    EXPECT_EQ(off_panel(24, 262, 160, 340), 0);
    EXPECT_EQ(off_panel(700, 20, 790, 520), 0);
    // The open sea west of the sample tile's island, flat and dark blue.
    for (bmp_rgb p : grab(200, 200, 260, 260)) ASSERT_EQ(p, colour(col_water));
    const std::vector<bmp_rgb> digits33 = lat_digits(), readout33 = readout();
    const canvas_point island = place_of(33, -119, 34.5f, 30.5f);
    const bmp_rgb ground33 = pixel(island.x, island.y);
    ASSERT_NE(ground33, colour(col_water)) << "the sample tile has land here";

    open_tile(1);   // the blank tile 34, -119: flat water everywhere
    EXPECT_NE(readout(), readout33);   // the mouse stands where it stood: one degree further north
    EXPECT_EQ(pixel(island.x, island.y), colour(col_water));
    const std::vector<bmp_rgb> digits34 = lat_digits();
    choose_tool(2);
    ASSERT_TRUE(press_cell_until_not_water(34, 20, 30)) << "the cell did not turn to land";
    const canvas_point cell = place_of(34, -119, 20.5f, 30.5f);
    const bmp_rgb land = pixel(cell.x, cell.y);
    // Vertex (40, 20) dragged 2 units right and 2 up.
    choose_tool(0);
    const canvas_point from = place_of(34, -119, 40, 20), drop = {from.x + 2, from.y + 2};
    ASSERT_TRUE(drag(from, drop));
    park();

    step_latitude(1);
    answer_prompt(prompt_save);
    park();
    std::ifstream in(tile_file("+034-119.env"), std::ios::binary);
    const std::string b((std::istreambuf_iterator<char>(in)), {});
    ASSERT_EQ(b.size(), 5u + 76800 + 4 + 20000) << "no obstacles: the marker right behind the vertices";
    EXPECT_EQ(b[0], 'i');
    EXPECT_EQ(le_int(b, 1), 4);
    EXPECT_EQ(le_int(b, 76805), 99);
    for (int n = 0; n < 500; n++) EXPECT_EQ(std::strncmp(b.data() + 76809 + 40 * n, "Untitled", 9), 0) << n;
    const float drop_lat = 34 + (drop.y - map_y1) / map_scale;
    const float drop_lon = -119 + (drop.x - map_x1) / (map_scale * std::cos(drop_lat * 0.017453293f));
    for (int j = 0; j < 80; j++)
        for (int i = 0; i < 60; i++) {
            const size_t at = 5 + 16 * (j * 60 + i);
            const bool dragged = i == 40 && j == 20, raised = i == 20 && j == 30;
            ASSERT_NEAR(le_float(b, at), dragged ? drop_lat : 34 + j / 79.0f, 1e-4) << i << "," << j;
            ASSERT_NEAR(le_float(b, at + 4), dragged ? drop_lon : -119 + i / 59.0f, 1e-4) << i << "," << j;
            ASSERT_EQ(le_float(b, at + 8), 0.0f) << i << "," << j;
            ASSERT_EQ(-le_int(b, at + 12) >= 100000, !raised) << "water bit of " << i << "," << j;
        }

    open_tile(-1);   // the saved tile, read back
    EXPECT_EQ(lat_digits(), digits34);
    EXPECT_EQ(pixel(cell.x, cell.y), land);
    open_tile(-1);
    EXPECT_EQ(lat_digits(), digits33);
    EXPECT_EQ(readout(), readout33);
    EXPECT_EQ(pixel(island.x, island.y), ground33);
}

// Every tool and key on a blank tile; the save prompt's Cancel keeps the tile,
// Don't Save moves on; a close from outside ends the program with the place and
// tool in the preferences.
TEST_F(Flows, ToolsAndKeysWorkAndAClosingProgramKeepsThePlace)
{
    start_program();
    open_tile(1);
    // A quarter turn of a stock cell is undone by the texture pass, yet the tile counts as changed.
    choose_tool(3);
    const canvas_point turned = place_of(34, -119, 10.5f, 10.5f);
    ASSERT_TRUE(drag(turned, {turned.x + 1, turned.y}));
    park();
    const std::vector<bmp_rgb> digits34 = lat_digits();
    step_latitude(1);
    answer_prompt(prompt_cancel);
    park();
    EXPECT_EQ(lat_digits(), digits34);
    step_latitude(1);
    answer_prompt(prompt_dont);
    park();
    EXPECT_NE(lat_digits(), digits34);
    EXPECT_FALSE(fs::exists(tile_file("+034-119.env")));

    choose_tool(1);
    const canvas_point vertex = place_of(35, -119, 30, 50);
    auto marked = [&] {
        return box_has(vertex.x - 5, vertex.y - 5, vertex.x + 5, vertex.y + 5, colour(col_selection));
    };
    EXPECT_FALSE(marked());
    EXPECT_TRUE(hold_until(vertex, marked)) << "the selection mark did not come";
    park();

    choose_tool(4);
    EXPECT_TRUE(press_cell_until_not_water(35, 20, 30)) << "painting did not turn the textures on";
    // The whole map shows its textures, not only the painted cell: a picture, not one colour.
    const std::vector<bmp_rgb> sea = grab(200, 100, 240, 140);
    EXPECT_TRUE(std::none_of(sea.begin(), sea.end(), [](bmp_rgb p) { return p == colour(col_water); }));
    EXPECT_TRUE(std::any_of(sea.begin(), sea.end(), [&](bmp_rgb p) { return p != sea[0]; }));
    key("space");
    ASSERT_TRUE(eventually([] { return pixel(200, 100) == colour(col_water); })) << "space left the textures on";

    // The tile's east edge at y 300: x = 168 + (1 - pan) * 573 * zoom * cos(lat).
    auto east_edge = [](float zoom, float pan) {
        const float lat = 35 + (300 - map_y1) / (map_scale * zoom) + pan;
        return (int)(map_x1 + (1 - pan) * map_scale * zoom * std::cos(lat * 0.017453293f));
    };
    const int edge1 = east_edge(1, 0), edge2 = east_edge(1.2f, 0.1f / 1.2f);
    EXPECT_EQ(pixel(edge1 - 3, 300), colour(col_water));
    EXPECT_TRUE(shows_panel(edge1 + 3, 300));
    key("plus");
    ASSERT_TRUE(eventually([&] { return pixel(edge2 - 3, 300) == colour(col_water); })) << "no zoom";
    EXPECT_TRUE(shows_panel(edge2 + 3, 300));
    const std::vector<bmp_rgb> lit = lamp(4), unlit = lamp(0);
    key("m");   // from the last tool round to the first
    ASSERT_TRUE(eventually([&] { return lamp(0) == lit; })) << "tool 0 did not light";
    EXPECT_EQ(lamp(4), unlit);

    ASSERT_TRUE(send_close(run.display, run.window));
    answer_prompt(prompt_dont);
    EXPECT_EQ(exit_status(run.program, 300), 0);
    run.program = 0;
    EXPECT_FALSE(fs::exists(tile_file("+035-119.env")));
    std::ifstream prefs(in_dir("config/Norvane/Norvane Tile-Forger.prf"));
    std::string head, version, word;
    float lat = 0, lon = 0;
    int tool = -1, screen = 0;
    prefs >> head >> version >> word >> lat >> lon >> tool >> screen;
    EXPECT_EQ(head + version + word, "I543version");
    EXPECT_EQ(lat, 35);
    EXPECT_EQ(lon, -119);
    EXPECT_EQ(tool, 0);
    EXPECT_EQ(screen, 200);
}

// A texture path too long for the tile, closed with Return; then a save into a
// missing folder, closed with O.K.: the program goes on after both.
TEST_F(Flows, AlertsCloseWithReturnOrOKAndTheProgramGoesOn)
{
    run.expected_alerts = {"The total path to the texture cannot exceed 40 characters.", "I could not save the file!"};
    fs::remove_all(in_dir("additional nav data/Earth/+030-120"));   // nowhere to save the tile
    const std::string name = "a_folder_of_textures/shore_with_rocks_at_noon";   // 45 characters
    auto texel = [](int x, int y) { return bmp_rgb{(unsigned char)(4 * x), (unsigned char)(4 * y), 90}; };
    write_bytes(in_dir("additional nav data/custom terrain textures/" + name + ".bmp"), bmp_bytes(64, 64, texel));
    start_program();
    click({90, 192});   // the name of slot 0
    ASSERT_TRUE(eventually([] { return face_at(dialog_face); })) << "no open dialog";
    const int icon_x = 240 + 15, icon_y = 52 + 429;
    auto folder_first = [=] { return box_has(icon_x, icon_y, icon_x + 10, icon_y + 7, colour(col_folder)); };
    ASSERT_TRUE(folder_first()) << "no folder in the first row";
    click(dialog_first_row);
    ASSERT_TRUE(eventually([&] { return !folder_first(); })) << "the folder did not open";
    click(dialog_first_row);
    ASSERT_TRUE(eventually([] { return face_at(alert_face); })) << "no alert for a path of " << name.size();
    key("Return");
    ASSERT_TRUE(eventually([] { return !face_at(alert_face) && !face_at(dialog_face); })) << "Return left it open";
    EXPECT_NE(error_log().find("The total path to the texture cannot exceed 40 characters."), std::string::npos)
        << error_log();
    park();

    choose_tool(2);
    ASSERT_TRUE(press_cell_until_not_water(33, 20, 30)) << "the cell did not turn to land";
    const std::vector<bmp_rgb> digits33 = lat_digits();
    step_latitude(1);
    answer_prompt(prompt_save);
    ASSERT_TRUE(eventually([] { return face_at(alert_face); })) << "no alert";
    click(alert_ok);
    ASSERT_TRUE(eventually([] { return !face_at(alert_face); })) << "O.K. did not close the alert";
    park();
    EXPECT_EQ(lat_digits(), digits33);   // a failed save keeps the tile open, with its edit
    EXPECT_FALSE(fs::exists(in_dir("additional nav data/Earth/+030-120")));
    EXPECT_NE(error_log().find("MACIBM_alert: I could not save the file!"), std::string::npos) << error_log();
    EXPECT_TRUE(program_runs());
}
