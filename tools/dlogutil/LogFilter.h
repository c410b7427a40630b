#pragma once
// Which records dlogutil prints, as the platform's filter specs choose them. A spec is TAG[:P];
// one argument may hold several, separated by blanks, tabs or commas. Only P's first character
// counts, in any case: v d i w e f s, or * and 1 (verbose), 2 to 7 (verbose to fatal), 8 and 9
// (verbose); 0 or anything else makes the spec invalid, and an invalid spec is ignored. "*" alone
// is "*:D", a bare TAG is TAG:V. The last rule for a tag wins; "*" sets the level of every other
// tag, silent until a spec says otherwise. Without any spec the filter is "*:D". As the
// platform's log daemon forwards nothing below DEBUG, no VERBOSE record passes.

#include <map>
#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

class LogFilter {
public:
    explicit LogFilter(const std::vector<std::string>& arguments);

    bool accepts(const std::string& tag, int priority) const;
    // The specs that were ignored as invalid, for callers that report them.
    const std::vector<std::string>& rejected() const { return rejected_; }

private:
    std::map<std::string, int> levelByTag_;
    int globalLevel_;
    std::vector<std::string> rejected_;
};

// 'V' 'D' 'I' 'W' 'E' 'F' 'S' for the log_priority values, '?' for any other.
char priorityLetter(int priority);

} // namespace Emulator
} // namespace Orvo
