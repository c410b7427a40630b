// SANDBOXED: each case is its own process and decides the product kind afresh, from the device
// facts set before its first translation.

#include "Apps/Translation/CEflTranslator.h"

#include "orvo/testing/LogLines.h"
#include "TestCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvo {
namespace Apps {
namespace {

using Testing::loggedTexts;
using ::testing::ElementsAre;

constexpr const char* kMenuViewId = "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE";  // PANE and PRODUCT variants
constexpr const char* kNewDataId = "COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA";    // PRODUCT variant only

class TranslatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        Testing::installCatalogue(device, {{kMenuViewId, "TV view"},
                                           {"PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE", "Panel view"},
                                           {"COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT", "Product view"},
                                           {kNewDataId, "TV data"},
                                           {"COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA", "Product data"},
                                           {"COM_AUTO_UPDATE", "Auto Update"},
                                           {"MULTI_LINE", "first\nsecond\n\nlast"},
                                           {"NO_TAG", "Current version"}});
        ASSERT_TRUE(CEflTranslator::setUpTextDomain());
        device.clearLogs();
    }

    void setProductKind(const char* paneFamily, const char* productKind) {
        device.setConf("system-info.740", paneFamily);
        device.setConf("system-info.77", productKind);
    }

    Testing::TestDevice device;
};

TEST_F(TranslatorTest, TelevisionTranslatesTheBaseIds) {
    setProductKind("bool false", "int 0");
    EXPECT_EQ("TV view", CEflTranslator::translate(kMenuViewId));
    EXPECT_EQ("TV data", CEflTranslator::translate(kNewDataId));
    EXPECT_TRUE(loggedTexts(device, "WRN").empty());
}

TEST_F(TranslatorTest, PaneDeviceTranslatesPaneVariantsWithoutAskingTheProductKind) {
    setProductKind("bool true", "error -5");
    EXPECT_EQ("Panel view", CEflTranslator::translate(kMenuViewId));
    EXPECT_EQ("TV data", CEflTranslator::translate(kNewDataId));
    EXPECT_TRUE(loggedTexts(device, "WRN").empty());
}

TEST_F(TranslatorTest, OtherProductTranslatesProductVariantsForTheWholeProcess) {
    setProductKind("bool false", "int 1");
    EXPECT_EQ("Product data", CEflTranslator::translate(kNewDataId));
    setProductKind("bool true", "int 0");  // too late: decided by the first translation
    EXPECT_EQ("Product view", CEflTranslator::translate(kMenuViewId));
}

TEST_F(TranslatorTest, UnreadableProductKindMeansTelevisionForTheWholeProcess) {
    setProductKind("error -5", "int 1");
    EXPECT_EQ("TV view", CEflTranslator::translate(kMenuViewId));
    setProductKind("bool true", "int 1");
    EXPECT_EQ("TV view", CEflTranslator::translate(kMenuViewId));
    EXPECT_THAT(loggedTexts(device, "WRN"), ElementsAre("Error ocurred while determining product type."));
}

TEST_F(TranslatorTest, IdListGetsABlankAfterEachTranslation) {
    setProductKind("bool true", "int 0");
    EXPECT_EQ("Auto Update", CEflTranslator::translate("COM_AUTO_UPDATE"));
    EXPECT_EQ("Auto Update Panel view UNKNOWN_ID ",
              CEflTranslator::translate(std::string("COM_AUTO_UPDATE ") + kMenuViewId + " UNKNOWN_ID"));
}

TEST_F(TranslatorTest, NewlinesBecomeLineBreakTags) {
    EXPECT_EQ("first<br>second<br><br>last", CEflTranslator::translate("MULTI_LINE"));
    EXPECT_EQ("first<br>second<br><br>last Auto Update ", CEflTranslator::translate("MULTI_LINE COM_AUTO_UPDATE"));
}

TEST_F(TranslatorTest, TranslationWithoutTheTagBecomesAnError) {
    std::string message = CEflTranslator::translate("NO_TAG");
    CEflTranslator::substituteTag(message, "<<A>>", "1302");
    EXPECT_EQ("TRANSLATION_ERROR", message);
    EXPECT_THAT(loggedTexts(device, "ERR"),
                ElementsAre("Missing tag '<<A>>' in message 'Current version' while trying to substitute with text "
                            "'1302'."));
}

TEST(SubstituteTagTest, OnlyTheFirstTagIsReplaced) {
    std::string message = "Version <<A>> <<A>>";
    CEflTranslator::substituteTag(message, "<<A>>", "12");
    EXPECT_EQ("Version 12 <<A>>", message);
}

} // namespace
} // namespace Apps
} // namespace Orvo
