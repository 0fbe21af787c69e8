// The airport diagram and the name list on the real window: the fitted scale
// and the runway's pixels worked out by hand, the pick of a runway by a click,
// and the list's rows, arrows and knob.
#include "window_fixture.h"
#include "app/Airports.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_funct.h"

#include <cmath>

namespace {

const float box_x1 = 325, box_y1 = 155, box_x2 = 778, box_y2 = 564;   // centre 551.5, 359.5

void one_airport(int runways)
{
    apt_wrl_max = 0;
    apt_lo_ind[0] = 0;
    apt_hi_ind[0] = runways - 1;
    rwy_wrl_max = runways - 1;
    for (int r = 0; r < runways; r++) {
        rwy_lat[r] = 34.0f;
        rwy_lon[r] = -118.0f;
        rwy_hdng[r] = 0;
        rwy_len[r] = 3000;
        rwy_width[r] = 100;
        rwy_num[r] = 1;
    }
}

int drawn(const std::vector<unsigned char>& shot, int x, int y, int col)
{
    int same = 1;
    for (int k = 0; k < 3; k++) same &= std::abs(px_at(shot.data(), x, y)[k] - intround(col_rgb[col][k] * 255.0f)) <= 1;
    return same;
}

struct AirportScreen : WindowTest {
    void SetUp() override
    {
        WindowTest::SetUp();
        mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
    }
    void TearDown() override { mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0; }
};

TEST_F(AirportScreen, OneRunwayFillsTheDiagramToScale)
{
    one_airport(1);
    int sel = 0;
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    // 3000 ft is 914.4 m, to fill 409 - 20 units of height: 389 / 914.4 a metre
    // (within the quarter metre that single precision keeps 3800 km north).
    EXPECT_NEAR(airport_scale, 389.0f / 914.4f, 1e-4);
    const std::vector<unsigned char> shot = grab_back_buffer();
    // Upright in the middle: 389 high from 165 to 554, 100 ft (13 units) wide.
    EXPECT_TRUE(drawn(shot, 551, 359, 19));   // the selected runway, mid green
    EXPECT_TRUE(drawn(shot, 551, 170, 19));
    EXPECT_TRUE(drawn(shot, 551, 549, 19));
    EXPECT_FALSE(drawn(shot, 551, 160, 19));
    EXPECT_FALSE(drawn(shot, 551, 560, 19));
    EXPECT_FALSE(drawn(shot, 562, 359, 19));
    EXPECT_TRUE(drawn(shot, 548, 359, 19) && drawn(shot, 555, 359, 19));

    rwy_hdng[0] = 90;   // lying down: the width of the box sets the scale
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_NEAR(airport_scale, 433.0f / 914.4f, 1e-4);
}

TEST_F(AirportScreen, RunwayOfNoSizeDrawsNothingAndStopsNothing)
{
    one_airport(1);
    rwy_len[0] = rwy_width[0] = 0;
    int sel = 0;
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_FLOAT_EQ(airport_scale, 389.0f);   // as if a metre across
    const pixel_set lit = lit_pixels(0);
    for (auto [x, y] : lit) EXPECT_TRUE(std::abs(x - 551) <= 1 && std::abs(y - 359) <= 1) << x << "," << y;
    mnw.mouse_x = 551.5f, mnw.mouse_y = 359.5f, mnw.mouse_click = 1;
    sel = 7;
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_EQ(sel, 7);   // a runway with no area takes no click
}

TEST_F(AirportScreen, AClickPicksTheLastRunwayUnderTheMouse)
{
    one_airport(2);
    rwy_hdng[1] = 90;   // a cross: both hold the middle, the later one wins
    int sel = 0;
    mnw.mouse_x = 551.5f, mnw.mouse_y = 359.5f, mnw.mouse_click = 1;
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_EQ(sel, 1);
    mnw.mouse_y = 500;   // on the upright one only
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_EQ(sel, 0);
    mnw.mouse_x = 700;   // in the box on no runway
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 0, 1);
    EXPECT_EQ(sel, 0);
    mnw.mouse_x = 551.5f, mnw.mouse_y = 359.5f;   // panned away: the runway left the box
    OGL_airport(0, &sel, box_x1, box_y1, box_x2, box_y2, 0, 300, 1);
    EXPECT_EQ(sel, 0);
}

