#pragma once
// The software-update branch as the settings menu knows it: its items, what kind each is, and a
// snapshot of everything the plug-in says about them.

#include "Provider.h"

#include <string>
#include <utility>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

constexpr const char* kBranchId = "menu/support/softwareupdate";
// The remote's Info key, which the host forwards through onKeyEvent.
constexpr const char* kInfoKey = "XF86Info";

enum class ItemKind {
    Branch, // the branch itself: title and description
    Action, // a plain entry
    Value,  // shows a value text (getValueString)
    Toggle, // on/off bound to the integer setting named by its identifier
};

struct MenuItem {
    const char* id;
    ItemKind kind;
};

// The branch followed by its items, in menu order.
const std::vector<MenuItem>& menuItems();
// The kind of a known identifier; Action for one the menu does not know.
ItemKind itemKind(const std::string& id);
// Whether `id` is one of menuItems(); the reason to give the user when it is not.
bool isMenuItem(const std::string& id);
std::string unknownItemReason(const std::string& id);
const char* itemKindName(ItemKind kind);
// The first item of a kind, in menu order.
const char* firstItemOf(ItemKind kind);

// The provider properties the host asks for; both component keys name the same component.
constexpr const char* kOwnerProperty = "provider/owner";
constexpr const char* kMainComponentProperty = "provider/main-component";
constexpr const char* kSubComponentProperty = "provider/sub-component";
const std::vector<std::string>& providerPropertyKeys();

struct ItemView {
    std::string id;
    ItemKind kind = ItemKind::Action;
    StringCall title;
    StringCall description;
    StringCall value;      // Value items
    StringCall stateId;    // Toggle items: the state's message id
    std::string stateText; // ... and its translation (empty when unknown)
    IntCall setting;       // Toggle items
};

struct BranchView {
    std::string language;
    ItemView branch;
    std::vector<ItemView> items;
    std::vector<std::pair<std::string, StringCall>> properties;
};

ItemView readItem(const Provider& provider, const std::string& id);
// Reads the branch first, so that an armed Info key shows on the branch's own description.
BranchView readBranch(const Provider& provider);

// Rich text as plain text: every "<br>" becomes a line break.
std::string richTextToPlain(const std::string& text);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
