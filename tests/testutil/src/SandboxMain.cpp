// main() of the SANDBOXED test executables: every selected test case runs in its own child
// process, inside the device sandbox, on a device of its own, so cases never see each other's
// state however they are started.

#include "orvo/device/Device.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

// Exit status of a case child that could not enter the sandbox.
constexpr int kSkippedStatus = 77;

// Reported in gtest's own layout so that ctest and readers see the case as skipped, with why.
[[noreturn]] void skipCase(const std::string& name, const std::string& reason) {
    std::printf(
        "[ RUN      ] %s\n"
        "needs root or unprivileged user namespaces for the device sandbox: %s\n"
        "[  SKIPPED ] %s\n",
        name.c_str(), reason.c_str(), name.c_str());
    std::fflush(nullptr);
    ::_exit(kSkippedStatus);
}

// The selected cases as gtest itself lists them under the given flags (filter, shards).
std::vector<std::string> selectedTests(std::vector<std::string> argv) {
    argv[0] = "/proc/self/exe";
    argv.push_back("--gtest_list_tests");
    const Orvo::Testing::ProcessResult listing = Orvo::Testing::runProcess(argv);
    if (listing.exitCode != 0) throw std::runtime_error("cannot list the tests: " + listing.err);
    std::vector<std::string> names;
    std::istringstream lines(listing.out);
    std::string line;
    std::string suite;
    while (std::getline(lines, line)) {
        std::string name;
        std::istringstream(line) >> name;
        if (line.compare(0, 2, "  ") != 0) {
            suite = name; // "Suite." with its dot
            continue;
        }
        const bool disabled = name.compare(0, 9, "DISABLED_") == 0 || suite.compare(0, 9, "DISABLED_") == 0;
        if (!name.empty() && (!disabled || GTEST_FLAG_GET(also_run_disabled_tests))) names.push_back(suite + name);
    }
    return names;
}

int runCase(const std::string& name) {
    Orvo::Testing::TemporaryDirectory temporary;
    const std::string deviceDir = temporary.path() + "/device";
    Orvo::Emulator::createDevice(deviceDir, Orvo::Emulator::emulatorDataDirectory(), "tv");
    std::fflush(nullptr);
    const pid_t pid = ::fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        try {
            Orvo::Emulator::enterSandbox(deviceDir);
        } catch (const std::exception& e) {
            skipCase(name, e.what());
        }
        GTEST_FLAG_SET(filter, name);
        const int result = RUN_ALL_TESTS();
        std::fflush(nullptr);
        ::_exit(result);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0)
        if (errno != EINTR) throw std::runtime_error(std::string("waitpid: ") + std::strerror(errno));
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    try {
        std::vector<std::string> failed;
        std::size_t skipped = 0;
        const std::vector<std::string> names = selectedTests(arguments);
        for (const std::string& name : names) {
            const int status = runCase(name);
            if (status == kSkippedStatus)
                ++skipped;
            else if (status != 0)
                failed.push_back(name);
        }
        std::printf("[ SANDBOX  ] %zu test cases, each on its own device: %zu failed, %zu skipped\n", names.size(),
                    failed.size(), skipped);
        for (const std::string& name : failed)
            std::printf("[ SANDBOX  ] FAILED %s\n", name.c_str());
        return failed.empty() ? 0 : 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "sandboxed test run: %s\n", e.what());
        return 1;
    }
}
