// Ordinary log calls allocate nothing of their own. Every malloc of the process is counted by
// replacing malloc and friends in this executable; the sanitizers own the allocator, so the
// count is skipped under them.
#include "Common/Logging/Logging.h"
#include "LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdio>

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

TEST_F(LogAllocationTest, LongTextsAllocateTheHeapBufferOnce) {
    const std::string text(2000, 'l');
    EXPECT_EQ(allocationsOf([&text] { logPrintf(&discardingSink, kLogTag, INF, nullptr, 0, "%s", text.c_str()); }), 1);
}

TEST_F(LogAllocationTest, OrdinaryStatementAllocatesNoMoreThanTheBareDlogWrite) {
    TestDevice device;
    ORVO_LOG(INF, "warm-up");
    // The platform's own write is the baseline: the log adds nothing to it.
    const long bare = allocationsOf([] {
        __dlog_print(LOG_ID_MAIN, DLOG_INFO, "orvotv.Orvo", "[%s][%s][%u][INF] %s", "", "1 name", 1U,
                     "LogAllocationTest.cpp:100>Model QE55, code 7.");
    });
    const long logged = allocationsOf([] { ORVO_LOG(INF, "Model %s, code %d.", "QE55", 7); });
    EXPECT_EQ(logged, bare);
    std::printf("allocations per ordinary log call: %ld, all of them the device's dlog write\n", logged);
}

} // namespace
} // namespace Testing
} // namespace Orvo
