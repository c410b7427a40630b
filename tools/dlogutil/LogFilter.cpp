#include "LogFilter.h"

#include <dlog.h>

#include <cstring>
#include <stdexcept>

namespace Orvo {
namespace Emulator {
namespace {

const char kLetters[] = "??VDIWEFS"; // indexed by log_priority
// "S" is above every priority a record can have.
const int kSilent = DLOG_PRIO_MAX;

int minimumOf(const std::string& letter, const std::string& spec) {
    if (letter.size() == 1 && letter[0] != '?') {
        const char* found = std::strchr(kLetters, letter[0]);
        if (found != nullptr && *found != '\0') return letter[0] == 'S' ? kSilent : static_cast<int>(found - kLetters);
    }
    throw std::invalid_argument("invalid filter \"" + spec + "\" (expected TAG:P with P one of V D I W E F S)");
}

} // namespace

LogFilter::LogFilter(const std::vector<std::string>& specs) : m_defaultMinimum(specs.empty() ? DLOG_INFO : kSilent) {
    for (const std::string& spec : specs) {
        const std::size_t colon = spec.rfind(':');
        const std::string tag = spec.substr(0, colon);
        const int minimum = colon == std::string::npos ? DLOG_VERBOSE : minimumOf(spec.substr(colon + 1), spec);
        if (tag.empty()) throw std::invalid_argument("invalid filter \"" + spec + "\" (empty tag)");
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
