/*
 * tzplatform-config: the platform's directory roots, addressed by variable index.
 */
#ifndef ORVO_PLATFORM_TZPLATFORM_CONFIG_H
#define ORVO_PLATFORM_TZPLATFORM_CONFIG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Indices are plain integers; the range markers make every int a valid value of the type. */
enum tzplatform_variable {
    _TZPLATFORM_VARIABLES_RANGE_MIN_ = -2147483647 - 1,
    _TZPLATFORM_VARIABLES_INVALID_ = -1,
    _TZPLATFORM_VARIABLES_RANGE_MAX_ = 2147483647
};

/* The directory of variable id, or NULL for an id the platform does not know. The string is
 * owned by the library and stays valid for the life of the process; never free it. */
const char* tzplatform_getenv(enum tzplatform_variable id);

#ifdef __cplusplus
}
#endif

#endif
