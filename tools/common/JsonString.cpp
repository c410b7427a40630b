#include "JsonString.h"

#include <cstdio>

namespace Orvo {
namespace Tools {
namespace {

// The length of the valid UTF-8 sequence at text[i], or 0 when the bytes there are not one
// (overlong forms, surrogates and code points above U+10FFFF included).
std::size_t utf8SequenceLength(const std::string& text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (i + length > text.size() || byte(i + 1) < low || byte(i + 1) > high) return 0;
    for (std::size_t k = i + 2; k < i + length; ++k)
        if (byte(k) < 0x80 || byte(k) > 0xBF) return 0;
    return length;
}

} // namespace

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const std::size_t length = utf8SequenceLength(text, i);
            out += length == 0 ? std::string("\\ufffd") : text.substr(i, length);
            i += length == 0 ? 1 : length;
            continue;
        }
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7F) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                out += escaped;
            } else {
                out += static_cast<char>(c);
            }
        }
        ++i;
    }
    return out + "\"";
}

} // namespace Tools
} // namespace Orvo
