// dlogutil without -d keeps printing the records that other processes append, until stopped.

#include "orvo/device/LogStore.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

// A running dlogutil whose standard output the test reads as it comes.
class Follower {
public:
    explicit Follower(const std::vector<std::string>& args)
    {
        int fds[2];
        if (::pipe2(fds, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe");
        m_output = fds[0];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
        std::vector<std::string> argv{Orvo::Testing::toolPath("dlogutil")};
        argv.insert(argv.end(), args.begin(), args.end());
        std::vector<char*> pointers;
        for (std::string& arg : argv)
            pointers.push_back(&arg[0]);
        pointers.push_back(nullptr);
        const int spawned = ::posix_spawn(&m_pid, pointers[0], &actions, nullptr, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(fds[1]);
        if (spawned != 0)
            throw std::runtime_error("cannot start dlogutil");
    }

    ~Follower()
    {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        ::close(m_output);
    }

    // Reads until the output holds text; false when it does not come within a generous minute.
    bool waitFor(const std::string& text)
    {
        const std::time_t deadline = std::time(nullptr) + 60;
        while (m_seen.find(text) == std::string::npos && std::time(nullptr) < deadline) {
            pollfd ready{m_output, POLLIN, 0};
            if (::poll(&ready, 1, 1000) <= 0)
                continue;
            char buffer[4096];
            const ssize_t got = ::read(m_output, buffer, sizeof buffer);
            if (got <= 0)
                return false;
            m_seen.append(buffer, static_cast<std::size_t>(got));
        }
        return m_seen.find(text) != std::string::npos;
    }

    // Sends the signal and returns the exit status.
    int stop(int signal)
    {
        ::kill(m_pid, signal);
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return status;
    }

    const std::string& seen() const { return m_seen; }

private:
    pid_t m_pid = -1;
    int m_output = -1;
    std::string m_seen;
};

void append(const std::string& deviceDir, int buffer, const std::string& message)
{
    ASSERT_GE(Orvo::Emulator::appendLogRecord(deviceDir, buffer, 4, "T", message.data(), message.size()), 0);
}

TEST(DlogutilFollowTest, PrintsNewRecordsAsTheyComeAndStopsCleanlyOnSignals)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Orvo::Testing::TestDevice device;
        device.clearLogs();
        append(device.dir(), 0, "before");
        Follower follower({"-v", "raw", "-b", "main", "-b", "apps"});
        ASSERT_TRUE(follower.waitFor("before\n")) << follower.seen();
        append(device.dir(), 3, "apps after");
        append(device.dir(), 1, "radio not followed");
        append(device.dir(), 0, "main after");
        ASSERT_TRUE(follower.waitFor("main after\n")) << follower.seen();
        const int status = follower.stop(signal);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        EXPECT_EQ("before\napps after\nmain after\n", follower.seen());
    }
}

} // namespace
