// The main of every test program: Google Test with a watch over the alerts.
#include "alert_watch.h"
#include "platform/Hl_mnw.h"

#include <cstdio>
#include <cstdlib>

static std::vector<std::string> expected, seen;

void expect_alert(const std::string& first_line) { expected.push_back(first_line); }

const std::vector<std::string>& alerts_seen() { return seen; }

static bool announced(const char* first_line)
{
    for (const std::string& e : expected)
        if (std::string(first_line).rfind(e, 0) == 0) return true;
    return false;
}

// An announced alert is answered at once, as a user pressing O.K. would: it
// shows no window. A fatal one inside EXPECT_FATAL_ALERT ends the process
// there with status 0, without touching the window (a death test's child
// shares it with its parent); anywhere else a fatal alert fails the test,
// announced or not.
static int watch_alert(const char* l1, const char* l2, const char* l3, const char* l4, int kind)
{
    auto text = [](const char* s) { return std::string(s ? s : ""); };
    seen.push_back(text(l1) + " | " + text(l2) + " | " + text(l3) + " | " + text(l4));
    const bool fatal = kind == alert_fatal || kind == alert_fatal_number;
    if (announced(text(l1).c_str()) && fatal && fatal_alert_expected) std::_Exit(0);
    if (announced(text(l1).c_str()) && !fatal) return 1;
    ADD_FAILURE() << "an alert the test did not announce (kind " << kind << "): " << seen.back();
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::printf("[  FAILED  ] %s.%s\n", test ? test->test_suite_name() : "?", test ? test->name() : "?");
    std::fflush(stdout);
    std::_Exit(1);
}

// Each test starts with no alert announced and none seen.
struct forget_alerts : ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override
    {
        expected.clear();
        seen.clear();
    }
};

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new forget_alerts);
    alert_watcher = watch_alert;
    return RUN_ALL_TESTS();
}
