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
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Orvo {
namespace Testing {
namespace {

class Pipe {
public:
    Pipe()
    {
        if (::pipe2(m_fds, O_CLOEXEC) != 0) {
            throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
        }
    }
    ~Pipe()
    {
        closeRead();
        closeWrite();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int readEnd() const { return m_fds[0]; }
    int writeEnd() const { return m_fds[1]; }
    void closeRead() { closeFd(m_fds[0]); }
    void closeWrite() { closeFd(m_fds[1]); }

private:
    static void closeFd(int& fd)
    {
        if (fd >= 0) {
            ::close(fd);
            fd = -1;
        }
    }
    int m_fds[2];
};

// The environment and program path are prepared before fork: between fork and exec the child
// may only call async-signal-safe functions.
std::vector<std::string> buildEnvironment(const std::map<std::string, std::string>& extraEnv)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        if (extraEnv.count(text.substr(0, text.find('='))) == 0) {
            result.push_back(text);
        }
    }
    for (const auto& variable : extraEnv) {
        result.push_back(variable.first + "=" + variable.second);
    }
    return result;
}

std::string resolveProgram(const std::string& name)
{
    const char* path = std::getenv("PATH");
    if (name.find('/') != std::string::npos || path == nullptr) {
        return name;
    }
    const std::string dirs(path);
    for (std::size_t start = 0; start <= dirs.size();) {
        std::size_t end = dirs.find(':', start);
        end = end == std::string::npos ? dirs.size() : end;
        const std::string candidate = (end == start ? "." : dirs.substr(start, end - start)) + "/" + name;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        start = end + 1;
    }
    return name;
}

std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    for (std::string& s : strings) {
        result.push_back(&s[0]);
    }
    result.push_back(nullptr);
    return result;
}

[[noreturn]] void execChild(const std::string& program, char* const* argv, char* const* envp,
                            int in, int out, int err)
{
    if (::dup2(in, STDIN_FILENO) < 0 || ::dup2(out, STDOUT_FILENO) < 0 || ::dup2(err, STDERR_FILENO) < 0) {
        ::_exit(127);
    }
    ::execve(program.c_str(), argv, envp);
    const char* reason = std::strerror(errno);
    const char prefix[] = "runProcess: cannot execute ";
    ssize_t ignored = ::write(STDERR_FILENO, prefix, sizeof prefix - 1);
    ignored = ::write(STDERR_FILENO, program.c_str(), program.size());
    ignored = ::write(STDERR_FILENO, ": ", 2);
    ignored = ::write(STDERR_FILENO, reason, std::strlen(reason));
    ignored = ::write(STDERR_FILENO, "\n", 1);
    (void)ignored;
    ::_exit(127);
}

// Writes to a child's stdin without letting SIGPIPE kill the test when the child does not read.
ssize_t writeIgnoringSigpipe(int fd, const char* data, std::size_t size)
{
    sigset_t pipeSignal;
    sigset_t previous;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
    const ssize_t written = ::write(fd, data, size);
    const int savedErrno = errno;
    if (written < 0 && savedErrno == EPIPE) {
        const timespec noWait = {0, 0};
        sigtimedwait(&pipeSignal, nullptr, &noWait);
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    errno = savedErrno;
    return written;
}

void collect(const std::string& stdinText, Pipe& in, Pipe& out, Pipe& err, ProcessResult& result)
{
    std::size_t stdinOffset = 0;
    if (stdinText.empty()) {
        in.closeWrite();
    } else {
        ::fcntl(in.writeEnd(), F_SETFL, O_NONBLOCK);
    }
    char buffer[65536];
    while (in.writeEnd() >= 0 || out.readEnd() >= 0 || err.readEnd() >= 0) {
        pollfd fds[3] = {{in.writeEnd(), POLLOUT, 0}, {out.readEnd(), POLLIN, 0}, {err.readEnd(), POLLIN, 0}};
        if (::poll(fds, 3, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw std::runtime_error(std::string("poll: ") + std::strerror(errno));
        }
        if (fds[0].revents != 0) {
            const ssize_t n = writeIgnoringSigpipe(in.writeEnd(), stdinText.data() + stdinOffset,
                                                   stdinText.size() - stdinOffset);
            if (n > 0) {
                stdinOffset += static_cast<std::size_t>(n);
            }
            if ((n < 0 && errno != EAGAIN && errno != EINTR) || stdinOffset == stdinText.size()) {
                in.closeWrite();
            }
        }
        Pipe* sources[2] = {&out, &err};
        std::string* sinks[2] = {&result.out, &result.err};
        for (int i = 0; i < 2; ++i) {
            if (fds[i + 1].revents == 0) {
                continue;
            }
            const ssize_t n = ::read(sources[i]->readEnd(), buffer, sizeof buffer);
            if (n > 0) {
                sinks[i]->append(buffer, static_cast<std::size_t>(n));
            } else if (n == 0 || errno != EINTR) {
                sources[i]->closeRead();
            }
        }
    }
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& argv, const std::string& stdinText,
                         const std::map<std::string, std::string>& extraEnv)
{
    if (argv.empty()) {
        throw std::invalid_argument("runProcess: empty command line");
    }
    std::vector<std::string> arguments = argv;
    std::vector<std::string> environment = buildEnvironment(extraEnv);
    const std::vector<char*> argvPointers = pointers(arguments);
    const std::vector<char*> envPointers = pointers(environment);
    const std::string program = resolveProgram(argv[0]);

    Pipe in;
    Pipe out;
    Pipe err;
    const pid_t pid = ::fork();
    if (pid < 0) {
        throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    }
    if (pid == 0) {
        execChild(program, argvPointers.data(), envPointers.data(), in.readEnd(), out.writeEnd(), err.writeEnd());
    }
    in.closeRead();
    out.closeWrite();
    err.closeWrite();

    ProcessResult result;
    collect(stdinText, in, out, err, result);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error(std::string("waitpid: ") + std::strerror(errno));
        }
    }
    result.exitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return result;
}

std::string toolPath(const std::string& name)
{
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

} // namespace Testing
} // namespace Orvo
