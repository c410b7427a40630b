// Message lookup in the application's text domain, with the product-kind variants of TV-worded
// messages. translate() runs for every menu description, so the single-id path copies nothing
// but the translation itself.

#include "Apps/Translation/CEflTranslator.h"
#include "Apps/Translation/TextDomain.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include <libintl.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Orvo {
namespace Apps {

namespace {

constexpr int32_t kPaneFamilyKey = 740; // bool: the device belongs to the PANE family
constexpr int32_t kProductKindKey = 77; // int: 0 for a television
constexpr const char* kTranslationError = "TRANSLATION_ERROR";

// Base message id to the id worded for this kind of product. std::less<> lets ids be looked up
// as views, without copying them.
using VariantTable = std::map<std::string, std::string, std::less<>>;

VariantTable buildVariantTable() {
    try {
        if (Platform::ISystemInfo::getSystemInfoBool(kPaneFamilyKey)) {
            return {
                {"COM_UPDATING_TV_SOFTWARE", "PANE_SID_UPDATING_SKYPANE_SOFTWARE"},
                {"COM_TV_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE", "PANE_SID_SKYPANE_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE"},
                {"TV_UPDATE_YOUR_TV_WITH_THE_NEW_VERSION_Q", "PANE_SID_UPDATE_YOUR_SKYPANE_WITH_THE_NEW_VERSION_Q"},
                {"TV_SID_TV_RESTART_PORCEED_SW_UPDATE", "PANE_SID_SKYPANE_RESTART_PORCEED_SW_UPDATE"},
                {"TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE"},
                {"TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF"},
            };
        }
        if (Platform::ISystemInfo::getSystemInfoInt(kProductKindKey) != 0) {
            return {
                {"COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA", "COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA"},
                {"COM_UPDATE_LATER_TV_BE_UPDATED_AUTOMATICALLY_MSG",
                 "COM_UPDATE_LATER_PRODUCT_BE_UPDATED_AUTOMATICALLY_MSG"},
                {"COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_TV_MSG",
                 "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_PRODUCT_MSG"},
                {"COM_UPDATING_TV_SOFTWARE", "COM_UPDATING_PRODUCT_SOFTWARE"},
                {"COM_TV_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE", "COM_PRODUCT_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE"},
                {"TV_UPDATE_YOUR_TV_WITH_THE_NEW_VERSION_Q", "COM_LFD_UPDATE_DISPLAY_DEVICE_NEW_VERSION_Q"},
                {"TV_SID_TV_RESTART_PORCEED_SW_UPDATE", "COM_SID_LFD_DEVICE_RESTART_SW_UPDATE"},
                {"TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT"},
                {"TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF"},
            };
        }
    } catch (const Common::Utils::GenericException&) {
        ORVO_LOG(WRN, "Error ocurred while determining product type.");
    }
    return {};
}

// The product kind is decided once per process, also when it could not be read.
const VariantTable& variantTable() {
    static const VariantTable table = buildVariantTable();
    return table;
}

// The catalogue text of one id, after its product variant; null when gettext has none.
// `terminated`: the id runs to the end of a NUL-terminated text and is passed as it is;
// otherwise gettext gets a terminated copy in `scratch`.
const char* lookUp(const VariantTable& variants, std::string_view id, bool terminated, std::string& scratch) {
    const auto variant = variants.find(id);
    if (variant != variants.end()) {
        return dgettext(kTextDomain, variant->second.c_str());
    }
    if (terminated) {
        return dgettext(kTextDomain, id.data());
    }
    scratch.assign(id.data(), id.size());
    return dgettext(kTextDomain, scratch.c_str());
}

// The host's rich-text labels break lines with "<br>".
void replaceNewlines(std::string& text) {
    static constexpr std::string_view kLineBreak = "<br>";
    for (auto position = text.find('\n'); position != std::string::npos; position = text.find('\n', position)) {
        text.replace(position, 1, kLineBreak.data(), kLineBreak.size());
        position += kLineBreak.size();
    }
}

} // namespace

bool CEflTranslator::setUpTextDomain() {
    const char* directory = bindtextdomain(kTextDomain, kLocaleDirectory);
    if (directory == nullptr) {
        ORVO_LOG(WRN, "Text domain for Orvo translations cannot be set!");
        return false;
    }
    ORVO_LOG(DBG, "Text domain for Orvo translations has been set to: %s", directory);
    return true;
}

std::string CEflTranslator::translate(const std::string& msgIds) {
    const VariantTable& variants = variantTable();
    // One id is translated as it is; a list gives each translation followed by a blank.
    const bool isList = msgIds.find(' ') != std::string::npos;
    const std::string_view joiner = isList ? " " : "";

    std::string result;
    std::string scratch;
    const std::string_view ids(msgIds);
    std::size_t start = 0;
    while (true) {
        const std::size_t end = isList ? ids.find(' ', start) : std::string_view::npos;
        const std::string_view id = ids.substr(start, end == std::string_view::npos ? end : end - start);
        const char* translation = lookUp(variants, id, end == std::string_view::npos, scratch);
        if (translation == nullptr) {
            ORVO_LOG(WRN, "Unable to get translated string");
            return kTranslationError;
        }
        result.append(translation).append(joiner);
        if (end == std::string_view::npos) {
            break;
        }
        start = end + 1;
    }
    replaceNewlines(result);
    return result;
}

bool CEflTranslator::replaceTag(std::string& message, std::string_view tag, std::string_view text) {
    const std::size_t position = message.find(tag);
    if (position == std::string::npos) return false;
    message.replace(position, tag.size(), text);
    return true;
}

void CEflTranslator::substituteTag(std::string& message, const std::string& tag, const std::string& text) {
    if (replaceTag(message, tag, text)) return;
    ORVO_LOG_STREAM(ERR) << "Missing tag '" << tag << "' in message '" << message
                         << "' while trying to substitute with text '" << text << "'.";
    message = kTranslationError;
}

} // namespace Apps
} // namespace Orvo
