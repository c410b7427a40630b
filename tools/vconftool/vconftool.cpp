// vconftool: the device's settings from the command line, as the platform's tool takes them.
//
//   vconftool set -t <int|bool|double|string> <key> <value> [-f] [-i] [-u UID] [-g GID] [-s LABEL]
//   vconftool get [-r] <key>    prints "<key>, value = <value> (<type>)"; a key ending in /
//                               lists the keys under it
//   vconftool unset <key>

#include "CommandLine.h"

#include "orvo/device/Device.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/device/TextValues.h"

#include <vconf.h>

#include <strings.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::SettingType;
using Orvo::Tools::UsageError;

const char kUsage[] =
    "Usage: vconftool set -t TYPE KEY VALUE [-f] [-i] [-u UID] [-g GID] [-s LABEL]\n"
    "       vconftool get [-r] KEY\n"
    "       vconftool unset KEY\n"
    "\n"
    "Reads and writes the settings of the emulated device ($ORVO_DEVICE_DIR, or the default\n"
    "device). Keys begin with db/, file/ (persistent) or memory/ (cleared at reboot).\n"
    "  -t, --type TYPE    int, bool, double or string, in any case and by prefix (-t i)\n"
    "  -f, --force        overwrite an existing key\n"
    "  -r, --recursive    get KEY/: every key below KEY/, not only those directly in it\n"
    "  -i, -u UID, -g GID, -s LABEL\n"
    "                     the platform's install, owner, group and security label: accepted\n"
    "                     and ignored (the emulated device has no owners or labels)\n"
    "get of a key ending in / lists the keys in that folder. Doubles print as %f (0.100000).\n"
    "Bools are 1 or 0; the television reads any other bool value as a number.\n"
    "\n"
    "Where the emulated device differs from the television:\n"
    "  set without -f on an existing key: the television refuses it; here it is written with\n"
    "  a warning. set with another type replaces the key. -i, -u, -g and -s change nothing.\n";

const char* const kTypeNames = "int, bool, double or string";

std::string describeVconfError(int code, int savedErrno) {
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
    case VCONF_ERROR_NOT_INITIALIZED:
        return "there is no device (make one with orvo-device create)";
    case VCONF_ERROR_FILE_FREAD:
        return "the setting's file is corrupt (not type, line feed and value as vconf writes it); "
               "set the key again or unset it";
    case VCONF_ERROR_FILE_OPEN:
        return "the setting's file is a link or a special file, which the device never follows";
    default:
        if (savedErrno == ENAMETOOLONG) return "the key is too long for the device (its file name is over 255 bytes)";
        return "vconf error " + std::to_string(code) + " (" + std::strerror(savedErrno) + ")";
    }
}

// Runs one vconf call; a failure becomes an exception naming the key and the reason.
void check(int result, const std::string& key) {
    if (result == 0) return;
    const int savedErrno = errno;
    throw std::runtime_error(key + ": " + describeVconfError(vconf_get_ext_errno(), savedErrno));
}

// The platform's tool takes the type names in any case and by prefix.
SettingType parseTypeName(const std::string& name) {
    for (const SettingType type : {SettingType::Int, SettingType::Bool, SettingType::Double, SettingType::String}) {
        const std::string full = Orvo::Emulator::settingTypeName(type);
        if (!name.empty() && name.size() <= full.size() && ::strncasecmp(name.c_str(), full.c_str(), name.size()) == 0)
            return type;
    }
    throw UsageError("unknown type \"" + name + "\" (expected " + kTypeNames + ")");
}

void setValue(SettingType type, const std::string& key, const std::string& text) {
    const std::string invalid =
        "invalid " + std::string(Orvo::Emulator::settingTypeName(type)) + " value \"" + text + "\"";
    int intValue = 0;
    double doubleValue = 0;
    errno = 0;
    switch (type) {
    case SettingType::Int:
        if (!Orvo::Emulator::parseInt(text, intValue)) throw UsageError(invalid);
        return check(vconf_set_int(key.c_str(), intValue), key);
    case SettingType::Bool:
        if (text != "1" && text != "0")
            throw UsageError(invalid + ": give 1 or 0 (the television would read it as a number)");
        return check(vconf_set_bool(key.c_str(), text == "1"), key);
    case SettingType::Double:
        if (!Orvo::Emulator::parseDouble(text, doubleValue)) throw UsageError(invalid);
        return check(vconf_set_dbl(key.c_str(), doubleValue), key);
    case SettingType::String:
        return check(vconf_set_str(key.c_str(), text.c_str()), key);
    }
}

bool exists(const std::string& key) {
    int value = 0;
    return vconf_get_int(key.c_str(), &value) == 0 || vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE;
}

