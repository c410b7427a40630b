// vconf on the emulated device: every call reads or writes the device's settings files.

#pragma GCC visibility push(default)
#include <vconf.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace {

using Orvo::Emulator::Setting;
using Orvo::Emulator::SettingType;

thread_local int lastError = VCONF_OK;

// Records why the call failed for vconf_get_ext_errno() and maps the result to 0 / -1.
// A C caller must never see a C++ exception; the only one possible here is an allocation failure.
template <typename Operation>
int run(Operation operation) {
    try {
        lastError = operation();
    } catch (const std::bad_alloc&) {
        lastError = VCONF_ERROR_NO_MEM;
    }
    return lastError == VCONF_OK ? 0 : -1;
}

// The settings store of the current device; VCONF_ERROR_NOT_INITIALIZED where there is none.
template <typename Operation>
int onDevice(Operation operation) {
    char deviceDir[PATH_MAX];
    if (!Orvo::Emulator::findDevice(deviceDir, sizeof deviceDir)) return VCONF_ERROR_NOT_INITIALIZED;
    return operation(std::string(deviceDir));
}

int readTyped(const char* key, SettingType type, Setting& out) {
    if (key == nullptr) return VCONF_ERROR;
    Setting setting;
    const int result =
        onDevice([&](const std::string& deviceDir) { return Orvo::Emulator::readSetting(deviceDir, key, setting); });
    if (result != VCONF_OK) return result;
    if (setting.type != type) return VCONF_ERROR_WRONG_TYPE;
    out = setting;
    return VCONF_OK;
}

int writeTyped(const char* key, SettingType type, const std::string& value) {
    if (key == nullptr) return VCONF_ERROR;
    Setting setting;
    setting.type = type;
    setting.value = value;
    return onDevice(
        [&](const std::string& deviceDir) { return Orvo::Emulator::writeSetting(deviceDir, key, setting); });
}

// The settings store has validated the text of an int or bool before handing it out.
int readInt(const char* key, SettingType type, int* value) {
    return run([&] {
        Setting setting;
        const int result = value == nullptr ? VCONF_ERROR : readTyped(key, type, setting);
        if (result == VCONF_OK) Orvo::Emulator::parseInt(setting.value, *value);
        return result;
    });
}

} // namespace

extern "C" {

int vconf_set_int(const char* in_key, const int intval) {
    return run([&] { return writeTyped(in_key, SettingType::Int, std::to_string(intval)); });
}

int vconf_set_bool(const char* in_key, const int boolval) {
    return run([&] { return writeTyped(in_key, SettingType::Bool, boolval != 0 ? "1" : "0"); });
}

int vconf_set_dbl(const char* in_key, const double dblval) {
    return run([&] { return writeTyped(in_key, SettingType::Double, Orvo::Emulator::formatDouble(dblval)); });
}

int vconf_set_str(const char* in_key, const char* strval) {
    return run([&] { return strval == nullptr ? VCONF_ERROR : writeTyped(in_key, SettingType::String, strval); });
}

int vconf_get_int(const char* in_key, int* intval) { return readInt(in_key, SettingType::Int, intval); }

int vconf_get_bool(const char* in_key, int* boolval) { return readInt(in_key, SettingType::Bool, boolval); }

int vconf_get_dbl(const char* in_key, double* dblval) {
    return run([&] {
        Setting setting;
        const int result = dblval == nullptr ? VCONF_ERROR : readTyped(in_key, SettingType::Double, setting);
        if (result == VCONF_OK) Orvo::Emulator::parseDouble(setting.value, *dblval);
        return result;
    });
}

char* vconf_get_str(const char* in_key) {
    char* copy = nullptr;
    run([&] {
        Setting setting;
        const int result = readTyped(in_key, SettingType::String, setting);
        if (result != VCONF_OK) return result;
        copy = ::strdup(setting.value.c_str());
        return copy == nullptr ? VCONF_ERROR_NO_MEM : VCONF_OK;
    });
    return copy;
}

int vconf_unset(const char* in_key) {
    return run([&] {
        if (in_key == nullptr) return VCONF_ERROR;
        return onDevice([&](const std::string& deviceDir) { return Orvo::Emulator::removeSetting(deviceDir, in_key); });
    });
}

int vconf_get_ext_errno(void) { return lastError; }

} // extern "C"
