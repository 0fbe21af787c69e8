// Where the log goes: the program's folder, else the state folder, which is
// made when missing. (Coast.ThreeThousandPointsLoadAndOneMoreIsFatalNamingTheLog
// checks that the alert asking for the log names it.)
#include "world_fixture.h"

#include <cstdlib>
#include <fstream>

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
    // The program's folder, XDG_STATE_HOME (or none) and where the log must be, all below root.
    const struct { const char *program_folder, *state_home, *log; } places[] = {
        {"", "state", "Error.out"},
        {"missing/", "state", "state/Norvane/Error.out"},
        {"missing/", nullptr, "home/.local/state/Norvane/Error.out"}};
    setenv("HOME", (root + "home").c_str(), 1);
    for (const auto& p : places) {
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
