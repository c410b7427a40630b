// vconf on the emulated device: every call reads or writes the device's settings files.

#pragma GCC visibility push(default)
#include <vconf.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

using Orvo::Emulator::Setting;
using Orvo::Emulator::SettingType;

// Whether the last get or set of any thread succeeded; why one failed is the failing thread's errno.
std::atomic<bool> lastCallSucceeded{true};

// What a call fails with where there is no device: like the platform's settings service being
// unreachable, reported by findDevice's one line instead of a line per call.
const int kNoDevice = ECONNREFUSED;

// Runs a store operation on the current device and returns 0 or an errno value.
template <typename Operation>
int onDevice(Operation operation) {
    try {
        char deviceDir[PATH_MAX];
        if (!Orvo::Emulator::findDevice(deviceDir, sizeof deviceDir)) return kNoDevice;
        return operation(std::string(deviceDir));
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

// Ends a get or set: records its outcome and, on failure, sets errno and reports the key.
int finish(const char* verb, const char* key, int error) {
    lastCallSucceeded = error == 0;
    if (error == 0) return 0;
    if (error != kNoDevice) std::fprintf(stderr, "%s value: key '%s' errno %d\n", verb, key, error);
    errno = error;
    return -1;
}

// A null argument fails before the settings are asked, without a report.
int invalidArgument() {
    lastCallSucceeded = false;
    errno = EINVAL;
    return -1;
}

// Reads key as type into setting: ENOTSUP when it holds another type.
int readTyped(const char* key, SettingType type, Setting& setting) {
    return onDevice([&](const std::string& deviceDir) {
        const int result = Orvo::Emulator::readSetting(deviceDir, key, setting);
        return result == 0 && setting.type != type ? ENOTSUP : result;
    });
}

int writeTyped(const char* key, SettingType type, const std::string& value) {
    if (key == nullptr) return invalidArgument();
    const int result = onDevice([&](const std::string& deviceDir) {
        return Orvo::Emulator::writeSetting(deviceDir, key, Setting{type, value},
                                            Orvo::Emulator::WriteMode::ReplaceExisting);
    });
    return finish("set", key, result);
}

// The settings store has validated the text of an int or bool before handing it out.
int readInt(const char* key, SettingType type, int* value) {
    if (key == nullptr || value == nullptr) return invalidArgument();
    Setting setting;
    const int result = readTyped(key, type, setting);
    if (result == 0) Orvo::Emulator::parseInt(setting.value, *value);
    return finish("get", key, result);
}

int removeKeys(const char* prefix, bool recursive) {
    if (::getuid() != 0) return VCONF_ERROR_NOT_SUPPORTED;
    if (prefix == nullptr) {
        errno = EINVAL;
        return -1;
    }
    const int result = onDevice([&](const std::string& deviceDir) {
        if (!recursive) return Orvo::Emulator::removeSetting(deviceDir, prefix);
        int firstError = 0;
        for (const std::string& key : Orvo::Emulator::listSettings(deviceDir)) {
            if (key.compare(0, std::strlen(prefix), prefix) != 0) continue;
            const int error = Orvo::Emulator::removeSetting(deviceDir, key);
            if (firstError == 0 && error != ENOENT) firstError = error; // ENOENT: removed meanwhile
        }
        return firstError;
    });
    if (result == 0) return 0;
    errno = result;
    return -1;
}

} // namespace

extern "C" {

int vconf_set_int(const char* in_key, const int intval) {
    return writeTyped(in_key, SettingType::Int, std::to_string(intval));
}

int vconf_set_bool(const char* in_key, const int boolval) {
    // The platform keeps a bool in one byte: the int is narrowed, so 256 is false.
    return writeTyped(in_key, SettingType::Bool, static_cast<unsigned char>(boolval) != 0 ? "1" : "0");
}

int vconf_set_dbl(const char* in_key, const double dblval) {
    return writeTyped(in_key, SettingType::Double, Orvo::Emulator::formatDouble(dblval));
}

int vconf_set_str(const char* in_key, const char* strval) {
    if (strval == nullptr) return invalidArgument();
    return writeTyped(in_key, SettingType::String, strval);
}

int vconf_get_int(const char* in_key, int* intval) { return readInt(in_key, SettingType::Int, intval); }

int vconf_get_bool(const char* in_key, int* boolval) { return readInt(in_key, SettingType::Bool, boolval); }

int vconf_get_dbl(const char* in_key, double* dblval) {
    if (in_key == nullptr || dblval == nullptr) return invalidArgument();
    Setting setting;
    const int result = readTyped(in_key, SettingType::Double, setting);
    if (result == 0) Orvo::Emulator::parseDouble(setting.value, *dblval);
    return finish("get", in_key, result);
}

char* vconf_get_str(const char* in_key) {
    if (in_key == nullptr) {
        invalidArgument();
        return nullptr;
    }
    Setting setting;
    char* copy = nullptr;
    int result = readTyped(in_key, SettingType::String, setting);
    if (result == 0) {
        copy = ::strdup(setting.value.c_str());
        if (copy == nullptr) result = ENOMEM;
    }
    finish("get", in_key, result);
    return copy;
}

int vconf_unset(const char* in_key) { return removeKeys(in_key, false); }

int vconf_unset_recursive(const char* in_dir) { return removeKeys(in_dir, true); }

int vconf_get_ext_errno(void) {
    if (lastCallSucceeded) return VCONF_OK;
    switch (errno) {
    case ENOENT:
        return VCONF_ERROR_FILE_NO_ENT;
    case ENOMEM:
    case ENOSPC:
        return VCONF_ERROR_FILE_NO_MEM;
    case EAGAIN:
    case ETIMEDOUT:
    case EBUSY:
    case EMFILE:
        return VCONF_ERROR_FILE_BUSY;
    case EACCES:
    case EPERM:
        return VCONF_ERROR_FILE_PERM;
    default:
        return VCONF_ERROR;
    }
}

} // extern "C"
