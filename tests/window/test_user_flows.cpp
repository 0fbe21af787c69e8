// Whole tasks as a scenery author does them on the real program, each read
// back from the files it saves: terrain, obstacles, airports and navaids, by
// mouse, keys and menus, with the prompts and alerts on the way.
#include "real_program.h"

#include "app/Panel_layout.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace real_program;

namespace {

const std::string tile_folder = "additional nav data/Earth/+030-120/";
const std::string apt_path = "additional nav data/Earth/apt.dat", nav_path = "additional nav data/Earth/nav.dat";
const int col_water = 16, col_selection = 8;

// A little-endian int or float of a saved file.
template <typename T = int>
T le(const std::string& bytes, size_t at)
{
    T v;
    std::memcpy(&v, bytes.data() + at, 4);
    return v;
}

// A place of the tile at (tile_lat, -119) on the canvas at zoom 1 and no pan, as the map draws it.
screen_point place_of(float tile_lat, float i, float j)
{
    const float lat = tile_lat + j / 79;
    return {(int)std::lround(map_x1 + i / 59 * map_scale * std::cos(lat * 0.017453293f)),
            (int)std::lround(map_y1 + j / 79 * map_scale)};
}
float lat_at(float tile_lat, float y) { return tile_lat + (y - map_y1) / map_scale; }
float lon_at(float tile_lat, float x, float y)
{
    return -119 + (x - map_x1) / (map_scale * std::cos(lat_at(tile_lat, y) * 0.017453293f));
}

pixels lat_digits()
{
    return grab(ter_lat_spinner.x, ter_lat_spinner.y - 14, spinner_end(ter_lat_spinner), ter_lat_spinner.y + 20);
}

// A click in the middle of the lamp 10 units square from (x, y) lights it.
void light_lamp(float x, float y)
{
    ASSERT_TRUE(changes([=] { click_on_map(x + 5, y + 5); }, x, y, x + 9, y + 9)) << "the lamp at " << x << "," << y;
}
void choose_tool(int tool)
{
    light_lamp(ter_tool_lamp_x, ter_tool_lamp_y[tool]);
    park();
}
void obstacle_tool(int k) { light_lamp(obs_tool_lamp_x, obs_tool_lamp_y[k]); }

// The units digit of the latitude spinner: its upper half steps north, the lower half south.
void step_latitude(int sign) { click_on_map(ter_lat_spinner.x + 15, ter_lat_spinner.y + (sign > 0 ? 12 : -6)); }
// On a clean tile the neighbour opens at once and the digits change.
void open_tile(int sign)
{
    ASSERT_TRUE(changes([=] { step_latitude(sign); }, ter_lat_spinner.x, ter_lat_spinner.y - 14,
                        spinner_end(ter_lat_spinner), ter_lat_spinner.y + 20))
        << "the latitude did not change";
    park();
}

// Presses a cell of the tile a little right of and below its middle, and
// watches the middle, which a drawn pointer would not cover.
bool press_cell_until_not_water(float tile_lat, int i, int j)
{
    const screen_point m = place_of(tile_lat, i + 0.5f, j + 0.5f);
    EXPECT_TRUE(shows(m.x, m.y, col_water)) << "cell " << i << "," << j << " is not flat water";
    const bool changed = hold_until(m.x + 2, m.y - 2, [=] { return !shows(m.x, m.y, col_water); });
    park();
    return changed;
}

// The first menu item that gives the command: its menu's title, then the item.
void by_menu(int command)
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
// The menus the program reads, read here by the same reader.
void read_menus()
{
    OGL_assign_colortable();
    C_to_C((run.dir + "/").c_str(), app_path);
    MACIBM_read_menus("Tile-Forger.txt");
}

// Takes the selected record's "Untitled" off the edit line and types a name.
void type_name(const char* name)
{
    for (int k = 0; k < 8; k++) xdo("key BackSpace");
    xdo(std::string("type --delay 50 '") + name + "'");
}

// The lines that are not empty from the one that holds text, up to count of them.
std::vector<std::string> lines_from(const std::string& text, const std::string& holding, int count)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line) && (int)out.size() < count;)
        if (line.size() > 1 && (!out.empty() || line.find(holding) != std::string::npos)) out.push_back(line);
    return out;
}

// Closes the window as a window manager does, answers the prompt for each
// changed store with button, and sees the program end.
void quit(std::vector<screen_point> answers = {})
{
    send_close();
    for (screen_point b : answers) ASSERT_NO_FATAL_FAILURE(answer_prompt(b));
    EXPECT_EQ(exit_status(300), 0) << "the program did not end";
}

using Flows = RealProgram;

