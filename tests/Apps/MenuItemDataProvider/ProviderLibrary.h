#pragma once
// The plug-in loaded the way the settings-menu host loads it: dlopen of the built module and the
// two entry points looked up under their symbol version.

#include "MenuItemDataProvider.h"

#include <optional>
#include <string>

namespace Orvo {
namespace Testing {

using CreateProviderFunction = int (*)(MenuItemDataProvider**);
using DeleteProviderFunction = int (*)(MenuItemDataProvider**);

class ProviderLibrary {
public:
    // Throws std::runtime_error with dlerror()'s text when the module or a symbol is missing.
    ProviderLibrary();
    ~ProviderLibrary();
    ProviderLibrary(const ProviderLibrary&) = delete;
    ProviderLibrary& operator=(const ProviderLibrary&) = delete;

    CreateProviderFunction createProvider = nullptr;
    DeleteProviderFunction deleteProvider = nullptr;

private:
    void* m_handle = nullptr;
};

// A record created through the loaded module and deleted when the object goes away, with
// helpers that hand strings back through the record's freeString as the host does.
class Provider {
public:
    explicit Provider(const ProviderLibrary& library);
    ~Provider();
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    const MenuItemDataProvider& record() const { return *m_record; }

    // The string a `char** out` callback returned, released through freeString; nullopt when
    // the callback failed. The callback starts from a null *out, as a careful host does.
    std::optional<std::string> title(const char* itemId) const;
    std::optional<std::string> description(const char* itemId) const;
    std::optional<std::string> valueString(const char* itemId) const;

private:
    std::optional<std::string> take(int (*callback)(const char*, char**), const char* itemId) const;

    const ProviderLibrary& m_library;
    MenuItemDataProvider* m_record = nullptr;
};

} // namespace Testing
} // namespace Orvo
