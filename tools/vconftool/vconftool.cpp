// vconftool: the device's settings from the command line.
//
//   vconftool set -t <int|bool|double|string> <key> <value> [-f]
//   vconftool get <key>        prints "<key>, value = <value> (<type>)"
//   vconftool unset <key>
//
// Bools are accepted as 1, 0, true or false and printed as 1 or 0, as vconf stores them.
// Doubles are printed in their shortest exact form.

#include "orvo/device/Device.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <vconf.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::SettingType;

const char kUsage[] =
    "Usage: vconftool set -t <int|bool|double|string> <key> <value> [-f]\n"
    "       vconftool get <key>\n"
    "       vconftool unset <key>\n"
    "\n"
    "Reads and writes the settings of the emulated device ($ORVO_DEVICE_DIR, or the default\n"
    "device). Keys begin with db/, file/ (persistent) or memory/ (cleared at reboot).\n"
    "set always overwrites and replaces a key of another type; -f is accepted for compatibility.\n"
    "Bools are given as 1, 0, true or false and printed as 1 or 0.\n";

// A wrong command line: reported in one line, exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A failed vconf call: reported in one line, exit status 1.
struct VconfError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string describeVconfError(int code) {
    switch (code) {
    case VCONF_ERROR_WRONG_PREFIX:
        return "the key must begin with db/, file/ or memory/";
    case VCONF_ERROR_WRONG_TYPE:
        return "the key holds another type";
    case VCONF_ERROR_WRONG_VALUE:
        return "invalid value (at most 4096 bytes)";
    case VCONF_ERROR_FILE_NO_ENT:
        return "no such key";
    case VCONF_ERROR_FILE_PERM:
        return "permission denied";
    case VCONF_ERROR_FILE_NO_MEM:
        return "no space left on the device";
    case VCONF_ERROR_NO_MEM:
        return "out of memory";
    default:
        return "vconf error " + std::to_string(code);
    }
}

void check(int result, const std::string& key) {
    if (result != 0) throw VconfError(key + ": " + describeVconfError(vconf_get_ext_errno()));
}

bool parseTypeName(const std::string& name, SettingType& type) {
    for (const SettingType candidate :
         {SettingType::Int, SettingType::Bool, SettingType::Double, SettingType::String}) {
        if (name == Orvo::Emulator::settingTypeName(candidate)) {
            type = candidate;
            return true;
        }
    }
    return false;
}

void setValue(SettingType type, const std::string& key, const std::string& text) {
    const std::string invalid =
        "invalid " + std::string(Orvo::Emulator::settingTypeName(type)) + " value \"" + text + "\"";
    int intValue = 0;
    double doubleValue = 0;
    switch (type) {
    case SettingType::Int:
        if (!Orvo::Emulator::parseInt(text, intValue)) throw UsageError(invalid);
        return check(vconf_set_int(key.c_str(), intValue), key);
    case SettingType::Bool:
        if (text != "1" && text != "0" && text != "true" && text != "false")
            throw UsageError(invalid + " (expected 1, 0, true or false)");
        return check(vconf_set_bool(key.c_str(), text == "1" || text == "true"), key);
    case SettingType::Double:
        if (!Orvo::Emulator::parseDouble(text, doubleValue)) throw UsageError(invalid);
        return check(vconf_set_dbl(key.c_str(), doubleValue), key);
    case SettingType::String:
        return check(vconf_set_str(key.c_str(), text.c_str()), key);
    }
}

void runSet(const std::vector<std::string>& args) {
    std::string typeName;
    std::vector<std::string> operands;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-t") {
            if (++i == args.size()) throw UsageError("-t needs a type (int, bool, double or string)");
            typeName = args[i];
        } else if (args[i] != "-f") {
            operands.push_back(args[i]);
        }
    }
    SettingType type = SettingType::Int;
    if (typeName.empty()) throw UsageError("set needs -t <int|bool|double|string>");
    if (!parseTypeName(typeName, type))
        throw UsageError("unknown type \"" + typeName + "\" (expected int, bool, double or string)");
    if (operands.size() != 2)
        throw UsageError(operands.size() < 2 ? "set needs a key and a value" : "set takes one key and one value");
    setValue(type, operands[0], operands[1]);
}

// vconf has no "which type is it" call: the getters are tried in turn, and a wrong type is the
// only failure that moves on to the next one.
void runGet(const std::string& key) {
    int intValue = 0;
    double doubleValue = 0;
    std::string text;
    const char* typeName = nullptr;
    if (vconf_get_int(key.c_str(), &intValue) == 0) {
        text = std::to_string(intValue);
        typeName = "int";
    } else if (vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE && vconf_get_bool(key.c_str(), &intValue) == 0) {
        text = intValue != 0 ? "1" : "0";
        typeName = "bool";
    } else if (vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE && vconf_get_dbl(key.c_str(), &doubleValue) == 0) {
        text = Orvo::Emulator::formatDoubleShort(doubleValue);
        typeName = "double";
    } else if (vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE) {
        char* value = vconf_get_str(key.c_str());
        check(value == nullptr ? -1 : 0, key);
        text = value;
        std::free(value);
        typeName = "string";
    } else {
        check(-1, key);
    }
    std::printf("%s, value = %s (%s)\n", key.c_str(), text.c_str(), typeName);
}

int run(const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError("missing command (set, get or unset)");
    const std::string& command = args[0];
    if (command == "--help" || command == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command != "set" && command != "get" && command != "unset")
        throw UsageError("unknown command \"" + command + "\"");
    if (command != "set" && rest.size() != 1) throw UsageError(command + " takes exactly one key");
    // The platform library finds the device through ORVO_DEVICE_DIR; the tool's device may be
    // the default one, created on first use.
    ::setenv("ORVO_DEVICE_DIR", Orvo::Emulator::toolDeviceDirectory().c_str(), 1);
    if (command == "set")
        runSet(rest);
    else if (command == "get")
        runGet(rest[0]);
    else
        check(vconf_unset(rest[0].c_str()), rest[0]);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "vconftool: %s (see vconftool --help)\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vconftool: %s\n", error.what());
        return 1;
    }
}
