#include "Provider.h"

#include <cstdlib>
#include <cstring>

namespace Orvo {
namespace Tools {
namespace MenuHost {

Provider::Provider(const PluginLibrary& library) : library_(library) {
    ProviderRecord* record = nullptr;
    const int result = library.createProvider()(&record);
    if (result != 0 || record == nullptr) {
        throw PluginError(library.path() + ": create_provider failed (result " + std::to_string(result) +
                          (record == nullptr ? ", no record)" : ")"));
    }
    record_ = record;
}

Provider::~Provider() {
    ProviderRecord* record = record_;
    library_.deleteProvider()(&record);
}

bool Provider::offers(Slot slot) const { return record_->slots[static_cast<std::size_t>(slot)] != nullptr; }

int Provider::release(char* text) const {
    if (const auto freeString = slotFunction<FreeStringFn>(*record_, Slot::FreeString)) return freeString(text);
    std::free(text);
    return 0;
}

StringCall Provider::callOwned(Slot slot, const std::string& id) const {
    StringCall call;
    const auto function = slotFunction<StringOutFn>(*record_, slot);
    if (function == nullptr) return call;
    call.offered = true;
    char* out = nullptr;
    call.code = function(id.c_str(), &out);
    if (out != nullptr) {
        if (call.code == 0) call.text = out;
        release(out);
    }
    return call;
}

StringCall Provider::title(const std::string& id) const { return callOwned(Slot::GetTitle, id); }
StringCall Provider::description(const std::string& id) const { return callOwned(Slot::GetDescription, id); }
StringCall Provider::valueString(const std::string& id) const { return callOwned(Slot::GetValueString, id); }
StringCall Provider::property(const std::string& key) const { return callOwned(Slot::GetProviderProperty, key); }

StringCall Provider::valueText(const std::string& id) const {
    StringCall call;
    const auto function = slotFunction<StringOutFn>(*record_, Slot::GetValueText);
    if (function == nullptr) return call;
    call.offered = true;
    char buffer[kValueTextBufferSize] = {};
    char* out = buffer;
    call.code = function(id.c_str(), &out);
    if (call.code == 1) call.text = std::string(buffer, strnlen(buffer, sizeof buffer));
    return call;
}

IntCall Provider::intValue(const std::string& key) const {
    IntCall call;
    const auto function = slotFunction<GetIntValueFn>(*record_, Slot::GetIntValue);
    if (function == nullptr) return call;
    call.offered = true;
    int value = 0;
    call.code = function(key.c_str(), &value);
    if (call.code == 0) call.value = value;
    return call;
}

int Provider::setIntValue(const std::string& key, int value) const {
    const auto function = slotFunction<SetIntValueFn>(*record_, Slot::SetIntValue);
    return function == nullptr ? -1 : function(key.c_str(), value);
}

bool Provider::keyEvent(const std::string& keyName) const {
    const auto function = slotFunction<OnKeyEventFn>(*record_, Slot::OnKeyEvent);
    if (function == nullptr) return false;
    function(keyName.c_str());
    return true;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
