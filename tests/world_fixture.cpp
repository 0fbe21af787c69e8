#include "world_fixture.h"
#include "app/Navaids.h"
#include "hl/Hl_graph.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

void WorldTest::SetUp()
{
    // Fatal alerts are tested in a forked child that shares this folder, so
    // the child's log line can be read here afterwards.
    GTEST_FLAG_SET(death_test_style, "fast");
    char folder[] = "/tmp/tf_world_XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    root = std::string(folder) + "/";
    ASSERT_EQ(chdir(folder), 0);
    // The log is opened again in this folder by the first alert.
    if (err.is_open()) err.close();
    inf_use = 0;
    fill_constants();
    kept_app_path = app_path, kept_ter_path = ter_path;
    C_to_C(root.c_str(), app_path);
    C_plus_C(app_path, "additional nav data/custom terrain textures/", ter_path);
    set_msc_defaults();
    lay_flat_grid();
    clear_feature_tables();
    std::memset(planetex, 0, sizeof planetex);
    std::memset(planest, 0, sizeof planest);
    apt_wrl_max = rwy_wrl_max = nav_wrl_max = -1;
    // The main window at the canvas's origin, the mouse off it and at rest,
    // whatever a test before left.
    mnw.win_id = 0, mnw.win_x = mnw.win_y = 0;
    mnw.mouse_x = mnw.mouse_y = -50, mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
    g_cs_input[0] = 0;   // the edit line empty
    nav_list_type = 2;   // the navaid screen on its first kind
    to_array = 0;
    std::filesystem::create_directories(root + "additional nav data/Earth/+030-120/");
}

void WorldTest::TearDown()
{
    if (ouf.is_open()) ouf.close();
    inf_close();
    C_to_C(kept_app_path.c_str(), app_path);
    C_to_C(kept_ter_path.c_str(), ter_path);
    std::error_code failed;
    std::filesystem::remove_all(root, failed);
    EXPECT_FALSE(failed) << failed.message();
}

void WorldTest::write_file(const std::string& relative, const std::string& bytes)
{
    const std::string path = root + relative;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

std::string WorldTest::read_file(const std::string& relative)
{
    std::ifstream in(root + relative, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string WorldTest::database(const std::string& head_text, const std::string& body)
{
    return "I\r\n500 " + head_text + "\r\n" + body + "99\r\n";
}
