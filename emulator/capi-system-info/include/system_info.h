/*
 * capi-system-info: read-only facts about the device.
 *
 * Two ways in: the platform's keys by name ("tizen.org/feature/...", with or without a leading
 * "http://"), each stored with one type, and this television's integer keys (software version,
 * build date, model, factory-menu values, ...), which callers pass by number.
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
    SYSTEM_INFO_ERROR_PERMISSION_DENIED = -13,
    SYSTEM_INFO_ERROR_NOT_SUPPORTED = -1073741822
} system_info_error_e;

typedef enum {
    SYSTEM_INFO_BOOL = 0,
    SYSTEM_INFO_INT = 1,
    SYSTEM_INFO_DOUBLE = 2,
    SYSTEM_INFO_STRING = 3
} system_info_type_e;

/*
 * Keys by name. A key that is not stored with the asked type, a null argument or an unreadable
 * store fails with SYSTEM_INFO_ERROR_INVALID_PARAMETER and leaves the output alone. A bool is
 * true only for the stored text "true" or "TRUE"; an int and a double are atoi/atof of it.
 * A string is a malloc'ed copy of at most 255 characters that the caller releases with free().
 */
int system_info_get_platform_bool(const char* key, bool* value);
int system_info_get_platform_int(const char* key, int* value);
int system_info_get_platform_double(const char* key, double* value);
int system_info_get_platform_string(const char* key, char** value);
int system_info_get_custom_bool(const char* key, bool* value);
int system_info_get_custom_int(const char* key, int* value);
int system_info_get_custom_double(const char* key, double* value);
int system_info_get_custom_string(const char* key, char** value);

/* The type a key is stored with. The platform form fails with SYSTEM_INFO_ERROR_IO_ERROR when
 * the store cannot be read, with SYSTEM_INFO_ERROR_INVALID_PARAMETER otherwise. */
int system_info_get_platform_type(const char* key, system_info_type_e* type);
int system_info_get_custom_type(const char* key, system_info_type_e* type);

/*
 * This television's integer keys. The enumeration names none of them: callers convert the key
 * number. Its two markers are the emulator's own; they give it the whole int range, so that the
 * conversion of any key number is well defined.
 */
typedef enum {
    ORVO_EMULATOR_SYSTEM_INFO_KEY_MIN_ = -2147483647 - 1,
    ORVO_EMULATOR_SYSTEM_INFO_KEY_MAX_ = 2147483647
} system_info_key_e;

/* An unknown key, a key read with another type or a null output fails with
 * SYSTEM_INFO_ERROR_INVALID_PARAMETER; a key the device does not support with
 * SYSTEM_INFO_ERROR_NOT_SUPPORTED. On failure the output is not written. */
int system_info_get_value_int(system_info_key_e key, int* value);
int system_info_get_value_bool(system_info_key_e key, bool* value);
int system_info_get_value_double(system_info_key_e key, double* value);
/* On success *value is a malloc'ed copy that the caller releases with free(). */
int system_info_get_value_string(system_info_key_e key, char** value);

#ifdef __cplusplus
}
#endif

#endif
