#include "TextView.h"

#include "TextLayout.h"

#include <algorithm>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

constexpr std::size_t kIndent = 4;
constexpr std::size_t kMinimumWidth = 40;

void appendWrapped(std::string& out, const std::string& text, std::size_t indent, std::size_t width) {
    const std::size_t room = width > indent + 10 ? width - indent : 10;
    for (const std::string& line : wrapText(text, room)) {
        out += line.empty() ? std::string() : std::string(indent, ' ') + line;
        out += '\n';
    }
}

std::string settingLine(const ItemView& item) {
    std::string line = item.id + " = ";
    line += item.setting.value ? std::to_string(*item.setting.value)
                               : (item.setting.offered ? "unreadable" : "not offered");
    if (item.stateId.text) line += ", state " + *item.stateId.text;
    return line;
}

} // namespace

std::string callText(const StringCall& call) {
    if (!call.offered) return "(not offered)";
    if (!call.text) return "(none, result " + std::to_string(call.code) + ")";
    return *call.text;
}

std::string shownValue(const ItemView& item) {
    switch (item.kind) {
    case ItemKind::Toggle:
        if (!item.stateText.empty()) return item.stateText;
        return item.stateId.offered ? "(unknown state)" : "";
    case ItemKind::Value:
        return item.value.text ? *item.value.text : "";
    case ItemKind::Branch:
    case ItemKind::Action:
        return "";
    }
    return "";
}

std::string renderItem(const ItemView& item, std::size_t width) {
    width = std::max(width, kMinimumWidth);
    std::string out = "  " + joinWithLeader(callText(item.title), shownValue(item), width - 2) + '\n';
    std::string meta = "[" + std::string(itemKindName(item.kind)) + "] ";
    meta += item.kind == ItemKind::Toggle ? settingLine(item) : item.id;
    appendWrapped(out, meta, kIndent, width);
    appendWrapped(out, richTextToPlain(callText(item.description)), kIndent, width);
    return out;
}

std::string renderBranch(const BranchView& view, std::size_t width) {
    width = std::max(width, kMinimumWidth);
    const std::string heading = callText(view.branch.title);
    const std::string language = "language " + view.language;
    std::string out = joinWithLeader(heading, language, width, ' ') + '\n';
    out += std::string(width, '=') + '\n';
    appendWrapped(out, richTextToPlain(callText(view.branch.description)), 2, width);
    for (const ItemView& item : view.items) {
        out += '\n';
        out += renderItem(item, width);
    }
    out += std::string(width, '-') + '\n';
    for (const auto& property : view.properties) {
        out += joinWithLeader(property.first, callText(property.second), width) + '\n';
    }
    return out;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
