// vconftool: the device's settings from the command line, as the platform's newer tool (the
// script over its settings service's control program) takes and prints them.
//
//   vconftool [-f] [-i] [-u UID] [-g GID] [-s LABEL] [-d] set -t <int|bool|double|string> KEY VALUE
//   vconftool get [-r] KEY      prints "<key>, value = <value> (<Int32|Boolean|Double|String>)"
//   vconftool unset KEY
//
// Like the platform's control program it works on the settings store itself: a set creates a
// missing key, which the vconf library never does.

#include "CommandLine.h"

#include "orvo/device/Device.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <regex.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::Setting;
using Orvo::Emulator::SettingType;

const char kUsage[] =
    "Usage: vconftool [OPTIONS] set -t TYPE KEY VALUE\n"
    "       vconftool [OPTIONS] get [-r] KEY\n"
    "       vconftool [OPTIONS] unset KEY\n"
    "\n"
    "Reads and writes the settings of the emulated device ($ORVO_DEVICE_DIR, or the default\n"
    "device), as the platform's newer vconftool (the one over buxton2) does. Keys beginning with\n"
    "memory/ are volatile (cleared at reboot), all others persistent.\n"
    "  -t TYPE        int (stored as Int32), bool, double or string, spelt exactly so\n"
    "  -r             get: every key whose name matches the regular expression ^KEY\n"
    "  -f             accepted; set always overwrites, and creates a missing key\n"
    "  -i, --install  set the default value (here the one value a key has)\n"
    "  -u UID, -g GID, -v, -q\n"
    "                 accepted and ignored\n"
    "  -s LABEL       the key's write privilege: accepted, ignored (no privileges here)\n"
    "  -d             print each settings-service command on standard error\n"
    "Numbers: int and bool as strtol with base 0 (0x hex, leading-0 octal; a bool is true when\n"
    "not 0), double as strtod. Errors print \"Error: <message>\" and exit with 1; a wrong\n"
    "command line prints this text and exits with 1.\n"
    "\n"
    "The emulator's own: -h, --help (this text); a missing or unreadable device is reported as\n"
    "\"vconftool: <reason>\" on standard error (exit 1).\n";

// A wrong command line: the usage, exit status 1, preceded by a line of its own where the
// platform's tool prints one.
struct UsageFailure {
    std::string line;
};

// A failed operation: "Error: <message>" on standard output, exit status 1.
struct OperationFailure {
    std::string message;
};

struct Options {
    std::string typeName;
    bool typeGiven = false;
    bool recursive = false;
    bool debug = false;
    bool help = false;
};

const char* layerOf(const std::string& key) { return key.compare(0, 7, "memory/") == 0 ? "memory" : "system"; }

// The control program's names: the command suffix (the store's name, but int32 for an int) and
// the printed type.
const char* commandTypeName(SettingType type) {
    return type == SettingType::Int ? "int32" : Orvo::Emulator::settingTypeName(type);
}

const char* printedTypeName(SettingType type) {
    switch (type) {
    case SettingType::Int:
        return "Int32";
    case SettingType::Bool:
        return "Boolean";
    case SettingType::Double:
        return "Double";
    case SettingType::String:
        return "String";
    }
    return "";
}

void trace(const Options& options, const std::string& command) {
    if (options.debug) std::fprintf(stderr, "buxton2ctl -d -- %s\n", command.c_str());
}

[[noreturn]] void fail(const char* verb, const std::string& key, int error) {
    throw OperationFailure{std::string(verb) + ": Layer '" + layerOf(key) + "' Key '" + key +
                           "': " + Orvo::Emulator::describeSettingError(error)};
}

SettingType parseType(const Options& options) {
    static const SettingType kTypes[] = {SettingType::Int, SettingType::Bool, SettingType::Double, SettingType::String};
    for (const SettingType type : kTypes)
        if (options.typeName == Orvo::Emulator::settingTypeName(type)) return type;
    throw UsageFailure{"Type '" + options.typeName + "': Invalid type"};
}

// The value as the store keeps it: strtol with base 0 and strtod, the whole text or nothing.
std::string storedValue(SettingType type, const std::string& text) {
    if (type == SettingType::String) return text;
    const OperationFailure invalid{"Set: '" + text + "': Invalid number"};
    char* end = nullptr;
    errno = 0;
    if (type == SettingType::Double) {
        const double value = std::strtod(text.c_str(), &end);
        if (*end != '\0' || errno == ERANGE) throw invalid;
        return Orvo::Emulator::formatDouble(value);
    }
    const long value = std::strtol(text.c_str(), &end, 0);
    if (*end != '\0' || errno == ERANGE || (type == SettingType::Int && (value < INT_MIN || value > INT_MAX)))
        throw invalid;
    if (type == SettingType::Bool) return value != 0 ? "1" : "0";
    return std::to_string(value);
}

