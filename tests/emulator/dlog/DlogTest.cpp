#define LOG_TAG "MacroTag"

#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

namespace {

// What a call should leave in the log: nothing, or one record.
struct Written {
    int buffer = -1; // -1: no record at all
    int priority = 0;
    std::string tag;
    std::string message;
};

int vprint(log_id_t id, int prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(id, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

int appsVprint(log_priority prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = dlog_vprint(prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

std::vector<Orvo::Emulator::LogRecord> allRecords(const Orvo::Testing::TestDevice& device) {
    std::vector<Orvo::Emulator::LogRecord> records;
    for (int buffer = LOG_ID_MAIN; buffer < LOG_ID_MAX; ++buffer)
        for (const Orvo::Emulator::LogRecord& record : device.logRecords(buffer))
            records.push_back(record);
    return records;
}

const std::string kLongest(LOG_MAX_SIZE - 23 - 5, 'm'); // with tag "MyTag": exactly LOG_MAX_SIZE

} // namespace

TEST(DlogParity, ConstantsAreThePlatforms) {
#define ROW(constant, platform) \
    { #constant, constant, platform }
    const struct {
        const char* name;
        long value, platform;
    } rows[] = {
        // clang-format off
        ROW(DLOG_UNKNOWN, 0), ROW(DLOG_DEFAULT, 1), ROW(DLOG_VERBOSE, 2), ROW(DLOG_DEBUG, 3), ROW(DLOG_INFO, 4),
        ROW(DLOG_WARN, 5), ROW(DLOG_ERROR, 6), ROW(DLOG_FATAL, 7), ROW(DLOG_SILENT, 8), ROW(DLOG_PRIO_MAX, 9),
        ROW(LOG_ID_INVALID, -1), ROW(LOG_ID_MAIN, 0), ROW(LOG_ID_RADIO, 1), ROW(LOG_ID_SYSTEM, 2), ROW(LOG_ID_APPS, 3),
        ROW(LOG_ID_MAX, 4), ROW(DLOG_ERROR_NONE, 0), ROW(DLOG_ERROR_INVALID_PARAMETER, -22),
        ROW(DLOG_ERROR_NOT_PERMITTED, -1), ROW(LOG_MAX_SIZE, 4076), ROW(LOG_BUF_SIZE, 1024),
        ROW(LOG_ATOMIC_SIZE, 976), ROW(LOG_INFO_SIZE, 16),
        // clang-format on
    };
#undef ROW
    for (const auto& row : rows)
        EXPECT_EQ(row.platform, row.value) << row.name;
}

// Each row: one call on a fresh log, its result, and the one record it leaves (or none).
TEST(DlogParity, CallsTakeAndRefuseWhatThePlatformDoes) {
    Orvo::Testing::TestDevice device;
    const int macroLine = __LINE__ + 2;
    const auto macros = [] {
        SLOGW("%d", 7);
        LOGV("never");
        SECURE_ALOGI("x");
    };
    const struct {
        const char* row;
        std::function<int()> call;
        int result;
        Written written;
    } rows[] = {
        {"success: 23 + tag + message, rounded up to even",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "MyTag", "hello"); },
         34,
         {LOG_ID_MAIN, DLOG_INFO, "MyTag", "hello"}},
        {"an even size stays",
         [] { return __dlog_print(LOG_ID_RADIO, DLOG_WARN, "MyTag", "%s", "hell"); },
         32,
         {LOG_ID_RADIO, DLOG_WARN, "MyTag", "hell"}},
        {"__dlog_vprint as __dlog_print",
         [] { return vprint(LOG_ID_SYSTEM, DLOG_ERROR, "T", "%d", 12); },
         26,
         {LOG_ID_SYSTEM, DLOG_ERROR, "T", "12"}},
        {"__dlog_print: tag NULL", [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, nullptr, "x"); }, -22, {}},
        {"__dlog_print: log_id -1", [] { return __dlog_print(LOG_ID_INVALID, DLOG_INFO, "T", "x"); }, -22, {}},
        {"__dlog_print: log_id 4", [] { return __dlog_print(LOG_ID_MAX, DLOG_INFO, "T", "x"); }, -22, {}},
        {"__dlog_print: prio 1", [] { return __dlog_print(LOG_ID_MAIN, DLOG_DEFAULT, "T", "x"); }, -22, {}},
        {"__dlog_print: prio 9", [] { return __dlog_print(LOG_ID_MAIN, DLOG_PRIO_MAX, "T", "x"); }, -22, {}},
        {"__dlog_print: VERBOSE accepted",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_VERBOSE, "T", "v"); },
         26,
         {LOG_ID_MAIN, DLOG_VERBOSE, "T", "v"}},
        {"__dlog_print: DEBUG accepted",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_DEBUG, "T", "d"); },
         26,
         {LOG_ID_MAIN, DLOG_DEBUG, "T", "d"}},
        {"__dlog_print: SILENT accepted and written",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_SILENT, "T", "s"); },
         26,
         {LOG_ID_MAIN, DLOG_SILENT, "T", "s"}},
        {"FATAL written, no abort by default",
         [] { return __dlog_print(LOG_ID_SYSTEM, DLOG_FATAL, "T", "f"); },
         26,
         {LOG_ID_SYSTEM, DLOG_FATAL, "T", "f"}},
        {"record of exactly LOG_MAX_SIZE",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "MyTag", "%s", kLongest.c_str()); },
         LOG_MAX_SIZE,
         {LOG_ID_MAIN, DLOG_INFO, "MyTag", kLongest}},
        {"one byte over: dropped whole",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "MyTag", "%s+", kLongest.c_str()); },
         -22,
         {}},
        {"one tag byte over: dropped whole",
         [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "MyTag!", "%s", kLongest.c_str()); },
         -22,
         {}},
        {"a message far beyond 4076: dropped, not cut",
         [] { return dlog_print(DLOG_INFO, "", "%10000d", 1); },
         -22,
         {}},
        {"dlog_print: always apps",
         [] { return dlog_print(DLOG_INFO, "MyTag", "hello"); },
         34,
         {LOG_ID_APPS, DLOG_INFO, "MyTag", "hello"}},
        {"dlog_vprint: always apps",
         [] { return appsVprint(DLOG_WARN, "MyTag", "%s", "hello"); },
         34,
         {LOG_ID_APPS, DLOG_WARN, "MyTag", "hello"}},
        {"dlog_print: tag NULL is the empty tag",
         [] { return dlog_print(DLOG_INFO, nullptr, "hello"); },
         28,
         {LOG_ID_APPS, DLOG_INFO, "", "hello"}},
        {"dlog_print: prio 1", [] { return dlog_print(DLOG_DEFAULT, "T", "x"); }, -22, {}},
        {"dlog_print: prio 9", [] { return dlog_print(DLOG_PRIO_MAX, "T", "x"); }, -22, {}},
        {"dlog_print: SILENT accepted",
         [] { return dlog_print(DLOG_SILENT, "T", "s"); },
         26,
         {LOG_ID_APPS, DLOG_SILENT, "T", "s"}},
        {"SLOGW: system, LOG_TAG, \"%s: %s(%d) > \"; LOGV nothing; SECURE_ marks",
         [&] {
             macros();
             return 0;
         },
         0,
         {LOG_ID_SYSTEM, DLOG_WARN, "MacroTag", "DlogTest.cpp: operator()(" + std::to_string(macroLine) + ") > 7"}},
    };
    for (const auto& row : rows) {
        device.clearLogs();
        EXPECT_EQ(row.result, row.call()) << row.row;
        std::vector<Orvo::Emulator::LogRecord> records = allRecords(device);
        if (row.written.buffer < 0) {
            EXPECT_TRUE(records.empty()) << row.row;
            continue;
        }
        ASSERT_FALSE(records.empty()) << row.row;
        EXPECT_EQ(row.written.buffer, records[0].buffer) << row.row;
        EXPECT_EQ(row.written.priority, records[0].priority) << row.row;
        EXPECT_EQ(row.written.tag, records[0].tag) << row.row;
        EXPECT_EQ(row.written.message, records[0].message) << row.row;
    }
    const std::vector<Orvo::Emulator::LogRecord> macroRecords = allRecords(device);
    ASSERT_EQ(2u, macroRecords.size()) << "LOGV writes nothing";
    EXPECT_EQ(0u, macroRecords[1].message.find("[SECURE_LOG] DlogTest.cpp: operator()(")) << macroRecords[1].message;
}

