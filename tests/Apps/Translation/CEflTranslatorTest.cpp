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

struct ProductKind {
    const char *name, *paneFamily, *productKind; // system-info.740 and .77; .77 is not read on a PANE device
    std::string ids;                             // looked up for kIds
    std::vector<std::string> warnings;
};

void PrintTo(const ProductKind& kind, std::ostream* out) { *out << kind.name; }

constexpr const char* kIds = "COM_UPDATING_TV_SOFTWARE COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA"; // PANE+PRODUCT, PRODUCT

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
            return CEflTranslator::translate(kIds);
        }));
    }
    for (auto& translation : translations)
        EXPECT_EQ(translation.get(), GetParam().ids);
    device.setConf("system-info.740", GetParam().paneFamily == std::string("bool true") ? "bool false" : "bool true");
    device.setConf("system-info.77", "int 1");
    EXPECT_EQ(CEflTranslator::translate(kIds), GetParam().ids) << "facts that would decide otherwise come too late";
    EXPECT_EQ(Testing::loggedTexts(device, "WRN"), GetParam().warnings);
}

INSTANTIATE_TEST_SUITE_P(
    ProductKinds, Translator,
    ::testing::Values(
        ProductKind{
            "Television", "bool false", "int 0", "COM_UPDATING_TV_SOFTWARE COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA ", {}},
        ProductKind{"Pane",
                    "bool true",
                    "error -5",
                    "PANE_SID_UPDATING_SKYPANE_SOFTWARE COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA ",
                    {}},
        ProductKind{"OtherProduct",
                    "bool false",
                    "int 1",
                    "COM_UPDATING_PRODUCT_SOFTWARE COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA ",
                    {}},
        ProductKind{"Unreadable",
                    "error -5",
                    "int 1",
                    "COM_UPDATING_TV_SOFTWARE COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA ",
                    {"Error ocurred while determining product type."}}),
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
