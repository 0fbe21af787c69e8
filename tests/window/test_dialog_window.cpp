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
#include <string>
#include <vector>

// ---- the scripted user ---------------------------------------------------------------------

// One frame of input. A step of the script is one or more frames; the last
// frame of a step is marked, and what the dialog shows after it is recorded.
struct frame_input {
    char kind;   // 'p' press, 'r' release, 'm' move, 'k' key
    float x, y;  // window-relative canvas units
    int key;
    int step_end;
};

using script = std::vector<frame_input>;

// A press and, in the next frame, the release.
static script click(float x, float y) { return {{'p', x, y, 0, 0}, {'r', x, y, 0, 1}}; }
static script press(float x, float y) { return {{'p', x, y, 0, 1}}; }
static script move_to(float x, float y) { return {{'m', x, y, 0, 1}}; }
static script release() { return {{'r', 0, 0, 0, 1}}; }
static script key(int sym) { return {{'k', 0, 0, sym, 1}}; }

static script steps(std::initializer_list<script> parts)
{
    script all;
    for (const script& s : parts) all.insert(all.end(), s.begin(), s.end());
    return all;
}

// What the user sees after a step: wrk_path below the start folder, the first
// row's item and the number of items, as "folder top items".
using seen = std::string;

const float dlg_x = 240, dlg_y = 52;   // the dialog's origin on an 800 by 600 display

static script frames;
static size_t clock_calls;
static std::vector<seen> after;   // after[k]: what step k left
static int overran;
static long long fake_ms;
static std::string start_folder;

static void push_mouse(Uint32 type, float x, float y)
{
    SDL_Event e = {};
    e.type = type;
    const int px = (int)(x + dlg_x), py = (int)(600 - (y + dlg_y));
    if (type == SDL_MOUSEMOTION) {
        e.motion.x = px;
        e.motion.y = py;
    } else {
        e.button.button = SDL_BUTTON_LEFT;
        e.button.x = px;
        e.button.y = py;
    }
    SDL_PushEvent(&e);
}

static void feed(const frame_input& f)
{
    if (f.kind == 'p' || f.kind == 'm') push_mouse(SDL_MOUSEMOTION, f.x, f.y);
    if (f.kind == 'p') push_mouse(SDL_MOUSEBUTTONDOWN, f.x, f.y);
    if (f.kind == 'r') push_mouse(SDL_MOUSEBUTTONUP, f.x, f.y);
    if (f.kind == 'k') {
        SDL_Event e = {};
        e.type = SDL_KEYDOWN;
        e.key.keysym.sym = f.key;
        SDL_PushEvent(&e);
    }
}

static seen what_is_shown()
{
    std::string folder = wrk_path;
    folder = folder.rfind(start_folder, 0) == 0 ? folder.substr(start_folder.size()) : "<" + folder + ">";
    // With no items the first row stands for none, and its index is of no account.
    const int top = g_num_items ? g_item_top : 0;
    return (folder.empty() ? "." : folder) + " " + std::to_string(top) + " " + std::to_string(g_num_items);
}

// Frame k's events were taken just before this call, frame k - 1 is handled.
static long long scripted_clock()
{
    fake_ms += 20;
    const size_t k = clock_calls++;
    if (k >= 1 && k - 1 < frames.size() && frames[k - 1].step_end) after.push_back(what_is_shown());
    if (k + 1 < frames.size()) feed(frames[k + 1]);
    if (k < frames.size()) return fake_ms;
    overran = 1;   // still open after the script: Cancel, and if that fails, window 0
    if (k > frames.size() + 4) mnw.win_id = 0;
    feed({'p', 150, 475, 0, 0});
    return fake_ms;
}

// Only what a test pushes: the display's own pointer and window stay out.
static int pushed_only(void*, SDL_Event* e)
{
    if (e->type == SDL_MOUSEMOTION || e->type == SDL_MOUSEBUTTONDOWN || e->type == SDL_MOUSEBUTTONUP)
        return e->button.windowID == 0;
    return e->type != SDL_WINDOWEVENT || e->window.windowID == 0;
}

// The boxes of the dialog, as a user aims at them.
const float cancel_x = 150, cancel_y = 475;
const float up_x = 150, up_y = 454;
const float strip_x = 303;
const float list_x = 100;
const float row0_y = 432;   // middle of the first row

