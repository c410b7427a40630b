/*
 * vconf: the platform's persisted key/value settings.
 *
 * Keys beginning with "memory/" are volatile (lost at reboot); every other key is persistent.
 * A key name is 1 to 4096 bytes of printable ASCII without the blank (0x21-0x7E). Keys are made
 * by the device's installation and by vconftool, never by this library: a set of a missing key
 * fails. Every get and set returns 0 on success and -1 on failure (a getter leaves its output
 * untouched then) and prints one line on standard error; vconf_get_ext_errno() tells why.
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
#define VCONF_ERROR_FILE_FREAD -22
#define VCONF_ERROR_FILE_FGETS -23
#define VCONF_ERROR_FILE_WRITE -24
#define VCONF_ERROR_FILE_SYNC -25
#define VCONF_ERROR_FILE_CLOSE -26
#define VCONF_ERROR_FILE_ACCESS -27
#define VCONF_ERROR_FILE_CHMOD -28
#define VCONF_ERROR_FILE_LOCK -29
#define VCONF_ERROR_FILE_REMOVE -30
#define VCONF_ERROR_FILE_SEEK -31
#define VCONF_ERROR_FILE_TRUNCATE -32
#define VCONF_ERROR_NOT_SUPPORTED -33

#define VCONF_TYPE_NONE 0
#define VCONF_TYPE_STRING 40
#define VCONF_TYPE_INT 41
#define VCONF_TYPE_DOUBLE 42
#define VCONF_TYPE_BOOL 43
#define VCONF_TYPE_DIR 44

enum get_option_t { VCONF_GET_KEY = 0, VCONF_GET_ALL, VCONF_GET_DIR };
typedef enum get_option_t get_option_t;

/* A set replaces the key's value and its type, whatever type it held. */
int vconf_set_int(const char* in_key, const int intval);
/* Stored in one byte: only the low eight bits of boolval count (256 is false). Pass 0 or 1. */
int vconf_set_bool(const char* in_key, const int boolval);
int vconf_set_dbl(const char* in_key, const double dblval);
/* At most 4096 characters. */
int vconf_set_str(const char* in_key, const char* strval);

int vconf_get_int(const char* in_key, int* intval);
int vconf_get_bool(const char* in_key, int* boolval);
int vconf_get_dbl(const char* in_key, double* dblval);
/* Returns a malloc'ed copy that the caller releases with free(), or NULL on failure. */
char* vconf_get_str(const char* in_key);

/* Only root may remove keys: anyone else gets VCONF_ERROR_NOT_SUPPORTED. The recursive form
 * removes every key whose name begins with in_dir. Neither changes vconf_get_ext_errno(). */
int vconf_unset(const char* in_key);
int vconf_unset_recursive(const char* in_dir);

/* 0 when the process's last get or set succeeded; otherwise why the calling thread's last call
 * failed, from its errno: VCONF_ERROR_FILE_NO_ENT (no such key), VCONF_ERROR_FILE_NO_MEM,
 * VCONF_ERROR_FILE_BUSY, VCONF_ERROR_FILE_PERM, or VCONF_ERROR for anything else (a key of
 * another type, an invalid argument). */
int vconf_get_ext_errno(void);

#ifdef __cplusplus
}
#endif

#endif
