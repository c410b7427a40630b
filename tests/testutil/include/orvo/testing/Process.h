#pragma once
// Running the project's tools and other programs from tests.

#include <map>
#include <string>
#include <vector>

namespace Orvo::Testing {

struct ProcessResult {
    int exitCode = -1; // the exit status, or 128 + signal number when the process was killed
    std::string out;
    std::string err;
};

// Runs argv[0] (searched in PATH when it has no '/') without a shell, feeding stdinText to its
// standard input and collecting both outputs, however large. extraEnv adds to or replaces the
// current environment. A program that cannot be started gives exit code 127 and a line on err.
ProcessResult runProcess(const std::vector<std::string>& argv, const std::string& stdinText = "",
                         const std::map<std::string, std::string>& extraEnv = {});

// The build tree's bin/<name>: tools are built next to the test executables.
std::string toolPath(const std::string& name);

} // namespace Orvo::Testing