// ---- the folder on display ------------------------------------------------------------------

// The start folder of the texture dialog: the folder "Sub" (item 0), the files
// f00.bmp to f58.bmp (items 1 to 59) and the folder "zz" (item 60).
class DialogLoop : public WindowTest {
protected:
    std::string kept_ter_path;
    std::string scratch;   // removed afterwards
    int kept_screen = 0;
    int kept_first_update = 0;
    float kept_time = 0;
    char name[dlg_path_len] = "keep.bmp";
    char path[dlg_path_len] = "keep/path";

    void SetUp() override
    {
        WindowTest::SetUp();
        SDL_SetEventFilter(pushed_only, nullptr);
        platform_take_messages();
        MACIBM_restart_pump();
        platform_clock_ms = scripted_clock;
        kept_first_update = have_done_first_update;
        kept_time = mnw.time;
        have_done_first_update = 1;
        kept_ter_path = ter_path;
        kept_screen = msc.screen;
        msc.screen = 0;   // no panel to load when the dialog closes
        mnw.win_id = 0;
        char folder[] = "/tmp/tf_dialog_XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        scratch = folder;
        start_folder = scratch + "/textures/";
        make({"Sub/", "Sub/Deeper/", "zz/"});
        touch({"Sub/inner.bmp", "zz/a.bmp", "zz/b.bmp", "notes.txt"});
        for (int k = 0; k < 59; k++) touch({"f" + std::string(k < 10 ? "0" : "") + std::to_string(k) + ".bmp"});
        C_to_C(start_folder.c_str(), ter_path);
    }
    void TearDown() override
    {
        // The pump as it was found: the other tests of the pump start from it.
        platform_clock_ms = platform_monotonic_ms;
        MACIBM_restart_pump();
        have_done_first_update = kept_first_update;
        mnw.time = kept_time;
        SDL_SetEventFilter(nullptr, nullptr);
        C_to_C(kept_ter_path.c_str(), ter_path);
        msc.screen = kept_screen;
        mnw.win_id = 0;
        std::filesystem::remove_all(scratch);
    }
    void make(std::initializer_list<std::string> folders)
    {
        std::filesystem::create_directories(start_folder);
        for (const std::string& f : folders) std::filesystem::create_directories(start_folder + f);
    }
    void touch(std::initializer_list<std::string> files)
    {
        for (const std::string& f : files) std::fclose(std::fopen((start_folder + f).c_str(), "w"));
    }

    // Runs the dialog on the script. The dialog must close in the script's last
    // step: one record for each step before it.
    int run(int win_id, const script& s, int type = ftype_ter_tex)
    {
        frames = s;
        clock_calls = 0;
        after.clear();
        overran = 0;
        feed(frames[0]);
        const int result = MACIBM_opensave(win_id, type, name, path);
        int step_count = 0;
        for (const frame_input& f : frames) step_count += f.step_end;
        EXPECT_EQ(overran, 0) << "the dialog outlived its script";
        EXPECT_EQ((int)after.size(), step_count - 1) << "the dialog closed before the script's last step";
        EXPECT_EQ(mnw.win_id, 0);
        return result;
    }
};

TEST_F(DialogLoop, UpALevelStopsAtTheStartFolderAndCancelKeepsTheBuffers)
{
    const int result = run(win_open_dialog, steps({key(SDLK_RETURN),          // closes only a save dialog
                                                   click(up_x, up_y),
                                                   click(list_x, row0_y),    // into Sub
                                                   click(list_x, row0_y),    // into Deeper
                                                   click(list_x, row0_y),    // an empty list
                                                   click(310, 461),          // the zone's far corner
                                                   click(10, 447),           // and its near one
                                                   click(up_x, up_y),
                                                   click(311, up_y),         // just outside
                                                   click(311, 482),          // beside Cancel
                                                   click(10, 483),           // above it
                                                   click(310, 482)}));       // its far corner
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(name, "keep.bmp");
    EXPECT_STREQ(path, "keep/path");
    const std::vector<seen> expected = {". 0 61", ". 0 61",        "Sub/ 0 2", "Sub/Deeper/ 0 0", "Sub/Deeper/ 0 0",
                                        "Sub/ 0 2", ". 0 61", ". 0 61", ". 0 61",          ". 0 61", ". 0 61"};
    EXPECT_EQ(after, expected);
    EXPECT_EQ(std::string(wrk_path), start_folder);
}

