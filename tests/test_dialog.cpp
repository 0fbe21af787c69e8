// The file dialog's list without a window: which entries it takes, how the
// folder scan counts folders, cuts off and sorts.
#include "world_fixture.h"

#include <sys/stat.h>
#include <vector>

class DialogList : public WorldTest {
protected:
    std::string folder;   // the folder on display, with its closing '/'

    void SetUp() override
    {
        WorldTest::SetUp();
        folder = root + "list/";
        mkdir(folder.c_str(), 0755);
        C_to_C(folder.c_str(), wrk_path);
    }
    std::vector<std::string> listed(int type)
    {
        g_num_items = GetDirItems(type);
        return std::vector<std::string>(g_name, g_name + g_num_items);
    }
    std::vector<int> folder_flags() { return std::vector<int>(g_is_folder, g_is_folder + g_num_items); }
};

using strings = std::vector<std::string>;

TEST_F(DialogList, TakeitGoesByTheLastThreeLettersAndTakesEveryFolder)
{
    const struct { const char* name; int type, is_folder, taken; } rows[] = {
        {"TREE.BMP", 151, 0, 1}, {"treebmp", 151, 0, 1}, {"tree.Bmp", 151, 0, 0}, {"mp", 151, 0, 0}, {".", 151, 1, 0},
        {"..", 157, 1, 0}, {"hut.obj", 152, 0, 1}, {"hut.bmp", 152, 0, 0}, {"plane.ACF", 147, 0, 1}, {"x", 148, 0, 1},
        {"plane.acf", 146, 0, 0}, {"tree.bmp", 150, 0, 0}, {"folder", 150, 1, 1}, {"tree.bmp", 0, 0, 0},
    };
    for (const auto& r : rows)
        EXPECT_EQ(takeit(r.name, r.type, r.is_folder), r.taken)
            << r.name << " type " << r.type << " folder " << r.is_folder;
}

TEST_F(DialogList, ScanFiltersThenSortsCapitalsFirstWithFoldersAmongFiles)
{
    for (const char* name : {"beta.bmp", "notes.txt", "alpha.bmp", "mixed.Bmp", "Gamma.bmp", "xbmp"})
        write_file("list/" + std::string(name), "x");
    for (const char* name : {"Sub", "deep"}) ASSERT_EQ(mkdir((folder + name).c_str(), 0755), 0);
    const std::string longest = std::string(28, 'y') + "bmp";   // 31 characters fit a record, 32 do not
    write_file("list/" + longest, "x");
    write_file("list/y" + longest, "x");
    EXPECT_EQ(listed(151), (strings{"Gamma.bmp", "Sub", "alpha.bmp", "beta.bmp", "deep", "xbmp", longest}));
    EXPECT_EQ(folder_flags(), (std::vector<int>{0, 1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(std::string(g_path[1]), folder + "Sub");

    EXPECT_EQ(listed(157), (strings{"Gamma.bmp", "Sub", "alpha.bmp", "beta.bmp", "deep", "mixed.Bmp",
                                    "notes.txt", "xbmp", longest}));
    EXPECT_EQ(listed(ftype_object), (strings{"Sub", "deep"}));   // folders only when nothing matches
    EXPECT_EQ(listed(12345), (strings{"Sub", "deep"}));
    C_to_C((folder + "gone/").c_str(), wrk_path);
    EXPECT_EQ(listed(157), strings{});   // a folder that can't be listed
}
