#include "orvo/testing/Process.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Orvo::Testing {
namespace {

std::runtime_error systemError(const std::string& what) {
    return std::runtime_error(what + ": " + std::strerror(errno));
}

void closeFd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

// The child's standard input, output and error; [i][0] is the read end.
struct Pipes {
    int fds[3][2] = {{-1, -1}, {-1, -1}, {-1, -1}};
    int& childEnd(int stream) { return fds[stream][stream == 0 ? 0 : 1]; }
    ~Pipes() {
        for (int* ends : fds) {
            closeFd(ends[0]);
            closeFd(ends[1]);
        }
    }
};

// A child that never reads its input makes our writes raise SIGPIPE: the signal is held in this
// thread while we feed the child, and a pending one is discarded instead of killing the test.
struct HeldSigpipe {
    sigset_t pipe;
    sigset_t previous;
    HeldSigpipe() {
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, &previous);
    }
    ~HeldSigpipe() {
        const timespec noWait = {0, 0};
        while (sigtimedwait(&pipe, nullptr, &noWait) > 0) {
        }
        pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }
};

std::vector<std::string> buildEnvironment(const std::map<std::string, std::string>& extraEnv) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        if (extraEnv.count(text.substr(0, text.find('='))) == 0) result.push_back(text);
    }
    for (const auto& variable : extraEnv)
        result.push_back(variable.first + "=" + variable.second);
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (std::string& s : strings)
        result.push_back(&s[0]);
    result.push_back(nullptr);
    return result;
}

// Feeds the input and drains both outputs in one loop: a child blocked on any full pipe would
// otherwise wait for us while we wait for it.
void collect(const std::string& input, Pipes& pipes, ProcessResult& result) {
    int& in = pipes.fds[0][1];
    std::size_t written = 0;
    if (input.empty())
        closeFd(in);
    else
        ::fcntl(in, F_SETFL, O_NONBLOCK);
    int* sources[2] = {&pipes.fds[1][0], &pipes.fds[2][0]};
    std::string* sinks[2] = {&result.out, &result.err};
    char buffer[65536];
    while (in >= 0 || *sources[0] >= 0 || *sources[1] >= 0) {
        pollfd fds[3] = {{in, POLLOUT, 0}, {*sources[0], POLLIN, 0}, {*sources[1], POLLIN, 0}};
        if (::poll(fds, 3, -1) < 0) {
            if (errno == EINTR) continue;
            throw systemError("poll");
        }
        if (fds[0].revents != 0) {
            const ssize_t n = ::write(in, input.data() + written, input.size() - written);
            written += n > 0 ? static_cast<std::size_t>(n) : 0;
            if ((n < 0 && errno != EAGAIN && errno != EINTR) || written == input.size()) closeFd(in);
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i + 1].revents == 0) continue;
            const ssize_t n = ::read(*sources[i], buffer, sizeof buffer);
            if (n > 0)
                sinks[i]->append(buffer, static_cast<std::size_t>(n));
            else if (n == 0 || errno != EINTR)
                closeFd(*sources[i]);
        }
    }
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& argv, const std::string& stdinText,
                         const std::map<std::string, std::string>& extraEnv) {
    if (argv.empty()) throw std::invalid_argument("runProcess: empty command line");
    std::vector<std::string> arguments = argv;
    std::vector<std::string> environment = buildEnvironment(extraEnv);
    Pipes pipes;
    for (int* ends : pipes.fds)
        if (::pipe2(ends, O_CLOEXEC) != 0) throw systemError("pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int fd = 0; fd < 3; ++fd)
        posix_spawn_file_actions_adddup2(&actions, pipes.childEnd(fd), fd);
    pid_t pid = -1;
    const int spawned = ::posix_spawnp(&pid, argv[0].c_str(), &actions, nullptr, pointers(arguments).data(),
                                       pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    ProcessResult result;
    if (spawned != 0) {
        result.exitCode = 127;
        result.err = "runProcess: cannot execute " + argv[0] + ": " + std::strerror(spawned) + "\n";
        return result;
    }
    for (int fd = 0; fd < 3; ++fd)
        closeFd(pipes.childEnd(fd));
    {
        const HeldSigpipe held;
        collect(stdinText, pipes, result);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) throw systemError("waitpid");
    }
    result.exitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return result;
}

std::string toolPath(const std::string& name) {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

} // namespace Orvo::Testing