TEST_F(DialogLoop, StripScrollsWhileTheButtonIsHeldAnywhere)
{
    const int result = run(win_open_dialog, steps({press(strip_x, 433),
                                                   move_to(strip_x, 240),   // held: half way
                                                   move_to(list_x, 41),     // off the strip, still held
                                                   move_to(list_x, 10),     // past the end
                                                   release(),
                                                   move_to(strip_x, 300),   // button up: no scroll
                                                   click(strip_x, 140),     // a click alone scrolls
                                                   click(cancel_x, cancel_y)}));
    EXPECT_EQ(result, 0);
    // 60 * (433 - y) / 392, truncated; the last item stands in the first row at most.
    EXPECT_EQ(after, (std::vector<seen>{". 0 61", ". 29 61", ". 60 61", ". 60 61", ". 60 61", ". 60 61", ". 44 61"}));
}

// After a step that scrolls the list to a given first item, a click at a given
// height chooses the file of that row, or enters the folder.
TEST_F(DialogLoop, RowBandsAreTenHighWithThreeMoreAboveTheFirst)
{
    struct pick {
        float strip_y, y;
        std::string chosen;
    };
    const pick picks[] = {
        {0, 427, "f00.bmp"},    // the second row begins at 427
        {0, 417, "f01.bmp"},
        {0, 337, "f09.bmp"},
        {0, 40, "f38.bmp"},     // row 40 of the list
        {235, 437, "f29.bmp"},  // scrolled to item 30
        {235, 428, "f29.bmp"},
        {235, 427, "f30.bmp"},
        {235, 438, "f28.bmp"},  // the 3 units above the first row
        {235, 440, "f28.bmp"},
        {0, 440, "Sub/"},       // at the top the 3 units above give item 0
        {41, 428, "zz/"},       // scrolled to the end: the folder zz
    };
    for (const pick& p : picks) {
        std::strcpy(name, "keep.bmp");
        std::strcpy(path, "keep/path");
        script s = p.strip_y ? click(strip_x, p.strip_y) : script{};
        const bool folder = p.chosen.back() == '/';
        s = steps({s, click(list_x, p.y), folder ? click(cancel_x, cancel_y) : script{}});
        const int result = run(win_open_dialog, s);
        if (folder) {
            EXPECT_EQ(result, 0);
            EXPECT_EQ(after.back().substr(0, p.chosen.size() + 1), p.chosen + " ") << p.y;
            continue;
        }
        EXPECT_EQ(result, 1) << p.strip_y << " " << p.y;
        EXPECT_EQ(std::string(name), p.chosen) << p.strip_y << " " << p.y;
        EXPECT_EQ(std::string(path), start_folder + p.chosen);
    }
}

TEST_F(DialogLoop, ClicksBelowTheLastItemDoNothing)
{
    const int result = run(win_open_dialog, steps({click(strip_x, 41),       // zz in the first row
                                                   click(list_x, row0_y),    // into zz: 2 items
                                                   click(list_x, 422),       // the row below b.bmp
                                                   click(list_x, 300),
                                                   click(list_x, row0_y)}));
    EXPECT_EQ(result, 1);
    // Fewer items than the first row's index: the last item stands in the first row.
    EXPECT_EQ(after, (std::vector<seen>{". 60 61", "zz/ 1 2", "zz/ 1 2", "zz/ 1 2"}));
    EXPECT_STREQ(name, "b.bmp");
    EXPECT_EQ(std::string(path), start_folder + "zz/b.bmp");
}

TEST_F(DialogLoop, MissingStartFolderShowsNothingButCancelAndUpStillWork)
{
    C_to_C((start_folder + "gone/").c_str(), ter_path);
    start_folder += "gone/";
    const int result = run(win_open_dialog, steps({click(list_x, row0_y), click(strip_x, 200), click(up_x, up_y),
                                                   click(cancel_x, cancel_y)}));
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(name, "keep.bmp");
    EXPECT_EQ(after, std::vector<seen>(3, ". 0 0"));
}

