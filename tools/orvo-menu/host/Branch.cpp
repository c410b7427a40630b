#include "Branch.h"

#include "Language.h"

namespace Orvo {
namespace Tools {
namespace MenuHost {

const std::vector<MenuItem>& menuItems() {
    static const std::vector<MenuItem> items = {
        {kBranchId, ItemKind::Branch},
        {"menu/support/softwareupdate/updatenow", ItemKind::Action},
        {"menu/support/softwareupdate/searchmodels", ItemKind::Value},
        {"db/menu/support/softwareupdate/autoupdate", ItemKind::Toggle},
        {"db/menu/support/softwareupdate/use_cellular_int", ItemKind::Toggle},
        {"menu/support/softwareupdate/osupgrade", ItemKind::Action},
    };
    return items;
}

ItemKind itemKind(const std::string& id) {
    for (const MenuItem& item : menuItems()) {
        if (id == item.id) return item.kind;
    }
    return ItemKind::Action;
}

bool isMenuItem(const std::string& id) {
    for (const MenuItem& item : menuItems()) {
        if (id == item.id) return true;
    }
    return false;
}

std::string unknownItemReason(const std::string& id) {
    std::string reason = "unknown item '" + id + "' (the items:";
    for (const MenuItem& item : menuItems())
        reason += std::string(" ") + item.id;
    return reason + ")";
}

const char* firstItemOf(ItemKind kind) {
    for (const MenuItem& item : menuItems()) {
        if (item.kind == kind) return item.id;
    }
    return kBranchId;
}

const char* itemKindName(ItemKind kind) {
    switch (kind) {
    case ItemKind::Branch:
        return "branch";
    case ItemKind::Action:
        return "action";
    case ItemKind::Value:
        return "value";
    case ItemKind::Toggle:
        return "toggle";
    }
    return "?";
}

const std::vector<std::string>& providerPropertyKeys() {
    static const std::vector<std::string> keys = {kOwnerProperty, kMainComponentProperty, kSubComponentProperty};
    return keys;
}

ItemView readItem(const Provider& provider, const std::string& id) {
    ItemView view;
    view.id = id;
    view.kind = itemKind(id);
    view.title = provider.title(id);
    view.description = provider.description(id);
    if (view.kind == ItemKind::Value) view.value = provider.valueString(id);
    if (view.kind == ItemKind::Toggle) {
        view.setting = provider.intValue(id);
        view.stateId = provider.valueText(id);
        if (view.stateId.text) view.stateText = translate(*view.stateId.text);
    }
    return view;
}

BranchView readBranch(const Provider& provider) {
    BranchView view;
    view.language = currentLanguage();
    for (const MenuItem& item : menuItems()) {
        if (item.kind == ItemKind::Branch) {
            view.branch = readItem(provider, item.id);
        } else {
            view.items.push_back(readItem(provider, item.id));
        }
    }
    for (const std::string& key : providerPropertyKeys())
        view.properties.emplace_back(key, provider.property(key));
    return view;
}

std::string richTextToPlain(const std::string& text) {
    static const std::string lineBreak = "<br>";
    std::string plain;
    std::size_t start = 0;
    for (std::size_t at = text.find(lineBreak); at != std::string::npos; at = text.find(lineBreak, start)) {
        plain.append(text, start, at - start).push_back('\n');
        start = at + lineBreak.size();
    }
    return plain.append(text, start, std::string::npos);
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
