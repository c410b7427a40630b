// Toggle settings, the model-search value, provider properties, through the loaded plug-in on
// the emulated device.

#include "ProviderLibrary.h"

#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cstring>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

constexpr const char* kAutoUpdate = "db/menu/support/softwareupdate/autoupdate";
constexpr const char* kUseCellular = "db/menu/support/softwareupdate/use_cellular_int";
constexpr const char* kSearchModels = "menu/support/softwareupdate/searchmodels";
constexpr const char* kSelectedSubmodel = "db/menu/support/softwareupdate/selectedSubmodel";
constexpr const char* kUntouched = "buffer as the host left it";

class MenuValues : public ::testing::Test {
protected:
    // The host's value-text buffer, prefilled so that a write shows.
    struct HostBuffer {
        HostBuffer() { std::strcpy(bytes, kUntouched); }
        char bytes[255];
        char* pointer = bytes;
    };

    int valueText(const char* itemId, HostBuffer& buffer) {
        return provider.record().getValueText(itemId, &buffer.pointer);
    }

    TestDevice device{"tv"};
    ProviderLibrary library;
    Provider provider{library};
};

TEST_F(MenuValues, IntValuesReachTheSettings) {
    EXPECT_EQ(provider.record().setIntValue(kUseCellular, 1), 0);
    int stored = -1;
    ASSERT_EQ(vconf_get_int(kUseCellular, &stored), 0);
    EXPECT_EQ(stored, 1);

    ASSERT_EQ(vconf_set_int(kAutoUpdate, 7), 0);
    int value = 0;
    EXPECT_EQ(provider.record().getIntValue(kAutoUpdate, &value), 0);
    EXPECT_EQ(value, 7);
}

TEST_F(MenuValues, IntValueFailuresGiveOne) {
    ASSERT_EQ(vconf_unset(kAutoUpdate), 0);
    int value = 42;
    EXPECT_EQ(provider.record().getIntValue(kAutoUpdate, &value), 1);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(provider.record().setIntValue("menu/support/softwareupdate/autoupdate", 1), 1) << "not a settings prefix";
}

TEST_F(MenuValues, ValueTextOfBothTogglesFollowsTheStoredState) {
    for (const char* toggle : {kAutoUpdate, kUseCellular}) {
        SCOPED_TRACE(toggle);
        HostBuffer off, on;
        ASSERT_EQ(vconf_set_int(toggle, 0), 0);
        EXPECT_EQ(valueText(toggle, off), 1);
        EXPECT_STREQ(off.bytes, "SID_OFF");
        EXPECT_EQ(off.pointer, off.bytes) << "the buffer is the host's; nothing is allocated";
        ASSERT_EQ(vconf_set_int(toggle, 1), 0);
        EXPECT_EQ(valueText(toggle, on), 1);
        EXPECT_STREQ(on.bytes, "SID_ON");
    }
}

TEST_F(MenuValues, ValueTextFailuresLeaveTheBufferUntouched) {
    HostBuffer buffer;
    ASSERT_EQ(vconf_set_int(kAutoUpdate, 2), 0);
    EXPECT_EQ(valueText(kAutoUpdate, buffer), -1) << "out-of-range values are not clamped";
    ASSERT_EQ(vconf_set_int(kAutoUpdate, -1), 0);
    EXPECT_EQ(valueText(kAutoUpdate, buffer), -1);
    ASSERT_EQ(vconf_unset(kUseCellular), 0);
    EXPECT_EQ(valueText(kUseCellular, buffer), -1);
    ASSERT_EQ(vconf_set_str(kUseCellular, "1"), 0);
    EXPECT_EQ(valueText(kUseCellular, buffer), -1) << "a text setting is not an integer";
    EXPECT_EQ(valueText("menu/support/softwareupdate/updatenow", buffer), -1);
    EXPECT_EQ(valueText("db/menu/support/softwareupdate/autoupdate/", buffer), -1);
    EXPECT_STREQ(buffer.bytes, kUntouched);
}

TEST_F(MenuValues, ModelSearchShowsTheModelPrefix) {
    device.setConf("system-info.128", "string ABC-DEF-1234.5");
    device.setConf("system-info.904", "int 0");
    vconf_unset(kSelectedSubmodel);
    EXPECT_EQ(provider.valueString(kSearchModels), "ABC-DEF");

    device.setConf("system-info.128", "string ABCDEF");
    EXPECT_EQ(provider.valueString(kSearchModels), "ABCDEF") << "a version without '-' is kept whole";
}

TEST_F(MenuValues, ModelSearchShowsTheSubmodelUnderTheZoneLetter) {
    device.setConf("system-info.128", "string ABC-DEF-1234.5");
    device.setConf("system-info.904", "int 5");
    ASSERT_EQ(vconf_set_str(kSelectedSubmodel, "XYZ"), 0);
    EXPECT_EQ(provider.valueString(kSearchModels), "EYZ");

    ASSERT_EQ(vconf_set_str(kSelectedSubmodel, ""), 0);
    EXPECT_EQ(provider.valueString(kSearchModels), "EBC-DEF");
}

TEST_F(MenuValues, ModelSearchWithNothingKnownIsEmpty) {
    device.removeConf("system-info.128");
    device.setConf("system-info.904", "int 5");
    vconf_unset(kSelectedSubmodel);
    EXPECT_EQ(provider.valueString(kSearchModels), "");
}

TEST_F(MenuValues, OnlyTheModelSearchHasAValueString) {
    char* out = nullptr;
    EXPECT_EQ(provider.record().getValueString("menu/support/softwareupdate/updatenow", &out), -1);
    EXPECT_EQ(out, nullptr);
    char hostsOwn[] = "host's text";
    out = hostsOwn;
    EXPECT_EQ(provider.record().getValueString("menu/support/softwareupdate/searchmodels/", &out), 0);
    EXPECT_EQ(out, hostsOwn);
    EXPECT_EQ(provider.record().getValueString(kSearchModels, nullptr), -1);
}

std::string property(const Provider& provider, const char* key) {
    char* out = nullptr;
    EXPECT_EQ(provider.record().getProviderProperty(key, &out), 0);
    if (out == nullptr) return "<none>";
    std::string value(out);
    provider.record().freeString(out);
    return value;
}

TEST_F(MenuValues, PropertiesNameTheOwnerAndOneComponent) {
    const std::string owner = property(provider, "provider/owner");
    EXPECT_NE(owner, "<none>");
    EXPECT_FALSE(owner.empty());
    const std::string component = property(provider, "provider/main-component");
    EXPECT_EQ(component.rfind("TP_", 0), 0u) << component;
    EXPECT_EQ(component.find_first_of(" \t\n"), std::string::npos) << "one word";
    EXPECT_EQ(property(provider, "provider/sub-component"), component);
}

TEST_F(MenuValues, UnknownPropertyLeavesOutAlone) {
    char hostsOwn[] = "host's text";
    char* out = hostsOwn;
    EXPECT_EQ(provider.record().getProviderProperty("provider/unknown", &out), 0);
    EXPECT_EQ(provider.record().getProviderProperty("provider/owner/", &out), 0);
    EXPECT_EQ(out, hostsOwn);
}

} // namespace
} // namespace Testing
} // namespace Orvo
