// In the "C" locale a message is its id. SANDBOXED: a process's first translation decides the kind.

#include "Apps/Translation/CEflTranslator.h"

#include "orvo/testing/LogLines.h"
#include "orvo/testing/TestDevice.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

namespace Orvo::Apps {
namespace {

// Each base id with its variant on a PANE-family device (null: none) and on another product.
struct VariantRow {
    const char *base, *pane, *product;
};
constexpr VariantRow kVariantRows[] = {
    {"COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA", nullptr, "COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA"},
    {"COM_UPDATE_LATER_TV_BE_UPDATED_AUTOMATICALLY_MSG", nullptr,
     "COM_UPDATE_LATER_PRODUCT_BE_UPDATED_AUTOMATICALLY_MSG"},
    {"COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_TV_MSG", nullptr,
     "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_PRODUCT_MSG"},
    {"COM_UPDATING_TV_SOFTWARE", "PANE_SID_UPDATING_SKYPANE_SOFTWARE", "COM_UPDATING_PRODUCT_SOFTWARE"},
    {"COM_TV_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE", "PANE_SID_SKYPANE_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
     "COM_PRODUCT_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE"},
    {"TV_UPDATE_YOUR_TV_WITH_THE_NEW_VERSION_Q", "PANE_SID_UPDATE_YOUR_SKYPANE_WITH_THE_NEW_VERSION_Q",
     "COM_LFD_UPDATE_DISPLAY_DEVICE_NEW_VERSION_Q"},
    {"TV_SID_TV_RESTART_PORCEED_SW_UPDATE", "PANE_SID_SKYPANE_RESTART_PORCEED_SW_UPDATE",
     "COM_SID_LFD_DEVICE_RESTART_SW_UPDATE"},
    {"TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE",
     "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT"},
    {"TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF",
     "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF"}};

struct ProductKind {
    const char *name, *paneFamily, *productKind; // system-info.740 and .77; .77 is not read on a PANE device
    const char* VariantRow::*variant;            // null: the base ids stay
    std::vector<std::string> warnings;
};

void PrintTo(const ProductKind& kind, std::ostream* out) { *out << kind.name; }

// Every base id in one list, and what the kind looks up for it.
std::string allBaseIds() {
    std::string ids;
    for (const VariantRow& row : kVariantRows)
        ids += std::string(ids.empty() ? "" : " ") + row.base;
    return ids;
}
std::string lookedUp(const ProductKind& kind) {
    std::string ids;
    for (const VariantRow& row : kVariantRows)
        ids +=
            std::string(kind.variant != nullptr && row.*kind.variant != nullptr ? row.*kind.variant : row.base) + " ";
    return ids;
}

using Translator = ::testing::TestWithParam<ProductKind>;

TEST_P(Translator, FirstTranslationFromEightThreadsDecidesTheVariantsForTheWholeProcess) {
    Testing::TestDevice device;
    device.setConf("system-info.740", GetParam().paneFamily);
    device.setConf("system-info.77", GetParam().productKind);
    std::atomic<int> starting{8};
    std::vector<std::future<std::string>> translations;
    for (int thread = 0; thread < 8; ++thread) {
        translations.push_back(std::async(std::launch::async, [&starting] {
            for (--starting; starting > 0;)
                std::this_thread::yield();
            return CEflTranslator::translate(allBaseIds());
        }));
    }
    for (auto& translation : translations)
        EXPECT_EQ(translation.get(), lookedUp(GetParam()));
    device.setConf("system-info.740", GetParam().paneFamily == std::string("bool true") ? "bool false" : "bool true");
    device.setConf("system-info.77", "int 1");
    EXPECT_EQ(CEflTranslator::translate(allBaseIds()), lookedUp(GetParam()))
        << "facts that would decide otherwise come too late";
    EXPECT_EQ(Testing::loggedTexts(device, "WRN"), GetParam().warnings);
}

INSTANTIATE_TEST_SUITE_P(
    ProductKinds, Translator,
    ::testing::Values(
        ProductKind{"Television", "bool false", "int 0", nullptr, {}},
        ProductKind{"Pane", "bool true", "error -5", &VariantRow::pane, {}},
        ProductKind{"OtherProduct", "bool false", "int 1", &VariantRow::product, {}},
        ProductKind{"Unreadable", "error -5", "int 1", nullptr, {"Error ocurred while determining product type."}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TranslatorText, OneIdGetsNoTrailingBlankAndEveryLineBreakBecomesATag) {
    EXPECT_EQ(CEflTranslator::translate("first\nsecond\n\nlast"), "first<br>second<br><br>last");
}

TEST(TranslatorText, SubstitutionReplacesTheFirstTagOrTheWholeMessage) {
    Testing::TestDevice device;
    std::string message = "Version <<A>> <<A>>";
    CEflTranslator::substituteTag(message, "<<A>>", "12");
    EXPECT_EQ(message, "Version 12 <<A>>");
    message = "Current version";
    CEflTranslator::substituteTag(message, "<<A>>", "1302");
    EXPECT_EQ(message, "TRANSLATION_ERROR");
    EXPECT_THAT(Testing::loggedTexts(device, "ERR"),
                ::testing::ElementsAre("Missing tag '<<A>>' in message 'Current version' while trying to substitute "
                                       "with text '1302'."));
}

} // namespace
} // namespace Orvo::Apps
