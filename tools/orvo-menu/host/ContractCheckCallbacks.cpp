#include "ContractCheckCallbacks.h"

#include "Branch.h"

#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

constexpr const char* kDetailedPrefix = "SW Version: ";
constexpr const char* kMissingSetting = "db/orvo-menu/check/absent";
// A name the platform refuses (a blank is outside its printable range).
constexpr const char* kInvalidSetting = "db/orvo-menu/check/with blank";
// Identifiers a careless host might send: near misses and strangers.
const char* const kForeignIds[] = {"menu/support/softwareupdate/", "menu/support/softwareupdatenow", "",
                                   "menu/support/picture"};

std::string call(const char* function, const std::string& argument, const char* out) {
    return std::string(function) + "(" + quoted(argument.c_str()) + ", " + out + ")";
}

// A string-returning call with *out preset; whatever new string comes back is released.
struct Returned {
    int code;
    char* out;
};

Returned callOut(StringOutFn function, const char* id, char* preset) {
    char* out = preset;
    const int code = function(id, &out);
    return {code, out};
}

void release(const Provider& provider, const Returned& returned, const char* preset) {
    if (returned.out != nullptr && returned.out != preset) provider.release(returned.out);
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

StringOutFn stringSlot(const CallbackChecks& checks, Slot slot) {
    const auto function = slotFunction<StringOutFn>(checks.provider.record(), slot);
    if (function == nullptr) checks.report.skip(slotName(slot), "not offered");
    return function;
}

// A known identifier with a null-initialised *out: 0 and a string.
void expectText(const CallbackChecks& checks, StringOutFn function, const char* name, const std::string& id,
                bool mayBeEmpty) {
    const Returned returned = callOut(function, id.c_str(), nullptr);
    const bool pass = returned.code == 0 && returned.out != nullptr && (mayBeEmpty || *returned.out != '\0');
    checks.report.expect(call(name, id, "&null"), pass, describeOut(returned.code, returned.out, nullptr),
                         mayBeEmpty ? "0 and a string" : "0 and a text");
    if (returned.out == nullptr) return;
    const int freed = checks.provider.release(returned.out);
    if (freed != 0 && checks.provider.offers(Slot::FreeString)) {
        checks.report.expect("freeString of that string", false, std::to_string(freed), "0");
    }
}

void expectNullOutRejected(const CallbackChecks& checks, StringOutFn function, const char* name, const char* id) {
    const int code = function(id, nullptr);
    checks.report.expect(call(name, id, "nullptr"), code == -1, std::to_string(code), "-1");
}

// An identifier without a value: *out stays as the host set it, and the result tells a null
// *out (-1, or `nullResult`) from a preset one (0).
void expectUntouched(const CallbackChecks& checks, StringOutFn function, const char* name, const char* id,
                     int nullResult) {
    char hostText[] = "host's own text";
    Returned returned = callOut(function, id, nullptr);
    checks.report.expect(call(name, id, "&null"), returned.code == nullResult && returned.out == nullptr,
                         describeOut(returned.code, returned.out, nullptr), std::to_string(nullResult) + ", *out null");
    release(checks.provider, returned, nullptr);
    returned = callOut(function, id, hostText);
    checks.report.expect(call(name, id, "&preset"), returned.code == 0 && returned.out == hostText,
                         describeOut(returned.code, returned.out, hostText), "0, *out unchanged");
    release(checks.provider, returned, hostText);
}

std::string branchDescription(const Provider& provider) {
    const StringCall description = provider.description(kBranchId);
    return description.text ? *description.text : "(none)";
}

} // namespace

void CallbackChecks::freeString() const {
    const auto function = slotFunction<FreeStringFn>(provider.record(), Slot::FreeString);
    if (function == nullptr) return report.skip("freeString", "not offered");
    const int code = function(nullptr);
    report.expect("freeString(nullptr)", code == 1, std::to_string(code), "1");
}

void CallbackChecks::titles() const {
    const StringOutFn function = stringSlot(*this, Slot::GetTitle);
    if (function == nullptr) return;
    for (const MenuItem& item : menuItems())
        expectText(*this, function, "getTitle", item.id, false);
    expectNullOutRejected(*this, function, "getTitle", kBranchId);
    for (const char* id : kForeignIds)
        expectUntouched(*this, function, "getTitle", id, -1);
}

void CallbackChecks::descriptions() const {
    const StringOutFn function = stringSlot(*this, Slot::GetDescription);
    if (function == nullptr) return;
    for (const MenuItem& item : menuItems())
        expectText(*this, function, "getDescription", item.id, false);
    expectNullOutRejected(*this, function, "getDescription", kBranchId);
    // An unknown item still gets the version lines, which may be empty.
    for (const char* id : kForeignIds)
        expectText(*this, function, "getDescription", id, true);
}

void CallbackChecks::infoKey() const {
    const auto onKey = slotFunction<OnKeyEventFn>(provider.record(), Slot::OnKeyEvent);
    if (onKey == nullptr || !provider.offers(Slot::GetDescription)) {
        return report.skip("onKeyEvent", "onKeyEvent or getDescription not offered");
    }
    const std::string normal = branchDescription(provider);
    onKey(kInfoKey);
    std::string shown = branchDescription(provider);
    report.expect("getDescription of the branch after onKeyEvent(" + quoted(kInfoKey) + ")",
                  startsWith(shown, kDetailedPrefix), quoted(shown.c_str()), "the detailed version block");
    shown = branchDescription(provider);
    report.expect("getDescription of the branch once more", shown == normal, quoted(shown.c_str()),
                  "the normal description again");
    const char* const foreignKeys[] = {"XF86InfoX", "XF86Back", "", nullptr};
    for (const char* key : foreignKeys) {
        onKey(key);
        shown = branchDescription(provider);
        report.expect(
            std::string("getDescription of the branch after onKeyEvent(") + (key ? quoted(key) : "nullptr") + ")",
            shown == normal, quoted(shown.c_str()), "the normal description");
    }
    onKey(kInfoKey);
    provider.description(firstItemOf(ItemKind::Action));
    shown = branchDescription(provider);
    report.expect("the branch after the Info key was spent on another item", shown == normal, quoted(shown.c_str()),
                  "the normal description");
}

