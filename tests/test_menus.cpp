// The menu file and its failures, and the layout. (Picking each command
// by menu with a real mouse: Flows.EveryCommandByMenu in tests/window.)
#include "world_fixture.h"

struct Menus : WorldTest {
    void menus(const std::string& body, const char* version = "1")
    {
        write_file("Norsuite Resources/menus/m.txt", std::string("I\r\n") + version + " menus\r\n\r\n" + body);
        MACIBM_read_menus("m.txt");
        mnw.win_id = 0, mnw.open_menu = -1;
    }
    static std::string box(int m, int i)
    {
        return std::to_string((int)mnw.item_x1[m][i]) + " " + std::to_string((int)mnw.item_y1[m][i]) + " " +
               std::to_string((int)mnw.item_x2[m][i]) + " " + std::to_string((int)mnw.item_y2[m][i]);
    }
};

// File: Save, a separator, More (the title of a submenu); View: Textures.
const char* const two_menus = "0 File\r\n100 Save\r\n0 -\r\n104 More\r\n\r\n0 View\r\n308 Textures\r\n\r\n"
                              "2 More\r\n309 Flatten water\r\n\r\n\r\n";

TEST_F(Menus, TitlesSideBySideItemsStackedInColumnsAndASubmenuOnItsItem)
{
    menus(two_menus);
    EXPECT_EQ(mnw.title_x1[1] * 1000 + mnw.title_x2[1], 44068);   // File is 10 to 34, then 10 free
    EXPECT_EQ(box(0, 0) + ", " + box(0, 1) + ", " + box(0, 2), "10 570 59 582, 10 568 59 570, 10 556 59 568");
    EXPECT_EQ(box(2, 0), "10 556 113 568");   // on the item it hangs from
    std::string many = "0 Long\r\n";
    for (int i = 0; i < 50; i++) many += "308 x\r\n";
    menus(many + "\r\n\r\n");
    EXPECT_EQ(box(0, 47) + ", " + box(0, 48), "10 6 41 18, 41 570 72 582");   // item 48's top would be 6
}

TEST_F(Menus, MissingFileOrWrongVersionStopsTheRun)
{
    EXPECT_FATAL_ALERT(MACIBM_read_menus("none.txt"), "Cannot open file!");
    EXPECT_EQ(last_log_line().rfind("MACIBM_alert: Cannot open file! " + root +
                                        "Norsuite Resources/menus/none.txt Trash this copy and re-install Norvane. ,", 0),
              0u);
    EXPECT_FATAL_ALERT(menus(two_menus, "2"), "The following file is the wrong version");
}
