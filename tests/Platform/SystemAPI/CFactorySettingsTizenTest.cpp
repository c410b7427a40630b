// SANDBOXED: each case is its own process and loads the debug-and-test parameters once, from the
// device's system read-write directory.
#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"

#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/optional/optional_io.hpp>
#include <gmock/gmock.h>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using OrvoCommon::DebugAndTestParameters;
using Platform::IFactorySettings;

class FactorySettingsTest : public Test {
protected:
    void SetUp() override {
        for (const char* key : {"869", "890", "902", "903", "904", "922", "923", "10130"}) {
            device.setConf(std::string("system-info.") + key, "error -5");
        }
        Platform::IProductInfo::initializeProduct();
    }

    void setFactory(const char* key, int value) {
        device.setConf(std::string("system-info.") + key, "int " + std::to_string(value));
    }

    void loadParameters(const DebugAndTestParameters& parameters = DebugAndTestParameters()) {
        parameters.save(DebugAndTestParameters::filePath());
        DebugAndTestParameters::loadDebugAndTestParameters();
        device.clearLogs();
    }

    TestDevice device;
};

TEST_F(FactorySettingsTest, UnreadableFactoryMenuGivesTheDefaults) {
    loadParameters();
    EXPECT_TRUE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_EQ(IFactorySettings::kTestServer, IFactorySettings::getOTNServerType());
    EXPECT_EQ(boost::none, IFactorySettings::getZoneCode());
    EXPECT_FALSE(IFactorySettings::isOrvoFailTestActive() || IFactorySettings::isShortOtaDuration() ||
                 IFactorySettings::isFastBootInProductionMode() || IFactorySettings::isOtaSupportedByFactory());
    EXPECT_THAT(
        loggedTexts(device, "INF"),
        ElementsAre("Failed to fetch key 902 (ID_OTN_ONOFF) from factory menu. Default value will be used: 1",
                    "isRetailTvOtnEnabled(): 1", _, "isB2BTvOtnEnabled(): 1", _, _, _,
                    "IFactorySettings::isOrvoFailTestActive(): 0", _,
                    "ID_ORVO_DURATION option is not set in Factory settings. Using normal OTA timeout.", _,
                    "IFactorySettings::isFastBootInProductionMode(): 0", "Factory settings doesn't support OTA"));
}

TEST_F(FactorySettingsTest, ReadableFactoryValuesDecide) {
    loadParameters();
    setFactory("10130", 0);
    setFactory("922", -1);
    EXPECT_FALSE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isShortOtaDuration());
    for (const auto& server :
         {std::make_pair(0, IFactorySettings::kRegularServer), std::make_pair(1, IFactorySettings::kTestServer),
          std::make_pair(5, IFactorySettings::kTestServer)}) {
        setFactory("903", server.first);
        EXPECT_EQ(server.second, IFactorySettings::getOTNServerType()) << server.first;
    }
    for (const int ota : {1, 2}) {
        setFactory("890", ota);
        EXPECT_EQ(ota == 1, IFactorySettings::isOtaSupportedByFactory());
    }
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("isB2BTvOtnEnabled(): 0",
                            "ID_ORVO_DURATION option is set in Factory settings. Using short OTA timeout.",
                            "Invalid OTN server type: 5. Using test server.", "Factory settings supports OTA",
                            "Factory settings doesn't support OTA"));
}

// The low byte is the letter (1 is A); the whole value is reported. T (20) is never a zone.
TEST_F(FactorySettingsTest, ZoneCodeComesFromTheLowByte) {
    const std::pair<int, boost::optional<char>> zones[] = {{0, boost::none}, {1, 'A'},          {20, boost::none},
                                                           {26, 'Z'},        {27, boost::none}, {257, 'A'}};
    for (const auto& zone : zones) {
        setFactory("904", zone.first);
        device.clearLogs();
        EXPECT_EQ(zone.second, IFactorySettings::getZoneCode()) << zone.first;
        const bool reported = !zone.second && zone.first != 0;
        EXPECT_EQ(loggedTexts(device, "INF"),
                  std::vector<std::string>(reported, "Invalid zone code: " + std::to_string(zone.first)));
    }
}

TEST_F(FactorySettingsTest, DebugParametersOverrideTheFactory) {
    DebugAndTestParameters parameters;
    parameters.setCustomIntParam("IFactorySettings::overrideOTNEnabled", 0);
    parameters.setCustomIntParam("IFactorySettings::overrideOrvoFailTestActive", 1);
    parameters.setUseOTNTestServer(true);
    loadParameters(parameters);
    setFactory("902", 1);
    setFactory("923", 0);
    EXPECT_FALSE(IFactorySettings::isRetailTvOtnEnabled() || IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_EQ(IFactorySettings::kDebugParametersTestServer, IFactorySettings::getOTNServerType());
    // The server type is read from the factory all the same.
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("OTNEnabled overridden to: 0", "isRetailTvOtnEnabled(): 0", "OTNEnabled overridden to: 0",
                            "isB2BTvOtnEnabled(): 0", "OrvoFailTestActive overridden to: 1",
                            StartsWith("Failed to fetch key 903 ")));
}

} // namespace
} // namespace Orvo::Testing
