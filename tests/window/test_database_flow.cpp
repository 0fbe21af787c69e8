// The airport and navaid jobs as a user does them, on the real program: a new
// airport named from the keyboard with a second runway, saved by the File menu,
// and a new glideslope with its slope set on the spinner, saved at the quit's
// prompt; each read back from its database file.
#include "own_display.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace own_display;
namespace fs = std::filesystem;

namespace {

// Canvas places at an 800 by 600 screen, where a unit is a pixel.
const screen_point add_airport = {150, 600 - 364}, add_runway = {190, 600 - 238};
const screen_point glideslope_lamp = {41, 600 - 238}, add_navaid = {500, 600 - 360};
const screen_point slope_ones_up = {587, 600 - 125};   // the spinner's ones place, upper half
const screen_point prompt_save = {320, 600 - 297};
// The File menu's title, and its second item: Save airports.
const screen_point file_menu = {20, 600 - 590}, save_airports_item = {40, 600 - 564};

struct DatabaseFlow : ::testing::Test {
    void SetUp() override { stage_run(); }
    void TearDown() override { end_run(HasFailure()); }
};

const window_box whole_screen = {0, 0, 800, 600};

void click(screen_point p)
{
    click_at(p);
    usleep(200000);
}

// Takes the selected record's "Untitled" off the edit line and types a name.
void type_name(const char* name)
{
    for (int k = 0; k < 8; k++) xdo("key BackSpace");
    xdo(std::string("type --delay 50 '") + name + "'");
}

std::string file_text(const std::string& rel)
{
    std::ifstream in(in_dir(rel), std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// The lines that are not empty from the one that holds text, up to count of them.
std::vector<std::string> lines_from(const std::string& text, const std::string& holding, int count)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line) && (int)out.size() < count)
        if (line.size() > 1 && (!out.empty() || line.find(holding) != std::string::npos)) out.push_back(line);
    return out;
}

// Closes the window and answers Save at the prompt for the changed database.
void quit_saving()
{
    ASSERT_TRUE(send_close(run.display, run.window));
    usleep(500000);
    click(prompt_save);
    EXPECT_EQ(exit_status(run.program, 300), 0) << "the program did not end after the save";
    run.program = 0;
}

TEST_F(DatabaseFlow, NewAirportWithTwoRunwaysIsSavedByTheFileMenu)
{
    write_editor_prefs(202, 0, 0);
    ASSERT_NO_FATAL_FAILURE(start_xvfb("800x600x24"));
    ASSERT_NO_FATAL_FAILURE(start_program());
    ASSERT_TRUE(screen_ready(whole_screen)) << "the airport screen did not show";
    click(add_airport);   // ahead of the first airport, with a runway of its own
    type_name("Newfield");
    click(add_runway);
    click(file_menu);
    click(save_airports_item);
    park(whole_screen);
    ASSERT_TRUE(eventually([] { return file_text("additional nav data/Earth/apt.dat").find("Newfield") != std::string::npos; }))
        << "File > Save airports wrote no apt.dat";
    // Saved: the quit asks nothing and ends the run.
    ASSERT_TRUE(send_close(run.display, run.window));
    EXPECT_EQ(exit_status(run.program, 300), 0);
    run.program = 0;

    const std::string apt = file_text("additional nav data/Earth/apt.dat");
    const std::vector<std::string> lines = lines_from(apt, "Newfield", 4);
    ASSERT_EQ(lines.size(), 4u) << apt.substr(0, 400);
    std::istringstream head(lines[0]);
    std::string code, elev, twr, bld, id, name;
    head >> code >> elev >> twr >> bld >> id >> name;
    EXPECT_EQ(code + " " + elev + " " + id + " " + name, "1 0 0000 Newfield");
    // Two new runways of 2000 by 100, then the airport that was first.
    EXPECT_EQ(lines[1].substr(0, 2), "10");
    EXPECT_NE(lines[1].find(" 2000 "), std::string::npos) << lines[1];
    EXPECT_NE(lines[2].find(" 2000 "), std::string::npos) << lines[2];
    EXPECT_NE(lines[3].find("KLAX Los Angeles Intl"), std::string::npos) << lines[3];
    // The next start comes back to this tile, screen and airport (whole
    // degrees without decimals, as the database's save left the stream).
    EXPECT_EQ(file_text("config/Norvane/Norvane Tile-Forger.prf"),
              "I\r\n543 version\r\n33\r\n-119\r\n0\r\n202\r\n0\r\n0\r\n");
}