void CallbackChecks::intValues() const {
    if (!provider.offers(Slot::GetIntValue)) return report.skip("getIntValue", "not offered");
    for (const MenuItem& item : menuItems()) {
        if (item.kind != ItemKind::Toggle) continue;
        const IntCall value = provider.intValue(item.id);
        const bool pass = value.code == 0 && value.value && (*value.value == 0 || *value.value == 1);
        report.expect(call("getIntValue", item.id, "&value"), pass,
                      std::to_string(value.code) + (value.value ? ", value " + std::to_string(*value.value) : ""),
                      "0, value 0 or 1");
    }
    for (const char* key : {kMissingSetting, kInvalidSetting}) {
        const IntCall value = provider.intValue(key);
        report.expect(call("getIntValue", key, "&value"), value.code == 1, std::to_string(value.code), "1");
    }
}

void CallbackChecks::valueTexts() const {
    const auto function = slotFunction<StringOutFn>(provider.record(), Slot::GetValueText);
    if (function == nullptr) return report.skip("getValueText", "not offered");
    std::vector<std::string> ids(std::begin(kForeignIds), std::end(kForeignIds));
    for (const MenuItem& item : menuItems())
        ids.push_back(item.id);
    for (const std::string& id : ids) {
        char buffer[kValueTextBufferSize] = "host buffer";
        char* out = buffer;
        const int code = function(id.c_str(), &out);
        if (itemKind(id) != ItemKind::Toggle) {
            const bool untouched = out == buffer && std::strcmp(buffer, "host buffer") == 0;
            report.expect(call("getValueText", id, "&buffer"), code == -1 && untouched,
                          std::to_string(code) + (untouched ? ", buffer unchanged" : ", buffer written"),
                          "-1, buffer unchanged");
            continue;
        }
        const IntCall setting = provider.intValue(id);
        const std::string expected = !setting.value ? "SID_ON or SID_OFF" : *setting.value == 1 ? "SID_ON" : "SID_OFF";
        const bool matches = setting.value ? expected == buffer
                                           : std::strcmp(buffer, "SID_ON") == 0 || std::strcmp(buffer, "SID_OFF") == 0;
        report.expect(call("getValueText", id, "&buffer"), code == 1 && out == buffer && matches,
                      std::to_string(code) + ", " + quoted(buffer), "1, " + expected);
    }
}

void CallbackChecks::settingWrites() const {
    if (!provider.offers(Slot::SetIntValue) || !provider.offers(Slot::GetIntValue)) {
        return report.skip("setIntValue", "setIntValue or getIntValue not offered");
    }
    const std::string key = firstItemOf(ItemKind::Toggle);
    const IntCall before = provider.intValue(key);
    if (!before.value) return report.skip("setIntValue", "the setting cannot be read");
    const int flipped = *before.value == 1 ? 0 : 1;
    int code = provider.setIntValue(key, flipped);
    report.expect("setIntValue(" + quoted(key.c_str()) + ", " + std::to_string(flipped) + ")", code == 0,
                  std::to_string(code), "0");
    const IntCall after = provider.intValue(key);
    report.expect("getIntValue after the write", after.value && *after.value == flipped,
                  after.value ? std::to_string(*after.value) : "nothing", std::to_string(flipped));
    code = provider.setIntValue(key, *before.value);
    report.expect("setIntValue back to " + std::to_string(*before.value), code == 0, std::to_string(code), "0");
    code = provider.setIntValue(kInvalidSetting, 1);
    report.expect("setIntValue(" + quoted(kInvalidSetting) + ", 1)", code == 1, std::to_string(code), "1");
}

void CallbackChecks::valueStrings() const {
    const StringOutFn function = stringSlot(*this, Slot::GetValueString);
    if (function == nullptr) return;
    for (const MenuItem& item : menuItems()) {
        if (item.kind != ItemKind::Value) {
            expectUntouched(*this, function, "getValueString", item.id, -1);
            continue;
        }
        expectText(*this, function, "getValueString", item.id, true);
        expectNullOutRejected(*this, function, "getValueString", item.id);
    }
}

void CallbackChecks::properties() const {
    const StringOutFn function = stringSlot(*this, Slot::GetProviderProperty);
    if (function == nullptr) return;
    for (const std::string& key : providerPropertyKeys())
        expectText(*this, function, "getProviderProperty", key, false);
    const StringCall main = provider.property(kMainComponentProperty);
    const StringCall sub = provider.property(kSubComponentProperty);
    const std::string mainText = main.text ? *main.text : "";
    report.expect("main and sub-component", main.text && sub.text && *main.text == *sub.text,
                  quoted(mainText.c_str()) + " and " + quoted(sub.text ? sub.text->c_str() : ""), "the same name");
    report.expect("component name", startsWith(mainText, "TP_"), quoted(mainText.c_str()), "a name beginning with TP_");
    expectUntouched(*this, function, "getProviderProperty", "provider/unknown", 0);
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
