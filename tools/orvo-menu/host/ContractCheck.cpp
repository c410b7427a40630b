#include "ContractCheck.h"

#include "Branch.h"
#include "CheckReport.h"
#include "ContractCheckCallbacks.h"
#include "Provider.h"

#include <ostream>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

constexpr int kCreateDeleteRounds = 16;

// Returns false when no record could be created, which ends the check.
bool checkLifecycle(const PluginLibrary& library, CheckReport& report) {
    ProviderRecord* first = nullptr;
    ProviderRecord* second = nullptr;
    int result = library.createProvider()(&first);
    if (!report.expect("create_provider", result == 0 && first != nullptr,
                       std::to_string(result) + (first ? ", a record" : ", no record"), "0 and a record")) {
        return false;
    }
    result = library.createProvider()(&second);
    report.expect("create_provider again", result == 0 && second != nullptr && second != first,
                  std::to_string(result) + (second == first ? ", the same record" : ", a record"),
                  "0 and a second record");
    result = second ? library.deleteProvider()(&second) : 0;
    report.expect("delete_provider of the second record", result == 0, std::to_string(result), "0");
    result = library.deleteProvider()(&first);
    report.expect("delete_provider of the first record", result == 0, std::to_string(result), "0");

    int failures = 0;
    for (int round = 0; round < kCreateDeleteRounds; ++round) {
        ProviderRecord* record = nullptr;
        if (library.createProvider()(&record) != 0 || record == nullptr) ++failures;
        if (record != nullptr && library.deleteProvider()(&record) != 0) ++failures;
    }
    report.expect(std::to_string(kCreateDeleteRounds) + " rounds of create_provider and delete_provider", failures == 0,
                  std::to_string(failures) + " failures", "no failure");

    result = library.deleteProvider()(nullptr);
    report.expect("delete_provider(nullptr)", result == 1, std::to_string(result), "1");
    ProviderRecord* none = nullptr;
    result = library.deleteProvider()(&none);
    report.expect("delete_provider of a null record", result == 0, std::to_string(result), "0");
    return true;
}

void checkSlots(const Provider& provider, CheckReport& report) {
    for (Slot slot : kKnownSlots) {
        if (!provider.offers(slot)) report.skip(std::string("slot ") + slotName(slot), "not offered (null)");
    }
    for (std::size_t index = 0; index < kSlotCount; ++index) {
        if (isKnownSlot(index)) continue;
        const bool empty = provider.record().slots[index] == nullptr;
        if (!empty) report.expect("slot " + std::to_string(index), false, "a function", "null (no such operation)");
    }
    report.expect("the host's nine slots", provider.offers(Slot::FreeString) || !provider.offers(Slot::GetTitle),
                  provider.offers(Slot::FreeString) ? "freeString offered" : "strings without freeString",
                  "freeString offered with any string callback");
}

} // namespace

int runContractCheck(const PluginLibrary& library, std::ostream& out) {
    CheckReport report(out);
    if (checkLifecycle(library, report)) {
        const Provider provider(library);
        checkSlots(provider, report);
        const CallbackChecks callbacks{provider, report};
        callbacks.freeString();
        callbacks.titles();
        callbacks.descriptions();
        callbacks.infoKey();
        callbacks.intValues();
        callbacks.valueTexts();
        callbacks.settingWrites();
        callbacks.valueStrings();
        callbacks.properties();
    }
    report.summary();
    return report.violations() == 0 ? 0 : 1;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
