// dlog on the emulated device: every record is appended to the device's buffer file.

#pragma GCC visibility push(default)
#include <dlog.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/LogStore.h"

#include <algorithm>
#include <cstdio>
#include <new>

extern "C" {

int __dlog_vprint(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap)
{
    if (tag == nullptr || fmt == nullptr || Orvo::Emulator::logBufferName(log_id) == nullptr)
        return DLOG_ERROR_INVALID_PARAMETER;
    char message[DLOG_MAX_MESSAGE_LENGTH + 1];
    const int formatted = std::vsnprintf(message, sizeof message, fmt, ap);
    if (formatted < 0)
        return DLOG_ERROR_INVALID_PARAMETER;
    const std::size_t length = std::min<std::size_t>(static_cast<std::size_t>(formatted), DLOG_MAX_MESSAGE_LENGTH);
    try {
        const int written = Orvo::Emulator::appendLogRecord(Orvo::Emulator::deviceDirectory(), log_id, prio,
                                                            tag, message, length);
        return written < 0 ? DLOG_ERROR_NOT_PERMITTED : written;
    } catch (const std::bad_alloc&) {
        return DLOG_ERROR_NOT_PERMITTED;
    }
}

int __dlog_print(log_id_t log_id, int prio, const char* tag, const char* fmt, ...)
{
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(log_id, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap)
{
    return __dlog_vprint(LOG_ID_APPS, prio, tag, fmt, ap);
}

int dlog_print(log_priority prio, const char* tag, const char* fmt, ...)
{
    va_list ap;
    va_start(ap, fmt);
    const int result = __dlog_vprint(LOG_ID_APPS, prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

} // extern "C"
