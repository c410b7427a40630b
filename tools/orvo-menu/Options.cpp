#include "Options.h"

#include "Branch.h"
#include "CommandLine.h"

#include <cstdlib>

namespace Orvo {
namespace Tools {
namespace MenuHost {

const char* const kUsage = R"(Usage: orvo-menu [OPTIONS] [COMMAND [ARGUMENTS]]

Loads the software-update menu plug-in and runs it as the television's settings menu does.

Commands:
  (none)                the interactive menu when standard input and output are a terminal,
                        otherwise the same as `show`
  menu                  the interactive menu
  show [ID]             prints the branch with its items, or one item
  script [ACTION]...    runs host actions in order in this process, one per argument; with no
                        argument (or --file -) one action per line from standard input
  check                 exercises every callback as careful and careless hosts do and reports
                        each result against the host contract; exit status 1 on a violation
  serve                 the device console: prints one URL (with its access token) and serves
                        the menu, the device's facts and its log to a browser until Ctrl-C

Options:
  --plugin PATH         the plug-in to load (default: <bin>/../lib/libOrvoMenuItemDataProvider.so)
  --language LANG       the menu language, as LANGUAGE (default: $LANGUAGE, or en)
  --json                show: one JSON document instead of text
  --file FILE           script: the actions, one per line (- for standard input)
  --width N             show, script: text width (default: the terminal's, or 80)
  --port N              serve: the port (default: any free port)
  --listen ADDR         serve: the address to listen on (default: 127.0.0.1, this machine only);
                        a loopback address only: from another machine, use an SSH tunnel
                        (ssh -L 8080:127.0.0.1:8080 HOST, with --port 8080)
  --allow-remote        serve: let --listen name an address other machines can reach
                        (unencrypted, the token its only protection)
  -h, --help            this text

Script actions (blank lines and lines starting with # are ignored):
  set ID VALUE          setIntValue(ID, VALUE)
  get ID                prints getIntValue(ID)
  key NAME              onKeyEvent(NAME), for example: key XF86Info
  title ID              prints getTitle(ID)
  description ID        prints getDescription(ID), with <br> as a line break
  value ID              prints a toggle's translated state or a value item's text
  show [ID]             prints the branch, or one item, as `show` does
  language LANG         switches the language

Keys of the interactive menu:
  Up/Down, k/j          move between items
  Enter, Space          toggle the selected on/off item (written at once)
  i                     Info key: the branch's next description is the detailed version
  l                     next language of the catalogue
  r                     read everything again
  q, Escape, Ctrl-C     quit

Example:
  orvo-menu script "set db/menu/support/softwareupdate/autoupdate 0" "key XF86Info" \
                   "show menu/support/softwareupdate" "show"

Exit status: 0 on success, 1 when the plug-in is unusable or an action or check failed,
2 on a usage error.
)";

namespace {

std::size_t parseWidth(const std::string& text) {
    char* end = nullptr;
    const unsigned long width = std::strtoul(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || width < 40 || width > 1000) {
        throw UsageError("--width takes a number from 40 to 1000");
    }
    return width;
}

enum LongOnly { kJson = 256, kPlugin, kLanguage, kFile, kWidth, kPort, kListen, kAllowRemote };

int parsePort(const std::string& text) {
    char* end = nullptr;
    const unsigned long port = std::strtoul(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || port > 65535) throw UsageError("--port takes a number from 0 to 65535");
    return static_cast<int>(port);
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    static const option longOptions[] = {{"help", no_argument, nullptr, 'h'},
                                         {"json", no_argument, nullptr, kJson},
                                         {"plugin", required_argument, nullptr, kPlugin},
                                         {"language", required_argument, nullptr, kLanguage},
                                         {"file", required_argument, nullptr, kFile},
                                         {"width", required_argument, nullptr, kWidth},
                                         {"port", required_argument, nullptr, kPort},
                                         {"listen", required_argument, nullptr, kListen},
                                         {"allow-remote", no_argument, nullptr, kAllowRemote},
                                         {nullptr, 0, nullptr, 0}};
    Options options;
    const std::vector<std::string> operands =
        parseCommandLine(arguments, "h", longOptions, [&](int option, const char* value) {
            switch (option) {
            case 'h':
                options.help = true;
                break;
            case kJson:
                options.json = true;
                break;
            case kPlugin:
                options.plugin = value;
                break;
            case kLanguage:
                options.language = value;
                if (options.language.empty()) throw UsageError("--language needs a language, for example en");
                break;
            case kFile:
                options.scriptFile = value;
                break;
            case kWidth:
                options.width = parseWidth(value);
                break;
            case kPort:
                options.port = parsePort(value);
                break;
            case kListen:
                options.listen = value;
                break;
            case kAllowRemote:
                options.allowRemote = true;
                break;
            }
        });
    if (!operands.empty()) {
        options.command = operands[0];
        options.arguments.assign(operands.begin() + 1, operands.end());
    }
    const std::string& command = options.command;
    if (!command.empty() && command != "menu" && command != "show" && command != "script" && command != "check" &&
        command != "serve") {
        throw UsageError("unknown command '" + command + "'");
    }
    if (command != "script" && command != "show" && !options.arguments.empty()) {
        throw UsageError("'" + command + "' takes no arguments");
    }
    if (command == "show" && options.arguments.size() > 1) throw UsageError("show takes at most one item");
    if (command == "show" && options.arguments.size() == 1 && !isMenuItem(options.arguments[0]))
        throw UsageError(unknownItemReason(options.arguments[0]));
    if (command == "show" && options.json && !options.arguments.empty()) {
        throw UsageError("--json shows the whole branch; leave out the item");
    }
    if (options.json && command != "show" && !command.empty()) throw UsageError("--json belongs to show");
    if (options.allowRemote && command != "serve") throw UsageError("--allow-remote belongs to serve");
    if (!options.scriptFile.empty() && (command != "script" || !options.arguments.empty())) {
        throw UsageError("--file belongs to script, without actions on the command line");
    }
    return options;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
