#pragma once
// Keeping the console sink of a child process (a death test) off the machine's real console.

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace Orvo::Testing {

// In a child: makes /dev/console impossible to open (a private mount namespace with an empty
// read-only /dev). False when that cannot be had and /dev/console still opens.
inline bool hideConsole() {
    if (::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0) {
        ::mount("tmpfs", "/dev", "tmpfs", MS_RDONLY, "size=16k");
    }
    const int fd = ::open("/dev/console", O_WRONLY | O_NOCTTY | O_CLOEXEC);
    if (fd >= 0) ::close(fd);
    return fd < 0;
}

// Whether a child can hide the console; tests that end in the console sink skip when it cannot.
inline bool childrenCanHideConsole() {
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(hideConsole() ? 0 : 1);
    int status = 0;
    while (pid > 0 && ::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return pid > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace Orvo::Testing