// ---- the name list -----------------------------------------------------------------------------------

char names[40][40], ids[40][5];

int list_after(float x, float y, int click, int down, int repeat, int selected, int first = 0, int last = 29)
{
    mnw.mouse_x = x, mnw.mouse_y = y;
    mnw.mouse_click = click, mnw.mouse_down = down, mnw.mouse_repeat = repeat;
    plot_name_list(20, 498, names, ids, &selected, first, last);
    return selected;
}

TEST_F(AirportScreen, NameListRowsArrowsAndKnob)
{
    for (int k = 0; k < 40; k++) {
        std::snprintf(names[k], 40, "Airport %d", k);
        std::snprintf(ids[k], 5, "K%03d", k);
    }
    // A row above the middle one is picked by a click 2 units higher than its frame.
    EXPECT_EQ(list_after(100, 498 + 12, 1, 1, 0, 10), 9);
    EXPECT_EQ(list_after(100, 498 - 8, 1, 1, 0, 10), 11);
    EXPECT_EQ(list_after(100, 498 + 62, 1, 1, 0, 10), 4);
    EXPECT_EQ(list_after(100, 498, 0, 1, 0, 10), 10);   // no click, no pick
    EXPECT_STREQ(g_cs_input, "Airport 10");              // the edit line

    // Arrows step on the click and on every held frame past the delay.
    EXPECT_EQ(list_after(307, 498 + 60, 1, 1, 0, 10), 9);
    EXPECT_EQ(list_after(307, 498 - 60, 0, 1, 1, 10), 11);
    EXPECT_EQ(list_after(307, 498 - 60, 1, 1, 0, 29), 29);   // held at the last

    // The knob strip: its top end is the first record, the bottom end the last.
    EXPECT_EQ(list_after(307, 498 + 54 - 7, 0, 1, 0, 10), 0);
    EXPECT_EQ(list_after(307, 498 - 53 + 7, 0, 1, 0, 10), 29);
    // The drag holds while the button is: an arrow then does nothing.
    EXPECT_EQ(list_after(307, 498 + 60, 1, 1, 0, 10), 10);
    EXPECT_EQ(list_after(400, 300, 0, 0, 0, 10), 10);        // released
    EXPECT_EQ(list_after(307, 498 + 60, 1, 1, 0, 10), 9);

    // A selection left out of range is held at the end of the range.
    EXPECT_EQ(list_after(400, 300, 0, 0, 0, 50), 29);
    EXPECT_EQ(list_after(400, 300, 0, 0, 0, -4), 0);

    // One record: held there; an empty table selects nothing and edits nothing.
    EXPECT_EQ(list_after(307, 498 + 60, 1, 1, 0, 5, 5, 5), 5);
    EXPECT_EQ(list_after(100, 498, 0, 0, 0, 5, 0, -1), 0);
    EXPECT_STREQ(g_cs_input, "");
}

// The knob stands where the selection stood at the frame's start: 7 below the
// strip's top for the first record, 7 above its bottom for the last.
TEST_F(AirportScreen, ListKnobTravelsWithTheSelection)
{
    auto knob_rows = [](int selected) {
        reset_drawing_state();
        list_after(400, 300, 0, 0, 0, selected);
        std::set<int> rows;
        for (auto [x, y] : lit_pixels(0))
            if (x >= 300 && x <= 315) rows.insert(y);
        return rows;
    };
    std::set<int> rows = knob_rows(0);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(*rows.begin(), 498 + 40);
    EXPECT_EQ(*rows.rbegin(), 498 + 52);
    rows = knob_rows(29);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(*rows.begin(), 498 - 53);
    EXPECT_EQ(*rows.rbegin(), 498 - 41);
}

}   // namespace
