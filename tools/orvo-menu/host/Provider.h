#pragma once
// One provider record, created on construction and deleted on destruction, with the calls a
// careful host makes: every string the plug-in hands over is copied and released at once through
// the record's freeString, and a slot that is null is reported as not offered.

#include "PluginLibrary.h"

#include <MenuItemDataProvider.h>

#include <optional>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// getValueText writes into a buffer of this size that the host passes in *out.
constexpr std::size_t kValueTextBufferSize = MENU_ITEM_DATA_PROVIDER_VALUE_TEXT_SIZE;

struct StringCall {
    bool offered = false;
    int code = 0;                    // the callback's result (meaningless when not offered)
    std::optional<std::string> text; // set when the call succeeded
};

struct IntCall {
    bool offered = false;
    int code = 0;
    std::optional<int> value;
};

class Provider {
public:
    // Throws PluginError when create_provider fails.
    explicit Provider(const PluginLibrary& library);
    ~Provider();
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    const ProviderRecord& record() const { return *record_; }
    bool offers(Slot slot) const;

    StringCall title(const std::string& id) const;
    StringCall description(const std::string& id) const;
    StringCall valueString(const std::string& id) const;
    StringCall property(const std::string& key) const;
    // The message id of a toggle's state (success is the result 1).
    StringCall valueText(const std::string& id) const;
    IntCall intValue(const std::string& key) const;
    // The callback's result; -1 when setIntValue is not offered.
    int setIntValue(const std::string& key, int value) const;
    // False when onKeyEvent is not offered.
    bool keyEvent(const std::string& keyName) const;

    // Releases a string the plug-in returned: freeString when offered, otherwise free().
    int release(char* text) const;

private:
    StringCall callOwned(Slot slot, const std::string& id) const;

    const PluginLibrary& library_;
    ProviderRecord* record_ = nullptr;
};

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
