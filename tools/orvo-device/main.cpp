// orvo-device: creates, runs, reboots and shows emulated televisions.

#include "Commands.h"

#include <cstring>
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

bool asksForHelp(const Arguments& args) {
    for (const std::string& arg : args) {
        if (arg == "--") {
            return false;
        }
        if (arg == "--help" || arg == "-h") {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    const Arguments all(argv + 1, argv + argc);
    if (all.empty()) {
        std::cerr << "orvo-device: missing command (see orvo-device --help)\n";
        return 2;
    }
    if (all[0] == "--help" || all[0] == "-h") {
        std::cout << kUsage;
        return 0;
    }
    const auto command = commands().find(all[0]);
    if (command == commands().end()) {
        std::cerr << "orvo-device: unknown command '" << all[0] << "' (see orvo-device --help)\n";
        return 2;
    }
    const Arguments args(all.begin() + 1, all.end());
    if (asksForHelp(args)) {
        std::cout << command->second.help;
        return 0;
    }
    try {
        return command->second.run(args);
    } catch (const Orvo::Emulator::UsageError& e) {
        std::cerr << "orvo-device " << all[0] << ": " << e.what() << " (see orvo-device " << all[0] << " --help)\n";
        return 2;
    } catch (const std::exception& e) {
        std::cerr << "orvo-device " << all[0] << ": " << e.what() << "\n";
        return 1;
    }
}
