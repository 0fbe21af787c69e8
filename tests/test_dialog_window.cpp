// The file dialog on the real window: its loop driven by a scripted user, and
// what it draws.
//
// The dialog pumps its own frames, so the script rides on the pump's clock: the
// pump reads platform_clock_ms once a frame, after that frame's events are
// taken. The test's clock pushes the next frame's events into the platform's
// queue there, and notes what the previous step left behind.
#include "window_fixture.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"

#include <SDL2/SDL.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// ---- the scripted user ---------------------------------------------------------------------

// One step of the user: 'c' click (a press, and the release in the next frame),
// 'p' press, 'm' move or 'r' release at window-relative (x, y), or 'k' a key
// by its key code.
// After each step, what the dialog shows is recorded. A frame of the dialog's
// loop takes the input of one step, or of half a click.
struct step { char kind; float x = 0, y = 0; int key = 0, step_end = 1; };
using script = std::vector<step>;

// The boxes of the dialog, as a user aims at them, and its origin on an 800 by 600 display.
const float cancel_x = 150, cancel_y = 475, strip_x = 303, list_x = 100, row0_y = 432;
const float dlg_x = 240, dlg_y = 52;

static script frames;
static size_t clock_calls;
static std::vector<std::string> after;   // after[k]: what step k left
static int overran;
static long long fake_ms;
static std::string start_folder;
static int first_frame_items;   // the items the dialog's first frame draws

// The frame's input into the platform's queue: the mouse moves to (x, y) before
// its button goes down or up there.
static void feed(const step& f)
{
    if (f.kind == 'k') return platform_push_key_code(f.key);
    push_mouse(SDL_MOUSEMOTION, f.x + dlg_x, f.y + dlg_y);
    if (f.kind != 'm') push_mouse(f.kind == 'p' ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP, f.x + dlg_x, f.y + dlg_y);
}

// What the user sees after a step, as "folder first-item items": wrk_path,
// "./" for the start folder, the first row's item (0 with no items) and their number.
static std::string what_is_shown()
{
    std::string f = wrk_path;
    f = f.rfind(start_folder, 0) == 0 ? "./" + f.substr(start_folder.size()) : f;
    return f + " " + std::to_string(g_num_items ? g_item_top : 0) + " " + std::to_string(g_num_items);
}

// Frame k's events were taken just before this call, frame k - 1 is handled.
static long long scripted_clock()
{
    fake_ms += 20;
    const size_t k = clock_calls++;
    if (k == 0) first_frame_items = g_num_items;
    if (k >= 1 && k - 1 < frames.size() && frames[k - 1].step_end) after.push_back(what_is_shown());
    if (k + 1 < frames.size()) feed(frames[k + 1]);
    if (k < frames.size()) return fake_ms;
    overran = 1;   // still open after the script: Cancel, and if that fails, window 0
    if (k > frames.size() + 4) mnw.win_id = 0;
    feed({'p', cancel_x, cancel_y, 0, 0});
    return fake_ms;
}

// The start folder of the texture dialog: the folder "Sub" (item 0), the files
// f00.bmp to f57.bmp and a name of 31 characters (items 1 to 59), the folder
// "zz" (item 60); a name of 32 characters and notes.txt are left out.
struct DialogLoop : ScriptedTest {
    std::string scratch;   // removed afterwards
    char name[dlg_path_len] = "keep.bmp", path[dlg_path_len] = "keep/path";

    void SetUp() override
    {
        ScriptedTest::SetUp();
        start_script(scripted_clock);
        scratch = "/tmp/tf_dialog_" + std::to_string(getpid()), start_folder = scratch + "/textures/";
        for (const char* f : {"Sub/Deeper", "zz"}) std::filesystem::create_directories(start_folder + f);
        for (const char* f : {"Sub/inner.bmp", "zz/a.bmp", "zz/b.bmp", "notes.txt"}) std::ofstream{start_folder + f};
        for (int k = 100; k < 158; k++) std::ofstream{start_folder + "f" + std::to_string(k).substr(1) + ".bmp"};
        std::ofstream{start_folder + "f58" + std::string(24, 'y') + ".bmp"};   // 31 characters: listed
        std::ofstream{start_folder + "f59" + std::string(25, 'y') + ".bmp"};   // 32: too long for a record
        C_to_C(start_folder.c_str(), ter_path);
    }
    void TearDown() override
    {
        ScriptedTest::TearDown();
        std::filesystem::remove_all(scratch);
    }

