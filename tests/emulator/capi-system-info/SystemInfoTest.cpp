#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <system_info.h>

#include <cstdlib>

TEST(SystemInfo, ReadsEachKeyAsItsTypeFromTheDevicesCurrentConfiguration) {
    Orvo::Testing::TestDevice device;
    device.setConf("system-info.90001", "int -17");
    device.setConf("system-info.90002", "bool true");
    device.setConf("system-info.90003", "string T-ABC 1.0");
    device.setConf("system-info.90004", "error -5");
    const auto key = [](int number) { return static_cast<system_info_key_e>(number); };
    int intValue = 0;
    bool boolValue = false;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_int(key(90001), &intValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_bool(key(90002), &boolValue));
    ASSERT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_value_string(key(90003), &text));
    EXPECT_STREQ("T-ABC 1.0", text);
    std::free(text);
    text = nullptr;
    // Another type, an unlisted key and an error entry fail and leave the output alone.
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_int(key(90003), &intValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_bool(key(90001), &boolValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_string(key(90005), &text));
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_value_bool(key(90004), &boolValue));
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_value_string(key(90004), &text));
    EXPECT_EQ(-17, intValue);
    EXPECT_TRUE(boolValue);
    EXPECT_EQ(nullptr, text);
    device.removeConf("system-info.90001");
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_value_int(key(90001), &intValue)) << "seen at once";
}
