// Records of several processes and threads logging at once are all there, each one whole.

#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const int kProcesses = 4;
const int kThreads = 2;
const int kRecordsEach = 250;

// Long records (well beyond a pipe's atomic 512 bytes) with characters that are escaped on disk.
std::string messageFor(int process, int thread, int n)
{
    const std::string head = std::to_string(process) + " " + std::to_string(thread) + " " + std::to_string(n) + " ";
    return head + std::string(1500 + n % 7, static_cast<char>('a' + process)) + "\t\n\\";
}

void logFromThreads(int process)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([process, t] {
            for (int n = 0; n < kRecordsEach; ++n)
                __dlog_print(LOG_ID_MAIN, DLOG_INFO, "load", "%s", messageFor(process, t, n).c_str());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(DlogConcurrentTest, RecordsOfConcurrentProcessesNeverTearOrGetLost)
{
    Orvo::Testing::TestDevice device;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            logFromThreads(p);
            ::_exit(0);
        }
        ASSERT_GT(pid, 0);
        children.push_back(pid);
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(static_cast<std::size_t>(kProcesses * kThreads * kRecordsEach), records.size());
    // Each writer's records arrive whole and in the order it wrote them.
    std::map<std::pair<int, int>, int> nextOf;
    for (const Orvo::Emulator::LogRecord& record : records) {
        int process = -1;
        int thread = -1;
        int n = -1;
        ASSERT_EQ(3, std::sscanf(record.message.c_str(), "%d %d %d", &process, &thread, &n)) << record.message.substr(0, 40);
        EXPECT_EQ(messageFor(process, thread, n), record.message);
        EXPECT_EQ(nextOf[std::make_pair(process, thread)]++, n);
    }
}

} // namespace
