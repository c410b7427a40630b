#include "Common/Utils/OrvoAssert.h"

#include "Common/Logging/Logging.h"

#include <cstdlib>
#include <string>

namespace {

using namespace Orvo::Common::Logging;

// Console first (it waits for the console to drain), then the log, then the end: an assertion
// ends the process in every build.
[[noreturn]] void failAssertion(std::string text) {
    consoleSink(kLogTag, FTL, &text[0]);
    logPrintf(&dlogLineSink, kLogTag, FTL, nullptr, 0, "%s:%d>%s", baseName(__FILE__), __LINE__, text.c_str());
    std::abort();
}

std::string assertionText(const char* expr, const char* function, const char* file, long line) {
    return std::string("ASSERTION FAILED: ") + expr + ", " + function + ", " + baseName(file) + ":" +
           std::to_string(line);
}

} // namespace

namespace boost {

void assertion_failed(const char* expr, const char* function, const char* file, long line) {
    failAssertion(assertionText(expr, function, file, line));
}

void assertion_failed_msg(const char* expr, const char* msg, const char* function, const char* file, long line) {
    failAssertion(assertionText(expr, function, file, line) + "\nMESSAGE: " + msg);
}

} // namespace boost
