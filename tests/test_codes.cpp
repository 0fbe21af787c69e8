// The runway lighting code, the identifier characters, the packed terrain
// code of a tile vertex, and the small number and range helpers.
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>

namespace {

// The code's fields as "M 123 456": the surface letter, then the slope, runway
// and approach digits of end 0 and of end 1; back: the code they encode to.
std::string lights(int code, int* back = nullptr)
{
    int surface, slope[2], runway[2], approach[2];
    code_to_lgts(&surface, slope, runway, approach, code);
    if (back) *back = lgts_to_code(surface, slope, runway, approach);
    return std::string(1, (char)surface) + " " + std::to_string(slope[0] * 100 + runway[0] * 10 + approach[0]) +
           " " + std::to_string(slope[1] * 100 + runway[1] * 10 + approach[1]);
}

const float marker = 9.0f;   // a planest value no orientation holds

struct Vertex {
    int water = 1;
    unsigned int tex = 4321;
    float st[2][2][2];
};

Vertex decoded(int code)
{
    Vertex v;
    std::fill(&v.st[0][0][0], &v.st[0][0][0] + 8, marker);
    code_to_state(&v.water, v.st, &v.tex, code);
    return v;
}

// The orientation the values stand for, -1 for none, -2 for the untouched marker.
int orientation_of(const float st[2][2][2])
{
    if (st[0][0][0] == marker) return -2;
    for (int o = 0; o < st_count; o++) {
        set_orientation(1, 1, o, 0);
        if (std::memcmp(planest[1][1], st, sizeof planest[1][1]) == 0) return o;
    }
    return -1;
}

int encoded(int water, int orientation, unsigned int tex)
{
    set_orientation(0, 0, orientation, tex);
    return state_to_code(water, planest[0][0], tex);
}

}  // namespace

TEST(Codes, RunwayCodeDecodesDigitByDigitAndEncodesBack)
{
    EXPECT_EQ(lights(2345123), "i 345 123");
    EXPECT_EQ(lights(11111111), "h 111 111");   // the two-digit surface
    EXPECT_EQ(lights(9466466), "y 466 466");     // every digit at its top
    EXPECT_EQ(lights(111111), "M 111 111");      // no surface digit: asphalt
    // A 0 digit yields 1; a hundreds digit of 5 steps through 400 and then 100.
    EXPECT_EQ(lights(3000000), "s 111 111");
    EXPECT_EQ(lights(1511532), "M 111 132");

    int back = 0;
    for (int code : {1111111, 2345123, 11466466, 10111111}) {
        lights(code, &back);
        EXPECT_EQ(back, code);
    }
    // A letter or a digit outside its table adds nothing.
    int slope[2] = {5, 1}, runway[2] = {1, 7}, approach[2] = {1, 0};
    EXPECT_EQ(lgts_to_code('Q', slope, runway, approach), 11100);
}

TEST(Codes, IdentifierCharacters)
{
    const std::pair<int, char> ends[] = {{0, ' '}, {1, '0'}, {10, '9'}, {11, 'A'}, {36, 'Z'}};
    for (auto [code, c] : ends) {
        EXPECT_EQ(code_to_char(code), c) << code;
        EXPECT_EQ(char_to_code(c), code) << c;
    }
    EXPECT_EQ(code_to_char(37), '0');
    EXPECT_EQ(code_to_char(-1), '0');
    for (char c : {'a', '/', '[', '\0'}) EXPECT_EQ(char_to_code(c), 1) << (int)c;
}

TEST(Codes, TerrainCodeEncodesTheSValues)
{
    EXPECT_EQ(encoded(0, st_r0, 54), -40054);
    EXPECT_EQ(encoded(1, st_r1, 2054), -132054);
    // Mirrored orientations go out as the rotation with the same s values.
    EXPECT_EQ(encoded(0, st_flip_t, 52), -40052);
    EXPECT_EQ(encoded(0, st_flip_s, 52), -20052);
    EXPECT_EQ(encoded(0, st_swap, 52), -10052);
    // A cleared cell: all s equal, no digit.
    float cleared[2][2][2] = {};
    EXPECT_EQ(state_to_code(1, cleared, 50), -100050);
    // The t values are not looked at.
    set_orientation(0, 0, st_r1, 58);
    planest[0][0][0][0][1] = planest[0][0][0][1][1] = planest[0][0][1][1][1] = planest[0][0][1][0][1] = 0.7f;
    EXPECT_EQ(state_to_code(0, planest[0][0], 58), -30058);

    for (int water = 0; water <= 1; water++)
        for (int o = st_r0; o <= st_r3; o++)
            for (unsigned int tex : {0u, 58u, 2499u}) {
                Vertex v = decoded(encoded(water, o, tex));
                EXPECT_EQ(v.water * 10000 + v.tex, water * 10000 + tex);
                EXPECT_EQ(orientation_of(v.st), o) << "orientation " << o << " tex " << tex;
            }
}

// The small helpers that everything rests on. (inside_cw_reg is checked
// through the cell it serves, CellPick.SkewedCellHoldsWhatLiesInsideItsEdgesOnly.)
TEST(Helpers, RangesIncludeBothEndsAndRejectNaN)
{
    EXPECT_EQ(intrange(5, 5, 5), 1);
    EXPECT_EQ(intrange(4, 5, 6), 0);
    EXPECT_EQ(fltrange(1.0f, 0.0f, 1.0f), 1);
    EXPECT_EQ(fltrange(NAN, 0.0f, 1.0f), 0);
    const struct { float x, y; int inside; } points[] = {{0, 0, 1}, {1, 1, 1}, {1, 0, 1}, {1.001f, 0.5f, 0}};
    for (auto p : points) EXPECT_EQ(fltbox(p.x, p.y, 0, 0, 1, 1), p.inside) << p.x << "," << p.y;
}

TEST(Helpers, NumbersAndCharacters)
{
    for (auto [c, value] : {std::pair{'7', 7}, {'+', 1}, {'-', -1}, {'x', 0}}) EXPECT_EQ(char_to_int(c), value) << c;
    EXPECT_EQ(int_to_char(10), '0');
    EXPECT_EQ(int_to_char(9), '9');
    EXPECT_EQ(str_is_int(""), 1);
    EXPECT_EQ(str_is_int("-5"), 0);
    for (auto [text, value] : {std::pair{"", -1}, {"00042", 42}, {"123456", -1}, {"-5", -1}})
        EXPECT_EQ(str_to_int(text), value) << text;

    // Beyond the range the top digit becomes '0'.
    char out[16];
    for (auto [value, text] : {std::pair{0, "0"}, {-45, "-45"}, {100000, "100000"}, {999999, "999999"},
                               {-999999, "-999999"}, {1234567, "034567"}}) {
        int_to_str(value, out);
        EXPECT_STREQ(out, text);
    }
}
