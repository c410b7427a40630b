#pragma once
// The host's language: gettext follows LANGUAGE only outside the "C" locale, so the host runs in
// C.UTF-8 and switches by setting LANGUAGE and setting the locale anew, which makes gettext drop
// the messages it has cached.

#include "Apps/Translation/TextDomain.h"

#include <string>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// The plug-in's text domain, in which the host also translates state message ids.
using Apps::kTextDomain;

// Selects a language; an empty name keeps LANGUAGE from the environment, or "en" without one.
void selectLanguage(const std::string& language);
std::string currentLanguage();

// The languages with a catalogue of the text domain where the domain is bound (known after the
// plug-in has bound it), sorted; en, de, fr when none can be found. Throws std::system_error when
// the directory cannot be read.
std::vector<std::string> catalogueLanguages();
// The same without the fallback: empty where the bound directory holds no catalogue.
std::vector<std::string> foundCatalogueLanguages();

// The language after `current` in `languages`, wrapping around.
std::string nextLanguage(const std::vector<std::string>& languages, const std::string& current);

// dgettext in the text domain.
std::string translate(const std::string& messageId);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
