// Bounds of the small numeric and string helpers that everything rests on.
#include "hl/Hl_funct.h"

#include <gtest/gtest.h>
#include <cmath>
#include <string>

TEST(Helpers, RangeTestsIncludeBothEndsAndRejectNaN)
{
    EXPECT_EQ(intrange(5, 5, 5), 1);
    EXPECT_EQ(intrange(4, 5, 6), 0);
    EXPECT_EQ(fltrange(1.0f, 0.0f, 1.0f), 1);
    EXPECT_EQ(fltrange(NAN, 0.0f, 1.0f), 0);
    EXPECT_EQ(fltbox(0, 0, 0, 0, 1, 1), 1);
    EXPECT_EQ(fltbox(1, 1, 0, 0, 1, 1), 1);
    EXPECT_EQ(fltbox(1, 0, 0, 0, 1, 1), 1);
    EXPECT_EQ(fltbox(1.001f, 0.5f, 0, 0, 1, 1), 0);
}

TEST(Helpers, EdgeTestOfAClockwiseRegion)
{
    // A square with y pointing down, corners clockwise: (0,0) (10,0) (10,10) (0,10).
    const float xs[4] = {0, 10, 10, 0}, ys[4] = {0, 0, 10, 10};
    auto inside = [&](float px, float py) {
        int all = 1;
        for (int k = 0; k < 4; k++)
            all &= inside_cw_reg(xs[k], ys[k], xs[(k + 1) % 4], ys[(k + 1) % 4], px, py, 0);
        return all;
    };
    EXPECT_EQ(inside(5, 5), 1);
    EXPECT_EQ(inside(-1, 5), 0);
    EXPECT_EQ(inside(5, 11), 0);
    EXPECT_EQ(inside(10, 5), 0);   // comparisons are strict
    EXPECT_EQ(inside_cw_reg(1, 1, 1, 1, 0, 0, 0), 0);
}

TEST(Helpers, NumbersAndCharacters)
{
    EXPECT_EQ(char_to_int('7'), 7);
    EXPECT_EQ(char_to_int('+'), 1);
    EXPECT_EQ(char_to_int('-'), -1);
    EXPECT_EQ(char_to_int('x'), 0);
    EXPECT_EQ(int_to_char(10), '0');
    EXPECT_EQ(int_to_char(9), '9');
    EXPECT_EQ(str_is_int(""), 1);
    EXPECT_EQ(str_is_int("-5"), 0);
    EXPECT_EQ(str_to_int(""), -1);
    EXPECT_EQ(str_to_int("00042"), 42);
    EXPECT_EQ(str_to_int("123456"), -1);
    EXPECT_EQ(str_to_int("-5"), -1);

    char out[16];
    const int values[] = {0, -45, 100000, 999999, 7, -999999};
    const char* texts[] = {"0", "-45", "100000", "999999", "7", "-999999"};
    for (int k = 0; k < 6; k++) {
        int_to_str(values[k], out);
        EXPECT_STREQ(out, texts[k]);
    }
    int_to_str(1234567, out);   // beyond the range the top digit becomes '0'
    EXPECT_STREQ(out, "034567");
}
