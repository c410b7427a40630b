#include "BenchmarkDevice.h"

#include "orvo/device/Device.h"

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace Orvo {
namespace Benchmarks {
namespace {

std::string g_device;

// The console report, counting the runs that ended in an error.
class ErrorCountingReporter : public benchmark::ConsoleReporter {
public:
    ErrorCountingReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_ColorTabular : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) ++m_errors;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    int errors() const { return m_errors; }

private:
    int m_errors = 0;
};

// What the figures were taken on, for the report's context.
std::string enterDevice(const char* language) {
    namespace Emulator = Orvo::Emulator;
    Emulator::createDevice(g_device, Emulator::emulatorDataDirectory(), "tv");
    setenv("ORVO_DEVICE_DIR", g_device.c_str(), 1);
    setenv("LANGUAGE", language, 1); // honoured by gettext in C.UTF-8, not in "C"
    std::setlocale(LC_ALL, "C.UTF-8");
    const std::string catalogue = std::string("catalogue ") + language;
    try {
        Emulator::enterSandbox(g_device);
        return "tv device in the sandbox, " + catalogue;
    } catch (const std::runtime_error& error) {
        return std::string("tv device WITHOUT sandbox (") + error.what() + "): catalogue not read, ids only";
    }
}

} // namespace

const std::string& benchmarkDevice() { return g_device; }

int runRegisteredBenchmarks(const char* program) {
    ErrorCountingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (reporter.errors() == 0) return 0;
    std::fprintf(stderr, "%s: %d benchmark(s) failed their work\n", program, reporter.errors());
    return 1;
}

int runOnFreshDevice(int argc, char** argv, const char* program, const char* language) {
    char pattern[] = "/tmp/orvo-bench.XXXXXX";
    if (mkdtemp(pattern) == nullptr) {
        std::perror(program);
        return 1;
    }
    g_device = std::string(pattern) + "/device";
    int status = 0;
    try {
        const std::string context = enterDevice(language);
        benchmark::Initialize(&argc, argv);
        benchmark::AddCustomContext("device", context);
        status = benchmark::ReportUnrecognizedArguments(argc, argv) ? 1 : runRegisteredBenchmarks(program);
        benchmark::Shutdown();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        status = 1;
    }
    std::error_code ignored;
    std::filesystem::remove_all(pattern, ignored);
    return status;
}

} // namespace Benchmarks
} // namespace Orvo
