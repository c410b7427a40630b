// orvo-menu: the settings menu's host for the software-update menu plug-in.

#include "Branch.h"
#include "ConsoleServer.h"
#include "ContractCheck.h"
#include "InteractiveMenu.h"
#include "Json.h"
#include "Language.h"
#include "Options.h"
#include "Provider.h"
#include "Script.h"
#include "Terminal.h"
#include "TextView.h"

#include "orvo/device/Device.h"

#include <libintl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

using namespace Orvo::Tools::MenuHost;

namespace {

constexpr std::size_t kDefaultWidth = 80;

std::size_t outputWidth(const Options& options) {
    if (options.width != 0) return options.width;
    struct winsize size {};
    if (isatty(STDOUT_FILENO) && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= 40) {
        return size.ws_col;
    }
    return kDefaultWidth;
}

std::vector<std::string> readLines(std::istream& in) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> scriptLines(const Options& options) {
    if (!options.arguments.empty()) return options.arguments;
    if (options.scriptFile.empty() || options.scriptFile == "-") return readLines(std::cin);
    struct stat status {};
    if (::stat(options.scriptFile.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        throw ScriptError(options.scriptFile + " is a directory, not a script");
    std::ifstream file(options.scriptFile);
    if (!file) throw ScriptError("cannot read " + options.scriptFile);
    std::vector<std::string> lines = readLines(file);
    if (file.bad()) throw ScriptError("cannot read " + options.scriptFile);
    return lines;
}

// Outside the device sandbox the plug-in's catalogue directory is the host's, without catalogues,
// and every text would be a bare message id.
void requireCatalogue() {
    if (!foundCatalogueLanguages().empty()) return;
    const char* directory = bindtextdomain(kTextDomain, nullptr);
    throw std::runtime_error(std::string("no message catalogue in ") + (directory ? directory : "(unbound)") +
                             " (outside the device sandbox every text is a bare message id): run it as "
                             "`orvo-device run -- orvo-menu ...`, as scripts/run does");
}

int show(const Provider& provider, const Options& options, const std::string& pluginPath) {
    if (options.json) {
        std::cout << branchToJson(readBranch(provider), pluginPath);
    } else if (options.arguments.empty()) {
        std::cout << renderBranch(readBranch(provider), outputWidth(options));
    } else {
        std::cout << renderItem(readItem(provider, options.arguments[0]), outputWidth(options));
    }
    return std::cout.flush() ? 0 : 1;
}

int run(const Options& options) {
    selectLanguage(options.language);
    const std::string pluginPath = options.plugin.empty() ? defaultPluginPath() : options.plugin;
    const PluginLibrary library(pluginPath);
    if (options.command == "check") return runContractCheck(library, std::cout);

    // Parsed before the provider exists, so that a bad script changes nothing.
    const std::vector<ScriptAction> actions =
        options.command == "script" ? parseScript(scriptLines(options)) : std::vector<ScriptAction>();
    const Provider provider(library);
    requireCatalogue();
    if (options.command == "serve") {
        Orvo::Tools::Console::ConsoleConfig config{options.listen, options.port, Orvo::Emulator::toolDeviceDirectory(),
                                                   "", ""};
        config.allowRemote = options.allowRemote;
        return Orvo::Tools::Console::serveUntilInterrupted(provider, config, std::cout);
    }
    if (options.command == "script") return runScript(provider, actions, std::cout, std::cerr, outputWidth(options));
    const bool onTerminal = isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
    if (options.command == "menu" || (options.command.empty() && !options.json && onTerminal)) {
        Terminal terminal(STDIN_FILENO, STDOUT_FILENO);
        return runInteractiveMenu(provider, terminal);
    }
    return show(provider, options, pluginPath);
}

} // namespace

int main(int argc, char** argv) {
    return Orvo::Tools::runTool("orvo-menu", [&] {
        const Options options = parseOptions(std::vector<std::string>(argv + 1, argv + argc));
        if (!options.help) return run(options);
        std::cout << kUsage;
        return 0;
    });
}
