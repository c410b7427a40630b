/*
 * dlog: the platform log. Records go to one of four buffers; readers (dlogutil) filter them by
 * tag and priority.
 */
#ifndef ORVO_PLATFORM_DLOG_H
#define ORVO_PLATFORM_DLOG_H

#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    LOG_ID_INVALID = -1,
    LOG_ID_MAIN = 0,
    LOG_ID_RADIO = 1,
    LOG_ID_SYSTEM = 2,
    LOG_ID_APPS = 3,
    LOG_ID_MAX = 4
} log_id_t;

typedef enum {
    DLOG_UNKNOWN = 0,
    DLOG_DEFAULT = 1,
    DLOG_VERBOSE = 2,
    DLOG_DEBUG = 3,
    DLOG_INFO = 4,
    DLOG_WARN = 5,
    DLOG_ERROR = 6,
    DLOG_FATAL = 7,
    DLOG_SILENT = 8,
    DLOG_PRIO_MAX = 9
} log_priority;

typedef enum { DLOG_ERROR_NONE = 0, DLOG_ERROR_NOT_PERMITTED = -1, DLOG_ERROR_INVALID_PARAMETER = -22 } dlog_error_e;

/* The longest message a record holds; a longer one is truncated to this many bytes. */
#define DLOG_MAX_MESSAGE_LENGTH 4076

/* Write one record. Returns the number of bytes written, or DLOG_ERROR_INVALID_PARAMETER for a
 * null tag or a buffer out of range. */
int __dlog_print(log_id_t log_id, int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));
int __dlog_vprint(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap)
    __attribute__((format(printf, 4, 0)));

/* The same into the apps buffer. */
int dlog_print(log_priority prio, const char* tag, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap) __attribute__((format(printf, 3, 0)));

#ifdef __cplusplus
}
#endif

#endif
