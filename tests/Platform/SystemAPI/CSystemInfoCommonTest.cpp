// SANDBOXED: each case is its own process, so the product is initialised once per case.

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Testing::loggedTexts;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;

const VConf<std::string> storedSelection("db/menu/support/softwareupdate/selectedSubmodel");

class SubmodelTest : public ::testing::Test {
protected:
    void SetUp() override {
        device.setConf("system-info.128", "string UE55A-1302.5");
        IProductInfo::initializeProduct();
    }

    void setZoneLetterB() { device.setConf("system-info.904", "int 2"); }

    Testing::TestDevice device;
};

TEST_F(SubmodelTest, ZoneLetterIsShownUnlessRawAndUndoneOnSave) {
    setZoneLetterB();
    EXPECT_EQ("BE55A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_EQ("UE55A", ISystemInfo::getSelectedSubmodel(true));

    ISystemInfo::setSelectedSubmodel("BE65A");
    EXPECT_EQ("UE65A", storedSelection.get());
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_TRUE(ISystemInfo::isSubmodelSelected());

    ISystemInfo::setSelectedSubmodel("BE55A");  // the own model
    EXPECT_EQ("", storedSelection.get());
    EXPECT_FALSE(ISystemInfo::isSubmodelSelected());
}

TEST_F(SubmodelTest, WithoutZoneLetterTheSubmodelRoundTripsAsGiven) {
    ISystemInfo::setSelectedSubmodel("QE65B");
    EXPECT_EQ("QE65B", storedSelection.get());
    EXPECT_EQ("QE65B", ISystemInfo::getSelectedSubmodel(false));
    ISystemInfo::setSelectedSubmodel("UE55A");
    EXPECT_EQ("", storedSelection.get());
}

TEST_F(SubmodelTest, EmptySubmodelIsNotSaved) {
    storedSelection.set("UE65A");
    ISystemInfo::setSelectedSubmodel("");
    EXPECT_EQ("UE65A", storedSelection.get());
    EXPECT_THAT(loggedTexts(device, "ERR"), ElementsAre("Not expected submodel string, should not be empty here"));
}

TEST_F(SubmodelTest, FlashedSubmodelFallsBackToTheModelAndFlagDefaultsToFalse) {
    EXPECT_EQ("UE55A", ISystemInfo::getFlashedSubmodel());
    EXPECT_FALSE(ISystemInfo::isAnySubmodel());
    ISystemInfo::setFlashedSubmodel("QE75C");
    ISystemInfo::setAnySubmodel(true);
    EXPECT_EQ("QE75C", ISystemInfo::getFlashedSubmodel());
    EXPECT_TRUE(ISystemInfo::isAnySubmodel());
}

TEST_F(SubmodelTest, RefusedWritesAreLoggedWithDiagnosticsNotThrown) {
    const std::string tooLong(5000, 'Q');  // vconf holds at most 4096 bytes
    ISystemInfo::setFlashedSubmodel(tooLong);
    ISystemInfo::setSelectedSubmodel(tooLong);
    const std::vector<std::string> errors = loggedTexts(device, "ERR");
    ASSERT_EQ(2u, errors.size());
    // The sentence is followed at once by the diagnostic text.
    EXPECT_THAT(errors[0], ContainsRegex("^Error while saving flashed submodel string[^[:space:]]"));
    EXPECT_THAT(errors[1], ContainsRegex("^Error while saving selected submodel string[^[:space:]]"));
}

// The plug-in never initialises the product: only the fallbacks to the own model fail there.
TEST(SubmodelWithoutProductTest, StoredSelectionIsReadableButTheOwnModelIsNot) {
    Testing::TestDevice device;
    device.setConf("system-info.904", "int 2");
    storedSelection.set("UE65A");
    EXPECT_EQ("UE65A", ISystemInfo::getStoredSelectedSubmodel());
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_THROW(ISystemInfo::setSelectedSubmodel("BE65A"), ProductUninitializedException);
    storedSelection.set("");
    EXPECT_THROW(ISystemInfo::getSelectedSubmodel(true), ProductUninitializedException);
}

} // namespace
} // namespace Platform
} // namespace Orvo
