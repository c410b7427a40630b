/*
 * capi-system-info: read-only facts about the device (software version, model, factory-menu
 * values, ...), addressed by integer keys.
 */
#ifndef ORVO_PLATFORM_SYSTEM_INFO_H
#define ORVO_PLATFORM_SYSTEM_INFO_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_INFO_ERROR_NONE = 0,
    SYSTEM_INFO_ERROR_INVALID_PARAMETER = -22,
    SYSTEM_INFO_ERROR_OUT_OF_MEMORY = -12,
    SYSTEM_INFO_ERROR_IO_ERROR = -5,
    SYSTEM_INFO_ERROR_PERMISSION_DENIED = -13
} system_info_error_e;

/* Keys are plain integers that callers pass by number. The two range markers give the
 * enumeration the whole int range, so that converting any key number to it is well defined. */
typedef enum {
    SYSTEM_INFO_KEY_RANGE_MIN_ = -2147483647 - 1,
    SYSTEM_INFO_KEY_RANGE_MAX_ = 2147483647
} system_info_key_e;

/* An unknown key, or a key read with another type, fails with
 * SYSTEM_INFO_ERROR_INVALID_PARAMETER. On failure the output is not written. */
int system_info_get_value_int(system_info_key_e key, int* value);
int system_info_get_value_bool(system_info_key_e key, bool* value);
int system_info_get_value_double(system_info_key_e key, double* value);

/* On success *value is a malloc'ed copy that the caller releases with free(). */
int system_info_get_value_string(system_info_key_e key, char** value);

#ifdef __cplusplus
}
#endif

#endif
