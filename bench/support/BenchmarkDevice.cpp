#include "BenchmarkDevice.h"

#include "orvo/device/Device.h"

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <clocale>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace Orvo {
namespace Benchmarks {
namespace {

std::string g_device;

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
        benchmark::RunSpecifiedBenchmarks();
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
