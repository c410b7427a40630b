#include "CheckReport.h"

#include <ostream>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {
constexpr std::size_t kQuoteLimit = 48;
}

bool CheckReport::expect(const std::string& what, bool pass, const std::string& got, const std::string& expected) {
    out_ << (pass ? "ok    " : "FAIL  ") << what << ": returned " << got;
    if (!pass) out_ << ", expected " << expected;
    out_ << '\n';
    ++(pass ? passed_ : violations_);
    return pass;
}

void CheckReport::skip(const std::string& what, const std::string& reason) {
    out_ << "skip  " << what << ": " << reason << '\n';
    ++skipped_;
}

void CheckReport::summary() {
    out_ << passed_ << " passed, " << violations_ << " violated, " << skipped_ << " skipped\n";
}

std::string quoted(const char* text) {
    std::string shown = "\"";
    std::size_t count = 0;
    for (const char* c = text; *c != '\0'; ++c, ++count) {
        if (count == kQuoteLimit) return shown + "...\"";
        if (*c == '\n')
            shown += "\\n";
        else if (static_cast<unsigned char>(*c) < 0x20)
            shown += '?';
        else
            shown += *c;
    }
    return shown + '"';
}

std::string describeOut(int result, const char* out, const char* preset) {
    std::string text = std::to_string(result) + ", *out ";
    if (out == nullptr) return text + "null";
    if (out == preset) return text + "unchanged";
    return text + quoted(out);
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
