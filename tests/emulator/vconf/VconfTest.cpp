#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cstdlib>
#include <memory>

namespace {

struct FreeDeleter {
    void operator()(char* text) const { std::free(text); }
};
using CString = std::unique_ptr<char, FreeDeleter>;

class VconfTest : public ::testing::Test {
protected:
    Orvo::Testing::TestDevice device;
};

TEST_F(VconfTest, EveryTypeReadsBackWhatWasSet)
{
    ASSERT_EQ(0, vconf_set_int("db/t/int", -123456));
    ASSERT_EQ(0, vconf_set_bool("file/t/bool", 1));
    ASSERT_EQ(0, vconf_set_dbl("memory/t/dbl", 0.1));
    ASSERT_EQ(0, vconf_set_str("db/t/str", "Grüße\ttab"));
    int intValue = 0;
    int boolValue = 0;
    double doubleValue = 0;
    EXPECT_EQ(0, vconf_get_int("db/t/int", &intValue));
    EXPECT_EQ(-123456, intValue);
    EXPECT_EQ(0, vconf_get_bool("file/t/bool", &boolValue));
    EXPECT_EQ(1, boolValue);
    EXPECT_EQ(0, vconf_get_dbl("memory/t/dbl", &doubleValue));
    EXPECT_EQ(0.1, doubleValue);
    const CString text(vconf_get_str("db/t/str"));
    ASSERT_NE(nullptr, text);
    EXPECT_STREQ("Grüße\ttab", text.get());
    EXPECT_EQ(VCONF_OK, vconf_get_ext_errno());
}

TEST_F(VconfTest, BoolsAreStoredAsZeroOrOne)
{
    ASSERT_EQ(0, vconf_set_bool("db/t/b", 42));
    int value = 0;
    ASSERT_EQ(0, vconf_get_bool("db/t/b", &value));
    EXPECT_EQ(1, value);
}

TEST_F(VconfTest, KeysOutsideTheThreePrefixesFailWithWrongPrefix)
{
    int value = 5;
    for (const char* key : {"dbx/a", "memoryx/a", "/db/a", "settings/a", ""}) {
        EXPECT_EQ(-1, vconf_set_int(key, 1)) << key;
        EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, vconf_get_ext_errno()) << key;
        EXPECT_EQ(-1, vconf_get_int(key, &value)) << key;
        EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, vconf_get_ext_errno()) << key;
    }
    EXPECT_EQ(5, value);
}

TEST_F(VconfTest, AMissingKeyFailsWithNoEntryAndLeavesTheOutputUntouched)
{
    int value = 77;
    double doubleValue = 7.5;
    EXPECT_EQ(-1, vconf_get_int("db/t/missing", &value));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_EQ(77, value);
    EXPECT_EQ(-1, vconf_get_dbl("memory/t/missing", &doubleValue));
    EXPECT_EQ(7.5, doubleValue);
    EXPECT_EQ(nullptr, vconf_get_str("file/t/missing"));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
}

TEST_F(VconfTest, AWrongTypeFailsAndLeavesTheOutputUntouched)
{
    ASSERT_EQ(0, vconf_set_str("db/t/s", "12"));
    ASSERT_EQ(0, vconf_set_int("db/t/i", 1));
    int value = 99;
    double doubleValue = 9.5;
    EXPECT_EQ(-1, vconf_get_int("db/t/s", &value));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
    EXPECT_EQ(-1, vconf_get_bool("db/t/i", &value));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
    EXPECT_EQ(99, value);
    EXPECT_EQ(-1, vconf_get_dbl("db/t/i", &doubleValue));
    EXPECT_EQ(9.5, doubleValue);
    EXPECT_EQ(nullptr, vconf_get_str("db/t/i"));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
}

TEST_F(VconfTest, SetWithAnotherTypeReplacesTheKey)
{
    ASSERT_EQ(0, vconf_set_int("db/t/k", 3));
    ASSERT_EQ(0, vconf_set_str("db/t/k", "three"));
    int value = 0;
    EXPECT_EQ(-1, vconf_get_int("db/t/k", &value));
    const CString text(vconf_get_str("db/t/k"));
    ASSERT_NE(nullptr, text);
    EXPECT_STREQ("three", text.get());
}

TEST_F(VconfTest, NullArgumentsFailWithoutCrashing)
{
    int value = 0;
    EXPECT_EQ(-1, vconf_set_int(nullptr, 1));
    EXPECT_EQ(-1, vconf_set_str("db/t/s", nullptr));
    EXPECT_EQ(-1, vconf_get_int(nullptr, &value));
    ASSERT_EQ(0, vconf_set_int("db/t/i", 1));
    EXPECT_EQ(-1, vconf_get_int("db/t/i", nullptr));
    EXPECT_EQ(-1, vconf_get_dbl("db/t/i", nullptr));
    EXPECT_EQ(nullptr, vconf_get_str(nullptr));
    EXPECT_EQ(-1, vconf_unset(nullptr));
}

TEST_F(VconfTest, ValuesAreLimitedTo4096Bytes)
{
    const std::string longest(Orvo::Emulator::kMaxSettingValueLength, 'x');
    EXPECT_EQ(0, vconf_set_str("db/t/long", longest.c_str()));
    EXPECT_EQ(-1, vconf_set_str("db/t/long", (longest + "y").c_str()));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, vconf_get_ext_errno());
    const CString text(vconf_get_str("db/t/long"));
    ASSERT_NE(nullptr, text);
    EXPECT_EQ(longest, text.get());
}

TEST_F(VconfTest, VolatileKeysAreClearedAtRebootAndPersistentOnesStay)
{
    ASSERT_EQ(0, vconf_set_int("memory/t/volatile", 1));
    ASSERT_EQ(0, vconf_set_int("db/t/persistent", 2));
    Orvo::Emulator::clearVolatileSettings(device.dir());
    int value = 0;
    EXPECT_EQ(-1, vconf_get_int("memory/t/volatile", &value));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_EQ(0, vconf_get_int("db/t/persistent", &value));
    EXPECT_EQ(2, value);
}

} // namespace
