// Where the log goes: the program's folder, else the state folder, which is
// made when missing; and the alert that asks for the log names it.
#include "world_fixture.h"

#include "app/Utils.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

class ErrorLog : public WorldTest {
protected:
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    void TearDown() override
    {
        unsetenv("XDG_STATE_HOME");
        setenv("HOME", home.c_str(), 1);
        err.close();
        WorldTest::TearDown();
    }
};

TEST_F(ErrorLog, GoesBesideTheProgramElseIntoTheStateFolder)
{
    struct place {
        const char* program_folder;   // below root
        const char* state_home;       // XDG_STATE_HOME below root, or none
        const char* log;              // where it must be, below root
    } const places[] = {
        {"", "state", "Error.out"},
        {"missing/", "state", "state/Norvane/Error.out"},
        {"missing/", nullptr, "home/.local/state/Norvane/Error.out"},
    };
    setenv("HOME", (root + "home").c_str(), 1);
    for (const place& p : places) {
        C_to_C((root + p.program_folder).c_str(), app_path);
        if (p.state_home) setenv("XDG_STATE_HOME", (root + p.state_home).c_str(), 1);
        else unsetenv("XDG_STATE_HOME");
        open_error_log(1);
        EXPECT_EQ(std::string(err_path), root + p.log);
        EXPECT_TRUE(err.is_open()) << p.log;
        err.close();
        EXPECT_TRUE(std::ifstream(root + p.log).good()) << p.log;
    }
}

TEST_F(ErrorLog, TheCoastAlertNamesTheLog)
{
    // A point more than a tile may hold.
    std::string pairs = "I\r\n1 version\r\n";
    for (int k = 0; k <= coast_cap; k++) pairs += "33.5 -118.5\n";
    write_file("additional nav data/coastlines/+030-120.cst", pairs);
    open_error_log(1);
    const std::string log = err_path;
    EXPECT_FATAL_ALERT(read_coast(), "Too many coastline points!");
    std::ifstream in(log);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_NE(text.str().find("send them the log " + log + "."), std::string::npos) << text.str();
}
