#include "orvo/device/LogStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <sys/syscall.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

std::string fileContent(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(LogStoreTest, ARecordIsOneEscapedLineReadBackWhole)
{
    Testing::TemporaryDirectory device;
    const std::string message = "tab\there\nnew line \\n not escaped";
    const timespec before = [] { timespec t{}; ::clock_gettime(CLOCK_REALTIME, &t); return t; }();
    ASSERT_EQ(static_cast<int>(message.size()),
              appendLogRecord(device.path(), 2, 5, "my\ttag", message.data(), message.size()));

    const std::string line = fileContent(device.path() + "/log/system.log");
    EXPECT_EQ(1, std::count(line.begin(), line.end(), '\n'));
    EXPECT_NE(std::string::npos, line.find("\tmy\\ttag\ttab\\there\\nnew line \\\\n not escaped\n"));

    const std::vector<LogRecord> records = readLogRecords(device.path(), 2);
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ(message, records[0].message);
    EXPECT_EQ("my\ttag", records[0].tag);
    EXPECT_EQ(2, records[0].buffer);
    EXPECT_EQ(5, records[0].priority);
    EXPECT_EQ(::getpid(), records[0].pid);
    EXPECT_EQ(::syscall(SYS_gettid), records[0].tid);
    EXPECT_GE(records[0].seconds, before.tv_sec);
}

TEST(LogStoreTest, ParsesOnlyWellFormedLines)
{
    LogRecord record;
    EXPECT_TRUE(parseLogRecord("12.000000005\t1\t2\t4\tT\tm", 1, record));
    EXPECT_EQ(12, record.seconds);
    EXPECT_EQ(5, record.nanoseconds);
    for (const std::string bad : {"", "12.000000005\t1\t2\t4\tT", "12.000000005\t1\t2\t4\tT\tm\textra",
                                  "12.5\t1\t2\t4\tT\tm", "12.00000000x\t1\t2\t4\tT\tm", "x.000000005\t1\t2\t4\tT\tm",
                                  "12.-00000005\t1\t2\t4\tT\tm", "12.000000005\tp\t2\t4\tT\tm",
                                  "12.000000005\t1\t2\t4\tT\tbad\\escape", "12.000000005\t1\t2\t4\tT\ttrailing\\"})
        EXPECT_FALSE(parseLogRecord(bad, 0, record)) << bad;
}

TEST(LogStoreTest, ReadingFromAnOffsetReturnsOnlyNewCompleteRecords)
{
    Testing::TemporaryDirectory device;
    ASSERT_EQ(1, appendLogRecord(device.path(), 0, 4, "t", "1", 1));
    std::uint64_t offset = 0;
    ASSERT_EQ(1u, readLogRecords(device.path(), 0, offset).size());
    EXPECT_TRUE(readLogRecords(device.path(), 0, offset).empty());

    // A line without its line feed yet, then garbage, then a record.
    const std::string path = device.path() + "/log/main.log";
    std::ofstream(path, std::ios::app) << "1.000000000\t1\t1\t4\tt\tpartial";
    EXPECT_TRUE(readLogRecords(device.path(), 0, offset).empty());
    std::ofstream(path, std::ios::app) << "\nnot a record\n";
    ASSERT_EQ(1, appendLogRecord(device.path(), 0, 4, "t", "2", 1));
    const std::vector<LogRecord> records = readLogRecords(device.path(), 0, offset);
    ASSERT_EQ(2u, records.size());
    EXPECT_EQ("partial", records[0].message);
    EXPECT_EQ("2", records[1].message);

    // A truncated buffer is read again from its start.
    std::ofstream(path, std::ios::trunc) << "1.000000000\t1\t1\t4\tt\tafter\n";
    const std::vector<LogRecord> afresh = readLogRecords(device.path(), 0, offset);
    ASSERT_EQ(1u, afresh.size());
    EXPECT_EQ("after", afresh[0].message);
}

} // namespace
} // namespace Emulator
} // namespace Orvo
