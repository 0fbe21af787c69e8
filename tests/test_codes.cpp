// Numbers as digits, and the ground textures of a tile and their orientation
// derived from the water flags and the slopes.
#include "world_fixture.h"

#include <algorithm>
#include <cstring>

namespace {

// The orientation whose eight values a cell holds, -1 for none.
int orientation_of(const float st[2][2][2])
{
    for (int o = 0; o < st_count; o++) {
        const float *s = st_table[o][0], *t = st_table[o][1];   // SW, NW, NE, SE
        const float corners[8] = {s[0], t[0], s[1], t[1], s[3], t[3], s[2], t[2]};
        if (std::memcmp(st, corners, sizeof corners) == 0) return o;
    }
    return -1;
}

}  // namespace

// Only digits make a number (the ids of the menu file go through these), and
// a number comes back as decimal text without leading zeros; rounding takes halves away from 0.
TEST(Helpers, OnlyDigitsMakeANumberAndNumbersComeBackAsDigits)
{
    EXPECT_EQ(str_is_int("-5"), 0);
    for (auto [text, value] : {std::pair{"", -1}, {"00042", 42}, {"12345", 12345}, {"123456", -1}, {"-5", -1}})
        EXPECT_EQ(str_to_int(text), value) << text;
    for (auto [x, n] : {std::pair{0.7f, 1}, {0.3f, 0}, {-0.7f, -1}, {-2.5f, -3}}) EXPECT_EQ(intround(x), n) << x;
    // And back: no leading zeros, each number of digits at its first value.
    char out[12];
    for (auto [value, text] : {std::pair{0, "0"}, {-7, "-7"}, {9, "9"}, {99, "99"}, {10, "10"}, {100, "100"}, {1000, "1000"}, {10000, "10000"},
                               {100000, "100000"}, {-999999, "-999999"}, {99999, "99999"}})
        EXPECT_STREQ((int_to_str(value, out), out), text);
}

// ---- derivation of the ground textures from the water flags ------------------------------------------

namespace {

void set_water(int i0, int i1, int j0, int j1, int water)
{
    for (int i = i0; i <= i1; i++)
        for (int j = j0; j <= j1; j++) is_water[i][j] = water;
}

// A flat tile, all land or all water, changed and then derived.
template <typename F>
void derive_on(int water, F change)
{
    lay_flat_grid();
    std::fill(&is_water[0][0], &is_water[0][0] + grid_ni * grid_nj, water);
    std::memset(planetex, 0, sizeof planetex);
    change();
    assign_terrain_texes(0, 0);
}

// Land rising by rise_i a row and rise_j a column, with water in cell (w, w).
void derive_slope(float rise_i, float rise_j, int w)
{
    derive_on(0, [=] {
        for (int i = 0; i < grid_ni; i++)
            for (int j = 0; j < grid_nj; j++) planey[i][j] = rise_i * i + rise_j * j;
        is_water[w][w] = 1;
    });
}

struct cell { int i, j; unsigned int tex; int orientation; };

void expect_cells(std::initializer_list<cell> cells)
{
    for (const cell& c : cells)
        EXPECT_TRUE(planetex[c.i][c.j] == c.tex && orientation_of(planest[c.i][c.j]) == c.orientation)
            << "cell (" << c.i << ", " << c.j << ") is " << planetex[c.i][c.j] << " in "
            << orientation_of(planest[c.i][c.j]) << ", expected " << c.tex << " in " << c.orientation;
}

using Derivation = WorldTest;

}  // namespace

TEST_F(Derivation, WaterEdgesFollowTheGrass)
{
    // A single water cell in grass: rules 1 to 4 all hold, the last wins.
    derive_on(0, [] { is_water[30][40] = 1; });
    expect_cells({{30, 40, 52, st_swap}, {29, 40, 54, st_r0}});
    // A north-south shore, grass to the west, along the whole column.
    derive_on(0, [] { set_water(20, 58, 0, 78, 1); });
    expect_cells({{20, 0, 51, st_r0}, {20, 39, 51, st_r0}, {20, 78, 51, st_r0}, {21, 40, 50, st_r0}});
    // An east-west shore: the neighbours along the shore are edge cells
    // themselves by the time a cell is looked at, and still count as coast.
    derive_on(0, [] { set_water(0, 58, 30, 78, 1); });
    expect_cells({{0, 30, 51, st_r3}, {29, 30, 51, st_r3}, {58, 30, 51, st_r3}});
    // Water in the south-west quarter: its north-east cell has grass east and north only (rule 3).
    derive_on(0, [] { set_water(0, 19, 0, 39, 1); });
    expect_cells({{19, 39, 52, st_flip_s}});
    // At i = 0 the west neighbour is the cell itself: never grass, always coast.
    derive_on(1, [] { is_water[0][41] = 0; });
    expect_cells({{0, 40, 51, st_r1}});
}

TEST_F(Derivation, OneGrassCellInWaterShowsEveryEdgeAndInsideCorner)
{
    derive_on(1, [] { is_water[19][19] = 0; });
    // Grass to the west, east, south and north of a cell; then at its
    // south-west, north-west, south-east and north-east diagonals.
    expect_cells({{19, 19, 54, st_r0}, {21, 21, 50, st_r0},
                   {20, 19, 51, st_r0}, {18, 19, 51, st_r2}, {19, 20, 51, st_r3}, {19, 18, 51, st_r1},
                   {20, 20, 53, st_r1}, {20, 18, 53, st_r2}, {18, 20, 53, st_r0}, {18, 18, 53, st_r3}});
    // Grass W and N and at the SE diagonal: rule 1 holds, then rule 11 overrides it.
    derive_on(1, [] { is_water[9][10] = is_water[10][11] = is_water[11][9] = 0; });
    expect_cells({{10, 10, 53, st_r0}});
}

// Land rising more than 1 in 10 takes the mountain texture 58, in blocks of two
// by two from (1, 1); not a block with water within a cell of it.
TEST_F(Derivation, SteepLandAwayFromWaterIsMountain)
{
    derive_slope(200, 0, 40);   // a slope of about 0.13, water at (40, 40)
    expect_cells({{31, 41, 58, st_r0}, {32, 42, 58, st_r0}});
    EXPECT_NE(planetex[39][39], 58u);
    // Water two cells east and north of a block's corner still counts, three
    // cells away it does not: the block at (37, 39) stays mountain (or its
    // edge) while the grass of the blocked ones is plain grass, 54.
    EXPECT_NE(planetex[37][39], 54u);
    // The last whole block from (1, 1) ends at row 76; rows 77 and 0 are grass.
    EXPECT_NE(planetex[31][76], 54u);
    EXPECT_EQ(std::pair(planetex[31][0], planetex[31][77]), std::pair(54u, 54u));

    derive_slope(200, 0, 41);
    EXPECT_EQ(planetex[39][39], 54u);
    EXPECT_NE(planetex[37][37], 54u);

    // The rises east and north are added: 0.056 and 0.063 make a mountain, 0.038
    // and 0.042 do not (as a vector, neither would).
    for (float rise : {90.0f, 60.0f}) {
        derive_slope(rise, rise, 0);
        EXPECT_EQ(planetex[31][41], rise > 80 ? 58u : 54u) << rise;
    }
}
