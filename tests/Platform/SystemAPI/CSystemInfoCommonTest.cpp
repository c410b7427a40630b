// Each case runs in its own process (SANDBOXED), so the product is initialised once per case.

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "LogLines.h"
#include "Platform/Product/IProductInfo.h"
#include "orvo/testing/TestDevice.h"

#include <vconf.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Testing::loggedTexts;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ContainsRegex;

constexpr const char* kSelectedKey = "db/menu/support/softwareupdate/selectedSubmodel";
constexpr const char* kFlashedKey = "db/menu/support/softwareupdate/flashedSubmodel";
constexpr const char* kAnySubmodelKey = "db/menu/support/softwareupdate/isAnySubmodel";

// What vconf holds under a key, or "<absent>".
std::string storedText(const char* key) {
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str(key), &std::free);
    return text ? text.get() : "<absent>";
}

class SubmodelTest : public ::testing::Test {
protected:
    void SetUp() override {
        device.setConf("system-info.128", "string UE55A-1302.5");
        device.removeConf("system-info.904");
        IProductInfo::initializeProduct();
        device.clearLogs();
    }

    void setZoneLetterB() { device.setConf("system-info.904", "int 2"); }

    Testing::TestDevice device;
};

TEST_F(SubmodelTest, SelectedSubmodelShowsTheZoneLetterUnlessRaw) {
    setZoneLetterB();
    EXPECT_EQ("BE55A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_EQ("UE55A", ISystemInfo::getSelectedSubmodel(true));

    ASSERT_EQ(0, vconf_set_str(kSelectedKey, "UE65A"));
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_EQ("UE65A", ISystemInfo::getSelectedSubmodel(true));
    EXPECT_EQ("UE65A", ISystemInfo::getStoredSelectedSubmodel());
}

TEST_F(SubmodelTest, SavingUndoesTheZoneLetter) {
    setZoneLetterB();
    ISystemInfo::setSelectedSubmodel("BE65A");
    EXPECT_EQ("UE65A", storedText(kSelectedKey));
    EXPECT_TRUE(ISystemInfo::isSubmodelSelected());
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));

    // The own model, as shown with the zone letter, is stored as "".
    ISystemInfo::setSelectedSubmodel("BE55A");
    EXPECT_EQ("", storedText(kSelectedKey));
    EXPECT_FALSE(ISystemInfo::isSubmodelSelected());
    EXPECT_EQ("BE55A", ISystemInfo::getSelectedSubmodel(false));
}

TEST_F(SubmodelTest, WithoutZoneTheSubmodelIsStoredAsGiven) {
    ISystemInfo::setSelectedSubmodel("QE65B");
    EXPECT_EQ("QE65B", storedText(kSelectedKey));
    EXPECT_EQ("QE65B", ISystemInfo::getSelectedSubmodel(false));

    ISystemInfo::setSelectedSubmodel("UE55A");
    EXPECT_EQ("", storedText(kSelectedKey));
    EXPECT_EQ("UE55A", ISystemInfo::getSelectedSubmodel(false));
}

TEST_F(SubmodelTest, InvalidZoneCodeLeavesTheModelAlone) {
    device.setConf("system-info.904", "int 20");
    EXPECT_EQ("UE55A", ISystemInfo::getSelectedSubmodel(false));
    ISystemInfo::setSelectedSubmodel("XE65A");
    EXPECT_EQ("XE65A", storedText(kSelectedKey));
}

TEST_F(SubmodelTest, SavingTheEmptyTextWritesNothing) {
    ASSERT_EQ(0, vconf_set_str(kSelectedKey, "UE65A"));
    ISystemInfo::setSelectedSubmodel("");
    for (auto& m : device.logMessages()) std::cerr << "RAW " << m << "\n";
    EXPECT_EQ("UE65A", storedText(kSelectedKey));
    EXPECT_THAT(loggedTexts(device, "ERR"), ElementsAre("Not expected submodel string, should not be empty here"));
}

