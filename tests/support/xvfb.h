// An X server of the test's own: Xvfb on the first free display, which ends
// with the process that started it.
#pragma once
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

// Starts Xvfb with one screen of the given size and depth ("800x600x24");
// its output goes to log_fd (or nowhere, with -1). Gives its pid and sets
// display to ":N" once it listens, or gives -1.
inline pid_t start_xvfb(const char* screen, std::string* display, int log_fd = -1)
{
    int fds[2];
    if (pipe(fds) != 0) return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        close(fds[0]);
        if (log_fd < 0) log_fd = open("/dev/null", O_WRONLY);
        dup2(log_fd, 1);
        dup2(log_fd, 2);
        const std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen, "-nolisten", "tcp", "-noreset",
               (char*)nullptr);
        _exit(90);
    }
    close(fds[1]);
    // The server writes its number and a line end once it listens.
    std::string number;
    char c = 0;
    pollfd p = {fds[0], POLLIN, 0};
    while (c != '\n' && poll(&p, 1, 60000) == 1 && read(fds[0], &c, 1) == 1) number += c;
    close(fds[0]);
    if (c != '\n' || number.size() < 2) {
        if (pid > 0) kill(pid, SIGKILL);
        return -1;
    }
    *display = ":" + std::to_string(std::stoi(number));
    return pid;
}
