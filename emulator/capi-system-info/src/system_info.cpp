// capi-system-info on the emulated device: every call reads the device's device.conf.

#pragma GCC visibility push(default)
#include <system_info.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

using Orvo::Emulator::SystemInfoValue;

// Looks the key up and, when it holds a value of the expected type, lets store write the output.
// Any other outcome leaves the output unwritten.
template <typename Store>
int readValue(system_info_key_e key, const void* output, SystemInfoValue::Type expected, Store store) {
    if (output == nullptr) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    try {
        Orvo::Emulator::DeviceConf conf;
        if (!Orvo::Emulator::DeviceConf::loadCurrent(conf)) return SYSTEM_INFO_ERROR_IO_ERROR;
        const auto entry = conf.systemInfo.find(static_cast<int>(key));
        if (entry == conf.systemInfo.end()) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
        if (entry->second.type == SystemInfoValue::Type::Error) return entry->second.errorCode;
        if (entry->second.type != expected) return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
        return store(entry->second);
    } catch (const std::bad_alloc&) {
        return SYSTEM_INFO_ERROR_OUT_OF_MEMORY;
    }
}

} // namespace

extern "C" {

int system_info_get_value_int(system_info_key_e key, int* value) {
    return readValue(key, value, SystemInfoValue::Type::Int, [&](const SystemInfoValue& entry) {
        // device.conf may list a number that no int holds; the device's data is then unreadable.
        if (entry.intValue < INT_MIN || entry.intValue > INT_MAX) return static_cast<int>(SYSTEM_INFO_ERROR_IO_ERROR);
        *value = static_cast<int>(entry.intValue);
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_bool(system_info_key_e key, bool* value) {
    return readValue(key, value, SystemInfoValue::Type::Bool, [&](const SystemInfoValue& entry) {
        *value = entry.boolValue;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_double(system_info_key_e key, double* value) {
    return readValue(key, value, SystemInfoValue::Type::Double, [&](const SystemInfoValue& entry) {
        *value = entry.doubleValue;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

int system_info_get_value_string(system_info_key_e key, char** value) {
    return readValue(key, value, SystemInfoValue::Type::String, [&](const SystemInfoValue& entry) {
        char* copy = ::strdup(entry.stringValue.c_str());
        if (copy == nullptr) return static_cast<int>(SYSTEM_INFO_ERROR_OUT_OF_MEMORY);
        *value = copy;
        return static_cast<int>(SYSTEM_INFO_ERROR_NONE);
    });
}

} // extern "C"
