// The airport diagram and the name list on the real window: the fitted scale
// and the runway's pixels worked out by hand, the pick of a runway by a click,
// and the list's rows, arrows and knob.
#include "window_fixture.h"
#include "app/Airports.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_funct.h"

namespace {

const float box_x1 = 325, box_y1 = 155, box_x2 = 778, box_y2 = 564;   // centre 551.5, 359.5

void one_airport(int runways)
{
    apt_wrl_max = apt_lo_ind[0] = 0, apt_hi_ind[0] = rwy_wrl_max = runways - 1;
    for (int r = 0; r < runways; r++)
        rwy_lat[r] = 34, rwy_lon[r] = -118, rwy_hdng[r] = 0, rwy_len[r] = 3000, rwy_width[r] = 100, rwy_num[r] = 1;
}

// The selected runway after a frame of the diagram with the mouse at (x, y), a click if click.
int diagram_frame(int selected, float x, float y, int click, float pan_y = 0)
{
    mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = mnw.mouse_repeat = 0;
    OGL_airport(0, &selected, box_x1, box_y1, box_x2, box_y2, 0, pan_y, 1);
    mnw.mouse_click = 0;
    return selected;
}

using AirportScreen = WindowTest;

TEST_F(AirportScreen, RunwaysFillTheDiagramToScaleAndAClickPicksTheLastUnderTheMouse)
{
    one_airport(1);
    diagram_frame(0, 0, 0, 0);
    // 3000 ft is 914.4 m, to fill 409 - 20 units of height: 389 / 914.4 a metre
    // (within the quarter metre that single precision keeps 3800 km north).
    EXPECT_NEAR(airport_scale, 389.0f / 914.4f, 1e-4);
    const std::vector<unsigned char> shot = grab_back_buffer();
    auto green = [&](int x, int y) { return has_colour(px_at(shot.data(), x, y), 19); };   // selected: mid green
    // Upright in the middle: 389 high from 165 to 554, 100 ft (13 units) wide.
    EXPECT_TRUE(green(551, 359) && green(551, 170) && green(551, 549) && green(548, 359) && green(555, 359));
    EXPECT_FALSE(green(551, 160) || green(551, 560) || green(562, 359));
    rwy_hdng[0] = 90;   // lying down: the width of the box sets the scale
    diagram_frame(0, 0, 0, 0);
    EXPECT_NEAR(airport_scale, 433.0f / 914.4f, 1e-4);

    one_airport(2);
    rwy_hdng[1] = 90;   // a cross: the selected one is drawn over the other; a click picks the later one
    diagram_frame(0, 0, 0, 0);
    EXPECT_TRUE(has_colour(px_at(grab_back_buffer().data(), 551, 359), 19)) << "the selected runway is not on top";
    EXPECT_EQ(diagram_frame(0, 551.5f, 359.5f, 1), 1);
    EXPECT_EQ(diagram_frame(1, 551.5f, 500, 1), 0);   // on the upright one only
    EXPECT_EQ(diagram_frame(1, 700, 500, 1), 1);      // in the box on no runway
    EXPECT_EQ(diagram_frame(0, 551.5f, 359.5f, 1, 300), 0);   // panned away: the runway left the box

    rwy_hdng[1] = 0, rwy_lon[1] = -117.99f;   // side by side, 921 m apart: each drawn once, where both fit
    rwy_num[1] = 36;
    reset_drawing_state();
    diagram_frame(0, 0, 0, 0);
    const std::vector<unsigned char> pair = grab_back_buffer();
    const unsigned char* row = px_at(pair.data(), 0, 359);
    auto lit = [&](int x) { return row[4 * x] | row[4 * x + 1] | row[4 * x + 2]; };
    EXPECT_TRUE(has_colour(px_at(pair.data(), 355, 359), 19) && lit(747) && !lit(551));
    EXPECT_TRUE(has_colour(px_at(pair.data(), 747, 359), 6));
    rwy_num[1] = 37;   // past 36 a number is no runway's heading: another colour
    diagram_frame(0, 0, 0, 0);
    EXPECT_TRUE(has_colour(px_at(grab_back_buffer().data(), 747, 359), 18));
}

// ---- the name list -----------------------------------------------------------------------------------

char names[40][40], ids[40][5];

int list_after(float x, float y, int click, int down, int repeat, int selected, int first = 0, int last = 29)
{
    mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = click, mnw.mouse_down = down, mnw.mouse_repeat = repeat;
    plot_name_list(20, 498, names, ids, &selected, first, last);
    mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
    return selected;
}

TEST_F(AirportScreen, NameListRowsArrowsAndKnob)
{
    for (int k = 0; k < 40; k++) std::snprintf(names[k], 40, "Airport %d", k), std::snprintf(ids[k], 5, "K%03d", k);
    // A row above the middle one is picked by a click 2 units higher than its frame.
    EXPECT_EQ(list_after(100, 498 + 12, 1, 1, 0, 10), 9);
    EXPECT_EQ(list_after(100, 498 - 8, 1, 1, 0, 10), 11);
    EXPECT_EQ(list_after(100, 498 + 62, 1, 1, 0, 10), 4);
    EXPECT_EQ(list_after(100, 498, 0, 1, 0, 10), 10);   // no click, no pick
    EXPECT_STREQ(g_cs_input, "Airport 10");              // the edit line
    // Rows 10 apart about the selected one, which has its own colour; the ids 234 further right.
    baked([] { list_after(400, 300, 0, 0, 0, 10); });
    EXPECT_EQ(written(7, 28, 505, 200, 7), stamped("Airport 9", 28, 505));
    EXPECT_EQ(written(56, 28, 495, 200, 7), stamped("Airport 10", 28, 495));
    EXPECT_EQ(written(7, 262, 435, 30, 7), stamped("K016", 262, 435));
    // The selected row's frame stands on row 493; the edit line's cursor follows its name.
    EXPECT_TRUE(written(65, 30, 493, 200, 1).size() == 200 && written(65, 30, 492, 200, 1).empty());
    EXPECT_EQ(written(56, 20, 400, 200, 20), rect_pixels(83, 407, 1, 8));

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

    reset_drawing_state(), list_after(400, 300, 0, 0, 0, 29), OGL_flush();   // the last record: the knob at the foot
    const std::vector<unsigned char> shot = grab_back_buffer();
    int lit = 0;   // 14 by 13 from (300, 445), alone between rows 420 and 520
    for (int k = 0; k < 25 * 100; k++) lit += px_at(shot.data(), 295 + k % 25, 420 + k / 25)[1] != 0;
    EXPECT_EQ(lit, 14 * 13);
    // A selection left out of range is held at the end of the range.
    EXPECT_EQ(list_after(400, 300, 0, 0, 0, 50), 29);
    EXPECT_EQ(list_after(400, 300, 0, 0, 0, -4), 0);

    // One record: held there; an empty table selects nothing and edits nothing, its frame empty where the row would be.
    EXPECT_EQ(list_after(307, 498 + 60, 1, 1, 0, 5, 5, 5), 5);
    baked([] { EXPECT_EQ(list_after(100, 498, 0, 0, 0, 5, 0, -1), 0); });
    EXPECT_TRUE(written(65, 30, 493, 200, 1).size() == 200 && g_cs_input[0] == 0);
}

}   // namespace
