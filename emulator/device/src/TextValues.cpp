#include "orvo/device/TextValues.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

namespace Orvo {
namespace Emulator {
namespace {

locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t());
    return locale;
}

// Runs formatting with the "C" locale on this thread only, so that the host's locale never
// turns the decimal point into a comma.
std::string formatWithPrecision(double value, int precision) {
    const locale_t previous = uselocale(cLocale());
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*g", precision, value);
    uselocale(previous);
    return buffer;
}

} // namespace

bool parseLongLong(const std::string& text, long long& out) {
    if (text.empty() || text.find('\0') != std::string::npos || text[0] == ' ' || text[0] == '\t') return false;
    errno = 0;
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    if (errno != 0 || end != text.c_str() + text.size()) return false;
    out = value;
    return true;
}

bool parseInt(const std::string& text, int& out) {
    long long value = 0;
    if (!parseLongLong(text, value) || value < INT_MIN || value > INT_MAX) return false;
    out = static_cast<int>(value);
    return true;
}

bool parseDouble(const std::string& text, double& out) {
    if (text.empty() || text.find('\0') != std::string::npos || text[0] == ' ' || text[0] == '\t') return false;
    errno = 0;
    char* end = nullptr;
    const double value = strtod_l(text.c_str(), &end, cLocale());
    // Underflow to a subnormal or zero is fine; only an overflow loses the value.
    if ((errno == ERANGE && std::isinf(value)) || end != text.c_str() + text.size()) return false;
    out = value;
    return true;
}

std::string formatDouble(double value) { return formatWithPrecision(value, 17); }

std::string formatDoubleShort(double value) {
    for (int precision = 1; precision < 17; ++precision) {
        const std::string text = formatWithPrecision(value, precision);
        double back = 0;
        if (parseDouble(text, back) && back == value) return text;
    }
    return formatDouble(value);
}

} // namespace Emulator
} // namespace Orvo
