#include "Common/Utils/ErrorInfo.h"

#include <cstring>

namespace Orvo {
namespace Common {
namespace Utils {
namespace {

// strerror_r comes in two flavours: the GNU one returns the text, the XSI one an error number.
[[maybe_unused]] const char* errorTextOf(char* result, const char* /*buffer*/) { return result; }
[[maybe_unused]] const char* errorTextOf(int result, const char* buffer) { return result == 0 ? buffer : nullptr; }

} // namespace

std::string errnoText(int errorNumber) {
    char buffer[512] = {};
    const char* message = errorTextOf(strerror_r(errorNumber, buffer, sizeof buffer), buffer);
    std::string text = " errno=" + std::to_string(errorNumber);
    // The 1 is fixed, whatever made the lookup fail.
    text += message != nullptr ? std::string(" (") + message + ")" : std::string(" (failed to get error string: 1)");
    return text;
}

void extendSupportCode(boost::exception& exception, const std::string& supportCode) {
    const std::string* existing = boost::get_error_info<errinfo_supportcode>(exception);
    if (existing != nullptr && !existing->empty()) {
        exception << errinfo_supportcode(supportCode + "-" + *existing);
    } else {
        exception << errinfo_supportcode(supportCode);
    }
}

} // namespace Utils
} // namespace Common
} // namespace Orvo
