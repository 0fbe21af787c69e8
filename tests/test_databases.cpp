// apt.dat and nav.dat: the record columns. (SampleWorld.LoadsWholeSavesTheSameBytesAndItsCoastsFit
// reads and writes a whole sample back to the same bytes.)
#include "app/Utils.h"
#include "world_fixture.h"

static const char* const apt_file = "additional nav data/Earth/apt.dat";
static const char* const nav_file = "additional nav data/Earth/nav.dat";

class Databases : public WorldTest {
protected:
    void write_apt(const std::string& body) { write_file(apt_file, database("Airports of the test", body)); }
    // Written with CR-only line ends, as old files may have them.
    void write_nav(const std::string& body)
    {
        std::string text = database("Navaids of the test", body);
        for (size_t at; (at = text.find("\r\n")) != std::string::npos;) text.erase(at + 1, 1);
        write_file(nav_file, text);
    }
};

TEST_F(Databases, AirportLinesStandInTheirColumns)
{
    write_apt("1 125 1 1 KLAX Los Angeles Intl\r\n"
              "10 33.9496 -118.417 6 L 82.9 8926 150 2324324\r\n"
              "10 33.9 -118.4 7 x -90 12923.4 200.5 1111111\r\n"
              "1 12.6 2 0 ABC  Three letters\r\n"
              "10 33.1 -118.1 36 R 360 3000 75 10111111\r\n");
    load_airports();
    EXPECT_EQ(apt_wrl_max * 10 + rwy_wrl_max, 12);   // two airports, three runways, from the tables' start
    apt_twr[1] = 5;   // any flag but 0 goes out as 1
    writeout(202);
    EXPECT_EQ(read_file(apt_file),
              "I\r\n500 Airports of the test\r\n"
              "\r\n"
              "1    125 1 1 KLAX Los Angeles Intl\r\n"
              "10  33.9496002 -118.4169998  6 L  82.90  8926  150 2324324\r\n"
              "10  33.9000015 -118.4000015  7 x 270.00 12923  200 1111111\r\n"
              "\r\n"
              "1     13 1 0 ABC  Three letters\r\n"
              "10  33.0999985 -118.0999985 36 R 360.00  3000   75 10111111\r\n"
              "99\r\n");
    std::string runways = "1 125 1 1 KLAX Los Angeles Intl\r\n";   // one runway more than the table holds
    for (int k = 0; k <= rwy_cap; k++) runways += "10 33.9 -118.4 7 x 90 3000 75 1111111\r\n";
    write_apt(runways);
    EXPECT_FATAL_ALERT(load_airports(), "Too many runways in apt.dat file!");
}

TEST_F(Databases, NavaidLinesStandInTheirColumns)
{
    write_nav("3 33.9331 -118.432 185 11360 0 LAX  LOS ANGELES VORTAC\r\n"
              "6 33.948 -118.391 125 10950 300123 IOSS LOS ANGELES GS 24R\r\n"
              "2 33.955 -118.34 100.04 278 0 LA   LOS ANGELES NDB\r\n");
    load_navaids();
    writeout(203);
    EXPECT_EQ(read_file(nav_file),
              "I\r\n500 Navaids of the test\r\n"
              "3  33.9331017 -118.4319992    185.0    11360    0.00 LAX  LOS ANGELES VORTAC\r\n"
              "6  33.9480019 -118.3909988    125.0    10950 300123.00 IOSS LOS ANGELES GS 24R\r\n"
              "2  33.9550018 -118.3399963    100.0      278    0.00 LA   LOS ANGELES NDB\r\n"
              "99\r\n");
}
