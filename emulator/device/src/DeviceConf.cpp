#include "orvo/device/DeviceConf.h"

#include "FileOps.h"
#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/TextValues.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <mutex>
#include <set>
#include <tuple>

namespace Orvo {
namespace Emulator {
namespace {

// device.conf holds a few dozen lines; anything beyond this is not a device's configuration.
const std::size_t kMaxConfSize = 1024 * 1024;

const char kBlanks[] = " \t";

std::string trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

// Every call reads the file afresh, so a malformed line would be reported at every platform
// call; each distinct line is reported once per process instead.
void reportMalformedLine(const std::string& origin, int lineNumber, const std::string& line,
                         const std::string& reason) {
    static std::mutex mutex;
    static std::set<std::tuple<std::string, int, std::string>> reported;
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!reported.emplace(origin, lineNumber, line).second) return;
    }
    std::fprintf(stderr, "%s:%d: malformed line ignored (%s)\n", origin.c_str(), lineNumber, reason.c_str());
}

// The result that a key the device does not support gives (SYSTEM_INFO_ERROR_NOT_SUPPORTED).
const int kNotSupported = -1073741822;

// "<type> <value>": the value of a string is the rest after exactly one blank, kept as it is.
// "unsupported" and "error <code>" make every read fail. A key by name (`named`) keeps the text
// of any type as it is written: the platform converts it only when it is read.
bool parseSystemInfoValue(const std::string& text, bool named, SystemInfoValue& value, std::string& reason) {
    const std::size_t blank = text.find_first_of(kBlanks);
    const std::string type = text.substr(0, blank);
    const std::string rest = blank == std::string::npos ? std::string() : text.substr(blank + 1);
    const std::string word = trim(rest);
    static const std::pair<const char*, SystemInfoValue::Type> kNamedTypes[] = {
        {"bool", SystemInfoValue::Type::Bool},
        {"int", SystemInfoValue::Type::Int},
        {"double", SystemInfoValue::Type::Double},
        {"string", SystemInfoValue::Type::String}};
    if (trim(text) == "unsupported") {
        value.type = SystemInfoValue::Type::Error;
        value.errorCode = kNotSupported;
        return true;
    }
    for (const auto& namedType : kNamedTypes) {
        if (named && type == namedType.first) {
            value.type = namedType.second;
            value.stringValue = rest;
            return true;
        }
    }
    if (type == "string") {
        value.type = SystemInfoValue::Type::String;
        value.stringValue = rest;
    } else if (type == "int" && parseLongLong(word, value.intValue)) {
        value.type = SystemInfoValue::Type::Int;
    } else if (type == "bool" && (word == "true" || word == "false")) {
        value.type = SystemInfoValue::Type::Bool;
        value.boolValue = word == "true";
    } else if (type == "double" && parseDouble(word, value.doubleValue)) {
        value.type = SystemInfoValue::Type::Double;
    } else if (type == "error" && parseInt(word, value.errorCode) && value.errorCode != 0) {
        value.type = SystemInfoValue::Type::Error;
    } else {
        reason = "expected int, bool, double, string or error with a valid value, or unsupported";
        return false;
    }
    return true;
}

bool parseIndex(const std::string& name, const std::string& prefix, int& index) {
    return startsWith(name, prefix) && parseInt(name.substr(prefix.size()), index);
}

bool parseEntry(const std::string& name, const std::string& value, DeviceConf& conf, std::string& reason) {
    int index = 0;
    if (name == "production") {
        if (value != "true" && value != "false") {
            reason = "production is true or false";
            return false;
        }
        conf.production = value == "true";
        return true;
    }
    for (auto* named : {&conf.platformInfo, &conf.customInfo}) {
        const std::string prefix = named == &conf.platformInfo ? "system-info.platform." : "system-info.custom.";
        if (!startsWith(name, prefix)) continue;
        const std::string key = systemInfoKeyName(name.substr(prefix.size()));
        SystemInfoValue parsed;
        if (key.empty()) {
            reason = "system-info entry without a key name";
            return false;
        }
        if (!parseSystemInfoValue(value, true, parsed, reason)) return false;
        (*named)[key] = parsed;
        return true;
    }
    if (parseIndex(name, "system-info.", index)) {
        SystemInfoValue parsed;
        if (!parseSystemInfoValue(value, false, parsed, reason)) return false;
        conf.systemInfo[index] = parsed;
        return true;
    }
    const std::string nameSuffix = ".name";
    if (name.size() > nameSuffix.size() && name.compare(name.size() - nameSuffix.size(), nameSuffix.size(), nameSuffix) == 0 &&
        parseIndex(name.substr(0, name.size() - nameSuffix.size()), "tzplatform.", index)) {
        if (trim(value).empty() || trim(value).find_first_of(kBlanks) != std::string::npos) {
            reason = "a tzplatform name is one word";
            return false;
        }
        conf.tzplatformNames[index] = trim(value);
        return true;
    }
    if (parseIndex(name, "tzplatform.", index)) {
        if (trim(value).empty()) {
            reason = "tzplatform entry without a value";
            return false;
        }
        conf.tzplatform[index] = trim(value);
        return true;
    }
    reason = "unknown entry \"" + name + "\"";
    return false;
}

} // namespace

std::string systemInfoKeyName(const std::string& key) { return startsWith(key, "http://") ? key.substr(7) : key; }

DeviceConf DeviceConf::load(const std::string& deviceDir) {
    const std::string path = deviceDir + "/device.conf";
    std::string text;
    if (!readFile(path, text, kMaxConfSize)) throw DeviceConfError(path + ": " + describeFileError(errno));
    return parse(text, path);
}

bool DeviceConf::loadCurrent(DeviceConf& out) {
    char deviceDir[PATH_MAX];
    if (!findDevice(deviceDir, sizeof deviceDir)) return false;
    try {
        out = load(deviceDir);
        return true;
    } catch (const DeviceConfError& e) {
        reportOnce(e.what());
        return false;
    }
}

DeviceConf DeviceConf::parse(const std::string& text, const std::string& origin) {
    DeviceConf conf;
    int lineNumber = 0;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        start = end + 1;
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string content = trim(line);
        if (content.empty() || content[0] == '#') continue;
        const std::size_t equals = line.find('=');
        std::string reason = "expected <name> = <value>";
        if (equals != std::string::npos) {
            // The value starts after the blanks that follow "=".
            const std::string afterEquals = line.substr(equals + 1);
            const std::size_t valueStart = afterEquals.find_first_not_of(kBlanks);
            const std::string value = valueStart == std::string::npos ? std::string() : afterEquals.substr(valueStart);
            if (parseEntry(trim(line.substr(0, equals)), value, conf, reason)) continue;
        }
        reportMalformedLine(origin, lineNumber, line, reason);
    }
    return conf;
}

} // namespace Emulator
} // namespace Orvo