void setKey(const std::string& deviceDir, const Options& options, const std::string& key, const std::string& text) {
    const SettingType type = parseType(options);
    const Setting setting{type, storedValue(type, text)};
    const std::string typed = std::string(commandTypeName(type)) + " " + layerOf(key) + " " + key + " " + text;
    trace(options, "set-" + typed);
    int result = Orvo::Emulator::writeSetting(deviceDir, key, setting, Orvo::Emulator::WriteMode::ReplaceExisting);
    if (result == ENOENT) {
        trace(options, "create-" + typed);
        result = Orvo::Emulator::writeSetting(deviceDir, key, setting);
    }
    if (result != 0) fail("Set", key, result);
}

std::string printedValue(const Setting& setting) {
    double number = 0;
    switch (setting.type) {
    case SettingType::Bool:
        return setting.value == "1" ? "True" : "False";
    case SettingType::Double: {
        Orvo::Emulator::parseDouble(setting.value, number);
        char text[512];
        std::snprintf(text, sizeof text, "%f", number);
        return text;
    }
    case SettingType::Int:
    case SettingType::String:
        break;
    }
    return setting.value;
}

void getKey(const std::string& deviceDir, const Options& options, const std::string& key) {
    trace(options, std::string("get ") + layerOf(key) + " " + key);
    Setting setting;
    const int result = Orvo::Emulator::readSetting(deviceDir, key, setting);
    if (result != 0) fail("Get", key, result);
    std::printf("%s, value = %s (%s)\n", key.c_str(), printedValue(setting).c_str(), printedTypeName(setting.type));
}

// get -r: every key whose name matches the basic regular expression ^pattern.
void getMatching(const std::string& deviceDir, const Options& options, const std::string& pattern) {
    regex_t expression;
    if (::regcomp(&expression, ("^" + pattern).c_str(), REG_NOSUB) != 0)
        throw OperationFailure{"Get: '" + pattern + "': Invalid regular expression"};
    std::vector<std::string> keys;
    for (const std::string& key : Orvo::Emulator::listSettings(deviceDir))
        if (::regexec(&expression, key.c_str(), 0, nullptr, 0) == 0) keys.push_back(key);
    ::regfree(&expression);
    trace(options, "list-keys system");
    trace(options, "list-keys memory");
    for (const std::string& key : keys)
        getKey(deviceDir, options, key);
}

std::vector<std::string> parseArguments(const std::vector<std::string>& args, Options& options) {
    static const option longOptions[] = {
        {"install", no_argument, nullptr, 'i'}, {"help", no_argument, nullptr, 'h'}, {nullptr, 0, nullptr, 0}};
    try {
        return Orvo::Tools::parseCommandLine(args, "t:frdvqhiu:g:s:", longOptions, [&](int option, const char* value) {
            switch (option) {
            case 't':
                options.typeName = value;
                options.typeGiven = true;
                break;
            case 'r':
                options.recursive = true;
                break;
            case 'd':
                options.debug = true;
                break;
            case 'h':
                options.help = true;
                break;
            default: // f i u g s v q: nothing to do on the emulated device
                break;
            }
        });
    } catch (const Orvo::Tools::UsageError&) {
        throw UsageFailure{};
    }
}

int run(const std::vector<std::string>& args) {
    Options options;
    const std::vector<std::string> operands = parseArguments(args, options);
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const std::string command = operands.empty() ? std::string() : operands[0];
    const std::size_t needed = command == "set" ? 3 : 2;
    if ((command != "set" && command != "get" && command != "unset") || operands.size() != needed) throw UsageFailure{};
    if (command == "set") parseType(options); // a bad type is named before the device is looked at

    const std::string deviceDir = Orvo::Emulator::toolDeviceDirectory();
    const std::string& key = operands[1];
    if (command == "set") {
        setKey(deviceDir, options, key, operands[2]);
    } else if (command == "get" && options.recursive) {
        getMatching(deviceDir, options, key);
    } else if (command == "get") {
        getKey(deviceDir, options, key);
    } else {
        trace(options, std::string("unset ") + layerOf(key) + " " + key);
        const int result = Orvo::Emulator::removeSetting(deviceDir, key);
        if (result != 0) fail("Unset", key, result);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return Orvo::Tools::runTool("vconftool", [&] {
        try {
            return run(std::vector<std::string>(argv + 1, argv + argc));
        } catch (const UsageFailure& failure) {
            if (!failure.line.empty()) std::printf("%s\n", failure.line.c_str());
            std::fputs(kUsage, stdout);
        } catch (const OperationFailure& failure) {
            std::printf("Error: %s\n", failure.message.c_str());
        }
        std::fflush(stdout);
        return 1;
    });
}
