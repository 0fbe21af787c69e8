// The sample world that ships: it loads whole, each coastline file loads in
// every tile of its square, and saving it unchanged writes the very same bytes. (lay_flat_grid is checked by
// TileFile.MissingFileOrWrongHeadLaysABlankWaterTile.)
#include "app/Utils.h"
#include "world_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

using SampleWorld = WorldTest;

// The default place is the sample tile, 33 N 119 W.
TEST_F(SampleWorld, LoadsWholeSavesTheSameBytesAndItsCoastsFit)
{
    const std::string copy = "cp -r '" TF_SOURCE_DIR "/resources/additional nav data' '" + root + "'";
    ASSERT_EQ(std::system(copy.c_str()), 0);
    read_terrain();
    load_airports();
    load_navaids();
    EXPECT_GT(msc.coast_num, 1000);   // the real shore, not a handful of dots
    EXPECT_TRUE(std::all_of(coast_lat, coast_lat + msc.coast_num, [](float lat) { return lat >= 33 && lat <= 34; }));
    // Written back unchanged: a record missed or a runway under the wrong airport would show.
    const std::string apt_before = read_file("additional nav data/Earth/apt.dat");
    const std::string nav_before = read_file("additional nav data/Earth/nav.dat");
    writeout(202);
    writeout(203);
    EXPECT_EQ(read_file("additional nav data/Earth/apt.dat"), apt_before);
    EXPECT_EQ(read_file("additional nav data/Earth/nav.dat"), nav_before);

    // No coastline file that ships holds more points for a tile than the
    // editor loads (one more is fatal), and none is empty.
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root + "additional nav data/coastlines")) {
        const std::string name = entry.path().filename().string();
        const int lat0 = std::stoi(name.substr(0, 4)), lon0 = std::stoi(name.substr(4, 4));
        int most = 0;
        for (msc.lat = (float)lat0; msc.lat < lat0 + 10; msc.lat++)
            for (msc.lon = (float)lon0; msc.lon < lon0 + 10; msc.lon++) {
                read_coast();
                most = std::max(most, msc.coast_num);
            }
        EXPECT_GT(most, 0) << name;
        EXPECT_LE(most, coast_cap) << name;
        files++;
    }
    EXPECT_GE(files, 5);
}
