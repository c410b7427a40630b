#pragma once
// One printed line per check: what the plug-in returned against what the host contract expects.

#include <cstddef>
#include <iosfwd>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

class CheckReport {
public:
    explicit CheckReport(std::ostream& out) : out_(out) {}

    // Returns `pass`, so that dependent checks can be skipped.
    bool expect(const std::string& what, bool pass, const std::string& got, const std::string& expected);
    void skip(const std::string& what, const std::string& reason);
    void summary();

    std::size_t violations() const { return violations_; }

private:
    std::ostream& out_;
    std::size_t passed_ = 0;
    std::size_t violations_ = 0;
    std::size_t skipped_ = 0;
};

// What a call returned through a char** argument: the result, then the pointer's fate.
std::string describeOut(int result, const char* out, const char* preset);
// A string for a report line: quoted, control characters escaped, long texts shortened.
std::string quoted(const char* text);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