    // Runs the dialog on the script, which must close it.
    int run(int win_id, const script& s)
    {
        frames.clear();
        for (const step& st : s) {
            if (st.kind == 'c') frames.push_back({'p', st.x, st.y, 0, 0});
            frames.push_back({st.kind == 'c' ? 'r' : st.kind, st.x, st.y, st.key});
        }
        clock_calls = 0, overran = 0;
        after.clear();
        feed(frames[0]);
        const int result = MACIBM_opensave(win_id, ftype_ter_tex, name, path);
        EXPECT_EQ(overran, 0) << "the dialog outlived its script";
        EXPECT_EQ(mnw.win_id, 0);
        return result;
    }
};

using seen = std::vector<std::string>;

// Going up a level goes back the way into folders came, and no further than
// the folder the dialog started in; a dialog opened again starts there, from
// its first frame.
TEST_F(DialogLoop, GoingUpStopsAtTheStartFolderWhereEveryDialogStarts)
{
    const float up_x = 150, up_y = 454;
    auto open_files = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto open_before = open_files();
    EXPECT_EQ(run(win_open_dialog, {{'c', list_x, row0_y}, {'c', list_x, row0_y}, {'c', up_x, up_y}, {'c', up_x, up_y},
                                    {'c', up_x, up_y}, {'c', cancel_x, cancel_y}}), 0);
    EXPECT_EQ(after, (seen{"./Sub/ 0 2", "./Sub/Deeper/ 0 0", "./Sub/ 0 2", "./ 0 61", "./ 0 61"}));
    EXPECT_EQ(g_item_bot, 39) << "the list's 406 units hold forty rows of 10";
    EXPECT_EQ(run(win_save_dialog, {{'k', 0, 0, 'S'}, {'k', 0, 0, 0x0D}}), 1);   // the S key after the name given, and Return
    EXPECT_EQ(std::string(name) + " " + path, "keep.bmps " + start_folder + "keep.bmps");
    // Left in zz, a dialog opened again shows the start folder from its first frame.
    EXPECT_EQ(run(win_open_dialog, {{'c', strip_x, 34}, {'c', list_x, row0_y}, {'c', cancel_x, cancel_y}}), 0);
    EXPECT_EQ(after.back().substr(0, 5), "./zz/");
    // Pressed below the strip and held into it: a unit above its end, 60 * 391 / 392 is item 59.
    // Let go, the list no longer follows the mouse.
    run(win_open_dialog,
        {{'p', strip_x, 443}, {'m', strip_x, 42}, {'r', strip_x, 42}, {'m', strip_x, 300}, {'c', cancel_x, cancel_y}});
    EXPECT_EQ(first_frame_items, 61);
    EXPECT_EQ(after[0] + after[1] + after[3], "./ 0 61./ 59 61./ 59 61");
    EXPECT_TRUE(std::is_sorted(g_name, g_name + 61, [](auto a, auto b) { return std::strcmp(a, b) < 0; }));
    for (int k = 0; k < 61; k++) EXPECT_EQ(g_path[k], start_folder + g_name[k]) << "the sort moves each path with its name";
    EXPECT_EQ(open_files(), open_before) << "folders listed and left open";
}

// ---- what the dialog draws --------------------------------------------------------------------

// The dialog is drawn with no screen behind it, and closed afterwards.
struct DialogPicture : WindowTest {
    int kept_screen = msc.screen;
    void TearDown() override { MACIBM_startwind(0), msc.screen = kept_screen, WindowTest::TearDown(); }
};

// Draws the dialog window win_id into rgb_array, so that every pixel tells who
// wrote it: the items (name, folder) with item top in the first row, and the typed line.
static void draw(int win_id, int file_type, std::vector<std::pair<const char*, int>> items, int top,
                 const char* typed = "")
{
    msc.screen = 0;
    MACIBM_startwind(win_id);
    std::strcpy(g_cs_input, typed);
    g_file_type = file_type, g_num_items = (int)items.size(), g_item_top = top, g_item_bot = g_num_items - 1;
    for (int k = 0; k < g_num_items; k++) C_to_C(items[k].first, g_name[k]), g_is_folder[k] = items[k].second;
    OGL_assigncolor(56, 1.0f, 0.0f, 1.0f);   // the cursor's pulse, told apart from all else
    baked(opensave_update);
}

