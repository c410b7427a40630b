#include "Commands.h"

#include "DeviceReport.h"
#include "orvo/device/Device.h"
#include "orvo/device/DeviceDirectory.h"

#include <cerrno>
#include <cstring>
#include <iostream>

#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

constexpr std::size_t kShownLogRecords = 20;

// Splits an argument list into positional arguments, accepting the options listed in
// valueOptions as "--name VALUE" or "--name=VALUE".
struct ParsedArguments {
    std::vector<std::string> positional;
    std::vector<std::pair<std::string, std::string>> options;
};

ParsedArguments parseArguments(const Arguments& args, const std::vector<std::string>& valueOptions) {
    ParsedArguments parsed;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg.size() < 2 || arg[0] != '-') {
            parsed.positional.push_back(arg);
            continue;
        }
        const std::string name = arg.substr(0, arg.find('='));
        bool known = false;
        for (const std::string& option : valueOptions) {
            known = known || name == option;
        }
        if (!known) {
            throw UsageError("unknown option " + arg);
        }
        if (name.size() < arg.size()) {
            parsed.options.emplace_back(name, arg.substr(name.size() + 1));
        } else if (i + 1 < args.size()) {
            parsed.options.emplace_back(name, args[++i]);
        } else {
            throw UsageError(name + " needs a value");
        }
    }
    return parsed;
}

std::string optionalDirectory(const Arguments& args) {
    const ParsedArguments parsed = parseArguments(args, {});
    if (parsed.positional.size() > 1) {
        throw UsageError("too many arguments");
    }
    return parsed.positional.empty() ? toolDeviceDirectory() : parsed.positional[0];
}

} // namespace

int createCommand(const Arguments& args) {
    const ParsedArguments parsed = parseArguments(args, {"--profile"});
    if (parsed.positional.size() != 1) {
        throw UsageError(parsed.positional.empty() ? "missing device directory" : "too many arguments");
    }
    const std::string profile = parsed.options.empty() ? "tv" : parsed.options.back().second;
    createDevice(parsed.positional[0], emulatorDataDirectory(), profile);
    std::cout << "Created a " << profile << " device in " << parsed.positional[0] << "\n";
    return 0;
}

int runCommand(const Arguments& args) {
    std::string deviceDir;
    std::size_t i = 0;
    for (; i < args.size() && args[i] != "--" && args[i].compare(0, 1, "-") == 0; ++i) {
        if (args[i] == "--device" && i + 1 < args.size()) {
            deviceDir = args[++i];
        } else if (args[i].compare(0, 9, "--device=") == 0) {
            deviceDir = args[i].substr(9);
        } else {
            throw UsageError(args[i] == "--device" ? "--device needs a value" : "unknown option " + args[i]);
        }
    }
    if (i < args.size() && args[i] == "--") {
        ++i;
    }
    if (i == args.size()) {
        throw UsageError("missing command to run");
    }
    if (deviceDir.empty()) {
        deviceDir = toolDeviceDirectory();
    }
    enterSandbox(deviceDir);
    std::vector<char*> argv;
    for (; i < args.size(); ++i) {
        argv.push_back(const_cast<char*>(args[i].c_str()));
    }
    argv.push_back(nullptr);
    ::execvp(argv[0], argv.data());
    const int error = errno;
    std::cerr << "orvo-device: cannot execute " << argv[0] << ": " << std::strerror(error) << "\n";
    return error == ENOENT ? 127 : 126;
}

int rebootCommand(const Arguments& args) {
    const std::string deviceDir = optionalDirectory(args);
    rebootDevice(deviceDir);
    std::cout << "Rebooted the device in " << deviceDir << "\n";
    return 0;
}

int profilesCommand(const Arguments& args) {
    if (!args.empty()) {
        throw UsageError("profiles takes no arguments");
    }
    const std::vector<std::string> profiles = listProfiles(emulatorDataDirectory());
    if (profiles.empty()) {
        throw std::runtime_error("no profiles in " + emulatorDataDirectory());
    }
    for (const std::string& name : profiles) {
        std::cout << name << "\n";
    }
    return 0;
}

int pathCommand(const Arguments& args) {
    const ParsedArguments parsed = parseArguments(args, {"--profile"});
    if (!parsed.positional.empty()) {
        throw UsageError("too many arguments");
    }
    const std::string profile = parsed.options.empty() ? "tv" : parsed.options.back().second;
    if (!isProfileName(profile)) {
        throw UsageError("'" + profile + "' is not a profile name");
    }
    std::cout << profileDeviceDirectory(profile) << "\n";
    return 0;
}

int showCommand(const Arguments& args) {
    const std::string deviceDir = optionalDirectory(args);
    if (!isDevice(deviceDir.c_str())) {
        throw std::runtime_error(noDeviceMessage(deviceDir));
    }
    printDeviceReport(std::cout, deviceDir, kShownLogRecords);
    return 0;
}

} // namespace Emulator
} // namespace Orvo
