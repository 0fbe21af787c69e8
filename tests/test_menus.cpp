// The menu file and its failures, where titles and items come to stand, and
// what a press does: open, close, pick, or fall through to the control below.
#include "world_fixture.h"
#include "hl/Hl_graph.h"

#include <cmath>
#include <cstring>

#include <vector>

struct Menus : WorldTest {
    void menus(const std::string& body, const char* version = "1")
    {
        write_file("Norsuite Resources/menus/m.txt", std::string("I\r\n") + version + " menus\r\n\r\n" + body);
        MACIBM_read_menus("m.txt");
    }
    static void press(float x, float y)
    {
        mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = mnw.mouse_down = 1;
        MACIBM_handleclick();
    }
    static std::string box(int m, int i)
    {
        const float b[4] = {mnw.item_x1[m][i], mnw.item_y1[m][i], mnw.item_x2[m][i], mnw.item_y2[m][i]};
        std::string s;
        for (float v : b) s += std::to_string((int)v) + " ";
        return s;
    }
};

// File: Save, a separator, More (the title of a submenu); View: Textures.
const char* const two_menus = "0 File\r\n100 Save\r\n0 -\r\n104 More\r\n\r\n0 View\r\n308 Textures\r\n\r\n"
                              "2 More\r\n309 Flatten water\r\n\r\n\r\n";

TEST_F(Menus, TitlesSideBySideItemsStackedAndASubmenuOnItsItem)
{
    menus(two_menus);
    EXPECT_EQ(mnw.title_x1[1] * 1000 + mnw.title_x2[1], 44068);   // File is 10 to 34, then 10 free
    EXPECT_EQ(mnw.title_y1[0] * 1000 + mnw.title_y2[0], 582600);
    EXPECT_EQ(box(0, 0), "10 570 59 582 ");   // 6 x 4 + 25 wide, 12 high under the bar
    EXPECT_EQ(box(0, 1), "10 568 59 570 ");   // a separator is 2 high
    EXPECT_EQ(box(0, 2), "10 556 59 568 ");
    EXPECT_EQ(mnw.menu_parent[2], 0);
    EXPECT_EQ(box(2, 0), "10 556 113 568 ");   // on the item it hangs from, 13 characters wide
    EXPECT_EQ(mnw.item_cmd[2][0], 309);
    EXPECT_EQ(mnw.title_x1[3], -9999);

    std::string many = "0 Long\r\n";
    for (int i = 0; i < 50; i++) many += "308 x\r\n";
    menus(many + "\r\n\r\n");
    EXPECT_EQ(box(0, 47), "10 6 41 18 ");
    EXPECT_EQ(box(0, 48), "41 570 72 582 ");   // its top would be 6: a second column
    EXPECT_EQ(box(0, 49), "41 558 72 570 ");
}

TEST_F(Menus, BrokenFilesStopTheRunWithTheLineBeingRead)
{
    EXPECT_FATAL_ALERT(MACIBM_read_menus("none.txt"), "Cannot open file!");
    EXPECT_EQ(last_log_line().rfind("MACIBM_alert: Cannot open file! " + root +
                                        "Norsuite Resources/menus/none.txt Trash this copy and re-install Norvane. ,", 0),
              0u);
    EXPECT_FATAL_ALERT(menus(two_menus, "2"), "wrong version");
    const std::pair<std::string, const char*> short_files[3] = {
        {"", "IS A CARRIAGE RETURN AND NOTHING ELSE BEFORE THE FIRST ITEM!"},
        {"\r\n0 File\r\n100 Save\r\n", "ARE AT LEAST THREE CARRIAGE RETURNS AT THE END!"},
        {"\r\n0 File\r\n100 Save\r\n\r\n", "IS A CARRIAGE RETURN AND NOTHING ELSE BETWEEN EACH MENU!"},
    };
    for (const auto& f : short_files) {
        write_file("Norsuite Resources/menus/m.txt", "I\r\n1 menus\r\n" + f.first);
        EXPECT_FATAL_ALERT(MACIBM_read_menus("m.txt"), "File-scanning error!");
        EXPECT_NE(last_log_line().find(std::string("file: menu file, BE SURE THERE ") + f.second), std::string::npos)
            << last_log_line();
    }
}

TEST_F(Menus, APressOpensClosesPicksOrFallsThroughToTheControlBelow)
{
    menus(two_menus);
    mnw.win_id = 0, mnw.open_menu = -1;
    press(20, 590);
    EXPECT_EQ(mnw.open_menu, 0);
    EXPECT_EQ(mnw.mouse_click, 1);   // a press on a title reaches the screen too
    EXPECT_EQ((std::vector<float>{m_x1, m_y1, m_x2, m_y2}), (std::vector<float>{10, 556, 59, 582}));
    press(34, 600);
    EXPECT_EQ(mnw.open_menu, -1);   // the open title closes it

    press(20, 590), press(30, 569);  // the separator
    EXPECT_EQ(mnw.open_menu * 10 + mnw.mouse_click, -9);
    press(20, 590), press(400, 300);
    EXPECT_EQ(mnw.open_menu * 10 + mnw.mouse_click, -9);

    press(20, 590);
    mnw.mouse_x = 50, mnw.mouse_y = 590, mnw.mouse_click = 0;
    MACIBM_menu_hover();   // the mouse alone moves to View
    EXPECT_EQ(mnw.open_menu, 1);
    mnw.mouse_y = 575;
    MACIBM_menu_hover();   // over an item the hover does nothing
    EXPECT_EQ(mnw.open_menu * 10 + msc.show_tex, 10);
    press(60, 575);
    EXPECT_EQ(msc.show_tex, 1);
    EXPECT_EQ(mnw.open_menu + mnw.mouse_click + mnw.mouse_down, -1);   // the pick takes the click

    press(20, 590), press(20, 560);   // More opens the submenu, whose item lies on it
    EXPECT_EQ(mnw.open_menu, 2);
    planey[30][30] = 12;   // one odd corner on flat water
    press(100, 562);
    EXPECT_EQ(planey[30][30], 0);

    mnw.win_id = 996;   // no menus over a modal window
    press(20, 590);
    EXPECT_EQ(mnw.open_menu, -1);
}

// The dot left of the current screen's item, drawn in the light edge colour.
TEST_F(Menus, TheCurrentScreenHasADot)
{
    menus("0 Screen\r\n200 Terrain\r\n201 Obstacles\r\n\r\n\r\n");
    mnw.win_id = 0, mnw.open_menu = -1, to_array = 1;
    press(20, 590);
    for (int screen : {200, 201}) {
        msc.screen = screen;
        std::memset(rgb_array, 0, sizeof rgb_array);
        MACIBM_draw_menus();
        for (int i = 0; i < 2; i++) {
            const unsigned char* dot = rgb_array + ((int)(mnw.item_y1[0][i] + 6) * canvas_w + 16) * 4;
            EXPECT_EQ(dot[3] != 0 && dot[0] == std::lround(col_rgb[6][0] * 255), screen == 200 + i) << screen << i;
        }
    }
    to_array = 0;
}
