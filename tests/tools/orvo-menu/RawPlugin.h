#pragma once
// The real plug-in loaded straight into a test, so that what orvo-menu prints can be compared
// with what the callbacks return. Deliberately independent of the host's own loader.

#include <string>

namespace Orvo {
namespace Testing {

class RawPlugin {
public:
    explicit RawPlugin(const std::string& path);  // loads and creates a record; fails the test otherwise
    ~RawPlugin();
    RawPlugin(const RawPlugin&) = delete;
    RawPlugin& operator=(const RawPlugin&) = delete;

    std::string title(const std::string& id) const;
    std::string description(const std::string& id) const;
    std::string valueString(const std::string& id) const;
    std::string property(const std::string& key) const;
    // The toggle's state as the host shows it: the message id translated in the text domain.
    std::string stateText(const std::string& id) const;
    int intValue(const std::string& key) const;
    void key(const char* name) const;

private:
    std::string ownedString(std::size_t slot, const std::string& id) const;

    void* m_handle = nullptr;
    void** m_record = nullptr;
    int (*m_delete)(void***) = nullptr;
};

// LANGUAGE plus setlocale(C.UTF-8), as the host selects a language.
void useLanguage(const std::string& language);

} // namespace Testing
} // namespace Orvo
