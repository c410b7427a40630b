#pragma once
// Message ids to display texts from the application's text domain (TextDomain.h), with
// product-kind variants, id lists and rich-text line breaks.

#include <string>
#include <string_view>

namespace Orvo {
namespace Apps {

class CEflTranslator {
public:
    // Binds the text domain to the catalogue directory; false when the platform refuses.
    static bool setUpTextDomain();

    // Translates one id, or a space-separated list of ids (each translation followed by a
    // blank). Ids with a product-kind variant are swapped for it; newlines become "<br>".
    // "TRANSLATION_ERROR" when a lookup yields nothing.
    static std::string translate(const std::string& msgIds);

    // Replaces the first `tag` in `message` by `text`; without the tag, logs an error and
    // replaces the whole message by "TRANSLATION_ERROR".
    static void substituteTag(std::string& message, const std::string& tag, const std::string& text);

    // The substitution itself, for callers with an error text of their own: false, and
    // `message` untouched, without the tag.
    static bool replaceTag(std::string& message, std::string_view tag, std::string_view text);
};

} // namespace Apps
} // namespace Orvo
