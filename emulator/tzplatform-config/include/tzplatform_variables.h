/*
 * The variables of tzplatform-config, in the header where the platform declares them. This
 * television numbers them as its device lists them, not in the public platform's alphabetical
 * order, so the enumeration names no variable: callers convert index numbers to it.
 */
#ifndef ORVO_PLATFORM_TZPLATFORM_VARIABLES_H
#define ORVO_PLATFORM_TZPLATFORM_VARIABLES_H

/* Callers convert index numbers to the enumeration. _TZPLATFORM_VARIABLES_INVALID_ is the
 * platform's; the two range markers are the emulator's own and make every int a valid value. */
enum tzplatform_variable {
    _TZPLATFORM_VARIABLES_EMULATOR_MIN_ = -2147483647 - 1,
    _TZPLATFORM_VARIABLES_INVALID_ = -1,
    _TZPLATFORM_VARIABLES_EMULATOR_MAX_ = 2147483647
};

#endif
