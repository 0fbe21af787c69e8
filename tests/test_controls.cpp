// The immediate-mode controls: hit zones and their edges, wraps and ranges,
// the sense of the wheels, the spinner's steps and limits, the help text.
// Everything is drawn into rgb_array, so no window is needed; what a control
// shows is read back from the stamped 5 by 7 characters.
#include "hl/Hl_btn.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>
#include <cstring>
#include <string>

namespace {

struct ControlTest : ::testing::Test {
    void SetUp() override
    {
        OGL_assign_colortable();
        std::memset(rgb_array, 0, sizeof rgb_array);
        to_array = 1;
        mnw.win_x = mnw.win_y = 0;
        mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
        hover(-50, -50);
        mnw.tip[0] = 0;
    }
    void TearDown() override { to_array = 0; }

    static void hover(float x, float y)
    {
        mnw.mouse_x = x;
        mnw.mouse_y = y;
        mnw.mouse_click = 0;
    }
    static void press(float x, float y)
    {
        hover(x, y);
        mnw.mouse_click = mnw.mouse_down = 1;
    }
};

int lit(int x, int y) { return rgb_array[(y * canvas_w + x) * 4 + 3] != 0; }

bool has_colour(int x, int y, int col)
{
    const unsigned char* p = rgb_array + (y * canvas_w + x) * 4;
    for (int i = 0; i < 3; i++)
        if (p[i] != (unsigned char)(col_rgb[col][i] * 255.0f + 0.5f)) return false;
    return lit(x, y);
}

// The character stamped with its bottom left at (x, y): blank if nothing is
// there, '?' if the pixels match no digit, capital or minus.
char stamped_char(int x, int y)
{
    bool any = false;
    for (int r = 0; r < 7; r++)
        for (int c = 0; c < 5; c++) any = any || lit(x + c, y + 6 - r);
    if (!any) return ' ';
    for (const char* cand = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-"; *cand; cand++) {
        const unsigned char* rows = glyph_rows(*cand);
        bool same = true;
        for (int r = 0; r < 7 && same; r++)
            for (int c = 0; c < 5 && same; c++)
                same = lit(x + c, y + 6 - r) == ((rows[r] >> (4 - c)) & 1);
        if (same) return *cand;
    }
    return '?';
}

std::string stamped_text(int x, int y, int count, int advance)
{
    std::string s;
    for (int i = 0; i < count; i++) s += stamped_char(x + i * advance, y);
    return s;
}

int lit_count(int x1, int y1, int x2, int y2)
{
    int n = 0;
    for (int y = y1; y <= y2; y++)
        for (int x = x1; x <= x2; x++) n += lit(x, y);
    return n;
}

// ---- lamps ---------------------------------------------------------------------------

TEST_F(ControlTest, LampFillsItsNineSquareBrightWhenOnDarkWhenOff)
{
    block(100, 100, 1);
    block(200, 100, 0);
    EXPECT_EQ(lit_count(95, 95, 115, 115), 81);
    EXPECT_EQ(lit_count(195, 95, 215, 115), 81);
    EXPECT_TRUE(has_colour(104, 104, 68));
    EXPECT_TRUE(has_colour(204, 104, 70));
    // Lit edge at the bottom left, dark edge at the top right.
    EXPECT_TRUE(has_colour(100, 100, 65));
    EXPECT_TRUE(has_colour(108, 108, 69));
    EXPECT_TRUE(has_colour(200, 100, 69));
    EXPECT_TRUE(has_colour(208, 108, 71));
}

TEST_F(ControlTest, RadioLampTakesItsValueOnClicksInsideItsEdges)
{
    int var = 1;
    auto frame = [&] {
        std::string hits;
        for (int lamp = 1; lamp <= 3; lamp++) hits += std::to_string(inonebool(80 + 20 * lamp, 100, &var, lamp));
        return hits;
    };
    press(130, 110);   // top right corner of the second lamp
    EXPECT_EQ(frame(), "010");
    EXPECT_EQ(var, 2);
    EXPECT_TRUE(has_colour(124, 104, 68));
    press(140, 100);
    EXPECT_EQ(frame(), "001");
    EXPECT_EQ(var, 3);
    press(140, 100);   // already on: still a hit
    EXPECT_EQ(frame(), "001");

    for (auto [mx, my] : {std::pair{130.5f, 105.0f}, {119.5f, 105.0f}, {125.0f, 99.5f}, {125.0f, 110.5f}}) {
        press(mx, my);
        EXPECT_EQ(frame(), "000") << mx << "," << my;
    }
    hover(125, 105);
    EXPECT_EQ(frame(), "000");
    EXPECT_EQ(var, 3);
    // Without a click the lamps show the variable.
    EXPECT_TRUE(has_colour(104, 104, 70));
    EXPECT_TRUE(has_colour(144, 104, 68));
}

// ---- cycle buttons ---------------------------------------------------------------------

TEST_F(ControlTest, CycleArrowZonesIncludeTheirEdgesAndSplitAtYPlus3)
{
    // Negative offset: the arrows stand left of the text, from x 280 to 295.
    struct Case { float mx, my; int change, hit; };
    const Case cases[] = {
        {280, 183, -1, 1},   {295, 200, -1, 1},    {287, 223, +1, 1},    {295, 210, +1, 1},
        {287, 203, 0, 1},    // on the dividing line: down and up again
        {279.5f, 200, 0, 0}, {295.5f, 210, 0, 0},  {287, 182.5f, 0, 0},  {287, 223.5f, 0, 0},
        {300, 200, 0, 0},    // the text itself has no zone
    };
    for (const Case& c : cases) {
        int var = 2;
        press(c.mx, c.my);
        EXPECT_EQ(in4textbtn(300, 200, "A", "B", "C", "D", -20, &var), c.hit) << c.mx << "," << c.my;
        EXPECT_EQ(var, 2 + c.change) << c.mx << "," << c.my;
    }
}

TEST_F(ControlTest, CycleButtonsWrapWithinTheirOwnRanges)
{
    const float up = 210, down = 195;   // arrows at x 100 to 115 with offset 0
    auto nine = [](int* v) { return in9textbtn(100, 200, "1", "2", "3", "4", "5", "6", "7", "8", "9", 0, v); };
    auto six = [](int* v) { return in6textbtn(100, 200, "1", "2", "3", "4", "5", "6", 0, v); };
    auto four = [](int* v) { return in4textbtn(100, 200, "1", "2", "3", "4", 0, v); };
    auto two = [](int* v) { return in2textbtn(100, 200, "A", "B", 0, v); };

    int v = 9;
    press(105, up);
    nine(&v);
    EXPECT_EQ(v, 1);
    press(105, down);
    nine(&v);
    EXPECT_EQ(v, 9);
    v = 6;
    press(105, up);
    six(&v);
    EXPECT_EQ(v, 1);

    // The two-way button runs 0 to 1: both directions toggle.
    for (float my : {up, down}) {
        v = 1;
        press(105, my);
        EXPECT_EQ(two(&v), 1);
        EXPECT_EQ(v, 0);
        press(105, my);
        two(&v);
        EXPECT_EQ(v, 1);
    }

    // Out of range without a click: wrapped once, on every frame.
    hover(105, up);
    v = 0;
    EXPECT_EQ(four(&v), 0);
    EXPECT_EQ(v, 4);
    v = 5;
    four(&v);
    EXPECT_EQ(v, 1);
}

TEST_F(ControlTest, CycleButtonShowsTheStringOfItsValueAndNothingOutOfRange)
{
    int v = 0;
    in2textbtn(100, 200, "AB", "CD", 50, &v);
    EXPECT_EQ(stamped_text(100, 200, 2, 6), "AB");
    EXPECT_TRUE(has_colour(100, 200, 66));   // the foot of the A

    std::memset(rgb_array, 0, sizeof rgb_array);
    v = 3;
    in6textbtn(100, 200, "P", "Q", "R", "S", "T", "U", 50, &v);
    EXPECT_EQ(stamped_char(100, 200), 'R');

    // One wrap step cannot bring 20 into 1 to 9: the variable holds 11 and
    // nothing is drawn.
    std::memset(rgb_array, 0, sizeof rgb_array);
    v = 20;
    in9textbtn(100, 200, "1", "2", "3", "4", "5", "6", "7", "8", "9", 50, &v);
    EXPECT_EQ(v, 11);
    EXPECT_EQ(lit_count(90, 180, 200, 220), 0);
}

// ---- character wheel ---------------------------------------------------------------------

TEST_F(ControlTest, CharacterWheelLowerHalfAdvancesUpperHalfGoesBack)
{
    char id[5] = "A9Z ";
    press(205, 302);   // column 0, below y + 3
    EXPECT_EQ(incharbtn(7, 200, 300, id, 4), 1);
    EXPECT_STREQ(id, "B9Z ");
    press(205, 303);   // the dividing line belongs to the upper half
    incharbtn(7, 200, 300, id, 4);
    EXPECT_STREQ(id, "A9Z ");

    press(215, 290);
    incharbtn(7, 200, 300, id, 4);
    EXPECT_STREQ(id, "AAZ ");   // 9 is followed by A
    press(225, 290);
    incharbtn(7, 200, 300, id, 4);
    EXPECT_STREQ(id, "AA  ");   // Z wraps forward to a blank
    press(235, 310);
    incharbtn(7, 200, 300, id, 4);
    press(225, 310);
    incharbtn(7, 200, 300, id, 4);
    EXPECT_STREQ(id, "AAZZ");   // and a blank back to Z
}

TEST_F(ControlTest, CharacterWheelZonesIncludeEdgesAndShareBoundaries)
{
    struct Case { float mx, my; const char* after; int hit; };
    const Case cases[] = {
        {210, 290, "BBA", 1},    // the line between columns 0 and 1 moves both
        {200, 286, "BAA", 1},    {230, 320, "AA9", 1},  // outer corners
        {199.5f, 290, "AAA", 0}, {230.5f, 290, "AAA", 0},
        {215, 285.5f, "AAA", 0}, {215, 320.5f, "AAA", 0},
    };
    for (const Case& c : cases) {
        char id[4] = "AAA";
        press(c.mx, c.my);
        EXPECT_EQ(incharbtn(7, 200, 300, id, 3), c.hit) << c.mx << "," << c.my;
        EXPECT_STREQ(id, c.after) << c.mx << "," << c.my;
    }
    char id[5] = "K7 Q";
    hover(205, 290);
    EXPECT_EQ(incharbtn(9, 200, 300, id, 4), 0);
    // Each character stands 3 units into its column.
    std::memset(rgb_array, 0, sizeof rgb_array);
    incharbtn(9, 200, 300, id, 4);
    EXPECT_EQ(stamped_text(203, 300, 4, 10), "K7 Q");
    EXPECT_TRUE(has_colour(233, 301, 9));   // the lowest pixel of the Q's left side
}


// ---- digit spinner -----------------------------------------------------------------------

float spin(float value, float mx, float my, int digits, int decimals, int signed_flag, int* hit = nullptr)
{
    ControlTest::press(mx, my);
    int h = instdbtn(7, 100, 300, &value, digits, decimals, signed_flag, "help");
    if (hit) *hit = h;
    return value;
}

TEST_F(ControlTest, SpinnerPlacesStepByTheirOwnUnitUpperHalfUp)
{
    struct Form { int digits, decimals, signed_flag; float start; float steps[7]; };
    const Form forms[] = {
        {2, 1, 0, 5.0f, {1.0f, 0.1f}},
        {3, 0, 0, 500.0f, {100, 10, 1}},
        {5, 0, 1, 0.0f, {10000, 1000, 100, 10, 1}},
        {7, 5, 1, 45.5f, {10, 1, 0.1f, 0.01f, 0.001f, 0.0001f, 0.00001f}},   // a latitude
    };
    for (const Form& f : forms)
        for (int k = 0; k < f.digits; k++) {
            float mx = 100 + 10 * k + 5;
            SCOPED_TRACE(testing::Message() << f.digits << " digits, place " << k);
            EXPECT_NEAR(spin(f.start, mx, 303, f.digits, f.decimals, f.signed_flag), f.start + f.steps[k], 4e-6f);
            EXPECT_NEAR(spin(f.start, mx, 302.9f, f.digits, f.decimals, f.signed_flag), f.start - f.steps[k], 4e-6f);
        }
}

TEST_F(ControlTest, SpinnerStopsAtTheLargestValueItsFieldShows)
{
    int hit = 0;
    EXPECT_NEAR(spin(9.5f, 105, 310, 2, 1, 0, &hit), 9.9f, 1e-6f);
    EXPECT_EQ(hit, 1);
    EXPECT_FLOAT_EQ(spin(950, 105, 310, 3, 0, 0), 999);
    for (float mx : {105.0f, 115.0f, 125.0f}) {
        EXPECT_EQ(spin(0, mx, 290, 3, 0, 0, &hit), 0);   // unsigned: no way below 0
        EXPECT_EQ(hit, 1);
    }
    EXPECT_FLOAT_EQ(spin(-99000, 105, 290, 5, 0, 1), -99999);
    EXPECT_NEAR(spin(95, 105, 310, 7, 5, 1), 99.99999f, 1e-5f);
    EXPECT_NEAR(spin(-95, 105, 290, 7, 5, 1), -99.99999f, 1e-5f);

    float heading = 350;
    press(105, 310);
    EXPECT_EQ(instdbtn_range(7, 100, 300, &heading, 3, 0, 0, 360, ""), 1);
    EXPECT_EQ(heading, 360);
}

TEST_F(ControlTest, SpinnerLimitsTheValueOnEveryFrameWithoutAClick)
{
    hover(105, 310);
    float v = 1234;
    EXPECT_EQ(instdbtn(7, 100, 300, &v, 3, 0, 0, ""), 0);
    EXPECT_FLOAT_EQ(v, 999);
    v = -5;
    instdbtn(7, 100, 300, &v, 3, 0, 0, "");
    EXPECT_EQ(v, 0);
    v = 400;
    instdbtn_range(7, 100, 300, &v, 3, 0, 0, 360, "");
    EXPECT_EQ(v, 360);
    v = -400;
    instdbtn_range(7, 100, 300, &v, 3, 0, -180, 180, "");
    EXPECT_EQ(v, -180);
}

TEST_F(ControlTest, SpinnerClickOnTheLineBetweenTwoPlacesMovesBoth)
{
    struct Case { float mx, my, after; };
    const Case cases[] = {
        {110, 310, 610},   {120, 290, 489},                   // two places at once
        {100, 310, 600},   {130, 310, 501},                   // outer columns alone
        {115, 320, 510},   {115, 286, 490},                   // top and bottom edges
        {99.5f, 310, 500}, {130.5f, 310, 500}, {115, 320.5f, 500}, {115, 285.5f, 500},
    };
    for (const Case& c : cases) {
        int hit = -1;
        EXPECT_EQ(spin(500, c.mx, c.my, 3, 0, 0, &hit), c.after) << c.mx << "," << c.my;
        EXPECT_EQ(hit, c.after != 500) << c.mx << "," << c.my;
    }
}

TEST_F(ControlTest, SpinnerHelpTextCoversOneMorePlaceAndNeedsNoClick)
{
    // Three places: the help box runs from x 100 to 140, the clicks to 130.
    struct Case { float mx, my; bool shown; };
    const Case cases[] = {
        {135, 310, true},  {140, 320, true},   {100, 286, true},
        {140.5f, 310, false}, {99.5f, 310, false}, {120, 320.5f, false}, {120, 285.5f, false},
    };
    for (const Case& c : cases) {
        mnw.tip[0] = 0;
        hover(c.mx, c.my);
        float v = 500;
        instdbtn(7, 100, 300, &v, 3, 0, 0, "Elevation of the vertex in feet");
        EXPECT_STREQ(mnw.tip, c.shown ? "Elevation of the vertex in feet" : "") << c.mx << "," << c.my;
    }
    // A click in the extra place changes nothing but still shows the help.
    mnw.tip[0] = 0;
    int hit = 1;
    EXPECT_EQ(spin(500, 135, 310, 3, 0, 0, &hit), 500);
    EXPECT_EQ(hit, 0);
    EXPECT_STREQ(mnw.tip, "help");
}

TEST_F(ControlTest, SpinnerDrawsEachDigitOverItsOwnColumn)
{
    float lat = -45.5f;
    instdbtn(2, 100, 300, &lat, 7, 5, 1, "");
    EXPECT_EQ(stamped_text(103, 300, 7, 10), "4550000");
    EXPECT_EQ(stamped_char(97, 300), '-');
    EXPECT_TRUE(has_colour(114, 300, 2));   // the foot of the 5

    // In a window the hit zones stay window-relative and the drawing moves with it.
    std::memset(rgb_array, 0, sizeof rgb_array);
    mnw.win_x = 200;
    mnw.win_y = 100;
    float heading = 300;
    press(105, 310);
    EXPECT_EQ(instdbtn_range(7, 100, 200, &heading, 5, 2, 0, 360, ""), 0);
    std::memset(rgb_array, 0, sizeof rgb_array);
    press(105, 210);
    EXPECT_EQ(instdbtn_range(7, 100, 200, &heading, 5, 2, 0, 360, ""), 1);
    EXPECT_EQ(heading, 360);
    EXPECT_EQ(stamped_text(303, 300, 5, 10), "36000");
}

// ---- a held mouse ----------------------------------------------------------------------------

TEST_F(ControlTest, HeldMouseActsAgainAtEachRepeatPulse)
{
    // Press, then held frames of which two carry a repeat pulse.
    const int clicks[] = {1, 0, 0, 1, 0, 1, 0};
    float elev = 500;
    int cycle = 1, lamp = 0;
    std::string lamp_hits;
    for (int click : clicks) {
        mnw.mouse_down = 1;
        mnw.mouse_click = click;
        mnw.mouse_x = 125;   // last place of the spinner
        mnw.mouse_y = 310;
        instdbtn(7, 100, 300, &elev, 3, 0, 0, "");
        mnw.mouse_x = 305;   // upper arrow of the cycle button
        in9textbtn(300, 300, "1", "2", "3", "4", "5", "6", "7", "8", "9", 0, &cycle);
        mnw.mouse_x = 505;
        mnw.mouse_y = 305;
        lamp_hits += std::to_string(inonebool(500, 300, &lamp, 1));
    }
    EXPECT_EQ(elev, 503);
    EXPECT_EQ(cycle, 4);
    EXPECT_EQ(lamp_hits, "1001010");
}

}  // namespace
