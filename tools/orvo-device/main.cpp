// orvo-device: creates, runs, reboots and shows emulated televisions.

#include "CommandLine.h"
#include "Commands.h"

#include <iostream>
#include <map>

namespace {

using Orvo::Emulator::Arguments;

struct Command {
    int (*run)(const Arguments&);
    const char* help;
};

const char kUsage[] =
    "Usage: orvo-device COMMAND [ARG...]\n"
    "Creates and runs emulated televisions.\n"
    "\n"
    "Commands:\n"
    "  create DIR [--profile NAME]          make a new device from a profile (default tv)\n"
    "  run [--device DIR] -- COMMAND [ARG...]  run a command on the device\n"
    "  reboot [DIR]                         clear the device's volatile state\n"
    "  profiles                             list the profiles\n"
    "  path [--profile NAME]                where the user's device of a profile lives\n"
    "  show [DIR]                           show the device's facts, settings and main log\n"
    "\n"
    "Without DIR, a command works on $ORVO_DEVICE_DIR or, when that is unset, on the default\n"
    "device, created from the tv profile on first use.\n"
    "Run 'orvo-device COMMAND --help' for the details of one command.\n";

const std::map<std::string, Command>& commands() {
    static const std::map<std::string, Command> table = {
        {"create",
         {Orvo::Emulator::createCommand,
          "Usage: orvo-device create DIR [--profile NAME]\n"
          "Makes DIR a new device from the profile NAME (default tv): its device.conf,\n"
          "its files (rootfs/) and its initial settings. DIR must not exist or be empty.\n"
          "'orvo-device profiles' lists the profiles.\n"}},
        {"run",
         {Orvo::Emulator::runCommand,
          "Usage: orvo-device run [--device DIR] -- COMMAND [ARG...]\n"
          "Runs COMMAND on the device: in a private mount namespace where /common,\n"
          "/mnt/systemrw, /mnt/backup and the system's directories under the platform\n"
          "roots (such as /usr/share/orvotv) are the device's, with ORVO_DEVICE_DIR set.\n"
          "Exits with the command's status. Needs root or unprivileged user namespaces.\n"}},
        {"reboot",
         {Orvo::Emulator::rebootCommand,
          "Usage: orvo-device reboot [DIR]\n"
          "Reboots the device: its volatile settings (memory/ keys) are cleared, the\n"
          "persistent ones (db/, file/) stay.\n"}},
        {"profiles",
         {Orvo::Emulator::profilesCommand,
          "Usage: orvo-device profiles\n"
          "Lists the profiles that 'orvo-device create' accepts.\n"}},
        {"path",
         {Orvo::Emulator::pathCommand,
          "Usage: orvo-device path [--profile NAME]\n"
          "Prints the directory of the user's device of the profile NAME (default tv):\n"
          "${XDG_STATE_HOME:-$HOME/.local/state}/orvo-emulator/device for tv, the same\n"
          "with -NAME appended for any other. The tools' default device is the tv one.\n"}},
        {"show",
         {Orvo::Emulator::showCommand,
          "Usage: orvo-device show [DIR]\n"
          "Shows the device's system information, platform roots, settings and the\n"
          "last records of its main log.\n"}},
    };
    return table;
}

enum LongOnly { kProfile = 256, kDevice };

// The command's own arguments in the one form the commands read: options parsed here with the
// tools' common idiom (anywhere, --opt=value), then handed on as "--name value" before the rest.
// For run, options end at the command to run, whose own options are its business.
Arguments canonicalArguments(const std::string& command, const Arguments& args, bool& help) {
    static const option longOptions[] = {{"help", no_argument, nullptr, 'h'},
                                         {"profile", required_argument, nullptr, kProfile},
                                         {"device", required_argument, nullptr, kDevice},
                                         {nullptr, 0, nullptr, 0}};
    Arguments options;
    const Arguments operands = Orvo::Tools::parseCommandLine(
        args, command == "run" ? "+h" : "h", longOptions, [&](int option, const char* value) {
            const bool belongs = option == 'h' || (option == kProfile && (command == "create" || command == "path")) ||
                                 (option == kDevice && command == "run");
            if (!belongs)
                throw Orvo::Tools::UsageError(std::string("unknown option --") +
                                              (option == kProfile ? "profile" : "device"));
            if (option == 'h') help = true;
            if (option != 'h') options.insert(options.end(), {option == kProfile ? "--profile" : "--device", value});
        });
    if (command == "run") options.push_back("--");
    options.insert(options.end(), operands.begin(), operands.end());
    return options;
}

int runCommand(const std::string& name, const Command& command, const Arguments& args) {
    bool help = false;
    const Arguments canonical = canonicalArguments(name, args, help);
    if (help) {
        std::cout << command.help;
        return 0;
    }
    try {
        return command.run(canonical);
    } catch (const Orvo::Emulator::UsageError& e) {
        throw Orvo::Tools::UsageError(e.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    const Arguments all(argv + 1, argv + argc);
    if (!all.empty() && (all[0] == "--help" || all[0] == "-h")) {
        std::cout << kUsage;
        return 0;
    }
    const auto command = all.empty() ? commands().end() : commands().find(all[0]);
    if (command == commands().end()) {
        return Orvo::Tools::runTool("orvo-device", [&]() -> int {
            throw Orvo::Tools::UsageError(all.empty() ? "missing command" : "unknown command '" + all[0] + "'");
        });
    }
    const std::string name = "orvo-device " + all[0];
    return Orvo::Tools::runTool(
        name.c_str(), [&] { return runCommand(all[0], command->second, Arguments(all.begin() + 1, all.end())); });
}
