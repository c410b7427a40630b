#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cstdlib>
#include <memory>

// The caller owns the copy that vconf_get_str returns: ASan reports it if it leaks.
static std::string getString(const char* key) {
    const std::unique_ptr<char, void (*)(void*)> text(vconf_get_str(key), std::free);
    return text ? text.get() : "<null>";
}

TEST(Vconf, EachTypeReadsBackWhatWasSetAndASetReplacesTheType) {
    const Orvo::Testing::TestDevice device;
    int intValue = 0;
    double doubleValue = 0;
    ASSERT_EQ(0, vconf_set_int("db/t/k", -123456));
    EXPECT_EQ(0, vconf_get_int("db/t/k", &intValue));
    EXPECT_EQ(-123456, intValue);
    ASSERT_EQ(0, vconf_set_bool("db/t/k", 42));
    EXPECT_EQ(0, vconf_get_bool("db/t/k", &intValue));
    EXPECT_EQ(1, intValue) << "a bool is stored as 0 or 1";
    ASSERT_EQ(0, vconf_set_dbl("memory/t/k", 0.1));
    EXPECT_EQ(0, vconf_get_dbl("memory/t/k", &doubleValue));
    EXPECT_EQ(0.1, doubleValue);
    ASSERT_EQ(0, vconf_set_str("file/t/k", "Grüße\ttab"));
    EXPECT_EQ("Grüße\ttab", getString("file/t/k"));
    EXPECT_EQ(-1, vconf_set_str("file/t/k", std::string(Orvo::Emulator::kMaxSettingValueLength + 1, 'x').c_str()));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, vconf_get_ext_errno());
}

TEST(Vconf, AFailedCallSaysWhyAndLeavesTheOutputUntouched) {
    const Orvo::Testing::TestDevice device;
    ASSERT_EQ(0, vconf_set_str("db/t/text", "not an int"));
    const std::pair<const char*, int> rows[] = {
        {"db/t/missing", VCONF_ERROR_FILE_NO_ENT}, {"memory/t/missing", VCONF_ERROR_FILE_NO_ENT},
        {"db/t/text", VCONF_ERROR_WRONG_TYPE},     {"dbx/a", VCONF_ERROR_WRONG_PREFIX},
        {"/db/a", VCONF_ERROR_WRONG_PREFIX},       {"", VCONF_ERROR_WRONG_PREFIX}};
    for (const auto& [key, error] : rows) {
        SCOPED_TRACE(key);
        int intValue = 7;
        double doubleValue = 7.5;
        EXPECT_EQ(-1, vconf_get_int(key, &intValue));
        EXPECT_EQ(-1, vconf_get_bool(key, &intValue));
        EXPECT_EQ(-1, vconf_get_dbl(key, &doubleValue));
        EXPECT_EQ(error, vconf_get_ext_errno());
        EXPECT_EQ(7, intValue);
        EXPECT_EQ(7.5, doubleValue);
        vconf_set_int(key, 1); // a success clears the reason of the last failure
        EXPECT_EQ(error == VCONF_ERROR_WRONG_PREFIX ? error : VCONF_OK, vconf_get_ext_errno());
    }
    EXPECT_EQ("<null>", getString("db/t/text")) << "now an int";
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
    EXPECT_EQ(-1, vconf_set_str(nullptr, nullptr)); // a C caller's null arguments
    EXPECT_EQ(-1, vconf_get_int("db/t/text", nullptr));
    EXPECT_EQ(nullptr, vconf_get_str(nullptr));
}
