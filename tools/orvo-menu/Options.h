#pragma once
// The command line of orvo-menu.

#include "CommandLine.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

using Tools::UsageError;

struct Options {
    std::string command; // "", "menu", "show", "script", "check", "serve"
    std::vector<std::string> arguments;
    std::string plugin;   // empty: the default path
    std::string language; // empty: LANGUAGE, or en
    std::string scriptFile;
    std::size_t width = 0;            // 0: the terminal's width, or 80
    int port = 0;                     // serve: 0 for any free port
    std::string listen = "127.0.0.1"; // serve: the address to listen on
    bool allowRemote = false;         // serve: --listen may name an address other machines reach
    bool json = false;
    bool help = false;
};

// Throws UsageError with a one-line reason.
Options parseOptions(const std::vector<std::string>& arguments);

extern const char* const kUsage;

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
