// Arbitrary bytes as a debug-and-test parameter file: the reader must fail cleanly, and whatever
// it accepts must survive a write and a second read unchanged.
#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <sstream>
#include <string>

using Orvo::OrvoCommon::DebugAndTestParameters;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    DebugAndTestParameters parsed;
    try {
        parsed.read(in);
    } catch (const std::exception&) {
        return 0;
    }
    std::stringstream written;
    parsed.write(written);
    DebugAndTestParameters reread;
    reread.read(written);
    if (reread != parsed) {
        __builtin_trap();
    }
    return 0;
}
