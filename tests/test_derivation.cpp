// Derivation of the ground textures of a tile and their orientation from the
// water flags, the elevations and the custom cells.
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstring>
#include <random>

namespace {

const float tile_lat = 33.0f;
const float tile_lon = -119.0f;

const char* const orientation_names[st_count] = {
    "st_r0", "st_r1", "st_r2", "st_r3", "st_flip_t", "st_flip_s", "st_swap"};

const char* orientation_name(int o) { return o >= 0 && o < st_count ? orientation_names[o] : "none"; }

// The orientation whose eight values the cell holds, or -1.
int orientation_at(int i, int j)
{
    const float(*cell)[2][2] = planest[i][j];
    for (int o = 0; o < st_count; o++) {
        const float* s = st_table[o][0];
        const float* t = st_table[o][1];
        if (cell[0][0][0] == s[0] && cell[0][1][0] == s[1] && cell[1][1][0] == s[2] &&
            cell[1][0][0] == s[3] && cell[0][0][1] == t[0] && cell[0][1][1] == t[1] &&
            cell[1][1][1] == t[2] && cell[1][0][1] == t[3])
            return o;
    }
    return -1;
}

::testing::AssertionResult cell_is(int i, int j, unsigned int tex, int orientation)
{
    unsigned int got = planetex[i][j];
    int got_orientation = orientation_at(i, j);
    if (got == tex && got_orientation == orientation) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "cell (" << i << ", " << j << ") is " << got << " " << orientation_name(got_orientation)
           << ", expected " << tex << " " << orientation_name(orientation);
}

// A flat tile, all land or all water, with nothing derived yet.
void lay_tile(int water)
{
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) {
            planelon[i][j] = tile_lon + i / 59.0f;
            planelat[i][j] = tile_lat + j / 79.0f;
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

// Distances of the block at (i, j), formed as the derivation forms them.
float north_distance(int i, int j)
{
    return (planelat[i][j + 1] - planelat[i][j]) * 60.0f * con.nm_to_m;
}

float east_distance(int i, int j)
{
    return (planelon[i + 1][j] - planelon[i][j]) * 60.0f * con.nm_to_m *
           std::cos(planelat[i][j] * con.deg_to_rad);
}

// A rise whose single-precision quotient by the distance is exactly the slope.
float rise_giving(float slope, float distance)
{
    float rise = slope * distance;
    for (int step = 0; step < 16 && rise / distance != slope; step++)
        rise = std::nextafter(rise, rise / distance < slope ? INFINITY : 0.0f);
    return rise;
}

int all_cells_are(unsigned int tex, int orientation)
{
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (planetex[i][j] != tex || orientation_at(i, j) != orientation) return 0;
    return 1;
}

// A lone block at a lattice position, made steep by its east vertex only.
const int bi = 21, bj = 31;

void make_steep(int i, int j) { planey[i + 1][j] = 1000.0f; }

int block_is_mountain(int i, int j)
{
    // A mountain block in grass ends as its four corner pieces.
    return planetex[i][j] == 56 && planetex[i][j + 1] == 56 && planetex[i + 1][j] == 56 &&
           planetex[i + 1][j + 1] == 56;
}

int block_is_grass(int i, int j)
{
    return planetex[i][j] == 54 && planetex[i][j + 1] == 54 && planetex[i + 1][j] == 54 &&
           planetex[i + 1][j + 1] == 54;
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
    planetex[59][10] = 7;
    planetex[10][79] = 7;

    lay_tile(1);
    planetex[59][10] = 7;
    planetex[10][79] = 7;
    derive();
    EXPECT_TRUE(all_cells_are(50, st_r0));
    EXPECT_EQ(planetex[59][10], 7u);
    EXPECT_EQ(planetex[10][79], 7u);

    lay_tile(0);
    derive();
    EXPECT_TRUE(all_cells_are(54, st_r0));
}

TEST_F(Derivation, WaterEdgesFollowTheGrass)
{
    // A single water cell in grass: rules 1 to 4 all hold, the last wins.
    is_water[30][40] = 1;
    derive();
    EXPECT_TRUE(cell_is(30, 40, 52, st_swap));
    EXPECT_TRUE(cell_is(29, 40, 54, st_r0));

    // A north-south shore, grass to the west, along the whole column.
    lay_tile(0);
    set_water(20, 58, 0, 78, 1);
    derive();
    for (int j : {0, 40, 78}) EXPECT_TRUE(cell_is(20, j, 51, st_r0));
    EXPECT_TRUE(cell_is(21, 40, 50, st_r0));
    EXPECT_TRUE(cell_is(19, 40, 54, st_r0));

    // The same with the grass to the east.
    lay_tile(0);
    set_water(0, 30, 0, 78, 1);
    derive();
    for (int j : {0, 40, 78}) EXPECT_TRUE(cell_is(30, j, 51, st_r2));
    EXPECT_TRUE(cell_is(29, 40, 50, st_r0));

    // East-west shores: the neighbours along the shore are edge cells
    // themselves by the time a cell is looked at, and still count as coast.
    lay_tile(0);
    set_water(0, 58, 0, 30, 1);
    derive();
    for (int i : {0, 30, 58}) EXPECT_TRUE(cell_is(i, 30, 51, st_r1));
    lay_tile(0);
    set_water(0, 58, 30, 78, 1);
    derive();
    for (int i : {0, 30, 58}) EXPECT_TRUE(cell_is(i, 30, 51, st_r3));

    // At i = 0 the west neighbour is the cell itself: never grass, always coast.
    lay_tile(1);
    is_water[0][41] = 0;
    derive();
    EXPECT_TRUE(cell_is(0, 40, 51, st_r1));
}

TEST_F(Derivation, OneGrassCellInWaterShowsEveryEdgeAndInsideCorner)
{
    lay_tile(1);
    is_water[19][19] = 0;
    derive();
    EXPECT_TRUE(cell_is(19, 19, 54, st_r0));
    EXPECT_TRUE(cell_is(20, 19, 51, st_r0));   // grass to the west
    EXPECT_TRUE(cell_is(18, 19, 51, st_r2));   // grass to the east
    EXPECT_TRUE(cell_is(19, 20, 51, st_r3));   // grass to the south
    EXPECT_TRUE(cell_is(19, 18, 51, st_r1));   // grass to the north
    EXPECT_TRUE(cell_is(20, 20, 53, st_r1));   // grass at the south-west diagonal
    EXPECT_TRUE(cell_is(20, 18, 53, st_r2));   // north-west
    EXPECT_TRUE(cell_is(18, 20, 53, st_r0));   // south-east
    EXPECT_TRUE(cell_is(18, 18, 53, st_r3));   // north-east
    EXPECT_TRUE(cell_is(21, 21, 50, st_r0));

    // Grass W and N and at the SE diagonal: rule 1 holds, then rule 11 overrides it.
    lay_tile(1);
    is_water[9][10] = 0;
    is_water[10][11] = 0;
    is_water[11][9] = 0;
    derive();
    EXPECT_TRUE(cell_is(10, 10, 53, st_r0));
}

TEST_F(Derivation, CustomCellsAreNeitherGrassNorCoast)
{
    // A custom cell in the shore column stops the edge of its neighbours.
    set_water(20, 58, 0, 78, 1);
    set_orientation(20, 40, st_r2, 2005);
    derive();
    EXPECT_TRUE(cell_is(20, 40, 2005, st_r2));
    EXPECT_TRUE(cell_is(20, 41, 50, st_r0));
    EXPECT_TRUE(cell_is(20, 39, 50, st_r0));
    EXPECT_TRUE(cell_is(20, 42, 51, st_r0));

    // A custom cell in place of the grass makes no edge.
    lay_tile(0);
    set_water(20, 58, 0, 78, 1);
    planetex[19][40] = 2006;
    derive();
    EXPECT_TRUE(cell_is(20, 40, 50, st_r0));
    EXPECT_TRUE(cell_is(20, 41, 51, st_r0));

    // Painting default over the custom cell gives it back to the derivation.
    planetex[20][40] = 0;
    planetex[19][40] = 0;
    derive();
    EXPECT_TRUE(cell_is(20, 40, 51, st_r0));
    EXPECT_TRUE(cell_is(19, 40, 54, st_r0));
    EXPECT_TRUE(cell_is(20, 41, 51, st_r0));
}

TEST_F(Derivation, SteepBlockBecomesMountainWithCorners)
{
    make_steep(bi, bj);
    derive();
    EXPECT_TRUE(cell_is(bi, bj, 56, st_flip_t));
    EXPECT_TRUE(cell_is(bi, bj + 1, 56, st_r0));
    EXPECT_TRUE(cell_is(bi + 1, bj, 56, st_swap));
    EXPECT_TRUE(cell_is(bi + 1, bj + 1, 56, st_flip_s));
    EXPECT_TRUE(cell_is(bi - 1, bj, 54, st_r0));
    EXPECT_TRUE(cell_is(bi + 2, bj + 1, 54, st_r0));
    EXPECT_TRUE(cell_is(bi, bj - 1, 54, st_r0));
    EXPECT_TRUE(cell_is(bi, bj + 2, 54, st_r0));

    // Three blocks in an L: the cell in the bend has grass at one diagonal only.
    lay_tile(0);
    make_steep(bi, bj);
    make_steep(bi + 2, bj);
    make_steep(bi, bj + 2);
    derive();
    EXPECT_TRUE(cell_is(bi + 1, bj + 1, 57, st_r3));
    EXPECT_TRUE(cell_is(bi + 2, bj + 1, 55, st_r1));   // grass to the north
    EXPECT_TRUE(cell_is(bi + 1, bj + 2, 55, st_r2));   // grass to the east
    EXPECT_TRUE(cell_is(bi + 3, bj + 1, 56, st_flip_s));
    EXPECT_TRUE(cell_is(bi, bj + 3, 56, st_r0));
}

TEST_F(Derivation, MountainsStayOffTheTileEdges)
{
    // Every block steep: only cells 1 to 56 by 1 to 76 lie in blocks.
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) planey[i][j] = j * 1000.0f;
    derive();
    for (int j = 0; j < grid_j; j++) {
        EXPECT_TRUE(cell_is(0, j, 54, st_r0));
        EXPECT_TRUE(cell_is(57, j, 54, st_r0));
        EXPECT_TRUE(cell_is(58, j, 54, st_r0));
    }
    for (int i = 0; i < grid_i; i++) {
        EXPECT_TRUE(cell_is(i, 0, 54, st_r0));
        EXPECT_TRUE(cell_is(i, 77, 54, st_r0));
        EXPECT_TRUE(cell_is(i, 78, 54, st_r0));
    }
    EXPECT_TRUE(cell_is(1, 40, 55, st_r0));
    EXPECT_TRUE(cell_is(56, 40, 55, st_r2));
    EXPECT_TRUE(cell_is(30, 1, 55, st_r3));
    EXPECT_TRUE(cell_is(30, 76, 55, st_r1));
    EXPECT_TRUE(cell_is(1, 1, 56, st_flip_t));
    EXPECT_TRUE(cell_is(56, 76, 56, st_flip_s));
    EXPECT_TRUE(cell_is(30, 40, 58, st_r0));
}

TEST_F(Derivation, SlopeIsTakenAtTheSouthWestVertex)
{
    // The limit 0.1 is a double: the float nearest to it lies above it.
    const float at_limit = 0.1f;
    const float below_limit = std::nextafter(at_limit, 0.0f);
    ASSERT_GT((double)at_limit, 0.1);
    ASSERT_LT((double)below_limit, 0.1);

    const float dist_n = north_distance(bi, bj);
    const float rise_at = rise_giving(at_limit, dist_n);
    const float rise_below = rise_giving(below_limit, dist_n);
    ASSERT_EQ(rise_at / dist_n, at_limit);
    ASSERT_EQ(rise_below / dist_n, below_limit);

    planey[bi][bj + 1] = rise_at;
    derive();
    EXPECT_TRUE(block_is_mountain(bi, bj));

    lay_tile(0);
    planey[bi][bj + 1] = rise_below;
    derive();
    EXPECT_TRUE(block_is_grass(bi, bj));

    // A fall counts as a rise.
    lay_tile(0);
    planey[bi][bj] = rise_at;
    derive();
    EXPECT_TRUE(block_is_mountain(bi, bj));

    // The east distance shrinks with the cosine of the latitude.
    const float dist_e = east_distance(bi, bj);
    lay_tile(0);
    planey[bi + 1][bj] = 0.105f * dist_e;
    derive();
    EXPECT_TRUE(block_is_mountain(bi, bj));
    lay_tile(0);
    planey[bi + 1][bj] = 0.095f * dist_e;
    derive();
    EXPECT_TRUE(block_is_grass(bi, bj));

    // The two slopes are added: 0.06 and 0.06 make a mountain, though
    // combined as a vector they would stay below the limit.
    lay_tile(0);
    planey[bi + 1][bj] = 0.06f * dist_e;
    planey[bi][bj + 1] = 0.06f * dist_n;
    derive();
    EXPECT_TRUE(block_is_mountain(bi, bj));

    // Only the south-west vertex and its east and north neighbours count.
    lay_tile(0);
    planey[bi + 1][bj + 1] = 1000.0f;
    derive();
    EXPECT_TRUE(block_is_grass(bi, bj));

    // Two vertices on one longitude: a rise over no distance is steep,
    // no rise over no distance is not.
    lay_tile(0);
    planelon[bi + 1][bj] = planelon[bi][bj];
    planey[bi + 1][bj] = 5.0f;
    derive();
    EXPECT_TRUE(block_is_mountain(bi, bj));
    lay_tile(0);
    planelon[bi + 1][bj] = planelon[bi][bj];
    derive();
    EXPECT_TRUE(block_is_grass(bi, bj));
}

TEST_F(Derivation, WaterNearABlockKeepsItLand)
{
    // Inside the ring of one cell around the block, on either side.
    for (auto at : {std::make_pair(bi - 1, bj), std::make_pair(bi + 2, bj + 2),
                    std::make_pair(bi + 1, bj - 1)}) {
        lay_tile(0);
        make_steep(bi, bj);
        is_water[at.first][at.second] = 1;
        derive();
        EXPECT_TRUE(block_is_grass(bi, bj)) << "water at " << at.first << ", " << at.second;
    }
    // Two cells away.
    for (auto at : {std::make_pair(bi - 2, bj), std::make_pair(bi + 3, bj + 1),
                    std::make_pair(bi, bj + 3)}) {
        lay_tile(0);
        make_steep(bi, bj);
        is_water[at.first][at.second] = 1;
        derive();
        EXPECT_EQ(planetex[bi][bj + 1], 56u) << "water at " << at.first << ", " << at.second;
        EXPECT_EQ(planetex[bi + 1][bj], 56u) << "water at " << at.first << ", " << at.second;
    }
}

TEST_F(Derivation, CustomCellInASteepBlockStaysCustom)
{
    make_steep(bi, bj);
    set_orientation(bi, bj + 1, st_r2, 2005);
    derive();
    EXPECT_TRUE(cell_is(bi, bj + 1, 2005, st_r2));
    EXPECT_TRUE(cell_is(bi, bj, 56, st_flip_t));
    EXPECT_TRUE(cell_is(bi + 1, bj, 56, st_swap));
    EXPECT_TRUE(cell_is(bi + 1, bj + 1, 56, st_flip_s));

    // Painted back to default, it takes its place in the mountain again.
    planetex[bi][bj + 1] = 0;
    derive();
    EXPECT_TRUE(cell_is(bi, bj + 1, 56, st_r0));
}

TEST_F(Derivation, ResultDependsOnlyOnTheUsersData)
{
    // A rough coast with hills inland and a few custom cells.
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> coin(0, 2);
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) {
            is_water[i][j] = i + coin(rng) < 25 || (i < 33 && coin(rng) == 0);
            planey[i][j] = i > 35 ? 400.0f * coin(rng) : 0.0f;
        }
    set_orientation(40, 40, st_r1, 2001);
    set_orientation(10, 60, st_r3, 2002);
    derive();

    static unsigned int first_tex[grid_ni][grid_nj];
    static float first_st[grid_ni][grid_nj][2][2][2];
    std::memcpy(first_tex, planetex, sizeof planetex);
    std::memcpy(first_st, planest, sizeof planest);

    int edges = 0, mountains = 0;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            edges += planetex[i][j] >= 51 && planetex[i][j] <= 53;
            mountains += planetex[i][j] >= 55 && planetex[i][j] <= 58;
        }
    ASSERT_GT(edges, 100);
    ASSERT_GT(mountains, 50);

    // Whatever stock ids and orientations stand before the run make no difference.
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++)
            if (planetex[i][j] < 2000) {
                planetex[i][j] = (i * 7 + j) % 60;
                for (int k = 0; k < 8; k++) (&planest[i][j][0][0][0])[k] = (float)((i + j + k) % 3);
            }
    derive();
    EXPECT_EQ(std::memcmp(first_tex, planetex, sizeof planetex), 0);
    EXPECT_EQ(std::memcmp(first_st, planest, sizeof planest), 0);
}
