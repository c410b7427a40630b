#include "TextLayout.h"

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

bool isContinuationByte(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The byte length of the longest prefix of `text` that fits in `width` columns.
std::size_t prefixBytes(const std::string& text, std::size_t width) {
    std::size_t columns = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isContinuationByte(text[i])) continue;
        if (columns == width) return i;
        ++columns;
    }
    return text.size();
}

void wrapLine(const std::string& line, std::size_t width, std::vector<std::string>& lines) {
    std::string current;
    std::size_t start = 0;
    while (start <= line.size()) {
        std::size_t end = line.find(' ', start);
        if (end == std::string::npos) end = line.size();
        std::string word = line.substr(start, end - start);
        start = end + 1;
        if (word.empty() && !current.empty()) continue;
        const std::size_t needed = displayWidth(current) + (current.empty() ? 0 : 1) + displayWidth(word);
        if (!current.empty() && needed > width) {
            lines.push_back(current);
            current.clear();
        }
        while (displayWidth(word) > width) {
            const std::size_t cut = prefixBytes(word, width);
            lines.push_back(word.substr(0, cut));
            word.erase(0, cut);
        }
        if (!current.empty()) current += ' ';
        current += word;
    }
    lines.push_back(current);
}

} // namespace

std::size_t displayWidth(const std::string& text) {
    std::size_t columns = 0;
    for (char c : text) {
        if (!isContinuationByte(c)) ++columns;
    }
    return columns;
}

std::vector<std::string> wrapText(const std::string& text, std::size_t width) {
    if (width == 0) width = 1;
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find('\n', start);
        wrapLine(text.substr(start, end == std::string::npos ? std::string::npos : end - start), width, lines);
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return lines;
}

std::string joinWithLeader(const std::string& left, const std::string& right, std::size_t width, char fill) {
    if (right.empty()) return left;
    const std::size_t used = displayWidth(left) + displayWidth(right) + 2;
    if (used >= width) return left + "  " + right;
    return left + ' ' + std::string(width - used, fill) + ' ' + right;
}

std::string clipToWidth(const std::string& text, std::size_t width) { return text.substr(0, prefixBytes(text, width)); }

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
