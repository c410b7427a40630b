#pragma once
// Running a piece of a test in a forked child, for code that changes process-wide state (the
// mount namespace, standard output) or ends the process.

#include <functional>
#include <string>

namespace Orvo {
namespace Testing {

struct ChildResult {
    int exitCode = -1;  // 128 + signal number when the child was killed
    std::string err;    // what the child wrote to standard error
};

// The child's exit code when it cannot set up what the test needs; the test then skips.
constexpr int kChildCannotRun = 77;

// Runs body in a forked child with standard error captured; the child exits with 0 after it.
ChildResult runInChild(const std::function<void()>& body);

// In a child: makes /dev/console impossible to open for this process (a private mount
// namespace with an empty read-only /dev, so that it cannot be created either). Returns false
// when that cannot be had (no privilege to unshare) and /dev/console still opens.
bool hideConsole();

// Whether a child process can hide the console (tried in a throw-away child). Tests that end
// in the console sink, death tests included, skip when it cannot, rather than write on the
// machine's real console.
bool childrenCanHideConsole();

// In a child: makes /dev/console this process's view of the regular file `path` (bind mount
// in a private mount namespace). Returns false when that cannot be had.
bool redirectConsole(const std::string& path);

} // namespace Testing
} // namespace Orvo
