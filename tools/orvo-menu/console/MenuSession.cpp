#include "MenuSession.h"

#include "ConsoleError.h"
#include "Language.h"
#include "TextView.h"

#include <algorithm>
#include <cctype>

namespace Orvo {
namespace Tools {
namespace Console {

using nlohmann::json;
using namespace MenuHost;

namespace {

std::string plainText(const StringCall& call) { return richTextToPlain(callText(call)); }

json itemToJson(const ItemView& item) {
    json out = {{"id", item.id},
                {"kind", itemKindName(item.kind)},
                {"title", callText(item.title)},
                {"value", shownValue(item)}};
    if (item.kind == ItemKind::Toggle) out["on"] = item.setting.value ? json(*item.setting.value == 1) : json();
    return out;
}

// The rows of the localisation view: every item's title and description, and the value text of
// the items that have one.
void addLocalisedTexts(const BranchView& view, json& rows, std::size_t column, std::size_t columns) {
    std::vector<std::pair<std::string, std::string>> texts; // field key, text
    const auto addItem = [&texts](const ItemView& item) {
        texts.emplace_back(item.id + "\ntitle", callText(item.title));
        const std::string value = shownValue(item);
        if (item.kind == ItemKind::Toggle || item.kind == ItemKind::Value)
            texts.emplace_back(item.id + "\nvalue", value);
        texts.emplace_back(item.id + "\ndescription", plainText(item.description));
    };
    addItem(view.branch);
    for (const ItemView& item : view.items)
        addItem(item);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (rows.size() <= i) {
            const std::string& key = texts[i].first;
            rows.push_back({{"id", key.substr(0, key.find('\n'))},
                            {"field", key.substr(key.find('\n') + 1)},
                            {"texts", json::array()}});
            for (std::size_t k = 0; k < columns; ++k)
                rows[i]["texts"].push_back(nullptr);
        }
        const std::string& text = texts[i].second;
        const std::string firstLine = text.substr(0, text.find('\n'));
        rows[i]["texts"][column] = {{"text", text}, {"rawId", looksLikeMessageId(firstLine)}};
    }
}

json widthsJson() {
    const FieldWidths widths;
    return {{"title", widths.title},
            {"value", widths.value},
            {"description", widths.description},
            {"descriptionLines", widths.descriptionLines}};
}

} // namespace

bool looksLikeMessageId(const std::string& text) {
    bool underscore = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '_') {
            if (i == 0 || i + 1 == text.size() || text[i - 1] == '_') return false;
            underscore = true;
        } else if (!std::isupper(c) && !std::isdigit(c)) {
            return false;
        }
    }
    return underscore;
}

MenuSession::MenuSession(const Provider& provider) : provider_(provider) { screen_.view = readBranch(provider_); }

json MenuSession::menuLocked() const {
    json items = json::array();
    for (const ItemView& item : screen_.view.items)
        items.push_back(itemToJson(item));
    const bool focused = screen_.selected < screen_.view.items.size();
    return {{"open", open_},
            {"language", screen_.view.language},
            {"title", callText(screen_.view.branch.title)},
            {"description", plainText(screen_.view.branch.description)},
            {"items", items},
            {"selected", screen_.selected},
            {"focusedDescription", focused ? plainText(screen_.view.items[screen_.selected].description) : ""},
            {"status", screen_.status},
            {"widths", widthsJson()}};
}

json MenuSession::menu() {
    std::lock_guard<std::mutex> lock(mutex_);
    return menuLocked();
}

json MenuSession::press(const std::string& key) {
    static const std::pair<const char*, MenuKey> keys[] = {{"Up", MenuKey::Up},
                                                           {"Down", MenuKey::Down},
                                                           {"Enter", MenuKey::Enter},
                                                           {"Info", MenuKey::Info},
                                                           {"Refresh", MenuKey::Refresh}};
    std::lock_guard<std::mutex> lock(mutex_);
    if (key == "Back") {
        open_ = false;
        screen_.status = "Back: the branch is closed; any key opens it again";
        return menuLocked();
    }
    const auto found = std::find_if(std::begin(keys), std::end(keys), [&key](const auto& k) { return key == k.first; });
    if (found == std::end(keys))
        throw badRequest("unknown key " + quoted(key) + " (Up, Down, Enter, Info, Back, Refresh)");
    if (!open_) {
        // Opening the branch again starts as the terminal menu does: read afresh, first item.
        open_ = true;
        screen_ = MenuScreen();
        screen_.view = readBranch(provider_);
        return menuLocked();
    }
    applyMenuKey(provider_, screen_, found->second);
    return menuLocked();
}

json MenuSession::refresh() {
    std::lock_guard<std::mutex> lock(mutex_);
    screen_.view = readBranch(provider_);
    return menuLocked();
}

void MenuSession::selectLanguage(const std::string& language) {
    std::lock_guard<std::mutex> lock(mutex_);
    const std::vector<std::string> known = catalogueLanguages();
    if (std::find(known.begin(), known.end(), language) == known.end())
        throw badRequest("no catalogue for language " + quoted(language));
    MenuHost::selectLanguage(language);
    screen_.view = readBranch(provider_);
    screen_.status = "Language: " + language;
}

std::string MenuSession::language() {
    std::lock_guard<std::mutex> lock(mutex_);
    return currentLanguage();
}

json MenuSession::languages() {
    std::lock_guard<std::mutex> lock(mutex_);
    return catalogueLanguages();
}

json MenuSession::localisation() {
    std::lock_guard<std::mutex> lock(mutex_);
    const std::string current = currentLanguage();
    const std::vector<std::string> languages = catalogueLanguages();
    json rows = json::array();
    for (std::size_t i = 0; i < languages.size(); ++i) {
        MenuHost::selectLanguage(languages[i]);
        addLocalisedTexts(readBranch(provider_), rows, i, languages.size());
    }
    MenuHost::selectLanguage(current);
    return {{"languages", languages}, {"widths", widthsJson()}, {"rows", rows}};
}

} // namespace Console
} // namespace Tools
} // namespace Orvo
