// dlog on the emulated device, as the platform's pipe backend takes records: every record is
// appended to the device's buffer file. Like the platform's, writing an ordinary record allocates
// nothing: the message, the device directory, its dlog settings and the record line are all
// built on the stack.

#pragma GCC visibility push(default)
#include <dlog.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"
#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/LogStore.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The pipe record's 20-byte header, the priority byte and the NULs after tag and message.
constexpr std::size_t kRecordOverhead = 23;

static_assert(LOG_MAX_SIZE - kRecordOverhead <=
                  Orvo::Emulator::kAllocationFreeTagLength + Orvo::Emulator::kAllocationFreeMessageLength,
              "every record dlog takes must be written without allocating");

int writeRecord(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap, bool mayAbort) {
    char deviceDir[PATH_MAX];
    if (!Orvo::Emulator::findDevice(deviceDir, sizeof deviceDir)) return DLOG_ERROR_NOT_PERMITTED;
    Orvo::Emulator::DlogSettings settings;
    if (!Orvo::Emulator::DeviceConf::loadDlogSettings(deviceDir, settings)) return DLOG_ERROR_NOT_PERMITTED;
    if (log_id != LOG_ID_APPS && !settings.plog) return DLOG_ERROR_NOT_PERMITTED;
    if (prio < DLOG_VERBOSE || prio > DLOG_SILENT || fmt == nullptr) return DLOG_ERROR_INVALID_PARAMETER;

    char message[LOG_MAX_SIZE];
    int result = DLOG_ERROR_INVALID_PARAMETER;
    if (std::vsnprintf(message, sizeof message, fmt, ap) >= 0) {
        const std::size_t tagLength = std::strlen(tag), length = std::strlen(message);
        const std::size_t size = kRecordOverhead + tagLength + length;
        if (size <= LOG_MAX_SIZE)
            result = Orvo::Emulator::appendLogRecord(deviceDir, log_id, prio, tag, message, length) < 0
                         ? DLOG_ERROR_NOT_PERMITTED
                         : static_cast<int>((size + 1) & ~std::size_t{1});
    }
    if (mayAbort && prio == DLOG_FATAL && settings.abortOnFatal) std::abort();
    return result;
}

} // namespace

extern "C" {

int __dlog_vprint(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap) {
    if (tag == nullptr || Orvo::Emulator::logBufferName(log_id) == nullptr) return DLOG_ERROR_INVALID_PARAMETER;
    return writeRecord(log_id, prio, tag, fmt, ap, true);
}

int __dlog_print(log_id_t log_id, int prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(log_id, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap) {
    return writeRecord(LOG_ID_APPS, prio, tag == nullptr ? "" : tag, fmt, ap, false);
}

int dlog_print(log_priority prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = dlog_vprint(prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

} // extern "C"
