#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <system_info.h>

#include <cstdlib>

namespace {

const system_info_key_e kIntKey = static_cast<system_info_key_e>(90001);
const system_info_key_e kBoolKey = static_cast<system_info_key_e>(90002);
const system_info_key_e kDoubleKey = static_cast<system_info_key_e>(90003);
const system_info_key_e kStringKey = static_cast<system_info_key_e>(90004);
const system_info_key_e kFailingKey = static_cast<system_info_key_e>(90005);
const system_info_key_e kUnlistedKey = static_cast<system_info_key_e>(90006);

class SystemInfoTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        device.setConf("system-info.90001", "int -17");
        device.setConf("system-info.90002", "bool true");
        device.setConf("system-info.90003", "double 2.25");
        device.setConf("system-info.90004", "string T-ABC 1.0");
        device.setConf("system-info.90005", "error -5");
    }

    Orvo::Testing::TestDevice device;
};

TEST_F(SystemInfoTest, ReadsEachTypeFromTheDeviceConfiguration)
{
    int intValue = 0;
    bool boolValue = false;
    double doubleValue = 0;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_int(kIntKey, &intValue));
    EXPECT_EQ(-17, intValue);
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_bool(kBoolKey, &boolValue));
    EXPECT_TRUE(boolValue);
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_double(kDoubleKey, &doubleValue));
    EXPECT_EQ(2.25, doubleValue);
    ASSERT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_string(kStringKey, &text));
    EXPECT_STREQ("T-ABC 1.0", text);
    std::free(text);
}

TEST_F(SystemInfoTest, AnUnlistedKeyOrAnotherTypeIsAnInvalidParameterAndWritesNothing)
{
    int intValue = 11;
    bool boolValue = true;
    double doubleValue = 1.5;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_int(kUnlistedKey, &intValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_int(kStringKey, &intValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_bool(kIntKey, &boolValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_double(kIntKey, &doubleValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_string(kIntKey, &text));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_string(kUnlistedKey, &text));
    EXPECT_EQ(11, intValue);
    EXPECT_TRUE(boolValue);
    EXPECT_EQ(1.5, doubleValue);
    EXPECT_EQ(nullptr, text);
}

TEST_F(SystemInfoTest, AnErrorEntryFailsEveryReadWithItsCode)
{
    int intValue = 3;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_value_int(kFailingKey, &intValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_value_string(kFailingKey, &text));
    EXPECT_EQ(3, intValue);
    EXPECT_EQ(nullptr, text);
}

TEST_F(SystemInfoTest, ChangesToTheConfigurationAreSeenAtOnce)
{
    int intValue = 0;
    device.setConf("system-info.90001", "int 5");
    ASSERT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_int(kIntKey, &intValue));
    EXPECT_EQ(5, intValue);
    device.removeConf("system-info.90001");
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_int(kIntKey, &intValue));
}

} // namespace
