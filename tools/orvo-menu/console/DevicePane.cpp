#include "DevicePane.h"

#include "ConsoleError.h"
#include "ProductFiles.h"
#include "SystemInfoKeys.h"

#include "orvo/device/DeviceConf.h"
#include "orvo/device/DeviceEdits.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace Orvo {
namespace Tools {
namespace Console {

using Apps::MenuProvider::kCommonVersionFile;
using Apps::MenuProvider::kDevelopmentKeysMarker;
using Emulator::SystemInfoValue;
using nlohmann::json;

namespace {

// A language is a catalogue's directory name (de, pt_BR, sr@latin).
constexpr std::size_t kMaxLanguageLength = 64;

const char* typeName(SystemInfoValue::Type type) {
    switch (type) {
    case SystemInfoValue::Type::Int:
        return "int";
    case SystemInfoValue::Type::Bool:
        return "bool";
    case SystemInfoValue::Type::Double:
        return "double";
    case SystemInfoValue::Type::String:
        return "string";
    case SystemInfoValue::Type::Error:
        return "error";
    }
    return "?";
}

std::string valueText(const SystemInfoValue& value) {
    switch (value.type) {
    case SystemInfoValue::Type::Int:
        return std::to_string(value.intValue);
    case SystemInfoValue::Type::Bool:
        return value.boolValue ? "true" : "false";
    case SystemInfoValue::Type::Double:
        return Emulator::formatDoubleShort(value.doubleValue);
    case SystemInfoValue::Type::String:
        return value.stringValue;
    case SystemInfoValue::Type::Error:
        return std::to_string(value.errorCode);
    }
    return "";
}

[[noreturn]] void refuseValue(const std::string& type, const std::string& value, const char* expected) {
    throw badRequest(quoted(value) + " is not a valid " + type + " value (" + expected + ")");
}

// The device.conf text of a system-information value, checked as the platform will read it.
std::string systemInfoEntry(const std::string& type, const std::string& value) {
    long long number = 0;
    double real = 0;
    int code = 0;
    if (type == "int") {
        if (!Emulator::parseLongLong(value, number)) refuseValue(type, value, "a decimal integer");
        return "int " + value;
    }
    if (type == "bool") {
        if (value != "true" && value != "false") refuseValue(type, value, "true or false");
        return "bool " + value;
    }
    if (type == "double") {
        if (!Emulator::parseDouble(value, real)) refuseValue(type, value, "a number such as 2.5");
        return "double " + value;
    }
    if (type == "error") {
        if (!Emulator::parseInt(value, code) || code == 0)
            refuseValue(type, value, "a non-zero result code such as -5");
        return "error " + value;
    }
    if (type == "string") {
        if (value.find_first_of("\r\n") != std::string::npos) refuseValue(type, value, "one line");
        return "string " + value;
    }
    throw badRequest("unknown system-info type " + quoted(type) + " (int, bool, double, string or error)");
}

Emulator::Setting checkedSetting(const std::string& type, const std::string& value) {
    Emulator::Setting setting;
    int number = 0;
    double real = 0;
    if (type == "int") {
        if (!Emulator::parseInt(value, number)) refuseValue(type, value, "a decimal integer of the int range");
        setting = {Emulator::SettingType::Int, std::to_string(number)};
    } else if (type == "bool") {
        if (value != "0" && value != "1" && value != "true" && value != "false")
            refuseValue(type, value, "0, 1, true or false");
        setting = {Emulator::SettingType::Bool, value == "1" || value == "true" ? "1" : "0"};
    } else if (type == "double") {
        if (!Emulator::parseDouble(value, real)) refuseValue(type, value, "a number such as 2.5");
        setting = {Emulator::SettingType::Double, Emulator::formatDouble(real)};
    } else if (type == "string") {
        setting = {Emulator::SettingType::String, value};
    } else {
        throw badRequest("unknown setting type " + quoted(type) + " (int, bool, double or string)");
    }
    return setting;
}

// The store's rule; a key too long for it is already refused as an over-long member.
void checkSettingKey(const std::string& key) {
    if (Emulator::checkSettingKey(key) != 0)
        throw badRequest(quoted(key) + " is not a setting key (printable ASCII without blanks)");
}

void applySystemInfo(const std::string& deviceDir, const json& change) {
    checkMembers(change, {"kind", "key", "type", "value"}, {"kind", "key", "type", "value"});
    const json& key = change["key"];
    if (!key.is_number_integer() || key.get<long long>() < 0 || key.get<long long>() > 99999999)
        throw badRequest("\"key\" must be a system-information key number (0 to 99999999)");
    const std::string entry = systemInfoEntry(stringMember(change, "type"), stringMember(change, "value"));
    Emulator::setDeviceConfEntry(deviceDir, "system-info." + std::to_string(key.get<long long>()), entry);
}

void applySetting(const std::string& deviceDir, const json& change) {
    checkMembers(change, {"kind", "key", "type", "value"}, {"kind", "key", "type", "value"});
    const std::string& key = stringMember(change, "key");
    checkSettingKey(key);
    const Emulator::Setting setting = checkedSetting(stringMember(change, "type"), stringMember(change, "value"));
    const int result = Emulator::writeSetting(deviceDir, key, setting);
    if (result != 0) throw RequestError(500, "cannot write " + key + ": " + Emulator::describeSettingError(result));
}

std::string readVersionFile(const std::string& path, bool& present) {
    std::ifstream file(path, std::ios::binary);
    present = static_cast<bool>(file);
    std::string text(kMaxValueLength, '\0');
    file.read(&text[0], static_cast<std::streamsize>(text.size()));
    text.resize(present ? static_cast<std::size_t>(file.gcount()) : 0);
    return text;
}

} // namespace

json DevicePane::read() const {
    const Emulator::DeviceConf conf = Emulator::DeviceConf::load(deviceDir_);
    json systemInfo = json::array();
    for (const auto& entry : conf.systemInfo) {
        systemInfo.push_back({{"key", entry.first},
                              {"type", typeName(entry.second.type)},
                              {"value", valueText(entry.second)},
                              {"label", Tools::systemInfoKeyMeaning(entry.first)}});
    }
    json settings = json::array();
    for (const std::string& key : Emulator::listSettings(deviceDir_)) {
        Emulator::Setting setting;
        if (Emulator::readSetting(deviceDir_, key, setting) != 0) continue; // removed meanwhile
        settings.push_back({{"key", key}, {"type", Emulator::settingTypeName(setting.type)}, {"value", setting.value}});
    }
    bool markerPresent = false;
    readVersionFile(deviceDir_ + "/rootfs" + kDevelopmentKeysMarker, markerPresent);
    bool versionPresent = false;
    const std::string version = readVersionFile(deviceDir_ + "/rootfs" + kCommonVersionFile, versionPresent);
    return {{"device", deviceDir_},
            {"systemInfo", systemInfo},
            {"settings", settings},
            {"production", conf.production},
            {"developmentKeys", markerPresent},
            {"versionFile", versionPresent ? json(version) : json()}};
}

void DevicePane::apply(const json& change) const {
    if (!change.is_object() || !change.contains("kind") || !change["kind"].is_string())
        throw badRequest("a change is an object with a \"kind\"");
    const std::string& kind = change["kind"].get_ref<const std::string&>();
    const auto valueOnly = [&change] { checkMembers(change, {"kind", "value"}, {"kind", "value"}); };
    if (kind == "system-info") {
        applySystemInfo(deviceDir_, change);
    } else if (kind == "setting") {
        applySetting(deviceDir_, change);
    } else if (kind == "production") {
        valueOnly();
        Emulator::setDeviceConfEntry(deviceDir_, "production", boolMember(change, "value") ? "true" : "false");
    } else if (kind == "development-keys") {
        valueOnly();
        if (boolMember(change, "value"))
            Emulator::writeRootfsFile(deviceDir_, kDevelopmentKeysMarker, "");
        else
            Emulator::removeRootfsFile(deviceDir_, kDevelopmentKeysMarker);
    } else if (kind == "version-file") {
        valueOnly();
        if (change["value"].is_null())
            Emulator::removeRootfsFile(deviceDir_, kCommonVersionFile);
        else
            Emulator::writeRootfsFile(deviceDir_, kCommonVersionFile, stringMember(change, "value"));
    } else if (kind == "language") {
        valueOnly();
        selectLanguage_(stringMember(change, "value", kMaxLanguageLength));
    } else {
        throw badRequest("unknown kind " + quoted(kind) +
                         " (system-info, setting, production, development-keys, version-file, language)");
    }
}

} // namespace Console
} // namespace Tools
} // namespace Orvo
