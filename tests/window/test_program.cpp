// The real program on the X display: its window covers the screen, it stays
// in its frame loop, and a close from outside ends it with status 0.
#include "bitmap_files.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <signal.h>

static int field(const std::string& text, const std::string& key)
{
    size_t at = text.find(key);
    return at == std::string::npos ? -1 : std::atoi(text.c_str() + at + key.size());
}

TEST(Program, WindowCoversTheScreenAndACloseFromOutsideEndsTheRun)
{
    char dir[] = "/tmp/tf_program_XXXXXX";
    ASSERT_TRUE(std::getenv("DISPLAY") && mkdtemp(dir));
    stage_program(TF_PROGRAM_PATH, dir);   // the screen panels are the program's to have
    const std::string program = std::string(dir) + "/tileforger";
    pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir) == 0) execl(program.c_str(), program.c_str(), (char*)nullptr);
        _exit(90);
    }
    const Window window = find_program_window(pid, std::getenv("DISPLAY"));
    if (!window) {
        kill(pid, SIGKILL);
        std::filesystem::remove_all(dir);
    }
    ASSERT_NE(window, 0ul) << "no window of the program appeared";

    const std::string info = output_of("xwininfo -id " + std::to_string(window));
    EXPECT_EQ(field(info, "Absolute upper-left X:"), 0) << info;
    EXPECT_EQ(field(info, "Absolute upper-left Y:"), 0);
    EXPECT_EQ(field(info, "Width:"), 800);
    EXPECT_EQ(field(info, "Height:"), 600);
    EXPECT_NE(info.find("IsViewable"), std::string::npos);
    EXPECT_EQ(exit_status(pid, 10), -1);   // it stays in its frame loop

    EXPECT_TRUE(send_close(std::getenv("DISPLAY"), window));
    const int status = exit_status(pid, 300);
    if (status == -1) kill(pid, SIGKILL);
    EXPECT_EQ(status, 0);
    std::filesystem::remove_all(dir);
}