TEST_F(DialogPicture, LabelCoversTheUpButtonFoldersHaveIconsTheSaveDialogANameLine)
{
    draw(win_open_dialog, ftype_ter_tex, {{"Sub", 1}, {"a.bmp", 0}, {"zz", 1}}, 0);
    // The label strip, window (11, 448) 299 by 13: black and the label only.
    const pixel_set label = stamped("'custom terrain textures' folder", 255, 503);
    EXPECT_EQ(written(78, 251, 500, 299, 13), label);
    EXPECT_EQ(written(30, 251, 500, 299, 13).size(), 299u * 13 - label.size());
    // Rows 10 apart from window y 429, folders in their colour with an icon beside them.
    EXPECT_EQ(written(78, 270, 481, 40, 7), stamped("Sub", 270, 481));
    EXPECT_EQ(written(65, 270, 471, 40, 7), stamped("a.bmp", 270, 471));
    EXPECT_TRUE(written(78, 255, 481, 11, 8).size() > 20 && written(78, 255, 471, 11, 8).empty());
    EXPECT_EQ(written(78, 255, 481, 1, 6), rect_pixels(255, 481, 1, 6)) << "the icon's left side";
    EXPECT_EQ(std::vector<int>(px_at(rgb_array, 255, 481), px_at(rgb_array, 255, 481) + 3), (std::vector<int>{255, 255, 51}));   // yellow
    EXPECT_EQ(written(30, 300, 90, 200, 300).size(), 200u * 300);   // the list's black below its rows
    // The knob's face at the top of the strip for the first item, window y
    // 434 - 7, at the bottom for the last.
    EXPECT_EQ(written(67, 543, 485, 1, 1).size(), 1u);
    // Its double bevel: two light columns on the left and rows on top, two
    // dark columns on the right and rows at the bottom.
    EXPECT_EQ(written(65, 537, 481, 2, 8), rect_pixels(537, 481, 2, 8));
    EXPECT_EQ(written(69, 548, 481, 2, 8), rect_pixels(548, 481, 2, 8));
    EXPECT_EQ(written(65, 539, 490, 9, 2), rect_pixels(539, 490, 9, 2));
    EXPECT_EQ(written(69, 539, 479, 9, 2), rect_pixels(539, 479, 9, 2));
    draw(win_open_dialog, ftype_ter_tex, {{"Sub", 1}, {"a.bmp", 0}, {"zz", 1}}, 2);
    EXPECT_EQ(written(67, 537, 80, 13, 23), rect_pixels(539, 89, 9, 9));

    // Without a label the up button shows; the save dialog has the name line
    // with the cursor after the typed name; with one item, no knob.
    draw(win_save_dialog, ftype_all, {{"only", 0}}, 0, "ab");
    EXPECT_EQ(written(30, 251, 500, 299, 13), stamped("Go up a level", 362, 503));
    EXPECT_EQ(written(65, 251, 63, 299, 13), stamped("ab", 255, 66));
    EXPECT_EQ(written(56, 251, 63, 299, 13), rect_pixels(268, 65, 1, 9));
    EXPECT_EQ(written(30, 251, 63, 299, 13).size(), 299u * 13 - stamped("ab", 255, 66).size() - 9);   // black else
    // The buttons stand out, lit above and dark below; the wells sink, the other
    // way round: the two rows under the up button, under the name line and under the list.
    EXPECT_EQ(written(col_dark_edge, 251, 498, 299, 2), rect_pixels(251, 498, 299, 2));
    EXPECT_EQ(written(col_light_edge, 251, 61, 299, 2), rect_pixels(251, 61, 299, 2));
    EXPECT_EQ(written(col_light_edge, 251, 85, 282, 2), rect_pixels(251, 85, 282, 2));
    EXPECT_EQ(written(67, 537, 87, 13, 400).size(), 0u);
}
