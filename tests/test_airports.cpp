// The table work of the airport and navaid screens: airports that come and go
// with their runways, the runway list's text, the limits of full tables, a
// frame of the airport screen, and the navaid runs with the glideslope's
// packed heading. Expected values are worked out by hand from the records set here.
#include "app/Airports.h"
#include "app/Navaids.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_graph.h"
#include "drawn.h"
#include "world_fixture.h"

#include <algorithm>
#include <tuple>

namespace {

// Airports with the given numbers of runways. Runway r has latitude,
// longitude, heading, width and code r, side letter 'A' + r, and length
// 100 r + 100 (so the runs are sorted longest last, the reverse of the
// screen's order).
void make_airports(std::initializer_list<int> runways)
{
    apt_wrl_max = rwy_wrl_max = -1;
    for (int n : runways) {
        const int a = ++apt_wrl_max;
        apt_lo_ind[a] = rwy_wrl_max + 1;
        for (int r = rwy_wrl_max + 1; r <= rwy_wrl_max + n; r++) {
            rwy_lat[r] = rwy_lon[r] = rwy_hdng[r] = rwy_width[r] = (float)r, rwy_code[r] = r, rwy_lcr[r] = (char)('A' + r);
            rwy_len[r] = 100.0f * r + 100, rwy_num[r] = 1;
        }
        apt_hi_ind[a] = rwy_wrl_max += n;
        C_to_C(("A" + std::to_string(a)).c_str(), apt_name[a]);
        apt_h[a] = (float)a, apt_twr[a] = apt_bld[a] = a % 2;
    }
}

void expect_runs(std::initializer_list<std::pair<int, int>> runs)
{
    int a = 0;
    for (auto [lo, hi] : runs) {
        EXPECT_EQ(std::pair(apt_lo_ind[a], apt_hi_ind[a]), std::pair(lo, hi)) << "airport " << a;
        a++;
    }
    EXPECT_EQ(apt_wrl_max, a - 1);
}

// The marks of runways first to last, read from their latitudes; a '!' after
// one whose other fields are not those it was made with (a new runway).
std::string lats(int first, int last)
{
    std::string text;
    for (int r = first; r <= last; r++) {
        const int m = (int)rwy_lat[r];
        const bool made = rwy_lon[r] == m && rwy_hdng[r] == m && rwy_width[r] == m && rwy_code[r] == m &&
                          rwy_lcr[r] == (char)('A' + m);
        text += std::to_string(m) + (made ? " " : "! ");
    }
    return text;
}

using AirportTables = WorldTest;

// One frame of the airport screen, drawn into a cleared rgb_array, with a click at (x, y) if given.
void screen_frame(float x = -50, float y = -50)
{
    mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = x >= 0;
    OGL_assign_colortable();
    std::memset(rgb_array, 0, sizeof rgb_array);
    to_array = 1;
    handle_apt();
    to_array = mnw.mouse_click = 0;
}

std::string record(int r)
{
    return std::to_string((int)apt_h[0]) + " " + std::to_string(apt_twr[0]) + std::to_string(apt_bld[0]) + " " +
           rwy_lcr[r] + " " + std::to_string(rwy_code[r]);
}

TEST_F(AirportTables, RunwayRowsShowBothEnds)
{
    const std::tuple<int, char, const char*> rows[] = {
        {9, 'L', "09L / 27R"}, {36, 'x', "36  / 18 "}, {18, 'C', "18C / 36C"}, {0, 'R', "00R / 18L"},
        {10, 'R', "10R / 28L"}, {99, 'x', "99  / 99 "}};
    for (auto [num, side, text] : rows) {
        char shown[10];
        rwy_num[0] = num, rwy_lcr[0] = side;
        runway_row_text(0, shown);
        EXPECT_STREQ(shown, text);
    }
}

TEST_F(AirportTables, AirportsComeWithARunwayAndGoWithTheirs)
{
    make_airports({2, 4, 1});
    rwy_num[5] = 99, sort_runways(2, 5);   // longest first, a 99 last however long; every field with its runway
    EXPECT_EQ(lats(2, 5), "4 3 2 5 ");
    msc.apt_sel = 1;
    adddel_aptrwy(1, 0, 0);   // its four runways go with it
    expect_runs({{0, 1}, {2, 2}});
    EXPECT_EQ(lats(0, rwy_wrl_max), "0 1 6 ");
    EXPECT_EQ(std::tuple(std::string(apt_name[1]), apt_h[1], apt_twr[1], apt_bld[1]), std::tuple("A2", 2.0f, 0, 0));

    msc.apt_sel = 0;   // a new first airport takes the run from 0
    adddel_aptrwy(1, 1, 0);
    expect_runs({{0, 0}, {1, 2}, {3, 3}});
    EXPECT_STREQ(apt_name[0], "Untitled");
    EXPECT_EQ(lats(0, rwy_wrl_max), "0! 0 1 6 ");   // lying on the runway it went in ahead of
    EXPECT_EQ(msc.rwy_sel, 0);

    msc.apt_sel = 0;   // deleting every airport leaves an empty table, where a fourth delete finds nothing
    for (int k = 0; k < 4; k++) adddel_aptrwy(1, 0, 0);
    EXPECT_EQ(std::pair(apt_wrl_max, rwy_wrl_max), std::pair(-1, -1));
    adddel_aptrwy(1, 1, 0);      // and a new airport into the empty table
    expect_runs({{0, 0}});
    screen_frame(190, 238);      // whose ADD RUNWAY works like any other's
    expect_runs({{0, 1}});
}

TEST_F(AirportTables, FullTablesRefuseAndLoseNothing)
{
    msc.apt_sel = msc.rwy_sel = 0;
    make_airports({1, 20});   // the second airport's runway list shows nineteen rows, down to y 156
    screen_frame(), msc.apt_sel = 1, screen_frame();   // its first runway framed from the first frame on
    EXPECT_EQ(written(7, 20, 334, 64, 1), rect_pixels(22, 334, 59, 1));
    EXPECT_EQ(written(7, 25, 146, 60, 17).size(), written(7, 25, 156, 60, 7).size());
    screen_frame(96, 320), screen_frame();   // its down arrow: one row on, and it stays there
    EXPECT_EQ(rwy_list_top, 1);
    msc.apt_sel = 0, make_airports({1, rwy_cap - 1});   // every runway slot taken
    // The screen's ADD AIRPORT and ADD RUNWAY.
    expect_alert("The runway table is full!");
    screen_frame(150, 364);
    EXPECT_EQ(apt_wrl_max, 1);
    EXPECT_EQ(alerts_seen().size(), 1u);
    screen_frame(190, 238);   // a runway: refused without a word
    EXPECT_EQ(rwy_wrl_max, rwy_cap - 1);
    EXPECT_EQ(rwy_lat[rwy_cap - 1], (float)(rwy_cap - 1));

    apt_wrl_max = apt_cap - 1;
    screen_frame(150, 364);
    EXPECT_EQ(apt_wrl_max, apt_cap - 1);
}

// A frame shows the airport and changes nothing of it, whatever the runway's
// side and surface, also the two surfaces that have no place on the selector;
// the controls change it.
TEST_F(AirportTables, AFrameOfTheScreenKeepsTheRecordAndItsControlsChangeIt)
{
    make_airports({4});
    const char sides[4] = {'L', 'C', 'R', 'x'};
    const int codes[4] = {9345123, 11466466, 10111111, 1111111};   // surfaces y (the last place), h, L and M
    for (int r = 0; r < 4; r++) rwy_len[r] = 4000.0f - 1000 * r, rwy_lcr[r] = sides[r], rwy_code[r] = codes[r];
    apt_h[0] = 125, apt_twr[0] = 1, apt_bld[0] = 0;
    for (int r = 0; r < 4; r++) {
        msc.rwy_sel = r;
        screen_frame();
        EXPECT_EQ(record(r), "125 10 " + std::string(1, sides[r]) + " " + std::to_string(codes[r]));
    }
    EXPECT_EQ(written(7, 20, 313, 64, 3), rect_pixels(22, 314, 59, 1, {{22, 313}, {80, 313}}));   // the fourth row's frame, 10 high
    EXPECT_EQ(written(7, 115, 119, 50, 7), stamped(",", 133, 119, 6, stamped("00125", 118, 119, 10)));   // 00,125 ft
    EXPECT_EQ(written(7, 223, 74, 20, 7), stamped("01", 226, 74, 10));   // the runway's number
    C_to_C("KABC", apt_id[0]), screen_frame(310, 115), screen_frame(320, 115);   // the id's last letter on; past it, nothing
    EXPECT_STREQ(apt_id[0], "KABD");
    msc.rwy_sel = 2;
    screen_frame(290, 40);    // the surface selector steps on from its first place
    screen_frame(260, 90);    // the side button from R back round to x
    screen_frame(470, 130);   // the tower: no
    screen_frame(660, 130);   // the buildings: yes
    screen_frame(160, 130);   // a foot higher
    screen_frame(560, 90);    // the first end's slope lights: VASI
    EXPECT_EQ(record(2), "126 01 x 2211111");
    screen_frame(260, 60);
    EXPECT_EQ(rwy_lcr[2], 'R');
    screen_frame(238, 84);   // the runway number's units up from 0, then down twice: no number below 0
    EXPECT_EQ(rwy_num[2], 2);
    screen_frame(238, 68);
    screen_frame(238, 68);
    screen_frame(238, 68);
    EXPECT_EQ(rwy_num[2], 0);
    // The surface selector's places: asphalt, concrete, then the letters s to y.
    const char places[] = "Mistuvwxy";
    for (int p = 1; p <= 9; p++)
        EXPECT_EQ(surface_letter_of(p) * 10 + surface_position(places[p - 1]), places[p - 1] * 10 + p);
}

// ---- navaids ----------------------------------------------------------------------------------------

TEST_F(AirportTables, NavaidRunsAreFoundAndAddsGoAtTheirEnd)
{
    std::fill(nav_type, nav_type + nav_cap, 0);
    const int types[6] = {2, 2, 3, 6, 6, 4};
    for (int k = 0; k < 6; k++) {
        nav_type[k] = types[k], nav_lat[k] = (float)k;
        C_to_C(std::to_string(k).c_str(), nav_id[k]), C_to_C(nav_id[k], nav_name[k]);
    }
    int first, last;
    navaid_run(6, &first, &last);
    EXPECT_EQ(std::pair(first, last), std::pair(3, 4));
    navaid_run(9, &first, &last);
    EXPECT_EQ(std::pair(first, last), std::pair(0, 0));

    // A glideslope shows heading 123 and slope 3.00, and packs them back.
    OGL_assign_colortable();
    to_array = 1, mnw.mouse_click = mnw.mouse_down = 0;
    auto click = [](float x, float y) { mnw.mouse_x = x, mnw.mouse_y = y, mnw.mouse_click = 1, handle_nav(); };
    nav_hdng[3] = 300123.0f, nav_list_type = 6, msc.nav_sel = 3;
    handle_nav();
    EXPECT_EQ(nav_hdng[3], 300123.0f);
    nav_hdng[3] = 300359.5f;   // a fractional heading is rounded when it is split
    handle_nav();
    EXPECT_EQ(nav_hdng[3], 300360.0f);
    // The latitude spinner, DD.ddddd: the upper half of its units column adds a degree.
    nav_lat[3] = 33.5f;
    click(416, 254);
    EXPECT_FLOAT_EQ(nav_lat[3], 34.5f);
    nav_frq[3] = 11360;   // the frequency's fifth column is its units
    click(436, 82);
    EXPECT_EQ(nav_frq[3], 11361);

    click(400, 360);   // ADD NAVAID
    EXPECT_EQ(msc.nav_sel, 5);
    EXPECT_STREQ(nav_name[5], "Untitled");
    EXPECT_EQ(std::vector<int>(nav_type + 3, nav_type + 7), (std::vector<int>{6, 6, 6, 4}));   // the rest up by one
    EXPECT_EQ(nav_lat[6], 5.0f);
    EXPECT_EQ(std::string(nav_id[6]) + nav_name[6], "55");   // the record moved whole
    click(400, 385);   // DELETE NAVAID closes the table up again
    EXPECT_EQ(nav_type[5], 4);
    EXPECT_EQ(nav_type[nav_cap - 1], 0);   // the last slot freed, not doubled
    EXPECT_EQ(msc.nav_sel, 4);      // held in the run of glideslopes

    nav_type[nav_cap - 1] = 9;      // a full table refuses the add
    expect_alert("The navaid table is full!");
    click(400, 360);
    EXPECT_EQ(nav_type[nav_cap - 1] * 10 + nav_type[5], 94);
    EXPECT_EQ(alerts_seen().size(), 1u);
    to_array = mnw.mouse_click = 0;
}

}   // namespace
