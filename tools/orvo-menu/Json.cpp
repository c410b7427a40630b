#include "Json.h"

#include <cstdio>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

// The length of the valid UTF-8 sequence at text[at], or 0 when it is not one.
std::size_t utf8SequenceLength(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    std::size_t length = 0;
    unsigned int minimum = 0;
    unsigned int codePoint = 0;
    if (lead < 0x80) return 1;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        minimum = 0x80;
        codePoint = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        minimum = 0x800;
        codePoint = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        minimum = 0x10000;
        codePoint = lead & 0x07;
    } else
        return 0;
    if (at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
        codePoint = (codePoint << 6) | (byte(at + i) & 0x3F);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint < minimum || codePoint > 0x10FFFF || surrogate ? 0 : length;
}

std::string stringOrNull(const StringCall& call) { return call.text ? jsonString(*call.text) : "null"; }

std::string callResult(const StringCall& call) { return call.offered ? std::to_string(call.code) : "null"; }

std::string itemToJson(const ItemView& item) {
    std::string out = "{\"id\":" + jsonString(item.id);
    out += ",\"kind\":" + jsonString(itemKindName(item.kind));
    out += ",\"title\":" + stringOrNull(item.title);
    out += ",\"description\":" + stringOrNull(item.description);
    out += ",\"descriptionText\":";
    out += item.description.text ? jsonString(richTextToPlain(*item.description.text)) : "null";
    if (item.kind == ItemKind::Value) {
        out += ",\"value\":" + stringOrNull(item.value);
        out += ",\"valueResult\":" + callResult(item.value);
    }
    if (item.kind == ItemKind::Toggle) {
        out += ",\"setting\":";
        out += item.setting.value ? std::to_string(*item.setting.value) : "null";
        out += ",\"settingResult\":";
        out += item.setting.offered ? std::to_string(item.setting.code) : "null";
        out += ",\"state\":" + stringOrNull(item.stateId);
        out += ",\"stateText\":";
        out += item.stateId.text ? jsonString(item.stateText) : "null";
        out += ",\"stateResult\":" + callResult(item.stateId);
    }
    return out + "}";
}

} // namespace

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[at]);
        const std::size_t length = utf8SequenceLength(text, at);
        if (length == 0) {
            out += "\\ufffd";
            ++at;
            continue;
        }
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c < 0x20 || c == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", c);
            out += escape;
        } else {
            out.append(text, at, length);
        }
        at += length;
    }
    return out + "\"";
}

std::string branchToJson(const BranchView& view, const std::string& pluginPath) {
    std::string out = "{\"plugin\":" + jsonString(pluginPath);
    out += ",\"language\":" + jsonString(view.language);
    out += ",\"branch\":" + itemToJson(view.branch);
    out += ",\"items\":[";
    for (std::size_t i = 0; i < view.items.size(); ++i) {
        out += (i ? ",\n" : "\n") + itemToJson(view.items[i]);
    }
    out += "],\"provider\":{";
    for (std::size_t i = 0; i < view.properties.size(); ++i) {
        if (i) out += ',';
        out += jsonString(view.properties[i].first) + ":" + stringOrNull(view.properties[i].second);
    }
    return out + "}}\n";
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
