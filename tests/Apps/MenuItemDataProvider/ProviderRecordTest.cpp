// The provider record and the library's exported surface, as the host sees them.

#include "ProviderLibrary.h"

#include "orvo/testing/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <set>
#include <sstream>

namespace Orvo {
namespace Testing {
namespace {

using ::testing::UnorderedElementsAre;

constexpr size_t kFilledSlots[] = {0, 8, 11, 12, 13, 14, 38, 44, 45};

TEST(ProviderRecord, FillsExactlyTheNineSlotsAndNothingElse) {
    ProviderLibrary library;
    Provider provider(library);
    EXPECT_EQ(sizeof(MenuItemDataProvider), 51 * sizeof(void*));

    // Read the record by position, as the host does, not through the member names.
    void* slots[MENU_ITEM_DATA_PROVIDER_SLOTS];
    std::memcpy(slots, &provider.record(), sizeof slots);
    const std::set<size_t> filled(std::begin(kFilledSlots), std::end(kFilledSlots));
    for (size_t slot = 0; slot < MENU_ITEM_DATA_PROVIDER_SLOTS; ++slot) {
        EXPECT_EQ(slots[slot] != nullptr, filled.count(slot) == 1) << "slot " << slot;
    }
}

TEST(ProviderRecord, EveryCreationReturnsAFreshRecord) {
    ProviderLibrary library;
    Provider first(library);
    Provider second(library);
    EXPECT_NE(&first.record(), &second.record());
    EXPECT_EQ(first.record().getTitle, second.record().getTitle);
}

TEST(ProviderRecord, FreeStringRejectsNullAndReleasesHeapStrings) {
    ProviderLibrary library;
    Provider provider(library);
    EXPECT_EQ(provider.record().freeString(nullptr), 1);
    EXPECT_EQ(provider.record().freeString(strdup("released by the plug-in")), 0);
}

TEST(ProviderRecord, DeleteProviderResults) {
    ProviderLibrary library;
    EXPECT_EQ(library.deleteProvider(nullptr), 1);

    MenuItemDataProvider* none = nullptr;
    EXPECT_EQ(library.deleteProvider(&none), 0);

    MenuItemDataProvider* record = nullptr;
    ASSERT_EQ(library.createProvider(&record), 0);
    ASSERT_NE(record, nullptr);
    MenuItemDataProvider* const created = record;
    EXPECT_EQ(library.deleteProvider(&record), 0);
    EXPECT_EQ(record, created) << "the holder is the host's to clear";
}

TEST(ProviderRecord, FailedAllocationReturnsMinusOneAndLeavesOutUntouched) {
    if (!std::string(ORVO_SANITIZERS).empty()) {
        GTEST_SKIP() << "the calloc shim cannot be preloaded ahead of the " ORVO_SANITIZERS " sanitizer runtime";
    }
    const ProcessResult probe =
        runProcess({ORVO_MENU_ALLOCATION_PROBE_PATH}, "", {{"LD_PRELOAD", ORVO_MENU_CALLOC_SHIM_PATH}});
    ASSERT_EQ(probe.exitCode, 0) << probe.out << probe.err;
    EXPECT_EQ(probe.out, "failing calloc: result=-1 out untouched=1\n"
                         "working calloc: result=0 out untouched=0\n");
}

// Every defined dynamic symbol of the module, as "name@@VERSION" (nm -D prints the version).
std::vector<std::string> definedDynamicSymbols() {
    const ProcessResult nm = runProcess({ORVO_NM, "-D", "--defined-only", ORVO_MENU_PROVIDER_PATH});
    EXPECT_EQ(nm.exitCode, 0) << nm.err;
    std::vector<std::string> symbols;
    std::istringstream lines(nm.out);
    std::string address, type, name;
    while (lines >> address >> type >> name) {
        // The version node itself appears as an absolute symbol; it is not an export.
        if (type == "A" && name == "ORVOMENUITEMDATAPROVIDER") continue;
        symbols.push_back(name);
    }
    return symbols;
}

TEST(ProviderLibraryExports, OnlyTheTwoVersionedEntryPoints) {
    EXPECT_THAT(definedDynamicSymbols(), UnorderedElementsAre("create_provider@@ORVOMENUITEMDATAPROVIDER",
                                                              "delete_provider@@ORVOMENUITEMDATAPROVIDER"));
}

} // namespace
} // namespace Testing
} // namespace Orvo
