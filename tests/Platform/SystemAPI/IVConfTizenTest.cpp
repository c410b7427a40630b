#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include "LogLines.h"
#include "orvo/testing/TestDevice.h"

#include <vconf.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Common::Utils::errinfo_errorcode;
using Common::Utils::errinfo_stream;
using Testing::loggedTexts;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// Per value type: a default, a different stored value, and a way to store a value of another
// type under a key.
template <typename T>
struct Values;

template <>
struct Values<bool> {
    static bool fallback() { return true; }
    static bool stored() { return false; }
    static int storeOtherType(const char* key) { return vconf_set_str(key, "true"); }
};

template <>
struct Values<int> {
    static int fallback() { return -17; }
    static int stored() { return 2147483647; }
    static int storeOtherType(const char* key) { return vconf_set_dbl(key, 3.0); }
};

template <>
struct Values<double> {
    static double fallback() { return -0.5; }
    static double stored() { return 1.0 / 3.0; }
    static int storeOtherType(const char* key) { return vconf_set_int(key, 3); }
};

template <>
struct Values<std::string> {
    static std::string fallback() { return "default text"; }
    static std::string stored() { return "stored text, with blanks"; }
    static int storeOtherType(const char* key) { return vconf_set_bool(key, 1); }
};

template <typename T>
class VConfTypedTest : public ::testing::Test {
protected:
    Testing::TestDevice device;
};

using ValueTypes = ::testing::Types<bool, int, double, std::string>;
TYPED_TEST_SUITE(VConfTypedTest, ValueTypes);

TYPED_TEST(VConfTypedTest, SetValueIsReadBackByBothReads) {
    const VConf<TypeParam> setting("db/test/value");
    setting.set(Values<TypeParam>::stored());
    EXPECT_EQ(Values<TypeParam>::stored(), setting.get());
    EXPECT_EQ(Values<TypeParam>::stored(), setting.getOrDefault(Values<TypeParam>::fallback()));
    EXPECT_THAT(loggedTexts(this->device, "WRN"), IsEmpty());
}

TYPED_TEST(VConfTypedTest, AbsentKeyGivesDefaultWithOneWarningFromTheHeader) {
    const VConf<TypeParam> setting("db/test/absent");
    EXPECT_EQ(Values<TypeParam>::fallback(), setting.getOrDefault(Values<TypeParam>::fallback()));
    const std::vector<Testing::LogLine> lines = Testing::logLines(this->device);
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ("WRN", lines[0].level);
    EXPECT_EQ("IVConfTizen.h", lines[0].file);
    EXPECT_EQ("vconf_get failed while trying to access key: db/test/absent, return default value", lines[0].text);
}

TYPED_TEST(VConfTypedTest, KeyOfAnotherTypeGivesDefault) {
    ASSERT_EQ(0, Values<TypeParam>::storeOtherType("db/test/other"));
    const VConf<TypeParam> setting("db/test/other");
    EXPECT_EQ(Values<TypeParam>::fallback(), setting.getOrDefault(Values<TypeParam>::fallback()));
    EXPECT_THROW(setting.get(), VConfException);
}

TYPED_TEST(VConfTypedTest, GetOfAbsentKeyThrowsWithKeyAndVconfResult) {
    const VConf<TypeParam> setting("db/test/absent");
    try {
        setting.get();
        FAIL() << "no exception";
    } catch (const VConfException& e) {
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_stream>(e));
        EXPECT_EQ("vconf_get failed while trying to access key: db/test/absent", *boost::get_error_info<errinfo_stream>(e));
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_errorcode>(e));
        EXPECT_EQ(-1, *boost::get_error_info<errinfo_errorcode>(e));
        ASSERT_NE(nullptr, boost::get_error_info<boost::throw_function>(e));
        EXPECT_THAT(*boost::get_error_info<boost::throw_function>(e), ::testing::ContainsRegex("VConfT<.*>::get\\(\\) const"));
    }
    EXPECT_THAT(loggedTexts(this->device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/test/absent"));
}

TYPED_TEST(VConfTypedTest, SetRefusedByVconfThrowsAfterWarning) {
    // vconf accepts only the db/, file/ and memory/ prefixes.
    const VConf<TypeParam> setting("bad/test/key");
    try {
        setting.set(Values<TypeParam>::stored());
        FAIL() << "no exception";
    } catch (const VConfException& e) {
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_stream>(e));
        EXPECT_EQ("vconf_set failed while trying to access key: bad/test/key", *boost::get_error_info<errinfo_stream>(e));
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_errorcode>(e));
        EXPECT_EQ(-1, *boost::get_error_info<errinfo_errorcode>(e));
        ASSERT_NE(nullptr, boost::get_error_info<boost::throw_function>(e));
        EXPECT_THAT(*boost::get_error_info<boost::throw_function>(e), ::testing::ContainsRegex("VConfT<.*>::set\\(const T ?&\\) const"));
    }
    EXPECT_THAT(loggedTexts(this->device, "WRN"),
                ElementsAre("vconf_set failed while trying to access key: bad/test/key"));
}

class VConfTest : public ::testing::Test {
protected:
    Testing::TestDevice device;
};

TEST_F(VConfTest, DoubleKeepsEveryBitBothWays) {
    const double value = std::nextafter(1.0 / 3.0, 1.0);
    VConf<double>("db/test/dbl").set(value);
    double stored = 0;
    ASSERT_EQ(0, vconf_get_dbl("db/test/dbl", &stored));
    EXPECT_EQ(value, stored);

    const double written = std::nextafter(2.0 / 3.0, 0.0);
    ASSERT_EQ(0, vconf_set_dbl("db/test/dbl", written));
    EXPECT_EQ(written, VConf<double>("db/test/dbl").get());
}

TEST_F(VConfTest, StoredEmptyTextIsAValueNotAFailure) {
    ASSERT_EQ(0, vconf_set_str("db/test/empty", ""));
    EXPECT_EQ("", VConf<std::string>("db/test/empty").getOrDefault("default"));
    EXPECT_THAT(loggedTexts(device, "WRN"), IsEmpty());
}

TEST_F(VConfTest, BoolWrapperStoresIntAndReadsNonZeroAsTrue) {
    ASSERT_EQ(0, VConfDetails::vconf_set_bool_wrapper("db/test/flag", true));
    int raw = 0;
    ASSERT_EQ(0, vconf_get_bool("db/test/flag", &raw));
    EXPECT_EQ(1, raw);

    bool value = false;
    EXPECT_EQ(0, VConfDetails::vconf_get_bool_wrapper("db/test/flag", &value));
    EXPECT_TRUE(value);
}

TEST_F(VConfTest, BoolWrapperLeavesFalseWhenTheReadFails) {
    bool value = true;
    EXPECT_NE(0, VConfDetails::vconf_get_bool_wrapper("db/test/absent", &value));
    EXPECT_FALSE(value);
}

TEST_F(VConfTest, StringWrapperLeavesOutputUntouchedWhenVconfHasNoText) {
    std::string value = "untouched";
    EXPECT_EQ(-1, VConfDetails::vconf_get_string_wrapper("db/test/absent", &value));
    EXPECT_EQ("untouched", value);

    // The platform buffer of a successful read is released (LeakSanitizer checks it).
    ASSERT_EQ(0, vconf_set_str("db/test/text", "long enough to live on the heap, not in a small buffer"));
    EXPECT_EQ(0, VConfDetails::vconf_get_string_wrapper("db/test/text", &value));
    EXPECT_EQ("long enough to live on the heap, not in a small buffer", value);
}

} // namespace
} // namespace Platform
} // namespace Orvo
