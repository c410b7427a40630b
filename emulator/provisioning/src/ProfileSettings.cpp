#include "ProfileSettings.h"

#include "orvo/device/SettingsStore.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace Orvo {
namespace Emulator {
namespace {

bool parseType(const std::string& name, SettingType& type) {
    static const SettingType kTypes[] = {SettingType::Int, SettingType::Bool, SettingType::Double, SettingType::String};
    for (SettingType candidate : kTypes) {
        if (name == settingTypeName(candidate)) {
            type = candidate;
            return true;
        }
    }
    return false;
}

// Brings a value into the stored form of its type; false when it is not a value of that type.
bool normaliseValue(SettingType type, std::string& value) {
    switch (type) {
    case SettingType::String:
        return value.size() <= kMaxSettingValueLength;
    case SettingType::Bool:
        if (value == "true" || value == "1") {
            value = "1";
        } else if (value == "false" || value == "0") {
            value = "0";
        } else {
            return false;
        }
        return true;
    case SettingType::Int: {
        if (value.empty()) {
            return false;
        }
        char* end = nullptr;
        errno = 0;
        const long parsed = std::strtol(value.c_str(), &end, 10);
        if (errno != 0 || *end != '\0' || parsed < INT32_MIN || parsed > INT32_MAX) {
            return false;
        }
        value = std::to_string(parsed);
        return true;
    }
    case SettingType::Double: {
        if (value.empty()) {
            return false;
        }
        char* end = nullptr;
        const double parsed = std::strtod(value.c_str(), &end);
        if (*end != '\0') {
            return false;
        }
        char text[64];
        std::snprintf(text, sizeof text, "%.17g", parsed);
        value = text;
        return true;
    }
    }
    return false;
}

} // namespace

void applyProfileSettings(const std::string& deviceDir, const std::string& profileDir) {
    const std::string path = profileDir + "/settings";
    std::ifstream in(path);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        const std::string where = path + ":" + std::to_string(number);
        const std::size_t typeEnd = line.find(' ');
        const std::size_t keyEnd = typeEnd == std::string::npos ? typeEnd : line.find(' ', typeEnd + 1);
        Setting setting;
        if (keyEnd == std::string::npos || !parseType(line.substr(0, typeEnd), setting.type)) {
            throw std::runtime_error(where + ": expected \"<int|bool|double|string> <key> <value>\"");
        }
        const std::string key = line.substr(typeEnd + 1, keyEnd - typeEnd - 1);
        setting.value = line.substr(keyEnd + 1);
        if (!normaliseValue(setting.type, setting.value)) {
            throw std::runtime_error(where + ": not a " + settingTypeName(setting.type) + " value");
        }
        const int result = writeSetting(deviceDir, key, setting);
        if (result != 0) {
            throw std::runtime_error(where + ": cannot set " + key + ": " + describeSettingError(result));
        }
    }
}

} // namespace Emulator
} // namespace Orvo
