// Where the log goes: the program's folder, else the state folder, which is
// made when missing.
#include "world_fixture.h"

#include "app/Utils.h"

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