// The save dialog takes the typed name with Return; a click on a file does
// nothing there, while folders still open.
TEST_F(DialogLoop, SaveDialogTakesTheTypedNameInTheFolderShown)
{
    std::strcpy(name, "ab");
    const int result = run(win_save_dialog, steps({click(list_x, 427),   // f00.bmp: nothing
                                                   key(SDLK_c),
                                                   click(list_x, row0_y),   // into Sub
                                                   key(SDLK_BACKSPACE),
                                                   key(SDLK_x),
                                                   key(SDLK_RETURN)}));
    EXPECT_EQ(result, 1);
    EXPECT_STREQ(name, "abx");
    EXPECT_EQ(std::string(path), start_folder + "Sub/abx");
    EXPECT_EQ(after, (std::vector<seen>{". 0 61", ". 0 61", "Sub/ 0 2", "Sub/ 0 2", "Sub/ 0 2"}));
}

// An alert closed with Return over the save dialog drops to window 0 in the
// middle of a frame: the dialog ends with nothing taken.
TEST_F(DialogLoop, AlertClosedOverTheSaveDialogEndsItWithNothingTaken)
{
    std::strcpy(name, "ab");
    frames = steps({key(SDLK_c), key(SDLK_RETURN)});
    clock_calls = 0;
    overran = 0;
    after.clear();
    feed(frames[0]);
    platform_clock_ms = [] {
        const long long ms = scripted_clock();
        if (clock_calls == 2) mnw.win_id = 0;   // the frame that took the Return
        return ms;
    };
    EXPECT_EQ(MACIBM_opensave(win_save_dialog, ftype_ter_tex, name, path), 0);
    EXPECT_STREQ(name, "ab");
    EXPECT_STREQ(path, "keep/path");
    EXPECT_EQ(clock_calls, 2u);
}

// ---- what the dialog draws --------------------------------------------------------------------

using DialogPicture = WindowTest;

static int has_colour(const unsigned char* p, int col)
{
    for (int k = 0; k < 3; k++)
        if (p[k] != intround(col_rgb[col][k] * 255.0f)) return 0;
    return 1;
}

// Pixels of one colour in a canvas rectangle, read from rgb_array or the back buffer.
static pixel_set coloured(const unsigned char* buf, int col, int x0, int y0, int w, int h, int written_only)
{
    pixel_set s;
    for (int x = x0; x < x0 + w; x++)
        for (int y = y0; y < y0 + h; y++) {
            const unsigned char* p = px_at(buf, x, y);
            if ((!written_only || p[3]) && has_colour(p, col)) s.insert({x, y});
        }
    return s;
}

static pixel_set stamped(const char* text, int x, int y)
{
    pixel_set s;
    for (int c = 0; text[c]; c++) {
        const unsigned char* rows = glyph_rows((unsigned char)text[c]);
        for (int r = 0; r < 7; r++)
            for (int b = 0; b < 5; b++)
                if (rows[r] & (0x10 >> b)) s.insert({x + 6 * c + b, y + 6 - r});
    }
    return s;
}

// The folder icon's outline standing on canvas (x, y).
static pixel_set folder_icon(int x, int y)
{
    pixel_set s = rect_pixels(x, y, 11, 1);
    s = rect_pixels(x, y, 1, 6, s);
    s = rect_pixels(x + 10, y, 1, 6, s);
    s = rect_pixels(x + 7, y + 5, 4, 1, s);
    for (const auto& p : {std::pair<int, int>{1, 5}, {2, 6}, {3, 7}, {4, 7}, {5, 7}, {6, 6}})
        s.insert({x + p.first, y + p.second});
    return s;
}

static void fill_items(std::initializer_list<std::pair<const char*, int>> items)
{
    g_num_items = 0;
    for (const auto& item : items) {
        C_to_C(item.first, g_name[g_num_items]);
        g_is_folder[g_num_items++] = item.second;
    }
    g_item_top = 0;
    g_item_bot = g_num_items - 1;
}

// Into rgb_array, so that every pixel tells who wrote it.
static void draw_into_array()
{
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    opensave_update();
    to_array = 0;
}