TEST_F(DatabaseFlow, NewGlideslopeKeepsItsSlope)
{
    write_editor_prefs(203, 0, 0);
    ASSERT_NO_FATAL_FAILURE(start_xvfb("800x600x24"));
    ASSERT_NO_FATAL_FAILURE(start_program());
    ASSERT_TRUE(screen_ready(whole_screen)) << "the navaid screen did not show";
    click(glideslope_lamp);
    click(add_navaid);   // at the end of the glideslopes' run
    type_name("Test GS");
    for (int k = 0; k < 3; k++) click(slope_ones_up);
    park(whole_screen);
    quit_saving();

    const std::string nav = file_text("additional nav data/Earth/nav.dat");
    const std::vector<std::string> lines = lines_from(nav, "Test GS", 1);
    ASSERT_EQ(lines.size(), 1u) << nav;
    std::istringstream fields(lines[0]);
    std::string type, lat, lon, elev, frq, hdng;
    fields >> type >> lat >> lon >> elev >> frq >> hdng;
    EXPECT_EQ(type, "6");
    EXPECT_EQ(std::stof(hdng), 300000.0f);   // slope 3.00, heading 0
    // It stands behind the sample's other glideslopes, ahead of the next kind.
    const size_t at = nav.find("Test GS");
    EXPECT_NE(nav.rfind("GS 25L", at), std::string::npos);
    EXPECT_EQ(nav.find("\n6 ", at), std::string::npos);
}

// A save that cannot be written loses nothing: the old file stays byte for
// byte, the warning says why, and the quit stays in the editor with the edit,
// which a later save then writes once undo (the disk's fault taken away) has run.
void failed_save_keeps_file_and_edit(const char* warning, const std::function<void()>& undo)
{
    const std::string apt_path = "additional nav data/Earth/apt.dat";
    const std::string before = file_text(apt_path);
    ASSERT_NO_FATAL_FAILURE(start_xvfb("800x600x24"));
    ASSERT_NO_FATAL_FAILURE(start_program());
    ASSERT_TRUE(screen_ready(whole_screen));
    click(add_airport);
    type_name("Keptfield");
    park(whole_screen);

    ASSERT_TRUE(send_close(run.display, run.window));
    usleep(500000);
    click(prompt_save);
    ASSERT_TRUE(eventually([&] { return file_text("Error.out").find(warning) != std::string::npos; }))
        << "no warning of the failed save";
    xdo("key Return");   // O.K.
    usleep(500000);
    EXPECT_EQ(exit_status(run.program, 10), -1) << "the quit went on after a failed save";
    EXPECT_EQ(file_text(apt_path), before);
    EXPECT_NE(file_text("Error.out").find(in_dir(apt_path)), std::string::npos) << "the warning names no path";

    undo();
    quit_saving();
    EXPECT_NE(file_text(apt_path).find("Keptfield"), std::string::npos);
}

// The tests run as root, whom file modes do not stop: a folder is made
// read-only, and a file made one that cannot be replaced, by mounts.
bool mount_over(const std::string& rel, const char* options)
{
    const std::string at = "'" + in_dir(rel) + "'";
    return std::system(("mount --bind " + at + " " + at + " 2>/dev/null").c_str()) == 0 &&
           (!*options || std::system(("mount -o remount,bind," + std::string(options) + " " + at).c_str()) == 0);
}

void unmount(const std::string& rel) { std::system(("umount '" + in_dir(rel) + "' 2>/dev/null").c_str()); }

TEST_F(DatabaseFlow, FailedSaveOnAFullDiskKeepsTheFileAndTheEdit)
{
    write_editor_prefs(202, 0, 0);
    fs::create_symlink("/dev/full", in_dir("additional nav data/Earth/apt.dat.saving"));   // no room
    failed_save_keeps_file_and_edit("Is the disk full?", [] {});   // the link goes with the failed file
}

TEST_F(DatabaseFlow, FailedSaveInAReadOnlyFolderKeepsTheFileAndTheEdit)
{
    write_editor_prefs(202, 0, 0);
    const std::string folder = "additional nav data/Earth";
    if (!mount_over(folder, "ro")) GTEST_SKIP() << "no read-only folder: this system refuses the test a bind mount";
    failed_save_keeps_file_and_edit("I could not save the file!", [&] { unmount(folder); });
    unmount(folder);   // when the run stopped short of its own
}

// A file that is a mount point cannot be renamed over: the new file is whole,
// the last step fails.
TEST_F(DatabaseFlow, FailedRenameKeepsTheFileAndTheEdit)
{
    write_editor_prefs(202, 0, 0);
    const std::string file = "additional nav data/Earth/apt.dat";
    if (!mount_over(file, "")) GTEST_SKIP() << "no file to fail a rename: this system refuses the test a bind mount";
    failed_save_keeps_file_and_edit("I could not put the saved file in the place of the old one!",
                                     [&] { unmount(file); });
    unmount(file);
}

}   // namespace
