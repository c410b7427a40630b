#include "Apps/MenuItemDataProvider/VersionInfo.h"

#include "Apps/Translation/CEflTranslator.h"
#include "Apps/Translation/TextDomain.h"

#include <libintl.h>
#include <system_info.h>
#include <vconf.h>

#include <cstdio>
#include <fstream>

namespace Orvo {
namespace Apps {
namespace MenuProvider {

PlatformString readSystemInfoString(int32_t key) noexcept {
    char* value = nullptr;
    const int result = system_info_get_value_string(static_cast<system_info_key_e>(key), &value);
    PlatformString text(value);
    if (result != SYSTEM_INFO_ERROR_NONE) text.reset();
    return text;
}

PlatformString readNewestVersion() noexcept { return PlatformString(vconf_get_str(kNewestVersionSetting)); }

std::string readCommonLayerVersion() {
    std::ifstream file(kCommonVersionFile);
    std::string word;
    file >> word;
    return word;
}

bool usingDevelopmentKeys() noexcept {
    FILE* marker = std::fopen(kDevelopmentKeysMarker, "r");
    if (marker == nullptr) return false;
    std::fclose(marker);
    return true;
}

std::string_view displayForm(std::string_view version) noexcept {
    const size_t lastDash = version.rfind('-');
    if (lastDash != std::string_view::npos) version.remove_prefix(lastDash + 1);
    version = version.substr(0, version.find('.'));
    const size_t firstNonZero = version.find_first_not_of('0');
    if (firstNonZero != std::string_view::npos) version.remove_prefix(firstNonZero);
    return version;
}

namespace {

// The translator's substitution with this line's own error texts, shown on screen so that a broken
// translation does not pass for a sentence without its number; nothing is logged here.
void appendVersionLine(std::string& out, const char* separator, const char* messageId, const PlatformString& version) {
    if (!version || *version == '\0') return;
    out += separator;
    const char* text = dgettext(kTextDomain, messageId);
    if (text == nullptr) {
        out += "ERROR_TEXT_NULL";
        return;
    }
    std::string sentence(text);
    out +=
        CEflTranslator::replaceTag(sentence, kVersionTag, displayForm(version.get())) ? sentence : "ERROR_INVALID_TAG";
}

} // namespace

void appendVersionLines(std::string& description) {
    appendVersionLine(description, "\n\n", "COM_MIX_CURRENT_VER", readSystemInfoString(kSoftwareVersionKey));
    appendVersionLine(description, "\n", "COM_MIX_NEW_VER", readNewestVersion());
}

std::string detailedVersionBlock() {
    std::string block = "SW Version: ";
    block += viewOf(readSystemInfoString(kSoftwareVersionKey));
    if (usingDevelopmentKeys()) {
        block += "\n\nBuild date: ";
        block += viewOf(readSystemInfoString(kBuildDateKey));
        block += "\nKey Type: Debug";
    }
    const std::string commonVersion = readCommonLayerVersion();
    if (!commonVersion.empty()) {
        block += "\nCommon version: ";
        block += commonVersion;
    }
    return block;
}

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
