#include "ChildProcess.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace Orvo {
namespace Testing {
namespace {

bool consoleOpens() {
    const int fd = ::open("/dev/console", O_WRONLY | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return false;
    ::close(fd);
    return true;
}

bool enterPrivateMountNamespace() {
    return ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

ChildResult runInChild(const std::function<void()>& body) {
    int fds[2];
    if (::pipe(fds) != 0) throw std::runtime_error("pipe failed");
    std::fflush(nullptr);
    const pid_t pid = ::fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        ::close(fds[0]);
        ::dup2(fds[1], STDERR_FILENO);
        ::close(fds[1]);
        body();
        std::fflush(nullptr);
        ::_exit(0);
    }
    ::close(fds[1]);
    ChildResult result;
    char chunk[4096];
    for (ssize_t n; (n = ::read(fds[0], chunk, sizeof chunk)) != 0;) {
        if (n > 0) result.err.append(chunk, static_cast<std::size_t>(n));
        else if (errno != EINTR) break;
    }
    ::close(fds[0]);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

bool hideConsole() {
    if (enterPrivateMountNamespace()) ::mount("tmpfs", "/dev", "tmpfs", MS_RDONLY, "size=16k");
    return !consoleOpens();
}

bool childrenCanHideConsole() {
    return runInChild([] {
               if (!hideConsole()) std::_Exit(kChildCannotRun);
           }).exitCode == 0;
}

bool redirectConsole(const std::string& path) {
    return enterPrivateMountNamespace() && ::mount(path.c_str(), "/dev/console", nullptr, MS_BIND, nullptr) == 0;
}

} // namespace Testing
} // namespace Orvo
