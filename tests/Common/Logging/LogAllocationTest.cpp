// What a log call costs in heap allocations, the dlog write included: an ordinary call (a text
// under 1,024 bytes) makes none, a longer text one. Every malloc of the process is counted by
// replacing malloc and friends in this executable; the sanitizers own the allocator, so the
// counts are skipped under them.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <filesystem>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define ORVO_TEST_SANITIZED_ALLOCATOR 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ORVO_TEST_SANITIZED_ALLOCATOR 1
#endif

namespace {

std::atomic<bool> g_counting{false};
std::atomic<long> g_allocations{0};

// Runs call with allocations counted.
template <typename Call>
long allocationsOf(Call call) {
    g_allocations = 0;
    g_counting = true;
    call();
    g_counting = false;
    return g_allocations.load();
}

} // namespace

#ifndef ORVO_TEST_SANITIZED_ALLOCATOR
namespace {

void countAllocation() {
    if (g_counting.load(std::memory_order_relaxed)) g_allocations.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* pointer, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    countAllocation();
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    countAllocation();
    return __libc_calloc(count, size);
}
void* realloc(void* pointer, std::size_t size) {
    countAllocation();
    return __libc_realloc(pointer, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
    countAllocation();
    return __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void** pointer, std::size_t alignment, std::size_t size) {
    *pointer = memalign(alignment, size);
    return *pointer != nullptr ? 0 : 12;  // ENOMEM
}
}
#endif

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Logging;

void discardingSink(const char*, int32_t, char*) {}

class LogAllocationTest : public ::testing::Test {
protected:
    void SetUp() override {
#ifdef ORVO_TEST_SANITIZED_ALLOCATOR
        GTEST_SKIP() << "the sanitizer's allocator cannot be counted from the test";
#endif
    }
};

TEST_F(LogAllocationTest, CountingSeesAllocations) {
    EXPECT_GT(allocationsOf([] { delete new std::string(100, 'x'); }), 0);
}

TEST_F(LogAllocationTest, FormattingAndDumpingAllocateNothing) {
    const unsigned char data[40] = {};
    EXPECT_EQ(allocationsOf([&data] {
                  logPrintf(&discardingSink, kLogTag, INF, nullptr, 0, "%s:%d>%s %d", "file.cpp", 12, "text", 5);
                  logPrintf(&discardingSink, kLogTag, INF, data, sizeof data, "dump");
              }),
              0);
}

TEST_F(LogAllocationTest, AnOrdinaryLogCallAllocatesNothingDlogWriteIncluded) {
    TestDevice device;
    ORVO_LOG(INF, "warm-up");  // set-up done once per process and thread
    EXPECT_EQ(allocationsOf([] { ORVO_LOG(INF, "Model %s, code %d.", "QE55", 7); }), 0);
    const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[1].text, ::testing::EndsWith(">Model QE55, code 7."));
}

TEST_F(LogAllocationTest, OnlyATextOver1023BytesAllocatesItsBufferOnceDlogWritesIncluded) {
    TestDevice device;
    ORVO_LOG(INF, "warm-up");
    const std::string longest(1023, 'x');  // with its terminator, the whole stack buffer
    const std::string tooLong(1024, 'y');
    EXPECT_EQ(allocationsOf([&longest] { logPrintf(&dlogLineSink, kLogTag, INF, nullptr, 0, "%s", longest.c_str()); }),
              0);
    EXPECT_EQ(allocationsOf([&tooLong] { logPrintf(&dlogLineSink, kLogTag, INF, nullptr, 0, "%s", tooLong.c_str()); }),
              1);
    // Several lines, each written as dlog records of its own: still the one buffer.
    const std::string lines = std::string(900, 'z') + "\n" + std::string(900, 'q');
    EXPECT_EQ(allocationsOf([&lines] { ORVO_LOG(INF, "%s", lines.c_str()); }), 1);
    // Every byte reached the device.
    std::string logged;
    for (const LogLine& line : logLines(device, LOG_ID_MAIN)) logged += line.text;
    EXPECT_EQ(std::count(logged.begin(), logged.end(), 'x'), 1023);
    EXPECT_EQ(std::count(logged.begin(), logged.end(), 'y'), 1024);
    EXPECT_EQ(std::count(logged.begin(), logged.end(), 'z'), 900);
    EXPECT_EQ(std::count(logged.begin(), logged.end(), 'q'), 900);
}

TEST_F(LogAllocationTest, TheDlogWriteOfTheLongestRecordAllocatesNothingWhateverItHolds) {
    TestDevice device;
    // Every byte escaped on disk, so the record line is as long as it gets.
    const std::string tag(Orvo::Emulator::kAllocationFreeTagLength, '\t');
    std::string message;
    while (message.size() < DLOG_MAX_MESSAGE_LENGTH) message += "\\\t\n";
    message.resize(DLOG_MAX_MESSAGE_LENGTH);
    int written = 0;
    const auto write = [&] { written = __dlog_print(LOG_ID_MAIN, DLOG_INFO, tag.c_str(), "%s", message.c_str()); };
    EXPECT_EQ(allocationsOf(write), 0);
    EXPECT_EQ(written, DLOG_MAX_MESSAGE_LENGTH);
    const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].tag, tag);
    EXPECT_EQ(records[0].message, message);
}

TEST_F(LogAllocationTest, TheFirstRecordOfADeviceMakesItsLogDirectoryWithoutAllocating) {
    TestDevice device;
    std::filesystem::remove_all(device.dir() + "/log");
    EXPECT_EQ(allocationsOf([] { __dlog_print(LOG_ID_RADIO, DLOG_INFO, "t", "first"); }), 0);
    EXPECT_EQ(device.logMessages(LOG_ID_RADIO, "t"), std::vector<std::string>{"first"});
}

// The stream logger collects its text in a std::ostringstream, whose buffer and str() copy do
// allocate; the statement must add nothing to them.
TEST_F(LogAllocationTest, AStreamStatementAllocatesOnlyWhatItsStringStreamNeeds) {
    TestDevice device;
    ORVO_LOG_STREAM(INF) << "warm-up";
    const long stream = allocationsOf([] {
        LoggingClass::LoggingStream::SafeOstringStream text;
        text << "Model " << "QE55" << ", code " << 7 << '.';
        const std::string copy = text.str();
    });
    const long statement = allocationsOf([] { ORVO_LOG_STREAM(INF) << "Model " << "QE55" << ", code " << 7 << '.'; });
    EXPECT_EQ(statement, stream);
    const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[1].text, ::testing::EndsWith(">Model QE55, code 7."));
    std::printf("allocations per stream statement: %ld, all of them its std::ostringstream's\n", statement);
}

} // namespace
} // namespace Testing
} // namespace Orvo
