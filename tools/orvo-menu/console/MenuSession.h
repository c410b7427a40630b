#pragma once
// The menu as the console shows it: one MenuScreen driven by the remote's keys exactly as the
// terminal menu drives it, and the branch in every catalogue language. The plug-in is not
// thread-safe and the language is process-wide, so every call into it happens under one lock.

#include "InteractiveMenu.h"

#include <nlohmann/json.hpp>

#include <mutex>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

// The widths (in CSS pixels, with the page's font) of the menu's text areas, against which the
// localisation view measures every text; the page lays the menu out with the same numbers.
struct FieldWidths {
    int title = 560;
    int value = 220;
    int description = 800;
    int descriptionLines = 6;
};

// A text that is a raw message id (the catalogue had no translation): upper-case letters and
// digits in at least two words joined by '_', such as "COM_AUTO_UPDATE".
bool looksLikeMessageId(const std::string& text);

class MenuSession {
public:
    explicit MenuSession(const MenuHost::Provider& provider);

    nlohmann::json menu();
    // "Up", "Down", "Enter", "Info", "Back" or "Refresh"; returns the menu as it is afterwards.
    // Back closes the branch as leaving the terminal menu does; the next key opens it afresh.
    nlohmann::json press(const std::string& key);
    // Reads the branch again (after the device changed); keeps the focus.
    nlohmann::json refresh();
    // Throws RequestError for a language without a catalogue.
    void selectLanguage(const std::string& language);
    std::string language();
    nlohmann::json languages();
    nlohmann::json localisation();

private:
    nlohmann::json menuLocked() const;

    std::mutex mutex_;
    const MenuHost::Provider& provider_;
    MenuHost::MenuScreen screen_;
    bool open_ = true;
};

} // namespace Console
} // namespace Tools
} // namespace Orvo
