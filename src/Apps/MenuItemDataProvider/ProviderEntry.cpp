// The plug-in's two exported entry points. Everything else in the library stays local (see
// OrvoMenuItemDataProvider.map).

#include "Apps/MenuItemDataProvider/MenuCallbacks.h"
#include "Apps/MenuItemDataProvider/MenuItemDataProvider.h"
#include "Apps/Translation/TextDomain.h"

#include <libintl.h>

#include <cstdlib>

namespace {

namespace Menu = Orvo::Apps::MenuProvider;

int freeString(void* string) noexcept {
    if (string == nullptr) return 1;
    std::free(string);
    return 0;
}

} // namespace

extern "C" int create_provider(MenuItemDataProvider** out) {
    auto* provider = static_cast<MenuItemDataProvider*>(std::calloc(1, sizeof(MenuItemDataProvider)));
    if (provider == nullptr) return -1;
    // Bound on every creation; a failure shows up as untranslated ids, which the host can live with.
    bindtextdomain(Orvo::Apps::kTextDomain, Orvo::Apps::kLocaleDirectory);
    provider->setIntValue = &Menu::setIntValue;
    provider->getIntValue = &Menu::getIntValue;
    provider->getValueString = &Menu::getValueString;
    provider->freeString = &freeString;
    provider->getTitle = &Menu::getTitle;
    provider->getDescription = &Menu::getDescription;
    provider->getValueText = &Menu::getValueText;
    provider->getProviderProperty = &Menu::getProviderProperty;
    provider->onKeyEvent = &Menu::onKeyEvent;
    *out = provider;
    return 0;
}

extern "C" int delete_provider(MenuItemDataProvider** provider) {
    if (provider == nullptr) return 1;
    std::free(*provider);
    return 0;
}
