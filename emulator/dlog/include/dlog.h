/*
 * dlog: the platform log. Records go to one of four buffers; readers (dlogutil) filter them by
 * tag and priority.
 */
#ifndef ORVO_PLATFORM_DLOG_H
#define ORVO_PLATFORM_DLOG_H

#include <stdarg.h>
#include <string.h>

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

typedef enum { DLOG_ERROR_NONE = 0, DLOG_ERROR_INVALID_PARAMETER = -22, DLOG_ERROR_NOT_PERMITTED = -1 } dlog_error_e;

/* A record's size limit: its 20-byte header, priority byte, tag, message and their two NULs
 * together at most LOG_MAX_SIZE bytes; a larger record is refused whole, never cut. */
#define LOG_MAX_SIZE 4076
#define LOG_BUF_SIZE 1024
#define LOG_ATOMIC_SIZE 976
#define LOG_INFO_SIZE 16

/* Write one record. Returns its size rounded up to even, DLOG_ERROR_INVALID_PARAMETER for a null
 * tag, a buffer or priority out of range or a record over LOG_MAX_SIZE, DLOG_ERROR_NOT_PERMITTED
 * when the buffer takes no records or no log is there. */
int __dlog_print(log_id_t log_id, int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));
int __dlog_vprint(log_id_t log_id, int prio, const char* tag, const char* fmt, va_list ap)
    __attribute__((format(printf, 4, 0)));

/* The same into the apps buffer; a null tag is the empty tag. */
int dlog_print(log_priority prio, const char* tag, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap) __attribute__((format(printf, 3, 0)));

/* The convenience macros log under LOG_TAG with the source file's base name, function and line
 * before the text; the SECURE_ forms mark the text as holding private data. The V forms log nothing. */
#ifndef LOG_TAG
#define LOG_TAG NULL
#endif

#ifndef __MODULE__
#define __MODULE__ (strrchr(__FILE__, '/') ? strrchr(__FILE__, '/') + 1 : __FILE__)
#endif

#define DLOG_WHERE_(id, prio, mark, fmt, ...) \
    ((void)__dlog_print(id, prio, LOG_TAG, mark "%s: %s(%d) > " fmt, __MODULE__, __func__, __LINE__, ##__VA_ARGS__))
#define DLOG_NOTHING_(...) ((void)0)

#define LOGV DLOG_NOTHING_
#define LOGD(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_DEBUG, "", fmt, ##__VA_ARGS__)
#define LOGI(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_INFO, "", fmt, ##__VA_ARGS__)
#define LOGW(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_WARN, "", fmt, ##__VA_ARGS__)
#define LOGE(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_ERROR, "", fmt, ##__VA_ARGS__)
#define LOGF(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_FATAL, "", fmt, ##__VA_ARGS__)
#define SLOGV DLOG_NOTHING_
#define SLOGD(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_DEBUG, "", fmt, ##__VA_ARGS__)
#define SLOGI(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_INFO, "", fmt, ##__VA_ARGS__)
#define SLOGW(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_WARN, "", fmt, ##__VA_ARGS__)
#define SLOGE(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_ERROR, "", fmt, ##__VA_ARGS__)
#define SLOGF(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_FATAL, "", fmt, ##__VA_ARGS__)
#define RLOGV DLOG_NOTHING_
#define RLOGD(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_DEBUG, "", fmt, ##__VA_ARGS__)
#define RLOGI(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_INFO, "", fmt, ##__VA_ARGS__)
#define RLOGW(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_WARN, "", fmt, ##__VA_ARGS__)
#define RLOGE(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_ERROR, "", fmt, ##__VA_ARGS__)
#define RLOGF(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_FATAL, "", fmt, ##__VA_ARGS__)
#define ALOGV DLOG_NOTHING_
#define ALOGD(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_DEBUG, "", fmt, ##__VA_ARGS__)
#define ALOGI(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_INFO, "", fmt, ##__VA_ARGS__)
#define ALOGW(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_WARN, "", fmt, ##__VA_ARGS__)
#define ALOGE(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_ERROR, "", fmt, ##__VA_ARGS__)
#define ALOGF(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_FATAL, "", fmt, ##__VA_ARGS__)

#define SECURE_LOGV DLOG_NOTHING_
#define SECURE_LOGD(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_DEBUG, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_LOGI(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_INFO, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_LOGW(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_WARN, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_LOGE(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_ERROR, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_LOGF(fmt, ...) DLOG_WHERE_(LOG_ID_MAIN, DLOG_FATAL, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_SLOGV DLOG_NOTHING_
#define SECURE_SLOGD(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_DEBUG, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_SLOGI(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_INFO, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_SLOGW(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_WARN, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_SLOGE(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_ERROR, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_SLOGF(fmt, ...) DLOG_WHERE_(LOG_ID_SYSTEM, DLOG_FATAL, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_RLOGV DLOG_NOTHING_
#define SECURE_RLOGD(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_DEBUG, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_RLOGI(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_INFO, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_RLOGW(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_WARN, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_RLOGE(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_ERROR, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_RLOGF(fmt, ...) DLOG_WHERE_(LOG_ID_RADIO, DLOG_FATAL, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_ALOGV DLOG_NOTHING_
#define SECURE_ALOGD(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_DEBUG, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_ALOGI(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_INFO, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_ALOGW(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_WARN, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_ALOGE(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_ERROR, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)
#define SECURE_ALOGF(fmt, ...) DLOG_WHERE_(LOG_ID_APPS, DLOG_FATAL, "[SECURE_LOG] ", fmt, ##__VA_ARGS__)

#ifdef __cplusplus
}
#endif

#endif
