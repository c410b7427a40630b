#include "RawPlugin.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <libintl.h>

#include <clocale>
#include <cstdlib>
#include <stdexcept>

namespace Orvo {
namespace Testing {

namespace {

using StringOut = int (*)(const char*, char**);

template <typename Fn>
Fn symbol(void* handle, const char* name) {
    void* found = dlvsym(handle, name, "ORVOMENUITEMDATAPROVIDER");
    if (found == nullptr) throw std::runtime_error(std::string("no versioned ") + name);
    return reinterpret_cast<Fn>(found);
}

} // namespace

RawPlugin::RawPlugin(const std::string& path) {
    m_handle = dlopen(path.c_str(), RTLD_NOW);
    if (m_handle == nullptr) throw std::runtime_error(dlerror());
    m_delete = symbol<int (*)(void***)>(m_handle, "delete_provider");
    if (symbol<int (*)(void***)>(m_handle, "create_provider")(&m_record) != 0) {
        throw std::runtime_error("create_provider failed");
    }
}

RawPlugin::~RawPlugin() {
    m_delete(&m_record);
    dlclose(m_handle);
}

std::string RawPlugin::ownedString(std::size_t slot, const std::string& id) const {
    char* out = nullptr;
    const int result = reinterpret_cast<StringOut>(m_record[slot])(id.c_str(), &out);
    EXPECT_EQ(result, 0) << "slot " << slot << " for " << id;
    const std::string text = out ? out : "";
    reinterpret_cast<int (*)(void*)>(m_record[12])(out);
    return text;
}

std::string RawPlugin::title(const std::string& id) const { return ownedString(13, id); }
std::string RawPlugin::description(const std::string& id) const { return ownedString(14, id); }
std::string RawPlugin::valueString(const std::string& id) const { return ownedString(11, id); }
std::string RawPlugin::property(const std::string& key) const { return ownedString(44, key); }

std::string RawPlugin::stateText(const std::string& id) const {
    char buffer[255] = {};
    char* out = buffer;
    EXPECT_EQ(reinterpret_cast<StringOut>(m_record[38])(id.c_str(), &out), 1) << id;
    return dgettext("Tizen_Orvo", buffer);
}

int RawPlugin::intValue(const std::string& key) const {
    int value = -1;
    EXPECT_EQ(reinterpret_cast<int (*)(const char*, int*)>(m_record[8])(key.c_str(), &value), 0) << key;
    return value;
}

void RawPlugin::key(const char* name) const { reinterpret_cast<void (*)(const char*)>(m_record[45])(name); }

void useLanguage(const std::string& language) {
    setenv("LANGUAGE", language.c_str(), 1);
    setlocale(LC_ALL, "C");  // a change of locale makes gettext forget its cached messages
    setlocale(LC_ALL, "C.UTF-8");
}

} // namespace Testing
} // namespace Orvo