TEST_F(DialogPicture, LabelCoversTheUpButtonAndFoldersHaveIcons)
{
    const int kept_screen = msc.screen;
    msc.screen = 0;
    MACIBM_startwind(win_open_dialog);
    g_file_type = ftype_ter_tex;
    OGL_assigncolor(56, 1.0f, 0.0f, 1.0f);   // the cursor's pulse, told apart from all else
    fill_items({{"Sub", 1}, {"a.bmp", 0}, {"zz", 1}});
    draw_into_array();

    // The label strip, window (11, 448) 299 by 13: black and the label only.
    const pixel_set label = stamped("'custom terrain textures' folder", 255, 503);
    EXPECT_EQ(coloured(rgb_array, 78, 251, 500, 299, 13, 1), label);
    EXPECT_EQ(coloured(rgb_array, 30, 251, 500, 299, 13, 1).size(), 299u * 13 - label.size());

    // Rows 10 apart from window y 429; icons beside folders only.
    EXPECT_EQ(coloured(rgb_array, 78, 255, 481, 11, 8, 1), folder_icon(255, 481));
    EXPECT_EQ(coloured(rgb_array, 78, 255, 471, 11, 8, 1).size() + coloured(rgb_array, 65, 255, 471, 11, 8, 1).size(), 0u);
    EXPECT_EQ(coloured(rgb_array, 78, 255, 461, 11, 8, 1), folder_icon(255, 461));
    EXPECT_EQ(coloured(rgb_array, 65, 270, 471, 40, 7, 1), stamped("a.bmp", 270, 471));
    EXPECT_EQ(coloured(rgb_array, 78, 270, 481, 40, 7, 1), stamped("Sub", 270, 481));

    // The knob at the top of the strip: window y 434 - 7 for the first item.
    EXPECT_TRUE(has_colour(px_at(rgb_array, 543, 485), 67));
    EXPECT_TRUE(has_colour(px_at(rgb_array, 537, 485), 65));
    EXPECT_TRUE(has_colour(px_at(rgb_array, 549, 485), 69));
    EXPECT_TRUE(has_colour(px_at(rgb_array, 543, 479), 69));
    g_item_top = 2;   // the last item: at the bottom
    draw_into_array();
    EXPECT_TRUE(has_colour(px_at(rgb_array, 543, 93), 67));
    EXPECT_TRUE(has_colour(px_at(rgb_array, 543, 87), 69));
    EXPECT_EQ(coloured(rgb_array, 56, 250, 62, 300, 14, 1).size(), 0u);   // no name line

    // The same picture on OpenGL, over the baked window.
    reset_drawing_state();
    MACIBM_startwind(win_open_dialog);
    g_item_top = 0;
    OGL_plot_background();
    opensave_update();
    const std::vector<unsigned char> frame = grab_back_buffer();
    EXPECT_EQ(coloured(frame.data(), 78, 255, 481, 11, 8, 0), folder_icon(255, 481));
    EXPECT_TRUE(has_colour(px_at(frame.data(), 543, 485), 67));
    EXPECT_TRUE(has_colour(px_at(frame.data(), 400, 300), 30));   // the list's black
    msc.screen = kept_screen;
    MACIBM_startwind(0);
}

TEST_F(DialogPicture, WithoutALabelTheUpButtonShowsAndTheSaveDialogHasANameLine)
{
    const int kept_screen = msc.screen;
    msc.screen = 0;
    MACIBM_startwind(win_save_dialog);
    std::strcpy(g_cs_input, "ab");
    g_file_type = ftype_all;
    OGL_assigncolor(56, 1.0f, 0.0f, 1.0f);
    fill_items({{"only", 0}});
    draw_into_array();
    EXPECT_EQ(coloured(rgb_array, 30, 251, 500, 299, 13, 1), stamped("Go up a level", 362, 503));
    EXPECT_EQ(coloured(rgb_array, 30, 251, 521, 299, 13, 1), stamped("   Cancel    ", 362, 524));
    EXPECT_EQ(coloured(rgb_array, 65, 251, 63, 299, 13, 1), stamped("ab", 255, 66));
    EXPECT_EQ(coloured(rgb_array, 56, 251, 63, 299, 13, 1), rect_pixels(268, 65, 1, 9));   // the cursor
    EXPECT_EQ(coloured(rgb_array, 67, 537, 87, 13, 400, 1).size(), 0u);   // one item: no knob
    EXPECT_EQ(coloured(rgb_array, 65, 251, 87, 282, 405, 1), stamped("only", 270, 481));
    g_num_items = 0;
    draw_into_array();
    EXPECT_EQ(coloured(rgb_array, 65, 251, 87, 282, 405, 1).size(), 0u);  // no rows
    msc.screen = kept_screen;
    MACIBM_startwind(0);
}
