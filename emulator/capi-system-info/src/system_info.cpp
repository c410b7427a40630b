// capi-system-info on the emulated device: every call reads the device's device.conf.

#pragma GCC visibility push(default)
#include <system_info.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <string>

namespace {

using Orvo::Emulator::DeviceConf;
using Orvo::Emulator::SystemInfoValue;
using Type = SystemInfoValue::Type;
using NamedKeys = std::map<std::string, SystemInfoValue> DeviceConf::*;

// The longest string the platform hands out.
const std::size_t kMaxStringLength = 255;

// Finds the entry that lookup picks from the current device.conf and, when it holds a value of
// the expected type, lets store write the output. Any other outcome leaves the output unwritten:
// `unreadable` without a readable device.conf, INVALID_PARAMETER for an unknown key or another
// type, the entry's own result for an unsupported key.
template <typename Lookup, typename Store>
int readEntry(const void* output, Type expected, int unreadable, Lookup lookup, Store store) {
    if (output == nullptr) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    try {
        DeviceConf conf;
        if (!DeviceConf::loadCurrent(conf)) return unreadable;
        const SystemInfoValue* entry = lookup(conf);
        if (entry == nullptr) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
        if (entry->type == Type::Error) return entry->errorCode;
        if (entry->type != expected) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
        return store(*entry);
    } catch (const std::bad_alloc&) {
        return SYSTEM_INFO_ERROR_OUT_OF_MEMORY;
    }
}

// A key by name, with or without "http://". The platform reports every failure to read its store
// as an invalid parameter.
template <typename Store>
int readNamed(NamedKeys keys, const char* key, const void* output, Type expected, Store store) {
    if (key == nullptr) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    return readEntry(
        output, expected, SYSTEM_INFO_ERROR_INVALID_PARAMETER,
        [&](const DeviceConf& conf) -> const SystemInfoValue* {
            const auto entry = (conf.*keys).find(Orvo::Emulator::systemInfoKeyName(key));
            return entry == (conf.*keys).end() ? nullptr : &entry->second;
        },
        store);
}

template <typename Store>
int readNumbered(system_info_key_e key, const void* output, Type expected, Store store) {
    return readEntry(
        output, expected, SYSTEM_INFO_ERROR_IO_ERROR,
        [&](const DeviceConf& conf) -> const SystemInfoValue* {
            const auto entry = conf.systemInfo.find(static_cast<int>(key));
            return entry == conf.systemInfo.end() ? nullptr : &entry->second;
        },
        store);
}

int copyString(const std::string& text, char** value) {
    char* copy = ::strndup(text.c_str(), kMaxStringLength);
    if (copy == nullptr) return SYSTEM_INFO_ERROR_OUT_OF_MEMORY;
    *value = copy;
    return SYSTEM_INFO_ERROR_NONE;
}

// The stored text of a key by name, converted as the platform converts it.
int namedBool(NamedKeys keys, const char* key, bool* value) {
    return readNamed(keys, key, value, Type::Bool, [&](const SystemInfoValue& entry) {
        *value = entry.stringValue == "true" || entry.stringValue == "TRUE";
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int namedInt(NamedKeys keys, const char* key, int* value) {
    return readNamed(keys, key, value, Type::Int, [&](const SystemInfoValue& entry) {
        *value = std::atoi(entry.stringValue.c_str());
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int namedDouble(NamedKeys keys, const char* key, double* value) {
    return readNamed(keys, key, value, Type::Double, [&](const SystemInfoValue& entry) {
        *value = std::atof(entry.stringValue.c_str());
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int namedString(NamedKeys keys, const char* key, char** value) {
    return readNamed(keys, key, value, Type::String,
                     [&](const SystemInfoValue& entry) { return copyString(entry.stringValue, value); });
}

int namedType(NamedKeys keys, const char* key, system_info_type_e* type, int unreadable) {
    if (key == nullptr || type == nullptr) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    try {
        DeviceConf conf;
        if (!DeviceConf::loadCurrent(conf)) return unreadable;
        const auto entry = (conf.*keys).find(Orvo::Emulator::systemInfoKeyName(key));
        if (entry == (conf.*keys).end()) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
        switch (entry->second.type) {
        case Type::Bool:
            *type = SYSTEM_INFO_BOOL;
            break;
        case Type::Int:
            *type = SYSTEM_INFO_INT;
            break;
        case Type::Double:
            *type = SYSTEM_INFO_DOUBLE;
            break;
        case Type::String:
            *type = SYSTEM_INFO_STRING;
            break;
        case Type::Error:
            return entry->second.errorCode;
        }
        return SYSTEM_INFO_ERROR_NONE;
    } catch (const std::bad_alloc&) {
        return SYSTEM_INFO_ERROR_OUT_OF_MEMORY;
    }
}

} // namespace

extern "C" {

int system_info_get_platform_bool(const char* key, bool* value) {
    return namedBool(&DeviceConf::platformInfo, key, value);
}
int system_info_get_platform_int(const char* key, int* value) {
    return namedInt(&DeviceConf::platformInfo, key, value);
}
int system_info_get_platform_double(const char* key, double* value) {
    return namedDouble(&DeviceConf::platformInfo, key, value);
}
int system_info_get_platform_string(const char* key, char** value) {
    return namedString(&DeviceConf::platformInfo, key, value);
}
int system_info_get_custom_bool(const char* key, bool* value) { return namedBool(&DeviceConf::customInfo, key, value); }
int system_info_get_custom_int(const char* key, int* value) { return namedInt(&DeviceConf::customInfo, key, value); }
int system_info_get_custom_double(const char* key, double* value) {
    return namedDouble(&DeviceConf::customInfo, key, value);
}
int system_info_get_custom_string(const char* key, char** value) {
    return namedString(&DeviceConf::customInfo, key, value);
}

int system_info_get_platform_type(const char* key, system_info_type_e* type) {
    return namedType(&DeviceConf::platformInfo, key, type, SYSTEM_INFO_ERROR_IO_ERROR);
}
int system_info_get_custom_type(const char* key, system_info_type_e* type) {
    return namedType(&DeviceConf::customInfo, key, type, SYSTEM_INFO_ERROR_INVALID_PARAMETER);
}

int system_info_get_value_int(system_info_key_e key, int* value) {
    return readNumbered(key, value, Type::Int, [&](const SystemInfoValue& entry) {
        // device.conf may list a number that no int holds; the device's data is then unreadable.
        if (entry.intValue < INT_MIN || entry.intValue > INT_MAX) return static_cast<int>(SYSTEM_INFO_ERROR_IO_ERROR);
        *value = static_cast<int>(entry.intValue);
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_bool(system_info_key_e key, bool* value) {
    return readNumbered(key, value, Type::Bool, [&](const SystemInfoValue& entry) {
        *value = entry.boolValue;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_double(system_info_key_e key, double* value) {
    return readNumbered(key, value, Type::Double, [&](const SystemInfoValue& entry) {
        *value = entry.doubleValue;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_string(system_info_key_e key, char** value) {
    return readNumbered(key, value, Type::String, [&](const SystemInfoValue& entry) {
        char* copy = ::strdup(entry.stringValue.c_str());
        if (copy == nullptr) return static_cast<int>(SYSTEM_INFO_ERROR_OUT_OF_MEMORY);
        *value = copy;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

} // extern "C"
