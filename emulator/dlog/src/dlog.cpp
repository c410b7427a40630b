// dlog on the emulated device: every record is appended to the device's buffer file. Like the
// platform's, writing an ordinary record allocates nothing: the message, the device directory and
// the record line are all built on the stack.

#pragma GCC visibility push(default)
#include <dlog.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/LogStore.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <new>

static_assert(DLOG_MAX_MESSAGE_LENGTH <= Orvo::Emulator::kAllocationFreeMessageLength,
              "the longest message must be written without allocating");

extern "C" {

int __dlog_vprint(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap) {
    if (tag == nullptr || fmt == nullptr || Orvo::Emulator::logBufferName(log_id) == nullptr)
        return DLOG_ERROR_INVALID_PARAMETER;
    char message[DLOG_MAX_MESSAGE_LENGTH + 1];
    const int formatted = std::vsnprintf(message, sizeof message, fmt, ap);
    if (formatted < 0) return DLOG_ERROR_INVALID_PARAMETER;
    const std::size_t length = std::min<std::size_t>(static_cast<std::size_t>(formatted), DLOG_MAX_MESSAGE_LENGTH);
    char deviceDir[PATH_MAX];
    if (!Orvo::Emulator::findDevice(deviceDir, sizeof deviceDir)) return DLOG_ERROR_NOT_PERMITTED;
    try {
        const int written = Orvo::Emulator::appendLogRecord(deviceDir, log_id, prio, tag, message, length);
        return written < 0 ? DLOG_ERROR_NOT_PERMITTED : written;
    } catch (const std::bad_alloc&) { // a tag too long for the stack
        return DLOG_ERROR_NOT_PERMITTED;
    }
}

int __dlog_print(log_id_t log_id, int prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(log_id, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap) {
    return __dlog_vprint(LOG_ID_APPS, prio, tag, fmt, ap);
}

int dlog_print(log_priority prio, const char* tag, const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(LOG_ID_APPS, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

} // extern "C"
