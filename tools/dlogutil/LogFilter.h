#pragma once
// Which records dlogutil prints: filter specs "TAG:P" as on the platform, P a priority letter
// V D I W E F S in any case (S silences the tag) or a priority number 0 to 8, "TAG" alone
// meaning V, and "*" standing for every other tag (a bare "*" is "*:V"). One argument may hold
// several specs separated by blanks or commas. Without any spec "*:I" applies; a list of specs
// without "*" silences every tag it does not name. A tag never contains ':'.

#include <map>
#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

class LogFilter {
public:
    // Throws std::invalid_argument naming the first spec that is not valid.
    explicit LogFilter(const std::vector<std::string>& arguments);

    bool accepts(const std::string& tag, int priority) const;

private:
    std::map<std::string, int> m_minimumByTag;
    int m_defaultMinimum;
};

// 'V' 'D' 'I' 'W' 'E' 'F' 'S' for the log_priority values, '?' for any other.
char priorityLetter(int priority);

} // namespace Emulator
} // namespace Orvo
