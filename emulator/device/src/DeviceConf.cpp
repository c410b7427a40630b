#include "orvo/device/DeviceConf.h"

#include "FileOps.h"
#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/TextValues.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <string_view>
#include <tuple>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

// device.conf holds a few dozen lines; anything beyond this is not a device's configuration.
const std::size_t kMaxConfSize = 1024 * 1024;

const char kBlanks[] = " \t";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return std::string_view();
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string trim(const std::string& text) { return std::string(trimmed(text)); }

enum class LineKind { Blank, Entry, Malformed };

// One line without its line feed: a blank or comment line, or "<name> = <value>" with the name
// trimmed and the value starting after the blanks that follow "=".
LineKind splitLine(std::string_view line, std::string_view& name, std::string_view& value) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const std::string_view content = trimmed(line);
    if (content.empty() || content[0] == '#') return LineKind::Blank;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return LineKind::Malformed;
    name = trimmed(line.substr(0, equals));
    value = line.substr(equals + 1);
    const std::size_t valueStart = value.find_first_not_of(kBlanks);
    value = valueStart == std::string_view::npos ? std::string_view() : value.substr(valueStart);
    return LineKind::Entry;
}

// True when name is a dlog entry; valid tells whether its value was one.
bool parseDlogEntry(std::string_view name, std::string_view value, DlogSettings& dlog, bool& valid) {
    bool* const field = name == "dlog.plog" ? &dlog.plog : name == "dlog.abort-on-fatal" ? &dlog.abortOnFatal : nullptr;
    if (field == nullptr) return false;
    value = trimmed(value);
    valid = value == "true" || value == "false";
    if (valid) *field = value == "true";
    return true;
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
    bool valid = false;
    if (parseDlogEntry(name, value, conf.dlog, valid)) {
        if (!valid) reason = name + " is true or false";
        return valid;
    }
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
    if (name.size() > nameSuffix.size() &&
        name.compare(name.size() - nameSuffix.size(), nameSuffix.size(), nameSuffix) == 0 &&
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

bool DeviceConf::loadDlogSettings(const char* deviceDir, DlogSettings& out) {
    char path[PATH_MAX];
    const int pathLength = std::snprintf(path, sizeof path, "%s/device.conf", deviceDir);
    if (pathLength < 0 || static_cast<std::size_t>(pathLength) >= sizeof path) return false;
    const int fd = openRegularFile(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    DlogSettings settings;
    // Lines are gathered into a bounded buffer: a dlog entry is short, so a longer line is no
    // dlog entry and is skipped whole.
    char line[256];
    std::size_t lineLength = 0;
    bool overlong = false;
    const auto takeLine = [&] {
        std::string_view name, value;
        bool valid = false;
        if (!overlong && splitLine(std::string_view(line, lineLength), name, value) == LineKind::Entry)
            parseDlogEntry(name, value, settings, valid);
        lineLength = 0;
        overlong = false;
    };
    char chunk[1024];
    std::size_t total = 0;
    for (;;) {
        const ssize_t count = ::read(fd, chunk, sizeof chunk);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0 || (total += static_cast<std::size_t>(count)) > kMaxConfSize) {
            ::close(fd);
            if (count != 0) return false;
            takeLine();
            out = settings;
            return true;
        }
        for (const char c : std::string_view(chunk, static_cast<std::size_t>(count))) {
            if (c == '\n')
                takeLine();
            else if (lineLength < sizeof line)
                line[lineLength++] = c;
            else
                overlong = true;
        }
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
        std::string_view name, value;
        const LineKind kind = splitLine(line, name, value);
        if (kind == LineKind::Blank) continue;
        std::string reason = "expected <name> = <value>";
        if (kind == LineKind::Entry && parseEntry(std::string(name), std::string(value), conf, reason)) continue;
        reportMalformedLine(origin, lineNumber, line, reason);
    }
    return conf;
}

} // namespace Emulator
} // namespace Orvo
