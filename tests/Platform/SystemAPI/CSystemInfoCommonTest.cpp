// SANDBOXED: each case is its own process, so the product is initialised once per case.
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <gmock/gmock.h>
#include <vconf.h>

#include <cstdlib>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Platform::ISystemInfo;

constexpr const char* kFlashedKey = "db/menu/support/softwareupdate/flashedSubmodel";
constexpr const char* kSelectedKey = "db/menu/support/softwareupdate/selectedSubmodel";
constexpr const char* kAnySubmodelKey = "db/menu/support/softwareupdate/isAnySubmodel";

// What the settings store holds under a key, read past the code under test.
std::string storedText(const char* key) {
    char* text = vconf_get_str(key);
    const std::string copy = text != nullptr ? text : "(none)";
    std::free(text);
    return copy;
}

int storedFlag() {
    int flag = -1;
    return vconf_get_bool(kAnySubmodelKey, &flag) == 0 ? flag : -1;
}

class SubmodelTest : public Test {
protected:
    void SetUp() override {
        device.setConf("system-info.128", "string UE55A-1302.5");
        Platform::IProductInfo::initializeProduct();
    }

    TestDevice device;
};

TEST_F(SubmodelTest, SelectedSubmodelRoundTripsWithAndWithoutZoneLetter) {
    ISystemInfo::setSelectedSubmodel("QE65B");
    EXPECT_EQ("QE65B", storedText(kSelectedKey));
    EXPECT_EQ("QE65B", ISystemInfo::getSelectedSubmodel(false));
    ISystemInfo::setSelectedSubmodel("UE55A");
    EXPECT_EQ("", storedText(kSelectedKey));

    device.setConf("system-info.904", "int 2"); // zone letter B
    EXPECT_EQ("BE55A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_EQ("UE55A", ISystemInfo::getSelectedSubmodel(true));
    ISystemInfo::setSelectedSubmodel("BE65A");
    EXPECT_EQ("UE65A", storedText(kSelectedKey));
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_TRUE(ISystemInfo::isSubmodelSelected());
    ISystemInfo::setSelectedSubmodel("BE55A"); // the own model
    EXPECT_EQ("", storedText(kSelectedKey));
    EXPECT_FALSE(ISystemInfo::isSubmodelSelected());
}

TEST_F(SubmodelTest, FlashedSubmodelAndFlagRoundTripRefusedSavesAreLogged) {
    EXPECT_EQ("UE55A", ISystemInfo::getFlashedSubmodel());
    EXPECT_FALSE(ISystemInfo::isAnySubmodel());
    ISystemInfo::setFlashedSubmodel("QE75C");
    ISystemInfo::setAnySubmodel(true);
    EXPECT_EQ("QE75C", storedText(kFlashedKey));
    EXPECT_EQ(1, storedFlag());
    ASSERT_EQ(0, vconf_set_str(kFlashedKey, "QE85D"));
    ASSERT_EQ(0, vconf_set_bool(kAnySubmodelKey, 0));
    EXPECT_EQ("QE85D", ISystemInfo::getFlashedSubmodel());
    EXPECT_FALSE(ISystemInfo::isAnySubmodel());

    ASSERT_EQ(0, vconf_set_str(kSelectedKey, "UE65A"));
    ISystemInfo::setSelectedSubmodel("");
    const std::string tooLong(5000, 'Q'); // vconf holds at most 4096 bytes
    ISystemInfo::setFlashedSubmodel(tooLong);
    ISystemInfo::setSelectedSubmodel(tooLong);
    EXPECT_EQ("UE65A", storedText(kSelectedKey));
    EXPECT_EQ("QE85D", storedText(kFlashedKey));
    // Each sentence is followed at once by the diagnostic text.
    EXPECT_THAT(loggedTexts(device, "ERR"),
                ElementsAre("Not expected submodel string, should not be empty here",
                            ContainsRegex("^Error while saving flashed submodel string[^[:space:]]"),
                            ContainsRegex("^Error while saving selected submodel string[^[:space:]]")));
}

// The plug-in never initialises the product: only the fallbacks to the own model fail there.
TEST(SubmodelWithoutProductTest, StoredSelectionIsReadableButTheOwnModelIsNot) {
    TestDevice device;
    device.setConf("system-info.904", "int 2");
    ASSERT_EQ(0, vconf_set_str(kSelectedKey, "UE65A"));
    EXPECT_EQ("UE65A", ISystemInfo::getStoredSelectedSubmodel());
    EXPECT_EQ("BE65A", ISystemInfo::getSelectedSubmodel(false));
    EXPECT_THROW(ISystemInfo::setSelectedSubmodel("BE65A"), Platform::ProductUninitializedException);
    ASSERT_EQ(0, vconf_set_str(kSelectedKey, ""));
    EXPECT_THROW(ISystemInfo::getSelectedSubmodel(true), Platform::ProductUninitializedException);
}

} // namespace
} // namespace Orvo::Testing
