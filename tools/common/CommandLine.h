#pragma once
// The tools' one command-line idiom: getopt_long with options anywhere among the operands,
// --opt=value, grouped short options (-dv raw, -vraw), -- to end the options and negative numbers
// as values; and one way of reporting a wrong command line (exit status 2) or a failure (1).

#include <getopt.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Orvo {
namespace Tools {

// A wrong command line: "TOOL: reason (see TOOL --help)", exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Called with the option's short letter (or a long option's `val`) and its value, or nullptr.
using OptionHandler = std::function<void(int option, const char* value)>;

// Parses `arguments` (without the program name) with getopt_long; `shortOptions` and
// `longOptions` (ended by a zero entry) as getopt_long takes them; `shortOptions` starting with
// '+' ends the options at the first operand. Returns the operands in order.
// Throws UsageError for an unknown option or a missing value.
std::vector<std::string> parseCommandLine(const std::vector<std::string>& arguments, const char* shortOptions,
                                          const option* longOptions, const OptionHandler& onOption);

// Runs a tool's body: a UsageError is reported as such, any other exception in one line as
// "TOOL: what" with exit status 1.
int runTool(const char* name, const std::function<int()>& body);

} // namespace Tools
} // namespace Orvo
