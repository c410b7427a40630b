/*
 * tzplatform-config: the platform's directories and other configuration values, addressed by
 * variable index.
 *
 * The indices are this television's variable numbering, which differs from the public platform's
 * alphabetical one: the device lists each variable's value and name (see the emulator's
 * device.conf). The variables run from 0 to tzplatform_getcount() - 1; an index the device does
 * not list has no value and no name.
 *
 * Every string returned is owned by the library and stays valid for the life of the process
 * (also after tzplatform_reset or tzplatform_set_user); never free it. Equal text always comes
 * back as the same pointer.
 */
#ifndef ORVO_PLATFORM_TZPLATFORM_CONFIG_H
#define ORVO_PLATFORM_TZPLATFORM_CONFIG_H

#include <sys/types.h>

#include "tzplatform_variables.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The number of variables, and the name of one ("TZ_SYS_..."), NULL for an unknown index. */
int tzplatform_getcount(void);
const char* tzplatform_getname(enum tzplatform_variable id);
/* The index of a name, _TZPLATFORM_VARIABLES_INVALID_ when there is none. */
enum tzplatform_variable tzplatform_getid(const char* name);

/* The value of variable id; NULL for an index without one or when the device cannot be read. */
const char* tzplatform_getenv(enum tzplatform_variable id);
/* atoi of the value, -1 without one. */
int tzplatform_getenv_int(enum tzplatform_variable id);
/* The value followed by str. */
const char* tzplatform_mkstr(enum tzplatform_variable id, const char* str);
/* The value and the parts joined with exactly one '/' at each junction: one is added where
 * neither side has it and one dropped where both have it. Empty parts are skipped; a NULL part
 * ends the list. tzplatform_mkpath(id of "/var/run", "memory") is "/var/run/memory". */
const char* tzplatform_mkpath(enum tzplatform_variable id, const char* path);
const char* tzplatform_mkpath3(enum tzplatform_variable id, const char* path, const char* path2);
const char* tzplatform_mkpath4(enum tzplatform_variable id, const char* path, const char* path2, const char* path3);
/* The user or group that the value names; (uid_t)-1 / (gid_t)-1 when there is none. */
uid_t tzplatform_getuid(enum tzplatform_variable id);
gid_t tzplatform_getgid(enum tzplatform_variable id);

/* The user whose values are given: the process's own unless set. set_user fails with -1 for a
 * uid that no user has; (uid_t)-1 returns to the process's own user. */
int tzplatform_set_user(uid_t uid);
uid_t tzplatform_get_user(void);
void tzplatform_reset_user(void);
/* Drops the values evaluated so far (on the emulated device every call reads afresh anyway). */
void tzplatform_reset(void);

#ifdef __cplusplus
}
#endif

#endif