// The terrain job on blank tiles: a cell turned to land, a vertex dragged, a
// cell turned (which the texture pass undoes, yet the tile counts as changed);
// the save prompt's Cancel stays, Save writes the tile, which opens again as it
// was left; a vertex selected, a cell painted, the zoom key, and Don't Save at
// a close from outside writes nothing but the preferences.
TEST_F(Flows, TheTerrainJob)
{
    start_program();
    ASSERT_TRUE(screen_ready());
    park();
    // The panel east of the tile, as staged.
    const pixels east = grab(700, 60, 790, 520);
    int off_panel = 0, k = 0;
    for (int y = 520; y >= 60; y--)
        for (int x = 700; x <= 790; x++) off_panel += east.at(k++) != panel_colour(x, y);
    EXPECT_EQ(off_panel, 0);
    for (unsigned long p : grab(200, 200, 260, 260)) ASSERT_EQ(p, colour(col_water));   // the sea west of the island
    const screen_point island = place_of(33, 34.5f, 30.5f);   // a cell of the island
    const unsigned long ground33 = pixel(island.x, island.y);
    ASSERT_NE(ground33, colour(col_water)) << "the sample tile has land here";

    open_tile(1);   // the blank tile 34, -119: flat water everywhere
    EXPECT_TRUE(shows(island.x, island.y, col_water));
    const pixels digits34 = lat_digits();
    choose_tool(2);
    ASSERT_TRUE(press_cell_until_not_water(34, 20, 30)) << "the cell did not turn to land";
    const screen_point cell = place_of(34, 20.5f, 30.5f);
    const unsigned long land = pixel(cell.x, cell.y);
    choose_tool(0);   // vertex (40, 20) dragged 2 units right and 2 up
    const screen_point from = place_of(34, 40, 20), drop = {from.x + 2, from.y + 2};
    drag(from.x, from.y, drop.x, drop.y);
    choose_tool(3);
    const screen_point turned = place_of(34, 10.5f, 10.5f);
    drag(turned.x, turned.y, turned.x + 1, turned.y);
    park();

    step_latitude(1);
    answer_prompt(prompt_cancel);
    park();
    EXPECT_EQ(lat_digits(), digits34);
    step_latitude(1);
    answer_prompt(prompt_save);
    park();
    const std::string f = file_text(tile_folder + "+034-119.env");
    ASSERT_EQ(f.size(), 5u + 76800 + 4 + 20000) << "no obstacles: the marker right behind the vertices";
    // The layout is the TileFile tests': here the edits and an untouched vertex.
    const size_t dragged = 5 + 16 * (20 * 60 + 40), raised = 5 + 16 * (30 * 60 + 20), plain = 5 + 16 * (30 * 60 + 21);
    EXPECT_NEAR(le<float>(f, dragged), lat_at(34, drop.y), 1e-4);
    EXPECT_NEAR(le<float>(f, dragged + 4), lon_at(34, drop.x, drop.y), 1e-4);
    EXPECT_NEAR(le<float>(f, plain), 34 + 30 / 79.0f, 1e-4);
    EXPECT_EQ(-le(f, raised + 12) < 100000, true) << "the land cell's vertex is not water";
    EXPECT_EQ(-le(f, plain + 12) >= 100000, true) << "its neighbour is";

    choose_tool(1);
    const screen_point v = place_of(35, 30, 50);
    auto marked = [&] {
        const pixels around = grab(v.x - 5, v.y - 5, v.x + 5, v.y + 5);
        return std::count(around.begin(), around.end(), colour(col_selection)) > 0;
    };
    EXPECT_FALSE(marked());
    EXPECT_TRUE(hold_until(v.x, v.y, marked)) << "the selection mark did not come";
    park();

    step_latitude(-1);   // a selection counts as a change: 35 is left unsaved, 34 is read again
    answer_prompt(prompt_dont);
    park();
    EXPECT_EQ(lat_digits(), digits34);
    EXPECT_EQ(pixel(cell.x, cell.y), land);
    open_tile(-1);
    EXPECT_EQ(pixel(island.x, island.y), ground33);
    open_tile(1);
    choose_tool(4);
    EXPECT_TRUE(press_cell_until_not_water(34, 25, 30)) << "painting did not turn the textures on";
    // The whole map shows its textures, not only the painted cell: a picture, not one colour.
    const pixels sea = grab(200, 100, 240, 140);
    EXPECT_TRUE(std::none_of(sea.begin(), sea.end(), [](unsigned long p) { return p == colour(col_water); }));
    EXPECT_TRUE(std::any_of(sea.begin(), sea.end(), [&](unsigned long p) { return p != sea[0]; }));
    // No dark seams: the pixel columns on the edges between cells are as bright as those in their middles.
    const pixels map = grab(168, 180, 300, 260);
    long edges = 0, middles = 0;
    for (int y = 180; y <= 260; y++)
        for (int i = 2; i < 14; i++) {
            const float w = map_scale * std::cos(lat_at(34, y) * 0.017453293f) / 59;
            auto bright = [&](float x) {
                const unsigned long p = map[(260 - y) * 133 + std::lround(x) - 168];
                return (p >> 16) + (p >> 8 & 0xFF) + (p & 0xFF);
            };
            edges += bright(map_x1 + i * w), middles += bright(map_x1 + (i + 0.5f) * w);
        }
    EXPECT_GT(edges, middles * 0.9) << "seams";
    // The projection at each zoom is the unit tests': here the key only has to reach it.
    EXPECT_TRUE(changes([] { xdo("key plus"); }, 310, 10, 640, 570)) << "no zoom";
    quit({prompt_dont});
    EXPECT_FALSE(fs::exists(in_dir(tile_folder + "+035-119.env")));
    EXPECT_EQ(file_text(tile_folder + "+034-119.env"), f) << "Don't Save wrote the tile";
    // The place, 34 N 119 W, the tool and the screen.
    EXPECT_EQ(file_text("config/Norvane/Norvane Tile-Forger.prf"),
              "I\r\n543 version\r\n34.000000\r\n-119.000000\r\n4\r\n200\r\n0\r\n0\r\n");
}

