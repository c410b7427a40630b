#include "LogFilter.h"

#include <dlog.h>

#include <cctype>
#include <cstring>

namespace Orvo {
namespace Emulator {
namespace {

const char kLetters[] = "??VDIWEFS"; // indexed by log_priority
const char kSeparators[] = " \t,";

// The level a spec's P names, or -1 for none.
int levelOf(char p) {
    if (p == '*' || p == '1' || p == '8' || p == '9') return DLOG_VERBOSE;
    if (p >= '2' && p <= '7') return p - '0';
    const char upper = static_cast<char>(std::toupper(static_cast<unsigned char>(p)));
    const char* found = upper != '?' && upper != '\0' ? std::strchr(kLetters, upper) : nullptr;
    return found != nullptr ? static_cast<int>(found - kLetters) : -1;
}

} // namespace

LogFilter::LogFilter(const std::vector<std::string>& arguments) : globalLevel_(DLOG_SILENT) {
    std::vector<std::string> specs;
    for (const std::string& argument : arguments) {
        std::size_t start = 0;
        while ((start = argument.find_first_not_of(kSeparators, start)) != std::string::npos) {
            const std::size_t end = argument.find_first_of(kSeparators, start);
            specs.push_back(argument.substr(start, end - start));
            start = end;
        }
    }
    if (specs.empty()) specs.push_back("*:D");
    for (const std::string& spec : specs) {
        const std::size_t colon = spec.find(':');
        const std::string tag = spec.substr(0, colon);
        int level = DLOG_VERBOSE;
        if (colon != std::string::npos)
            level = levelOf(colon + 1 < spec.size() ? spec[colon + 1] : '\0');
        else if (tag == "*")
            level = DLOG_DEBUG;
        if (level < 0)
            rejected_.push_back(spec);
        else if (tag == "*")
            globalLevel_ = level;
        else
            levelByTag_[tag] = level;
    }
}

bool LogFilter::accepts(const std::string& tag, int priority) const {
    const auto entry = levelByTag_.find(tag);
    return priority >= DLOG_DEBUG && priority >= (entry == levelByTag_.end() ? globalLevel_ : entry->second);
}

char priorityLetter(int priority) {
    return priority >= DLOG_VERBOSE && priority <= DLOG_SILENT ? kLetters[priority] : '?';
}

} // namespace Emulator
} // namespace Orvo
