#pragma once
// Laying out UTF-8 text in terminal columns (one column per code point).

#include <cstddef>
#include <string>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

std::size_t displayWidth(const std::string& text);

// Splits at line breaks and wraps every line at blanks to at most `width` columns; words longer
// than a line are cut. Empty lines are kept. A width of 0 is treated as 1.
std::vector<std::string> wrapText(const std::string& text, std::size_t width);

// `left` and `right` on one line of `width` columns, the gap filled with `fill` when there is room.
std::string joinWithLeader(const std::string& left, const std::string& right, std::size_t width, char fill = '.');

// `text` cut to at most `width` columns.
std::string clipToWidth(const std::string& text, std::size_t width);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
