// The immediate-mode controls: the radio lamps' hit zones and faces, and the
// character wheels' sense and shared edges.
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
        OGL_assign_colortable(), clear(), mouse(-50, -50, 0);
        to_array = 1, mnw.win_x = mnw.win_y = 0;
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
    for (int y = 98; y <= 110; y++) EXPECT_EQ(px_at(rgb_array, 119, y)[3], 0) << "left of the lamp, row " << y;
    EXPECT_TRUE(written(-1, 115, 90, 20, 10).empty()) << "below the lamp";
    // Just outside, and inside with the button held from an earlier click.
    for (auto [mx, my, click] : {std::tuple{130.5f, 105.0f, 1}, {125.0f, 99.5f, 1}, {125.0f, 105.0f, 0}}) {
        mouse(mx, my, click);
        EXPECT_EQ(frame(), "000") << mx << "," << my << " click " << click;
    }
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

}  // namespace
