// The runway lighting code, the identifier characters and the packed terrain
// code of a tile vertex.
#include "hl/Hl_funct.h"

#include <gtest/gtest.h>
#include <climits>
#include <string>

namespace {

struct Lights {
    int surface;
    int slope[2], runway[2], approach[2];
};

Lights decode(int code)
{
    Lights l{};
    code_to_lgts(&l.surface, l.slope, l.runway, l.approach, code);
    return l;
}

int encode(Lights l) { return lgts_to_code(l.surface, l.slope, l.runway, l.approach); }

::testing::AssertionResult lights_are(const Lights& l, char surface, int slope0, int runway0,
                                      int approach0, int slope1, int runway1, int approach1)
{
    if (l.surface == surface && l.slope[0] == slope0 && l.runway[0] == runway0 &&
        l.approach[0] == approach0 && l.slope[1] == slope1 && l.runway[1] == runway1 &&
        l.approach[1] == approach1)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "got '" << (char)l.surface << "' " << l.slope[0] << l.runway[0] << l.approach[0] << " "
           << l.slope[1] << l.runway[1] << l.approach[1];
}

// One vertex of a tile as the packed code sees it.
struct Vertex {
    int water;
    float st[2][2][2];
    unsigned int tex;
};

const float marker = 9.0f;   // a planest value no orientation holds

Vertex vertex_with_marker()
{
    Vertex v;
    v.water = 1;
    v.tex = 4321;
    for (int a = 0; a < 2; a++)
        for (int b = 0; b < 2; b++)
            for (int k = 0; k < 2; k++) v.st[a][b][k] = marker;
    return v;
}

Vertex decoded(int code)
{
    Vertex v = vertex_with_marker();
    code_to_state(&v.water, v.st, &v.tex, code);
    return v;
}

void store(float st[2][2][2], int orientation)
{
    const float* s = st_table[orientation][0];
    const float* t = st_table[orientation][1];
    st[0][0][0] = s[0]; st[0][1][0] = s[1]; st[1][1][0] = s[2]; st[1][0][0] = s[3];
    st[0][0][1] = t[0]; st[0][1][1] = t[1]; st[1][1][1] = t[2]; st[1][0][1] = t[3];
}

// The orientation the values stand for, -1 for none, -2 for the untouched marker.
int orientation_of(const float st[2][2][2])
{
    if (st[0][0][0] == marker) return -2;
    for (int o = 0; o < st_count; o++) {
        float probe[2][2][2];
        store(probe, o);
        int same = 1;
        for (int a = 0; a < 2; a++)
            for (int b = 0; b < 2; b++)
                for (int k = 0; k < 2; k++) same &= probe[a][b][k] == st[a][b][k];
        if (same) return o;
    }
    return -1;
}

int encoded(int water, int orientation, unsigned int tex)
{
    float st[2][2][2];
    store(st, orientation);
    return state_to_code(water, st, tex);
}

}  // namespace

TEST(Codes, RunwayCodeDecodesDigitByDigit)
{
    EXPECT_TRUE(lights_are(decode(1111111), 'M', 1, 1, 1, 1, 1, 1));
    EXPECT_TRUE(lights_are(decode(2345123), 'i', 3, 4, 5, 1, 2, 3));
    EXPECT_TRUE(lights_are(decode(11111111), 'h', 1, 1, 1, 1, 1, 1));
    EXPECT_TRUE(lights_are(decode(10111111), 'L', 1, 1, 1, 1, 1, 1));
    EXPECT_TRUE(lights_are(decode(9466466), 'y', 4, 6, 6, 4, 6, 6));
    // No surface digit: asphalt.
    EXPECT_TRUE(lights_are(decode(111111), 'M', 1, 1, 1, 1, 1, 1));
    // A 0 digit yields 1; a hundreds digit of 5 steps through 400 and then 100.
    EXPECT_TRUE(lights_are(decode(3000000), 's', 1, 1, 1, 1, 1, 1));
    EXPECT_TRUE(lights_are(decode(1511532), 'M', 1, 1, 1, 1, 3, 2));
}

TEST(Codes, RunwayCodeEncodesBack)
{
    EXPECT_EQ(encode(decode(2345123)), 2345123);
    EXPECT_EQ(encode(decode(1000000)), 1111111);
    EXPECT_EQ(encode(decode(111111)), 1111111);

    // A letter or a digit outside its table adds nothing.
    Lights l = decode(1111111);
    l.surface = 'Q';
    EXPECT_EQ(encode(l), 111111);
    l = decode(1111111);
    l.slope[0] = 5;
    l.runway[1] = 7;
    l.approach[1] = 0;
    EXPECT_EQ(encode(l), 1011100);

    // Every code made of digits in their ranges comes back unchanged.
    const char letters[12] = {0, 'M', 'i', 's', 't', 'u', 'v', 'w', 'x', 'y', 'L', 'h'};
    int failures = 0;
    for (int s = 1; s <= 11; s++)
        for (int a = 0; a < 4 * 6 * 6; a++)
            for (int b = 0; b < 4 * 6 * 6; b++) {
                int ga = (a / 36 + 1) * 100 + (a / 6 % 6 + 1) * 10 + a % 6 + 1;
                int gb = (b / 36 + 1) * 100 + (b / 6 % 6 + 1) * 10 + b % 6 + 1;
                int code = s * 1000000 + ga * 1000 + gb;
                Lights d = decode(code);
                int ok = d.surface == letters[s] && d.slope[0] == ga / 100 &&
                         d.runway[0] == ga / 10 % 10 && d.approach[0] == ga % 10 &&
                         d.slope[1] == gb / 100 && d.runway[1] == gb / 10 % 10 &&
                         d.approach[1] == gb % 10 && encode(d) == code;
                if (!ok && failures++ < 5) ADD_FAILURE() << "code " << code;
            }
    EXPECT_EQ(failures, 0);
}

