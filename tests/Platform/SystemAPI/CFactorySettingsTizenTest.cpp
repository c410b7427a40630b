// Each case runs in its own process (SANDBOXED): the debug-and-test parameters are loaded once
// per case, from the device's system read-write directory.

#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"

#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"
#include "LogLines.h"
#include "Platform/Product/IProductInfo.h"
#include "orvo/testing/TestDevice.h"

#include <boost/optional/optional_io.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <string>

namespace Orvo {
namespace Platform {
namespace {

using OrvoCommon::DebugAndTestParameters;
using Testing::loggedTexts;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const char* const kFactoryKeys[] = {"869", "890", "902", "903", "904", "922", "923", "10130"};

class FactorySettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* key : kFactoryKeys) {
            device.setConf(std::string("system-info.") + key, "error -5");
        }
        IProductInfo::initializeProduct();
        device.clearLogs();
    }

    void setFactory(const char* key, int value) {
        device.setConf(std::string("system-info.") + key, "int " + std::to_string(value));
    }

    // Loads the debug-and-test parameters from a file written with these values.
    void loadParameters(const std::map<std::string, int32_t>& customIntParams = {}, bool useOTNTestServer = false) {
        DebugAndTestParameters written;
        for (const auto& param : customIntParams) {
            written.setCustomIntParam(param.first, param.second);
        }
        written.setUseOTNTestServer(useOTNTestServer);
        written.save(DebugAndTestParameters::filePath());
        DebugAndTestParameters::loadDebugAndTestParameters();
        ASSERT_EQ(written, DebugAndTestParameters::getDebugAndTestParameters());
        device.clearLogs();
    }

    Testing::TestDevice device;
};

TEST_F(FactorySettingsTest, UnreadableFactoryMenuGivesTheDefaults) {
    loadParameters();
    EXPECT_TRUE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_EQ(IFactorySettings::kTestServer, IFactorySettings::getOTNServerType());
    EXPECT_EQ(boost::none, IFactorySettings::getZoneCode());
    EXPECT_FALSE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_FALSE(IFactorySettings::isShortOtaDuration());
    EXPECT_FALSE(IFactorySettings::isFastBootInProductionMode());
    EXPECT_FALSE(IFactorySettings::isOtaSupportedByFactory());
    EXPECT_THAT(
        loggedTexts(device, "INF"),
        ElementsAre("Failed to fetch key 902 (ID_OTN_ONOFF) from factory menu. Default value will be used: 1",
                    "isRetailTvOtnEnabled(): 1",
                    "Failed to fetch key 10130 (ID_HOTEL_OTN_UPDATE) from factory menu. Default value will be used: 1",
                    "isB2BTvOtnEnabled(): 1",
                    "Failed to fetch key 903 (ID_OTN_SERVER_TYPE) from factory menu. Default value will be used: 1",
                    "Failed to fetch key 904 (ID_OTN_TESTSERVER) from factory menu. Default value will be used: 0",
                    "Failed to fetch key 923 (ID_ORVO_FAIL_TEST) from factory menu. Default value will be used: 0",
                    "IFactorySettings::isOrvoFailTestActive(): 0",
                    "Failed to fetch key 922 (ID_ORVO_DURATION) from factory menu. Default value will be used: 0",
                    "ID_ORVO_DURATION option is not set in Factory settings. Using normal OTA timeout.",
                    "Failed to fetch key 869 (ID_FAST_USB_BOOTING_ONOFF) from factory menu. Default value will be "
                    "used: 0",
                    "IFactorySettings::isFastBootInProductionMode(): 0", "Factory settings doesn't support OTA"));
}

TEST_F(FactorySettingsTest, FactoryValuesAreReadAndLogged) {
    loadParameters();
    setFactory("902", 0);
    setFactory("10130", 0);
    setFactory("923", 7);
    setFactory("922", -1);
    setFactory("869", 1);
    EXPECT_FALSE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_FALSE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_TRUE(IFactorySettings::isShortOtaDuration());
    EXPECT_TRUE(IFactorySettings::isFastBootInProductionMode());
    IFactorySettings::factoryOsUpgrade();
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("isRetailTvOtnEnabled(): 0", "isB2BTvOtnEnabled(): 0",
                            "IFactorySettings::isOrvoFailTestActive(): 7",
                            "ID_ORVO_DURATION option is set in Factory settings. Using short OTA timeout.",
                            "IFactorySettings::isFastBootInProductionMode(): 1", "Factory os upgrade api is disabled."));
}

TEST_F(FactorySettingsTest, OtaSupportNeedsExactlyOne) {
    setFactory("890", 1);
    EXPECT_TRUE(IFactorySettings::isOtaSupportedByFactory());
    for (int value : {0, 2, -1, 257}) {
        setFactory("890", value);
        EXPECT_FALSE(IFactorySettings::isOtaSupportedByFactory()) << value;
    }
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("Factory settings supports OTA", "Factory settings doesn't support OTA",
                            "Factory settings doesn't support OTA", "Factory settings doesn't support OTA",
                            "Factory settings doesn't support OTA"));
}

