// Alerts under test. Every test program runs the main in test_main.cpp, which
// watches the editor's alerts: an alert the running test announced is answered
// at once and shows no window; any other fails that test at once, whatever its
// kind, and ends the test program with status 1 (a fatal alert would otherwise
// end it with status 0, as if all had passed).
#pragma once
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

// The running test means to raise an alert whose first line begins with this.
void expect_alert(const std::string& first_line);

// The alerts the running test has raised so far, each its four lines joined by " | ".
const std::vector<std::string>& alerts_seen();

// The running test's statement is meant to end in a fatal alert: only then
// does an announced fatal alert end the process with status 0.
inline bool fatal_alert_expected = false;

// A fatal alert ends the program with status 0 after its log line and its lines
// on standard error: run in a child that expects it.
#define EXPECT_FATAL_ALERT(statement, first_line)                                               \
    do {                                                                                        \
        expect_alert(first_line), fatal_alert_expected = true;                                  \
        EXPECT_EXIT(statement, ::testing::ExitedWithCode(0), regex_of_text(first_line));        \
        fatal_alert_expected = false;                                                           \
    } while (0)

// Text as a POSIX extended regular expression that matches only itself.
inline std::string regex_of_text(const std::string& text) { return std::regex_replace(text, std::regex(R"([.\[\]{}()\\*+?^$|])"), R"(\$&)"); }
