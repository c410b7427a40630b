#include "LogFilter.h"

#include <dlog.h>

#include <cctype>
#include <cstring>
#include <stdexcept>

namespace Orvo {
namespace Emulator {
namespace {

const char kLetters[] = "??VDIWEFS"; // indexed by log_priority
// "S" is above every priority a record can have.
const int kSilent = DLOG_PRIO_MAX;

int minimumOf(const std::string& priority, const std::string& spec) {
    if (priority.size() == 1) {
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(priority[0])));
        if (c >= '0' && c <= '0' + DLOG_SILENT) return c == '0' + DLOG_SILENT ? kSilent : c - '0';
        const char* found = c != '?' ? std::strchr(kLetters, c) : nullptr;
        if (found != nullptr && *found != '\0') return c == 'S' ? kSilent : static_cast<int>(found - kLetters);
    }
    throw std::invalid_argument("invalid filter \"" + spec +
                                "\" (expected TAG:P with P one of V D I W E F S, any case, or 0 to 8)");
}

// "A:D, B:W *:S" is three specs.
std::vector<std::string> splitSpecs(const std::vector<std::string>& arguments) {
    std::vector<std::string> specs;
    for (const std::string& argument : arguments) {
        std::size_t start = 0;
        while ((start = argument.find_first_not_of(" \t\n,", start)) != std::string::npos) {
            const std::size_t end = argument.find_first_of(" \t\n,", start);
            specs.push_back(argument.substr(start, end - start));
            start = end;
        }
    }
    return specs;
}

} // namespace

LogFilter::LogFilter(const std::vector<std::string>& arguments) : m_defaultMinimum(DLOG_INFO) {
    const std::vector<std::string> specs = splitSpecs(arguments);
    if (!specs.empty()) m_defaultMinimum = kSilent;
    for (const std::string& spec : specs) {
        const std::size_t colon = spec.find(':');
        const std::string tag = spec.substr(0, colon);
        if (tag.empty()) throw std::invalid_argument("invalid filter \"" + spec + "\" (empty tag)");
        const std::string priority = colon == std::string::npos ? "V" : spec.substr(colon + 1);
        if (priority.find(':') != std::string::npos)
            throw std::invalid_argument("invalid filter \"" + spec + "\" (a tag cannot contain ':')");
        const int minimum = minimumOf(priority, spec);
        if (tag == "*")
            m_defaultMinimum = minimum;
        else
            m_minimumByTag[tag] = minimum;
    }
}

bool LogFilter::accepts(const std::string& tag, int priority) const {
    const auto entry = m_minimumByTag.find(tag);
    return priority >= (entry == m_minimumByTag.end() ? m_defaultMinimum : entry->second);
}

char priorityLetter(int priority) {
    return priority >= 0 && priority < static_cast<int>(sizeof kLetters - 1) ? kLetters[priority] : '?';
}

} // namespace Emulator
} // namespace Orvo
