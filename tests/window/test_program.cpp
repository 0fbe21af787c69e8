// The real program on the X display: its window covers the screen, it stays
// in its frame loop, and a close from outside ends it with status 0.
#include "bitmap_files.h"

#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

static std::string output_of(const std::string& cmd)
{
    std::string out;
    char buf[256];
    FILE* p = popen(cmd.c_str(), "r");
    while (p && fgets(buf, sizeof buf, p)) out += buf;
    if (p) pclose(p);
    return out;
}

static int field(const std::string& text, const std::string& key)
{
    size_t at = text.find(key);
    return at == std::string::npos ? -1 : std::atoi(text.c_str() + at + key.size());
}

// The child's exit status after at most the given tenths of a second, -1 if it still runs.
static int exit_status(pid_t pid, int tenths)
{
    for (int status = 0; tenths-- > 0; usleep(100000))
        if (waitpid(pid, &status, WNOHANG) == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : 999;
    return -1;
}

// What a window manager sends when the user closes a window.
static void send_close(Window window)
{
    Display* d = XOpenDisplay(nullptr);
    ASSERT_NE(d, nullptr);
    XEvent e = {};
    e.xclient.type = ClientMessage;
    e.xclient.window = window;
    e.xclient.message_type = XInternAtom(d, "WM_PROTOCOLS", False);
    e.xclient.format = 32;
    e.xclient.data.l[0] = (long)XInternAtom(d, "WM_DELETE_WINDOW", False);
    XSendEvent(d, window, False, NoEventMask, &e);
    XCloseDisplay(d);
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
    const std::string search = "xdotool search --all --pid " + std::to_string(pid) + " --name '^Norsuite$'";
    Window window = 0;
    for (int k = 0; k < 600 && !window && exit_status(pid, 1) == -1; k++)
        window = std::strtoul(output_of(search).c_str(), nullptr, 10);
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

    send_close(window);
    const int status = exit_status(pid, 300);
    if (status == -1) kill(pid, SIGKILL);
    EXPECT_EQ(status, 0);
    std::filesystem::remove_all(dir);
}
