// Running the real program from a test: a child process on an X display, its
// window found by pid and title, and a close sent as a window manager sends it.
#pragma once
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

inline std::string output_of(const std::string& cmd)
{
    std::string out;
    char buf[256];
    FILE* p = popen(cmd.c_str(), "r");
    while (p && fgets(buf, sizeof buf, p)) out += buf;
    if (p) pclose(p);
    return out;
}

// The child's exit status after at most the given tenths of a second, -1 if it still runs.
inline int exit_status(pid_t pid, int tenths)
{
    for (int status = 0; tenths-- > 0; usleep(100000))
        if (waitpid(pid, &status, WNOHANG) == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : 999;
    return -1;
}

// What a window manager sends when the user closes a window.
inline bool send_close(const std::string& display, Window window)
{
    Display* d = XOpenDisplay(display.c_str());
    if (!d) return false;
    XEvent e = {};
    e.xclient.type = ClientMessage;
    e.xclient.window = window;
    e.xclient.message_type = XInternAtom(d, "WM_PROTOCOLS", False);
    e.xclient.format = 32;
    e.xclient.data.l[0] = (long)XInternAtom(d, "WM_DELETE_WINDOW", False);
    XSendEvent(d, window, False, NoEventMask, &e);
    XCloseDisplay(d);
    return true;
}

// The program's window on the display, or 0 when none came within a minute or
// the program ended first.
inline Window find_program_window(pid_t pid, const std::string& display)
{
    const std::string search = "DISPLAY=" + display + " xdotool search --all --pid " + std::to_string(pid) +
                               " --name '^Tile-Forger$'";
    Window window = 0;
    for (int k = 0; k < 600 && !window && exit_status(pid, 1) == -1; k++)
        window = std::strtoul(output_of(search).c_str(), nullptr, 10);
    return window;
}
