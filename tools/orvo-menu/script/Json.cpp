#include "Json.h"

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

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
