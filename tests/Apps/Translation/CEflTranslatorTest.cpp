// Each case runs in its own process (SANDBOXED), so each decides the product kind afresh: the
// device facts are set before the first translation of the case.

#include "Apps/Translation/CEflTranslator.h"

#include "LogLines.h"
#include "TestCatalogue.h"
#include "orvo/testing/TestDevice.h"

#include <libintl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvo {
namespace Apps {
namespace {

using Testing::loggedTexts;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kMenuViewId = "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE";
constexpr const char* kProductOnlyId = "COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA";

class TranslatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        device.removeConf("system-info.740");
        device.removeConf("system-info.77");
        Testing::installCatalogue(
            device, "xx",
            {{kMenuViewId, "View the TV software"},
             {"PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE", "View the panel software"},
             {"COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT", "Update the product software"},
             {kProductOnlyId, "Update your TV"},
             {"COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA", "Update your product"},
             {"COM_SOFTWARE_UPDATE", "Software Update"},
             {"COM_AUTO_UPDATE", "Auto Update"},
             {"MULTI_LINE", "first\nsecond\n\nlast\n"},
             {"COM_MIX_CURRENT_VER", "Current version: <<A>>"},
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
    EXPECT_EQ("View the TV software", CEflTranslator::translate(kMenuViewId));
    EXPECT_EQ("Update your TV", CEflTranslator::translate(kProductOnlyId));
    EXPECT_THAT(loggedTexts(device, "WRN"), IsEmpty());
}

TEST_F(TranslatorTest, PaneDeviceTranslatesPaneVariants) {
    setProductKind("bool true", "int 3");
    EXPECT_EQ("View the panel software", CEflTranslator::translate(kMenuViewId));
    // The PANE table has no row for it, although other products have one.
    EXPECT_EQ("Update your TV", CEflTranslator::translate(kProductOnlyId));
    EXPECT_EQ("Software Update", CEflTranslator::translate("COM_SOFTWARE_UPDATE"));
}

TEST_F(TranslatorTest, PaneDeviceDoesNotAskForTheProductKind) {
    setProductKind("bool true", "error -5");
    EXPECT_EQ("View the panel software", CEflTranslator::translate(kMenuViewId));
    EXPECT_THAT(loggedTexts(device, "WRN"), IsEmpty());
}

TEST_F(TranslatorTest, OtherProductTranslatesProductVariants) {
    setProductKind("bool false", "int 1");
    EXPECT_EQ("Update the product software", CEflTranslator::translate(kMenuViewId));
    EXPECT_EQ("Update your product", CEflTranslator::translate(kProductOnlyId));
    EXPECT_EQ("Software Update", CEflTranslator::translate("COM_SOFTWARE_UPDATE"));
}

TEST_F(TranslatorTest, ProductKindIsDecidedByTheFirstTranslation) {
    setProductKind("bool false", "int 1");
    EXPECT_EQ("Update your product", CEflTranslator::translate(kProductOnlyId));
    setProductKind("bool true", "int 0");
    EXPECT_EQ("Update the product software", CEflTranslator::translate(kMenuViewId));
}

TEST_F(TranslatorTest, UnreadablePaneFlagMeansTelevisionForTheWholeProcess) {
    setProductKind("error -5", "int 1");
    EXPECT_EQ("View the TV software", CEflTranslator::translate(kMenuViewId));
    setProductKind("bool true", "int 1");
    EXPECT_EQ("View the TV software", CEflTranslator::translate(kMenuViewId));
    EXPECT_THAT(loggedTexts(device, "WRN"), ElementsAre("Error ocurred while determining product type."));
}

TEST_F(TranslatorTest, UnreadableProductKindMeansTelevision) {
    // An absent key is an invalid parameter to the platform.
    device.setConf("system-info.740", "bool false");
    EXPECT_EQ("Update your TV", CEflTranslator::translate(kProductOnlyId));
    EXPECT_THAT(loggedTexts(device, "WRN"), ElementsAre("Error ocurred while determining product type."));
}

TEST_F(TranslatorTest, IdListGetsABlankAfterEachTranslation) {
    setProductKind("bool true", "int 0");
    EXPECT_EQ("Software Update", CEflTranslator::translate("COM_SOFTWARE_UPDATE"));
    EXPECT_EQ("Software Update Auto Update ", CEflTranslator::translate("COM_SOFTWARE_UPDATE COM_AUTO_UPDATE"));
    EXPECT_EQ("Auto Update View the panel software Software Update ",
              CEflTranslator::translate(std::string("COM_AUTO_UPDATE ") + kMenuViewId + " COM_SOFTWARE_UPDATE"));
}

TEST_F(TranslatorTest, UntranslatedIdIsShownAsItIs) {
    EXPECT_EQ("NOT_IN_THE_CATALOGUE", CEflTranslator::translate("NOT_IN_THE_CATALOGUE"));
    EXPECT_EQ("COM_AUTO_UPDATE_X Auto Update ", CEflTranslator::translate("COM_AUTO_UPDATE_X COM_AUTO_UPDATE"));
    EXPECT_EQ("", CEflTranslator::translate(""));
}

TEST_F(TranslatorTest, NewlinesBecomeLineBreakTags) {
    EXPECT_EQ("first<br>second<br><br>last<br>", CEflTranslator::translate("MULTI_LINE"));
    EXPECT_EQ("first<br>second<br><br>last<br> Auto Update ", CEflTranslator::translate("MULTI_LINE COM_AUTO_UPDATE"));
}

TEST_F(TranslatorTest, ShippedCatalogueIsFoundAtTheDevicePath) {
    Testing::useLanguage("de");
    const std::string german = CEflTranslator::translate("COM_SOFTWARE_UPDATE");
    Testing::useLanguage("en");
    const std::string english = CEflTranslator::translate("COM_SOFTWARE_UPDATE");
    EXPECT_NE("COM_SOFTWARE_UPDATE", german);
    EXPECT_NE("COM_SOFTWARE_UPDATE", english);
    EXPECT_NE(german, english);
}

TEST_F(TranslatorTest, TextDomainSetUpIsLogged) {
    ASSERT_TRUE(CEflTranslator::setUpTextDomain());
    EXPECT_THAT(loggedTexts(device, "DBG"),
                ElementsAre("Text domain for Orvo translations has been set to: /usr/share/orvotv/res/locale"));
}

TEST_F(TranslatorTest, TagIsSubstitutedIntoATranslation) {
    std::string message = CEflTranslator::translate("COM_MIX_CURRENT_VER");
    CEflTranslator::substituteTag(message, "<<A>>", "1302");
    EXPECT_EQ("Current version: 1302", message);
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

    message = "<<A>>";
    CEflTranslator::substituteTag(message, "<<A>>", "a <<A>> b");
    EXPECT_EQ("a <<A>> b", message);
}

} // namespace
} // namespace Apps
} // namespace Orvo