// Obstacles placed, moved, deleted and given an object; the tile saved by menu and read back.
TEST_F(Flows, TheObstacleJob)
{
    run.expected_alerts = {"The total path to the object cannot exceed 40 characters."};
    const std::string tile = tile_folder + "+033-119.env";
    fs::remove(in_dir(tile));
    const std::string object = std::string(19, 'f') + "/" + std::string(25, 'm');   // 45 characters
    write_bytes(in_dir("additional nav data/custom objects/" + object + ".obj"), "");
    read_menus();
    start_program();
    ASSERT_TRUE(screen_ready());
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
    ASSERT_TRUE(eventually(alert_up)) << "no alert";
    xdo("key Return");
    ASSERT_TRUE(eventually([] { return !alert_up(); })) << "Return left the alert open";
    obstacle_tool(0), xdo("key m");   // the M key: from delete to move,
    drag(300, 300, 320, 280);
    xdo("key m key m");   // then to select and back to delete
    click_on_map(400, 200);

    by_menu(100);
    const size_t size = 76805 + 24 + 24 + 56 + 4 + 20000;
    ASSERT_TRUE(eventually([&] { return fs::exists(in_dir(tile)) && fs::file_size(in_dir(tile)) == size; }));
    EXPECT_TRUE(eventually([] { return fs::exists(in_dir(nav_path)) && fs::exists(in_dir(apt_path)); }));
    const std::string b = file_text(tile);
    const struct { int kind; float x, y, hddz; } records[3] = {{2, 320, 280, 100}, {3, 500, 400, 100}, {8, 350, 450, 0}};
    size_t at = 76805;
    for (const auto& r : records) {
        EXPECT_EQ(le(b, at), r.kind);
        EXPECT_NEAR(le<float>(b, at + 4), lat_at(33, r.y), 1e-3);
        EXPECT_NEAR(le<float>(b, at + 8), lon_at(33, r.x, r.y), 1e-3);
        EXPECT_EQ(le<float>(b, at + 12), r.hddz);
        at += r.kind == 8 ? 56 : 24;
    }
    EXPECT_EQ(b.substr(at - 40, 40), object.substr(0, 40));
    EXPECT_EQ(le(b, at), 99);
}