TEST_F(SubmodelTest, NothingStoredReadsAsDefaults) {
    EXPECT_EQ("", ISystemInfo::getStoredSelectedSubmodel());
    EXPECT_FALSE(ISystemInfo::isSubmodelSelected());
    EXPECT_FALSE(ISystemInfo::isAnySubmodel());
    EXPECT_EQ("UE55A", ISystemInfo::getFlashedSubmodel());
    EXPECT_THAT(loggedTexts(device, "WRN"),
                ElementsAre(std::string("vconf_get failed while trying to access key: ") + kSelectedKey +
                                ", return default value",
                            std::string("vconf_get failed while trying to access key: ") + kSelectedKey +
                                ", return default value",
                            std::string("vconf_get failed while trying to access key: ") + kAnySubmodelKey +
                                ", return default value",
                            std::string("vconf_get failed while trying to access key: ") + kFlashedKey +
                                ", return default value"));
}

TEST_F(SubmodelTest, FlashedSubmodelAndAnySubmodelFlagRoundTrip) {
    ISystemInfo::setFlashedSubmodel("QE75C");
    EXPECT_EQ("QE75C", storedText(kFlashedKey));
    EXPECT_EQ("QE75C", ISystemInfo::getFlashedSubmodel());

    ISystemInfo::setAnySubmodel(true);
    EXPECT_TRUE(ISystemInfo::isAnySubmodel());
    ISystemInfo::setAnySubmodel(false);
    EXPECT_FALSE(ISystemInfo::isAnySubmodel());
    EXPECT_THAT(loggedTexts(device, "ERR"), IsEmpty());
}

TEST_F(SubmodelTest, RefusedWritesAreLoggedWithDiagnosticsNotThrown) {
    // vconf refuses values longer than 4096 bytes.
    const std::string tooLong(5000, 'Q');
    ASSERT_EQ(0, vconf_set_str(kFlashedKey, "QE75C"));
    EXPECT_NO_THROW(ISystemInfo::setFlashedSubmodel(tooLong));
    EXPECT_NO_THROW(ISystemInfo::setSelectedSubmodel(tooLong));
    EXPECT_EQ("QE75C", storedText(kFlashedKey));
    EXPECT_EQ("<absent>", storedText(kSelectedKey));

    const std::vector<std::string> errors = loggedTexts(device, "ERR");
    ASSERT_EQ(2u, errors.size());
    // The sentence is followed at once by the diagnostic text, which begins with the throw site.
    EXPECT_THAT(errors[0], ContainsRegex("^Error while saving flashed submodel string[^[:space:]]"));
    EXPECT_THAT(errors[1], ContainsRegex("^Error while saving selected submodel string[^[:space:]]"));
    const std::string allLines = ::testing::PrintToString(device.logMessages());
    EXPECT_THAT(allLines, HasSubstr(std::string("vconf_set failed while trying to access key: ") + kFlashedKey));
    EXPECT_THAT(allLines, HasSubstr(std::string("vconf_set failed while trying to access key: ") + kSelectedKey));
}

// The plug-in never initialises the product: only reads that fall back to the own model fail.
TEST(SubmodelWithoutProductTest, StoredSelectionIsReadableButTheOwnModelIsNot) {
    Testing::TestDevice device;
    device.setConf("system-info.904", "int 2");
    ASSERT_EQ(0, vconf_set_str(kSelectedKey, "UE65A"));
    EXPECT_EQ("UE65A", ISystemInfo::getStoredSelectedSubmodel());
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_THROW(ISystemInfo::setSelectedSubmodel("BE65A"), ProductUninitializedException);

    ASSERT_EQ(0, vconf_unset(kSelectedKey));
    EXPECT_THROW(ISystemInfo::getSelectedSubmodel(true), ProductUninitializedException);
    EXPECT_THROW(ISystemInfo::getFlashedSubmodel(), ProductUninitializedException);
}

} // namespace
} // namespace Platform
} // namespace Orvo
