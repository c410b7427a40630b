// Arbitrary bytes as an installation-performance-parameters file: the reader must fail cleanly,
// and whatever it accepts must survive a write and a second read unchanged.
#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <sstream>
#include <string>

using Orvo::OrvoCommon::InstallationPerformanceParameters;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    InstallationPerformanceParameters parsed;
    try {
        InstallationPerformanceParameters::read(parsed, in);
    } catch (const std::exception&) {
        return 0;
    }
    std::stringstream written;
    InstallationPerformanceParameters::write(parsed, written);
    InstallationPerformanceParameters reread;
    InstallationPerformanceParameters::read(reread, written);
    if (reread != parsed) {
        __builtin_trap();
    }
    return 0;
}
