// Derivation of the ground textures of a tile and their orientation from the
// water flags: plain tiles, shores, and the inside corners of a grass cell.
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstring>

namespace {

// The orientation whose eight values the cell holds, or -1.
int orientation_at(int i, int j)
{
    for (int o = 0; o < st_count; o++) {
        const float *s = st_table[o][0], *t = st_table[o][1];   // SW, NW, NE, SE
        const float corners[8] = {s[0], t[0], s[1], t[1], s[3], t[3], s[2], t[2]};
        if (std::memcmp(planest[i][j], corners, sizeof corners) == 0) return o;
    }
    return -1;
}

::testing::AssertionResult cell_is(int i, int j, unsigned int tex, int orientation)
{
    if (planetex[i][j] == tex && orientation_at(i, j) == orientation) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cell (" << i << ", " << j << ") is " << planetex[i][j] << " in "
                                         << orientation_at(i, j) << ", expected " << tex << " in " << orientation;
}

// A flat tile, all land or all water, with nothing derived yet.
void lay_tile(int water)
{
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) {
            planelon[i][j] = -119.0f + i / 59.0f;
            planelat[i][j] = 33.0f + j / 79.0f;
            planey[i][j] = 0.0f;
            is_water[i][j] = water;
            planetex[i][j] = 0;
        }
    std::memset(planest, 0, sizeof planest);
}

void set_water(int i0, int i1, int j0, int j1, int water)
{
    for (int i = i0; i <= i1; i++)
        for (int j = j0; j <= j1; j++) is_water[i][j] = water;
}

void derive() { assign_terrain_texes(0, 0); }

// A flat tile, all land or all water, changed and then derived.
template <typename F>
void derive_on(int water, F change)
{
    lay_tile(water);
    change();
    derive();
}

struct cell { int i, j; unsigned int tex; int orientation; };

void expect_cells(std::initializer_list<cell> cells)
{
    for (const cell& c : cells) EXPECT_TRUE(cell_is(c.i, c.j, c.tex, c.orientation));
}

int all_cells_are(unsigned int tex)
{
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (planetex[i][j] != tex || orientation_at(i, j) != st_r0) return 0;
    return 1;
}

class Derivation : public ::testing::Test {
protected:
    void SetUp() override
    {
        fill_constants();
        lay_tile(0);
    }
};

}  // namespace

TEST_F(Derivation, PlainTilesGetPlainTextures)
{
    // The entries of the last vertex row and column belong to no cell.
    derive_on(1, [] { planetex[59][10] = planetex[10][79] = 7; });
    EXPECT_TRUE(all_cells_are(50));
    EXPECT_EQ(planetex[59][10] + planetex[10][79], 14u);
    derive_on(0, [] {});
    EXPECT_TRUE(all_cells_are(54));
}

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