// The device's dlog settings stand for the platform's plog entry and its FATAL_ON build.
TEST(DlogParity, DeviceSettingsGateBuffersAndAbortOnFatal) {
    Orvo::Testing::TestDevice device;
    device.setConf("dlog.plog", "false");
    for (const log_id_t id : {LOG_ID_MAIN, LOG_ID_RADIO, LOG_ID_SYSTEM})
        EXPECT_EQ(DLOG_ERROR_NOT_PERMITTED, __dlog_print(id, DLOG_INFO, "T", "x")) << "plog false: buffer " << id;
    EXPECT_EQ(26, __dlog_print(LOG_ID_APPS, DLOG_INFO, "T", "x")) << "plog false: apps still takes records";
    device.removeConf("dlog.plog");
    EXPECT_EQ(26, __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "x")) << "plog missing: the television's default";

    device.setConf("dlog.abort-on-fatal", "true");
    device.clearLogs();
    EXPECT_EQ(26, dlog_print(DLOG_FATAL, "T", "f")) << "dlog_print never aborts";
    EXPECT_EQ(26, __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "T", "e")) << "only FATAL aborts";
    EXPECT_DEATH(__dlog_print(LOG_ID_SYSTEM, DLOG_FATAL, "T", "last words"), "");
    EXPECT_EQ(std::vector<std::string>{"last words"}, device.logMessages(LOG_ID_SYSTEM, "T"))
        << "written, then aborted";

    ::setenv("ORVO_DEVICE_DIR", (device.dir() + "/nothing-here").c_str(), 1);
    EXPECT_EQ(DLOG_ERROR_NOT_PERMITTED, __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "x")) << "no device: no backend";
    ::setenv("ORVO_DEVICE_DIR", device.dir().c_str(), 1);
}
