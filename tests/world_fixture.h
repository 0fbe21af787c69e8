// A scratch world for tests: a fresh folder that stands in for the program's
// folder, with helpers to write data files into it and to read the alert log.
#pragma once
#include "app/Main.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include "alert_watch.h"

#include <gtest/gtest.h>
#include <string>

class WorldTest : public ::testing::Test {
protected:
    std::string root;   // the stand-in program folder, with a closing '/'
    std::string kept_app_path, kept_ter_path;   // the program's own, back after the test

    void SetUp() override;
    void TearDown() override;

    // Writes a file below the stand-in program folder, creating its folders.
    void write_file(const std::string& relative, const std::string& bytes);
    std::string read_file(const std::string& relative);
    // A database file with the given record lines, CR LF line ends and the head.
    static std::string database(const std::string& head_text, const std::string& body);
};
