/*
 * vconf: the platform's persisted key/value settings.
 *
 * Keys begin with "db/" or "file/" (persistent, every write synced to storage) or "memory/"
 * (volatile, lost at reboot). Every function returns 0 on success and -1 on failure;
 * vconf_get_ext_errno() then tells why the calling thread's last call failed.
 */
#ifndef ORVO_PLATFORM_VCONF_H
#define ORVO_PLATFORM_VCONF_H

#ifdef __cplusplus
extern "C" {
#endif

#define VCONF_OK 0
#define VCONF_ERROR -1
#define VCONF_ERROR_WRONG_PREFIX -2
#define VCONF_ERROR_WRONG_TYPE -3
#define VCONF_ERROR_WRONG_VALUE -4
#define VCONF_ERROR_NOT_INITIALIZED -5
#define VCONF_ERROR_NO_MEM -6
#define VCONF_ERROR_FILE_PERM -11
#define VCONF_ERROR_FILE_BUSY -12
#define VCONF_ERROR_FILE_NO_MEM -13
#define VCONF_ERROR_FILE_NO_ENT -14
#define VCONF_ERROR_FILE_OPEN -21
#define VCONF_ERROR_FILE_FREAD -27
#define VCONF_ERROR_NOT_SUPPORTED -33

/* A set creates a missing key; a set with another type replaces the key with the new type. */
int vconf_set_int(const char* in_key, const int intval);
int vconf_set_bool(const char* in_key, const int boolval); /* 1 true, 0 false */
int vconf_set_dbl(const char* in_key, const double dblval);
int vconf_set_str(const char* in_key, const char* strval);

/* A missing key fails with VCONF_ERROR_FILE_NO_ENT, a key of another type with
 * VCONF_ERROR_WRONG_TYPE; in both cases the output is left untouched. */
int vconf_get_int(const char* in_key, int* intval);
int vconf_get_bool(const char* in_key, int* boolval);
int vconf_get_dbl(const char* in_key, double* dblval);

/* Returns a malloc'ed copy that the caller releases with free(), or NULL on failure. */
char* vconf_get_str(const char* in_key);

int vconf_unset(const char* in_key);

/* Why the calling thread's last vconf call failed (one of VCONF_ERROR_*), VCONF_OK after a success. */
int vconf_get_ext_errno(void);

#ifdef __cplusplus
}
#endif

#endif
