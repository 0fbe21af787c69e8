// The immediate-mode controls: hit zones and their edges, wraps and ranges,
// the sense of the wheels, the spinner's steps and limits, the help text.
// Everything is drawn into rgb_array, so no window is needed; what a control
// shows is read back from the stamped 5 by 7 characters.
#include "drawn.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>
#include <string>

namespace {

// The mouse at (x, y), the button held down, clicked in this frame or not.
void mouse(float x, float y, int click = 1) { mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = 1; }

void clear() { std::memset(rgb_array, 0, sizeof rgb_array); }

struct ControlTest : ::testing::Test {
    void SetUp() override
    {
        OGL_assign_colortable();
        clear();
        to_array = 1;
        mnw.win_x = mnw.win_y = 0;
        mouse(-50, -50, 0);
    }
    void TearDown() override { to_array = 0; }
};

bool has_colour(int x, int y, int col) { return px_at(rgb_array, x, y)[3] && ::has_colour(px_at(rgb_array, x, y), col, 0); }

// The characters' 5 by 7 cells from (x, y) on, advance apart, hold exactly the
// patterns of text, in colour col.
bool shows(const char* text, int x, int y, int advance, int col)
{
    const int w = (int)std::strlen(text) * advance;
    return written(col, x, y, w, 7) == stamped(text, x, y, advance) && written(-1, x, y, w, 7) == stamped(text, x, y, advance);
}

TEST_F(ControlTest, RadioLampTakesItsValueOnClicksInsideItsEdges)
{
    int var = 1;
    auto frame = [&] {   // which of three lamps 20 apart were hit
        std::string hits;
        for (int lamp = 1; lamp <= 3; lamp++) hits += char('0' + inonebool(80 + 20 * lamp, 100, &var, lamp));
        return hits;
    };
    mouse(130, 110);   // top right corner of the second lamp
    EXPECT_EQ(frame(), "010");
    EXPECT_EQ(var, 2);
    // Bright face, lit edge at the bottom left and dark at the top right when
    // on; a dark face when off.
    EXPECT_TRUE(has_colour(124, 104, 68) && has_colour(120, 100, 65) && has_colour(120, 105, 65) &&
                has_colour(126, 100, 65) && has_colour(128, 108, 69) && has_colour(144, 104, 70));
    // Just outside, and inside with the button held from an earlier click.
    for (auto [mx, my, click] : {std::tuple{130.5f, 105.0f, 1}, {125.0f, 99.5f, 1}, {125.0f, 105.0f, 0}}) {
        mouse(mx, my, click);
        EXPECT_EQ(frame(), "000") << mx << "," << my << " click " << click;
    }
}

// The value after a frame of a cycle button of count strings at (100, 300),
// its arrows 50 to the right: a zone 15 wide from y 283 to 323, the lower
// half down to 303 stepping back, the upper forward; "hit" when it says so.
std::string cycle(int count, int var, float mx, float my, int click = 1)
{
    static const char* const s[9] = {"one", "two", "three", "four", "five", "six", "seven", "eight", "nine"};
    mouse(mx, my, click);
    clear();
    const int hit = count == 2   ? in2textbtn(100, 300, s[0], s[1], 50, &var)
                    : count == 4 ? in4textbtn(100, 300, s[0], s[1], s[2], s[3], 50, &var)
                    : count == 6 ? in6textbtn(100, 300, s[0], s[1], s[2], s[3], s[4], s[5], 50, &var)
                                 : in9textbtn(100, 300, s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], s[8], 50, &var);
    const int first = count == 2 ? 0 : 1;
    const bool shown = intrange(var, first, count - 1 + first) ? shows(s[var - first], 100, 300, 6, 66) : written().empty();
    return std::to_string(var) + (hit ? " hit" : "") + (shown ? "" : " drawn wrong");
}

