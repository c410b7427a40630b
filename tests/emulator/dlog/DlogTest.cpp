#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

class DlogTest : public ::testing::Test {
protected:
    Orvo::Testing::TestDevice device;
};

TEST_F(DlogTest, RecordsTheFormattedMessageWithItsOrigin)
{
    EXPECT_EQ(13, __dlog_print(LOG_ID_SYSTEM, DLOG_WARN, "orvotv.Orvo", "%s:%d>%s", "a.cpp", 7, "hello"));
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_SYSTEM);
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ("a.cpp:7>hello", records[0].message);
    EXPECT_EQ("orvotv.Orvo", records[0].tag);
    EXPECT_EQ(DLOG_WARN, records[0].priority);
    EXPECT_EQ(::getpid(), records[0].pid);
    EXPECT_EQ(::syscall(SYS_gettid), records[0].tid);
    EXPECT_GT(records[0].seconds, 1600000000);
    EXPECT_TRUE(device.logRecords(LOG_ID_MAIN).empty());
}

TEST_F(DlogTest, DlogPrintWritesToTheAppsBuffer)
{
    EXPECT_EQ(3, dlog_print(DLOG_ERROR, "app", "%d", 123));
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_APPS);
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ("123", records[0].message);
    EXPECT_EQ(DLOG_ERROR, records[0].priority);
}

TEST_F(DlogTest, ANullTagOrABufferOutOfRangeIsAnInvalidParameter)
{
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_MAIN, DLOG_INFO, nullptr, "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_MAX, DLOG_INFO, "t", "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_INVALID, DLOG_INFO, "t", "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(DLOG_INFO, nullptr, "x"));
    for (int buffer = LOG_ID_MAIN; buffer < LOG_ID_MAX; ++buffer)
        EXPECT_TRUE(device.logRecords(buffer).empty());
}

TEST_F(DlogTest, LongMessagesAreTruncatedTo4076Bytes)
{
    const std::string longMessage(DLOG_MAX_MESSAGE_LENGTH + 100, 'm');
    EXPECT_EQ(DLOG_MAX_MESSAGE_LENGTH, __dlog_print(LOG_ID_MAIN, DLOG_INFO, "t", "%s", longMessage.c_str()));
    const std::string exact(DLOG_MAX_MESSAGE_LENGTH, 'e');
    EXPECT_EQ(DLOG_MAX_MESSAGE_LENGTH, __dlog_print(LOG_ID_MAIN, DLOG_INFO, "t", "%s", exact.c_str()));
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(2u, records.size());
    EXPECT_EQ(longMessage.substr(0, DLOG_MAX_MESSAGE_LENGTH), records[0].message);
    EXPECT_EQ(exact, records[1].message);
}

} // namespace
