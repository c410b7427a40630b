#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

TEST(DlogTest, RecordsFormattedMessagesWithTheirOriginInTheirBufferAndRejectsInvalidOnes) {
    const Orvo::Testing::TestDevice device;
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_MAIN, DLOG_INFO, nullptr, "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_MAX, DLOG_INFO, "t", "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, __dlog_print(LOG_ID_INVALID, DLOG_INFO, "t", "x"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(DLOG_INFO, nullptr, "x"));
    const std::string longMessage(DLOG_MAX_MESSAGE_LENGTH + 1, 'm');
    EXPECT_EQ(13, __dlog_print(LOG_ID_SYSTEM, DLOG_WARN, "orvotv.Orvo", "%s:%d>%s", "a.cpp", 7, "hello"));
    EXPECT_EQ(DLOG_MAX_MESSAGE_LENGTH, __dlog_print(LOG_ID_SYSTEM, DLOG_INFO, "t", "%s", longMessage.c_str()));
    EXPECT_EQ(3, dlog_print(DLOG_ERROR, "app", "%d", 123));
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_SYSTEM);
    ASSERT_EQ(2u, records.size());
    EXPECT_EQ("a.cpp:7>hello", records[0].message);
    EXPECT_EQ("orvotv.Orvo", records[0].tag);
    EXPECT_EQ(DLOG_WARN, records[0].priority);
    EXPECT_EQ(::getpid(), records[0].pid);
    EXPECT_EQ(::syscall(SYS_gettid), records[0].tid);
    EXPECT_EQ(longMessage.substr(0, DLOG_MAX_MESSAGE_LENGTH), records[1].message);
    EXPECT_EQ(std::vector<std::string>{"123"}, device.logMessages(LOG_ID_APPS, "app")) << "always the apps buffer";
    EXPECT_TRUE(device.logRecords(LOG_ID_MAIN).empty());
}
