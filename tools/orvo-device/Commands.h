#pragma once
// The sub-commands of orvo-device. Each takes the arguments after its name and returns the exit
// status; it throws UsageError for a wrong command line and std::runtime_error for a failure.

#include <stdexcept>
#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

using Arguments = std::vector<std::string>;

int createCommand(const Arguments& args);
int runCommand(const Arguments& args);
int rebootCommand(const Arguments& args);
int profilesCommand(const Arguments& args);
int pathCommand(const Arguments& args);
int showCommand(const Arguments& args);

} // namespace Emulator
} // namespace Orvo