// A new airport named from the keyboard with a second runway, saved by the
// File menu; the next start comes back to it. Then a new glideslope with its
// slope set on the spinner, saved at the quit's prompt.
TEST_F(Flows, NewAirportAndGlideslopeAreSaved)
{
    write_editor_prefs(202);
    start_program();
    ASSERT_TRUE(screen_ready()) << "the airport screen did not show";
    click(150, 364);   // add, ahead of the first airport, with a runway of its own
    type_name("Newfield");
    click(190, 238);   // add a runway
    click(20, 590), click(40, 564);   // the File menu, and its Save airports
    ASSERT_TRUE(eventually([] { return file_text(apt_path).find("Newfield") != std::string::npos; }))
        << "File > Save airports wrote no apt.dat";
    quit();   // saved: the quit asks nothing
    const std::vector<std::string> lines = lines_from(file_text(apt_path), "Newfield", 4);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "1      0 0 0 0000 Newfield\r");   // in its columns, as the database test has them
    // Two new runways, number 0 without a side, heading 0, 2000 by 100; then the airport that was first.
    EXPECT_EQ(lines[1].substr(0, 2), "10");
    for (int k : {1, 2}) EXPECT_NE(lines[k].find("  0 x   0.00  2000  100 "), std::string::npos) << lines[k];
    EXPECT_NE(lines[3].find("KLAX Los Angeles Intl"), std::string::npos) << lines[3];
    // The next start comes back to this tile, screen and airport (whole
    // degrees without decimals, as the database's save left the stream).
    EXPECT_EQ(file_text("config/Norvane/Norvane Tile-Forger.prf"),
              "I\r\n543 version\r\n33\r\n-119\r\n0\r\n202\r\n0\r\n0\r\n");

    write_editor_prefs(203);
    start_program();
    ASSERT_TRUE(screen_ready()) << "the navaid screen did not show";
    click(41, 238);    // the glideslope lamp
    click(500, 360);   // add, at the end of the glideslopes' run
    type_name("Test GS");
    for (int k = 0; k < 3; k++) click(587, 125);   // the slope spinner's ones place, upper half
    quit({prompt_save});
    const std::string nav = file_text(nav_path);
    const std::vector<std::string> gs = lines_from(nav, "Test GS", 1);
    ASSERT_EQ(gs.size(), 1u);
    std::istringstream fields(gs[0]);
    std::string type, skip, hdng;
    fields >> type >> skip >> skip >> skip >> skip >> hdng;
    EXPECT_EQ(type + " " + hdng, "6 300000.00");   // slope 3.00, heading 0
    // It stands behind the sample's other glideslopes, ahead of the next kind.
    const size_t at = nav.find("Test GS");
    EXPECT_NE(nav.rfind("GS 25L", at), std::string::npos);
    EXPECT_EQ(nav.find("\n6 ", at), std::string::npos);
}

// A save that cannot be written loses nothing: the old file stays byte for
// byte, the warning says why and where, and the quit stays in the editor with
// the edit. Three faults in a row, each taken away after its warning, then a
// save that writes. The tests run as root, whom file modes do not stop: the
// read-only folder and the file that cannot be replaced (a mount point cannot
// be renamed over) are bind mounts, left out where the system refuses them.
bool mount_over(const std::string& rel, const char* options)
{
    const std::string at = "'" + in_dir(rel) + "'";
    return std::system(("mount --bind " + at + " " + at + " 2>/dev/null").c_str()) == 0 &&
           (!*options || std::system(("mount -o remount,bind," + std::string(options) + " " + at).c_str()) == 0);
}
void unmount(const std::string& rel) { std::system(("umount '" + in_dir(rel) + "' 2>/dev/null").c_str()); }

TEST_F(Flows, FailedSavesKeepTheFileAndTheEdit)
{
    const std::string folder = "additional nav data/Earth";
    const struct { const char* warning; std::function<bool()> fault; std::function<void()> undo; } faults[] = {
        {"I could not finish writing the file!",   // no room; the link goes with the failed file
         [] { return fs::create_symlink("/dev/full", in_dir(apt_path + ".saving")), true; }, [] {}},
        {"I could not save the file!", [&] { return mount_over(folder, "ro"); }, [&] { unmount(folder); }},
        {"I could not put the saved file in the place of the old one!", [] { return mount_over(apt_path, ""); },
         [] { unmount(apt_path); }}};
    for (const auto& f : faults) run.expected_alerts.push_back(f.warning);
    write_editor_prefs(202);
    const std::string before = file_text(apt_path);
    start_program();
    ASSERT_TRUE(screen_ready());
    click(150, 364);
    type_name("Keptfield");
    for (const auto& f : faults) {
        if (!f.fault()) {
            std::printf("left out, no bind mount here: %s\n", f.warning);
            continue;
        }
        send_close();
        answer_prompt(prompt_save);
        const bool warned = eventually([&] { return file_text("Error.out").find(f.warning) != std::string::npos; });
        f.undo();
        ASSERT_TRUE(warned) << "no warning: " << f.warning;
        click(400, 220);   // O.K.
        ASSERT_TRUE(eventually([] { return !alert_up(); })) << "O.K. did not close the alert";
        EXPECT_EQ(exit_status(5), -1) << "the quit went on after a failed save";
        EXPECT_EQ(file_text(apt_path), before);
    }
    EXPECT_NE(file_text("Error.out").find(in_dir(apt_path)), std::string::npos) << "the warning names no path";
    quit({prompt_save});
    EXPECT_NE(file_text(apt_path).find("Keptfield"), std::string::npos);
}

}   // namespace