// vconf has no "which type is it" call: the getters are tried in turn, and a wrong type is the
// only failure that moves on to the next one.
void printKey(const std::string& key) {
    int intValue = 0;
    double doubleValue = 0;
    std::string text;
    const char* typeName = nullptr;
    errno = 0;
    if (vconf_get_int(key.c_str(), &intValue) == 0) {
        text = std::to_string(intValue);
        typeName = "int";
    } else if (vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE && vconf_get_bool(key.c_str(), &intValue) == 0) {
        text = intValue != 0 ? "1" : "0";
        typeName = "bool";
    } else if (vconf_get_ext_errno() == VCONF_ERROR_WRONG_TYPE && vconf_get_dbl(key.c_str(), &doubleValue) == 0) {
        char number[512];
        std::snprintf(number, sizeof number, "%f", doubleValue);
        text = number;
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

// "get folder/": the keys directly in the folder, or with `recursive` every key below it.
void printFolder(const std::string& deviceDir, const std::string& folder, bool recursive) {
    bool any = false;
    for (const std::string& key : Orvo::Emulator::listSettings(deviceDir)) {
        if (key.compare(0, folder.size(), folder) != 0) continue;
        if (!recursive && key.find('/', folder.size()) != std::string::npos) continue;
        printKey(key);
        any = true;
    }
    if (!any) throw std::runtime_error(folder + ": no keys" + (recursive ? " below it" : " in it (-r: below it)"));
}

struct Options {
    std::string typeName;
    bool force = false;
    bool recursive = false;
    bool platformOnly = false; // -i, -u, -g or -s
    bool help = false;
};

std::vector<std::string> parseArguments(const std::vector<std::string>& args, Options& options) {
    static const option longOptions[] = {{"type", required_argument, nullptr, 't'},
                                         {"force", no_argument, nullptr, 'f'},
                                         {"recursive", no_argument, nullptr, 'r'},
                                         {"install", no_argument, nullptr, 'i'},
                                         {"uid", required_argument, nullptr, 'u'},
                                         {"gid", required_argument, nullptr, 'g'},
                                         {"smack", required_argument, nullptr, 's'},
                                         {"help", no_argument, nullptr, 'h'},
                                         {nullptr, 0, nullptr, 0}};
    return Orvo::Tools::parseCommandLine(args, "t:frhiu:g:s:", longOptions, [&](int option, const char* value) {
        switch (option) {
        case 't':
            options.typeName = value;
            break;
        case 'f':
            options.force = true;
            break;
        case 'r':
            options.recursive = true;
            break;
        case 'h':
            options.help = true;
            break;
        default: // i u g s
            options.platformOnly = true;
        }
    });
}

int run(const std::vector<std::string>& args) {
    Options options;
    const std::vector<std::string> operands = parseArguments(args, options);
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (operands.empty()) throw UsageError("missing command (set, get or unset)");
    const std::string& command = operands[0];
    const std::vector<std::string> rest(operands.begin() + 1, operands.end());
    if (command != "set" && command != "get" && command != "unset")
        throw UsageError("unknown command \"" + command + "\"");
    if (command == "set" && options.typeName.empty()) throw UsageError(std::string("set needs -t ") + kTypeNames);
    if (command == "set" && rest.size() != 2)
        throw UsageError(rest.size() < 2 ? "set needs a key and a value" : "set takes one key and one value");
    if (command != "set" && rest.size() != 1) throw UsageError(command + " takes exactly one key");
    if (command != "set" && (!options.typeName.empty() || options.force || options.platformOnly))
        throw UsageError("-t, -f, -i, -u, -g and -s belong to set");
    if (command != "get" && options.recursive) throw UsageError("-r belongs to get");
    const SettingType type = command == "set" ? parseTypeName(options.typeName) : SettingType::Int;

    // The platform library finds the device through ORVO_DEVICE_DIR; the tool's device may be
    // the default one, created on first use.
    const std::string deviceDir = Orvo::Emulator::toolDeviceDirectory();
    ::setenv("ORVO_DEVICE_DIR", deviceDir.c_str(), 1);
    const std::string& key = rest[0];
    if (command == "set") {
        if (options.platformOnly)
            std::fputs("vconftool: note: -i, -u, -g and -s have no effect on the emulated device\n", stderr);
        const bool existed = !options.force && exists(key);
        setValue(type, key, rest[1]);
        if (existed)
            std::fprintf(stderr, "vconftool: warning: %s already existed; the television refuses this set without -f\n",
                         key.c_str());
    } else if (command == "get" && !key.empty() && key.back() == '/') {
        printFolder(deviceDir, key, options.recursive);
    } else if (command == "get") {
        printKey(key);
    } else {
        errno = 0;
        check(vconf_unset(key.c_str()), key);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return Orvo::Tools::runTool("vconftool", [&] { return run(std::vector<std::string>(argv + 1, argv + argc)); });
}
