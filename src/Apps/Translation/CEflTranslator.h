#pragma once
// Message ids to display texts from the text domain "Tizen_Orvo", with product-kind variants,
// id lists and rich-text line breaks.

#include <string>

namespace Orvo {
namespace Apps {

class CEflTranslator {
public:
    static constexpr const char* kTextDomain = "Tizen_Orvo";
    static constexpr const char* kLocaleDirectory = "/usr/share/orvotv/res/locale";

    // Binds the text domain to the catalogue directory; false when the platform refuses.
    static bool setUpTextDomain();

    // Translates one id, or a space-separated list of ids (each translation followed by a
    // blank). Ids with a product-kind variant are swapped for it; newlines become "<br>".
    // "TRANSLATION_ERROR" when a lookup yields nothing.
    static std::string translate(const std::string& msgIds);

    // Replaces the first `tag` in `message` by `text`; without the tag, logs an error and
    // replaces the whole message by "TRANSLATION_ERROR".
    static void substituteTag(std::string& message, const std::string& tag, const std::string& text);
};

} // namespace Apps
} // namespace Orvo