struct ZoneCase {
    int factoryValue;
    boost::optional<char> zone;
};

void PrintTo(const ZoneCase& zoneCase, std::ostream* out) {
    *out << zoneCase.factoryValue;
}

class ZoneCodeTest : public FactorySettingsTest, public ::testing::WithParamInterface<ZoneCase> {};

TEST_P(ZoneCodeTest, LowByteGivesTheLetter) {
    setFactory("904", GetParam().factoryValue);
    device.clearLogs();
    EXPECT_EQ(GetParam().zone, IFactorySettings::getZoneCode());
    const std::vector<std::string> info = loggedTexts(device, "INF");
    // Zero is silently no zone; any other value without a letter is reported.
    if (GetParam().zone || GetParam().factoryValue == 0) {
        EXPECT_THAT(info, IsEmpty());
    } else {
        EXPECT_THAT(info, ElementsAre("Invalid zone code: " + std::to_string(GetParam().factoryValue)));
    }
}

INSTANTIATE_TEST_SUITE_P(Values, ZoneCodeTest,
                         ::testing::Values(ZoneCase{0, boost::none}, ZoneCase{1, 'A'}, ZoneCase{2, 'B'},
                                           ZoneCase{19, 'S'}, ZoneCase{20, boost::none}, ZoneCase{21, 'U'},
                                           ZoneCase{26, 'Z'}, ZoneCase{27, boost::none}, ZoneCase{256, boost::none},
                                           ZoneCase{257, 'A'}, ZoneCase{-1, boost::none},
                                           ZoneCase{-255, 'A'}));

TEST_F(FactorySettingsTest, ServerTypeFromFactoryValue) {
    loadParameters();
    setFactory("903", 0);
    EXPECT_EQ(IFactorySettings::kRegularServer, IFactorySettings::getOTNServerType());
    setFactory("903", 1);
    EXPECT_EQ(IFactorySettings::kTestServer, IFactorySettings::getOTNServerType());
    EXPECT_THAT(loggedTexts(device, "INF"), IsEmpty());
    for (int value : {5, -3}) {
        setFactory("903", value);
        EXPECT_EQ(IFactorySettings::kTestServer, IFactorySettings::getOTNServerType());
    }
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("Invalid OTN server type: 5. Using test server.",
                                                        "Invalid OTN server type: -3. Using test server."));
}

TEST_F(FactorySettingsTest, TestServerParameterWinsButTheFactoryIsStillRead) {
    loadParameters({}, true);
    for (int value : {0, 1, 5}) {
        setFactory("903", value);
        EXPECT_EQ(IFactorySettings::kDebugParametersTestServer, IFactorySettings::getOTNServerType()) << value;
    }
    device.setConf("system-info.903", "error -5");
    EXPECT_EQ(IFactorySettings::kDebugParametersTestServer, IFactorySettings::getOTNServerType());
    EXPECT_THAT(loggedTexts(device, "INF"),
                Contains("Failed to fetch key 903 (ID_OTN_SERVER_TYPE) from factory menu. Default value will be used: 1"));
}

TEST_F(FactorySettingsTest, OtnOverrideZeroForcesOffWithoutReadingTheFactory) {
    loadParameters({{"IFactorySettings::overrideOTNEnabled", 0}});
    setFactory("902", 1);
    setFactory("10130", 1);
    EXPECT_FALSE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_FALSE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("OTNEnabled overridden to: 0", "isRetailTvOtnEnabled(): 0",
                                                        "OTNEnabled overridden to: 0", "isB2BTvOtnEnabled(): 0"));
}

TEST_F(FactorySettingsTest, OtnOverrideNonZeroForcesOn) {
    loadParameters({{"IFactorySettings::overrideOTNEnabled", 3}});
    setFactory("902", 0);
    EXPECT_TRUE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("OTNEnabled overridden to: 1", "isRetailTvOtnEnabled(): 1",
                                                        "OTNEnabled overridden to: 1", "isB2BTvOtnEnabled(): 1"));
}

TEST_F(FactorySettingsTest, FailTestOverride) {
    loadParameters({{"IFactorySettings::overrideOrvoFailTestActive", 1}});
    setFactory("923", 0);
    EXPECT_TRUE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("OrvoFailTestActive overridden to: 1"));
}

TEST_F(FactorySettingsTest, FailTestOverrideZeroSkipsTheFactory) {
    loadParameters({{"IFactorySettings::overrideOrvoFailTestActive", 0}});
    EXPECT_FALSE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("OrvoFailTestActive overridden to: 0"));
}

TEST_F(FactorySettingsTest, OverridesAreSeparate) {
    loadParameters({{"IFactorySettings::overrideOrvoFailTestActive", 1}});
    setFactory("902", 0);
    EXPECT_FALSE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_THAT(loggedTexts(device, "INF"), Not(Contains("OTNEnabled overridden to: 1")));
}

} // namespace
} // namespace Platform
} // namespace Orvo
