#include "ProviderLibrary.h"

#include <dlfcn.h>

#include <stdexcept>

namespace Orvo {
namespace Testing {

namespace {

constexpr const char* kVersionNode = "ORVOMENUITEMDATAPROVIDER";

template <typename Function>
Function lookUp(void* handle, const char* name) {
    void* symbol = dlvsym(handle, name, kVersionNode);
    if (symbol == nullptr) throw std::runtime_error(std::string("dlvsym ") + name + ": " + dlerror());
    return reinterpret_cast<Function>(symbol);
}

} // namespace

ProviderLibrary::ProviderLibrary() : m_handle(dlopen(ORVO_MENU_PROVIDER_PATH, RTLD_NOW | RTLD_LOCAL)) {
    if (m_handle == nullptr) throw std::runtime_error(std::string("dlopen: ") + dlerror());
    createProvider = lookUp<CreateProviderFunction>(m_handle, "create_provider");
    deleteProvider = lookUp<DeleteProviderFunction>(m_handle, "delete_provider");
}

ProviderLibrary::~ProviderLibrary() { dlclose(m_handle); }

Provider::Provider(const ProviderLibrary& library) : m_library(library) {
    if (m_library.createProvider(&m_record) != 0) throw std::runtime_error("create_provider failed");
}

Provider::~Provider() { m_library.deleteProvider(&m_record); }

std::optional<std::string> Provider::title(const char* itemId) const { return take(m_record->getTitle, itemId); }

std::optional<std::string> Provider::description(const char* itemId) const {
    return take(m_record->getDescription, itemId);
}

std::optional<std::string> Provider::valueString(const char* itemId) const {
    return take(m_record->getValueString, itemId);
}

std::optional<std::string> Provider::take(int (*callback)(const char*, char**), const char* itemId) const {
    char* text = nullptr;
    const int result = callback(itemId, &text);
    if (text == nullptr) return std::nullopt;
    std::string copy(text);
    m_record->freeString(text);
    if (result != 0) return std::nullopt;
    return copy;
}

} // namespace Testing
} // namespace Orvo
