// SANDBOXED: each case is its own process and loads the debug-and-test parameters once, from the
// device's system read-write directory.

#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"

#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/optional/optional_io.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvo {
namespace Platform {
namespace {

using OrvoCommon::DebugAndTestParameters;
using Testing::loggedTexts;
using ::testing::Contains;
using ::testing::ElementsAre;

class FactorySettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* key : {"869", "890", "902", "903", "904", "922", "923", "10130"}) {
            device.setConf(std::string("system-info.") + key, "error -5");
        }
        IProductInfo::initializeProduct();
    }

    void setFactory(const char* key, int value) {
        device.setConf(std::string("system-info.") + key, "int " + std::to_string(value));
    }

    // Loads the debug-and-test parameters from a file that sets one custom parameter.
    void loadParameters(const std::string& customName = "", int customValue = 0, bool useOTNTestServer = false) {
        DebugAndTestParameters written;
        if (!customName.empty()) written.setCustomIntParam(customName, customValue);
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
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("Failed to fetch key 902 (ID_OTN_ONOFF) from factory menu. Default value will be used: 1",
                            "isRetailTvOtnEnabled(): 1", ::testing::_, "isB2BTvOtnEnabled(): 1", ::testing::_,
                            ::testing::_, ::testing::_, "IFactorySettings::isOrvoFailTestActive(): 0", ::testing::_,
                            "ID_ORVO_DURATION option is not set in Factory settings. Using normal OTA timeout.",
                            ::testing::_, "IFactorySettings::isFastBootInProductionMode(): 0",
                            "Factory settings doesn't support OTA"));
}

TEST_F(FactorySettingsTest, ZoneCodeComesFromTheLowByte) {
    const struct {
        int factoryValue;
        boost::optional<char> zone;
    } cases[] = {{0, boost::none}, {1, 'A'}, {20, boost::none}, {26, 'Z'}, {27, boost::none}, {257, 'A'}};
    for (const auto& expected : cases) {
        setFactory("904", expected.factoryValue);
        device.clearLogs();
        EXPECT_EQ(expected.zone, IFactorySettings::getZoneCode()) << expected.factoryValue;
        const bool reported = !expected.zone && expected.factoryValue != 0;
        EXPECT_EQ(reported ? std::vector<std::string>{"Invalid zone code: " + std::to_string(expected.factoryValue)}
                           : std::vector<std::string>{},
                  loggedTexts(device, "INF"));
    }
}

TEST_F(FactorySettingsTest, ServerTypeFollowsTheFactoryValue) {
    loadParameters();
    const std::pair<int, unsigned> cases[] = {
        {0, IFactorySettings::kRegularServer}, {1, IFactorySettings::kTestServer}, {5, IFactorySettings::kTestServer}};
    for (const auto& expected : cases) {
        setFactory("903", expected.first);
        EXPECT_EQ(expected.second, IFactorySettings::getOTNServerType()) << expected.first;
    }
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("Invalid OTN server type: 5. Using test server."));
}

TEST_F(FactorySettingsTest, TestServerParameterWinsAfterTheFactoryRead) {
    loadParameters("", 0, true);
    EXPECT_EQ(IFactorySettings::kDebugParametersTestServer, IFactorySettings::getOTNServerType());
    EXPECT_THAT(loggedTexts(device, "INF"), Contains(::testing::StartsWith("Failed to fetch key 903 ")));
}

TEST_F(FactorySettingsTest, OtnOverrideOfZeroSkipsTheFactory) {
    loadParameters("IFactorySettings::overrideOTNEnabled", 0);
    setFactory("902", 1);
    EXPECT_FALSE(IFactorySettings::isRetailTvOtnEnabled());
    EXPECT_FALSE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_FALSE(IFactorySettings::isOrvoFailTestActive());  // has its own override
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("OTNEnabled overridden to: 0", "isRetailTvOtnEnabled(): 0", "OTNEnabled overridden to: 0",
                            "isB2BTvOtnEnabled(): 0", ::testing::StartsWith("Failed to fetch key 923 "),
                            "IFactorySettings::isOrvoFailTestActive(): 0"));
}

TEST_F(FactorySettingsTest, FailTestOverrideOfOneWins) {
    loadParameters("IFactorySettings::overrideOrvoFailTestActive", 1);
    setFactory("923", 0);
    EXPECT_TRUE(IFactorySettings::isOrvoFailTestActive());
    EXPECT_THAT(loggedTexts(device, "INF"), ElementsAre("OrvoFailTestActive overridden to: 1"));
}

TEST_F(FactorySettingsTest, FactoryValuesAreUsedWhenReadable) {
    setFactory("10130", 0);
    setFactory("922", -1);
    setFactory("890", 1);
    loadParameters();
    EXPECT_FALSE(IFactorySettings::isB2BTvOtnEnabled());
    EXPECT_TRUE(IFactorySettings::isShortOtaDuration());
    EXPECT_TRUE(IFactorySettings::isOtaSupportedByFactory());
    setFactory("890", 2);
    EXPECT_FALSE(IFactorySettings::isOtaSupportedByFactory());
    EXPECT_THAT(loggedTexts(device, "INF"),
                ElementsAre("isB2BTvOtnEnabled(): 0",
                            "ID_ORVO_DURATION option is set in Factory settings. Using short OTA timeout.",
                            "Factory settings supports OTA", "Factory settings doesn't support OTA"));
}

} // namespace
} // namespace Platform
} // namespace Orvo