TEST(Codes, IdentifierCharacters)
{
    const std::string table = " 0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int code = 0; code <= 36; code++) {
        EXPECT_EQ(code_to_char(code), table[code]) << code;
        EXPECT_EQ(char_to_code(table[code]), code) << table[code];
    }
    EXPECT_EQ(code_to_char(37), '0');
    EXPECT_EQ(code_to_char(-1), '0');
    EXPECT_EQ(char_to_code('a'), 1);
    EXPECT_EQ(char_to_code('z'), 1);
    EXPECT_EQ(char_to_code('.'), 1);
    EXPECT_EQ(char_to_code('['), 1);
    EXPECT_EQ(char_to_code('/'), 1);
    EXPECT_EQ(char_to_code('\0'), 1);
}

TEST(Codes, NegativeTerrainCodeDecodes)
{
    Vertex v = decoded(-142054);
    EXPECT_EQ(v.water, 1);
    EXPECT_EQ(v.tex, 2054u);
    EXPECT_EQ(orientation_of(v.st), st_r0);

    v = decoded(-10054);
    EXPECT_EQ(v.water, 0);
    EXPECT_EQ(v.tex, 54u);
    EXPECT_EQ(orientation_of(v.st), st_r3);

    v = decoded(-2054);
    EXPECT_EQ(v.water, 0);
    EXPECT_EQ(v.tex, 2054u);
    EXPECT_EQ(orientation_of(v.st), -2);

    EXPECT_EQ(orientation_of(decoded(-30050).st), st_r1);
    EXPECT_EQ(orientation_of(decoded(-120050).st), st_r2);

    // Each digit step fires once, in turn, so the smallest one that fits is stored last.
    v = decoded(-170050);
    EXPECT_EQ(v.water, 1);
    EXPECT_EQ(v.tex, 50u);
    EXPECT_EQ(orientation_of(v.st), st_r1);

    // The most negative int still counts as water with every digit.
    v = decoded(INT_MIN);
    EXPECT_EQ(v.water, 1);
    EXPECT_EQ(v.tex, 2147483648u - 200000u);
    EXPECT_EQ(orientation_of(v.st), st_r3);
}

TEST(Codes, FlagTerrainCodeDecodes)
{
    Vertex v = decoded(0x400);
    EXPECT_EQ(v.water, 0);
    EXPECT_EQ(v.tex, 2001u);
    EXPECT_EQ(orientation_of(v.st), -2);
    EXPECT_EQ(decoded(0x200).tex, 2000u);
    EXPECT_EQ(decoded(0x10000000).tex, 2019u);
    EXPECT_EQ(decoded(0x10000000 | 0x400).tex, 2001u);

    v = decoded(0);
    EXPECT_EQ(v.water, 0);
    EXPECT_EQ(v.tex, 0u);
    EXPECT_EQ(orientation_of(v.st), -2);

    EXPECT_EQ(decoded(0x04).water, 1);
    EXPECT_EQ(decoded(0x02).water, 1);
    EXPECT_EQ(decoded(0x10 | 0x08 | 0x01).water, 0);
    EXPECT_EQ(decoded(0x10 | 0x08 | 0x01).tex, 0u);

    EXPECT_EQ(orientation_of(decoded(0x100).st), st_r3);
    EXPECT_EQ(orientation_of(decoded(0x80).st), st_r2);
    EXPECT_EQ(orientation_of(decoded(0x40).st), st_r1);
    EXPECT_EQ(orientation_of(decoded(0x20).st), st_r0);
    EXPECT_EQ(orientation_of(decoded(0x100 | 0x20).st), st_r0);

    v = decoded(0x800 | 0x80 | 0x04);
    EXPECT_EQ(v.water, 1);
    EXPECT_EQ(v.tex, 2002u);
    EXPECT_EQ(orientation_of(v.st), st_r2);
}

TEST(Codes, TerrainCodeEncodesTheSValues)
{
    EXPECT_EQ(encoded(0, st_r0, 54), -40054);
    EXPECT_EQ(encoded(0, st_r1, 54), -30054);
    EXPECT_EQ(encoded(0, st_r2, 54), -20054);
    EXPECT_EQ(encoded(0, st_r3, 54), -10054);
    EXPECT_EQ(encoded(1, st_r0, 2054), -142054);

    // Mirrored orientations go out as the rotation with the same s values.
    EXPECT_EQ(encoded(0, st_flip_t, 52), -40052);
    EXPECT_EQ(encoded(0, st_flip_s, 52), -20052);
    EXPECT_EQ(encoded(0, st_swap, 52), -10052);

    // A cleared cell: all s equal, no digit.
    float cleared[2][2][2] = {};
    EXPECT_EQ(state_to_code(1, cleared, 50), -100050);
    EXPECT_EQ(state_to_code(0, cleared, 0), 0);

    // The t values are not looked at.
    float st[2][2][2];
    store(st, st_r1);
    st[0][0][1] = st[0][1][1] = st[1][1][1] = st[1][0][1] = 0.7f;
    EXPECT_EQ(state_to_code(0, st, 58), -30058);

    for (int water = 0; water <= 1; water++)
        for (int o = st_r0; o <= st_r3; o++)
            for (unsigned int tex : {0u, 50u, 58u, 2000u, 2499u, 9999u}) {
                Vertex v = decoded(encoded(water, o, tex));
                EXPECT_EQ(v.water, water);
                EXPECT_EQ(v.tex, tex);
                EXPECT_EQ(orientation_of(v.st), o) << "orientation " << o << " tex " << tex;
            }
}