TEST_F(ControlTest, CycleButtonsStepOnTheHalvesOfTheirArrowsAndWrap)
{
    const struct { int count, var; float mx, my; int click; const char* after; } cases[] = {
        {2, 1, 157, 310, 1, "0 hit"}, {2, 1, 157, 290, 1, "0 hit"},   // the two-way button toggles both ways
        {4, 4, 150, 323, 1, "1 hit"}, {4, 1, 165, 283, 1, "4 hit"},   // the zone's corners, and the wraps
        {4, 2, 157, 303, 1, "2 hit"},                                 // on the middle line: down, then up
        {6, 3, 157, 310, 1, "4 hit"}, {6, 3, 165.5f, 310, 1, "3"}, {6, 3, 149.5f, 290, 1, "3"},
        {6, 3, 157, 323.5f, 1, "3"}, {6, 3, 157, 282.5f, 1, "3"}, {6, 3, 120, 300, 1, "3"},   // not on the text
        {9, 9, 157, 310, 1, "1 hit"}, {9, 1, 157, 290, 1, "9 hit"}, {9, 5, 157, 310, 0, "5"},
        {4, 0, 0, 0, 0, "4"}, {4, 9, 0, 0, 0, "5"}};   // wrapped one span only, without a click
    for (const auto& c : cases)
        EXPECT_EQ(cycle(c.count, c.var, c.mx, c.my, c.click), c.after) << c.count << " " << c.var << " " << c.mx << "," << c.my;
}

// A wheel of 37 codes a character, columns 10 wide from x 100 and y 286 to
// 320: the lower half advances, the upper half goes back.
TEST_F(ControlTest, CharacterWheelsStepTheOtherWayRoundAndShareTheirEdges)
{
    const struct { const char* before; float mx, my; const char* after; int hit; } cases[] = {
        {"AZ9 ", 115, 290, "A 9 ", 1}, {"AZ9 ", 135, 310, "AZ9Z", 1}, {"AZ9 ", 110, 286, "B 9 ", 1},
        {"AZ9 ", 125, 303, "AZ8 ", 1}, {"AZ9 ", 140.5f, 300, "AZ9 ", 0}, {"AZ9 ", 115, 320.5f, "AZ9 ", 0}};
    for (const auto& c : cases) {
        char buf[5];
        std::strcpy(buf, c.before);
        mouse(c.mx, c.my);
        clear();
        EXPECT_EQ(incharbtn(7, 100, 300, buf, 4), c.hit) << c.mx << "," << c.my;
        EXPECT_STREQ(buf, c.after) << c.mx << "," << c.my;
        EXPECT_TRUE(shows(c.after, 103, 300, 10, 7)) << c.after;
    }
}

int spin_hit;   // what the last spin returned

// The value after a click at (mx, my) on a spinner at (100, 300).
float spin(float value, float mx, float my, int digits, int decimals, int signed_flag)
{
    mouse(mx, my);
    spin_hit = instdbtn(7, 100, 300, &value, digits, decimals, signed_flag, "");
    return value;
}

TEST_F(ControlTest, SpinnerPlacesStepByTheirOwnUnitUpperHalfUp)
{
    // A latitude: each place's unit is the one before it times 0.1 in floats.
    const float lat_steps[7] = {10, 1, 0.1f, 0.01f, 0.001f, 0.0001f, 0.00001f};
    for (int k = 0; k < 7; k++) EXPECT_NEAR(spin(45.5f, 105 + 10 * k, 310, 7, 5, 1), 45.5f + lat_steps[k], 4e-6f) << k;
    // Columns 10 wide from x 100, y 286 to 320, the halves split at 303: a
    // click on the line between two places moves both; the edges belong to the field.
    const struct { float mx, my, after; } cases[] = {
        {110, 303, 610}, {120, 302.9f, 489}, {100, 310, 600}, {130, 310, 501}, {115, 320, 510},
        {115, 286, 490}, {99.5f, 310, 500}, {130.5f, 310, 500}, {115, 320.5f, 500}, {115, 285.5f, 500}};
    for (const auto& c : cases) {
        EXPECT_EQ(spin(500, c.mx, c.my, 3, 0, 0), c.after) << c.mx << "," << c.my;
        EXPECT_EQ(spin_hit, c.after != 500) << c.mx << "," << c.my;
    }
}

TEST_F(ControlTest, SpinnerDrawsEachDigitOverItsOwnColumn)
{
    float lat = -45.5f;
    instdbtn(2, 100, 300, &lat, 7, 5, 1, "");
    EXPECT_TRUE(shows("-", 97, 300, 6, 2) && shows("4550000", 103, 300, 10, 2));
    // In a window the hit zones stay window-relative and the drawing moves with it.
    mnw.win_x = 200, mnw.win_y = 100;
    float heading = 300;
    mouse(105, 310);
    EXPECT_EQ(instdbtn_range(7, 100, 200, &heading, 5, 2, 0, 360, ""), 0);
    clear();
    mouse(105, 210);
    EXPECT_EQ(instdbtn_range(7, 100, 200, &heading, 5, 2, 0, 360, ""), 1);
    EXPECT_TRUE(shows("36000", 303, 300, 10, 7));
}

}  // namespace
