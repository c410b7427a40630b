#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// Long records (well beyond a pipe's atomic 512 bytes) with characters that are escaped on disk.
static std::string messageFor(int process, int thread, int n) {
    return std::to_string(process) + " " + std::to_string(thread) + " " + std::to_string(n) + " " +
           std::string(1500 + n % 7, static_cast<char>('a' + process)) + "\t\n\\";
}

TEST(DlogConcurrentTest, RecordsOfSeveralProcessesAndThreadsNeverTearOrGetLost) {
    const Orvo::Testing::TestDevice device;
    const int processes = 4, recordsEach = 250; // in each of two threads
    for (int p = 0; p < processes; ++p) {
        if (::fork() != 0) continue;
        const auto log = [p](int t) {
            for (int n = 0; n < recordsEach; ++n)
                __dlog_print(LOG_ID_MAIN, DLOG_INFO, "load", "%s", messageFor(p, t, n).c_str());
        };
        std::thread second(log, 1);
        log(0);
        second.join();
        ::_exit(0);
    }
    for (int status = -1; ::wait(&status) > 0;)
        EXPECT_EQ(0, status);
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(static_cast<std::size_t>(processes * 2 * recordsEach), records.size());
    std::map<std::pair<int, int>, int> nextOf; // each writer's records come whole and in order
    for (const Orvo::Emulator::LogRecord& record : records) {
        int process = -1, thread = -1, n = -1;
        ASSERT_EQ(3, std::sscanf(record.message.c_str(), "%d %d %d", &process, &thread, &n)) << record.message;
        EXPECT_EQ(messageFor(process, thread, n), record.message);
        EXPECT_EQ(nextOf[std::make_pair(process, thread)]++, n);
    }
}
