// The start-up steps: the editor's defaults, the unit constants, the flat
// tile and the cleared tables, and the bundled sample world loading whole.
#include "app/Utils.h"
#include "world_fixture.h"

#include <cstdlib>

TEST(Startup, FlatTileAndClearedTables)
{
    set_msc_defaults();
    msc.lat = -12;
    msc.lon = 140;
    is_water[30][30] = 0;   // as an earlier tile may have left it
    lay_flat_grid();
    EXPECT_FLOAT_EQ(planelat[0][0], -12);
    EXPECT_FLOAT_EQ(planelat[0][79], -11);
    EXPECT_FLOAT_EQ(planelon[59][0], 141);
    EXPECT_FLOAT_EQ(planelon[1][0], 140 + 1.0f / 59);
    EXPECT_EQ(is_water[30][30], 1);
    nav_type[123] = 4;
    obj_type[59999] = 2;
    clear_feature_tables();
    EXPECT_EQ(nav_type[123], 0);
    EXPECT_EQ(obj_type[59999], 0);
    EXPECT_STREQ(obj_name[59999], "?");
    EXPECT_FLOAT_EQ(obj_hddz[0], 100);
}

class SampleWorld : public WorldTest {};

TEST_F(SampleWorld, BundledDataLoads)
{
    std::string copy = "cp -r '" TF_SOURCE_DIR "/resources/additional nav data' '" + root + "'";
    ASSERT_EQ(std::system(copy.c_str()), 0);
    read_terrain();
    load_airports();
    load_navaids();
    EXPECT_GT(apt_wrl_max, 3);
    EXPECT_GT(rwy_wrl_max, apt_wrl_max);
    EXPECT_GT(nav_wrl_max, 5);
    EXPECT_GT(msc.coast_num, 5);
    for (int a = 0; a <= apt_wrl_max; a++) {
        EXPECT_LE(apt_lo_ind[a], apt_hi_ind[a]) << apt_id[a];
        if (a > 0) {
            EXPECT_EQ(apt_lo_ind[a], apt_hi_ind[a - 1] + 1);
        }
    }
    // Saving the sample unchanged writes the very same bytes.
    std::string apt_before = read_file("additional nav data/Earth/apt.dat");
    std::string nav_before = read_file("additional nav data/Earth/nav.dat");
    writeout(202);
    writeout(203);
    EXPECT_EQ(read_file("additional nav data/Earth/apt.dat"), apt_before);
    EXPECT_EQ(read_file("additional nav data/Earth/nav.dat"), nav_before);
}
