#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include "orvo/testing/LogLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Testing::loggedTexts;
using ::testing::ElementsAre;

// Per value type: a default and a different value to store.
template <typename T>
struct Sample;
template <>
struct Sample<bool> {
    static bool fallback() { return true; }
    static bool stored() { return false; }
};
template <>
struct Sample<int> {
    static int fallback() { return -17; }
    static int stored() { return 2147483647; }
};
template <>
struct Sample<double> {
    static double fallback() { return -0.5; }
    static double stored() { return std::nextafter(1.0 / 3.0, 1.0); }  // needs all 64 bits
};
template <>
struct Sample<std::string> {
    static std::string fallback() { return "default text"; }
    static std::string stored() { return ""; }  // a value, not a failure
};

template <typename T>
class VConfTest : public ::testing::Test {
protected:
    Testing::TestDevice device;
};

using ValueTypes = ::testing::Types<bool, int, double, std::string>;
TYPED_TEST_SUITE(VConfTest, ValueTypes);

TYPED_TEST(VConfTest, StoredValueIsReadBackExactly) {
    VConf<TypeParam>("db/test/value").set(Sample<TypeParam>::stored());
    EXPECT_EQ(Sample<TypeParam>::stored(), VConf<TypeParam>("db/test/value").get());
    EXPECT_EQ(Sample<TypeParam>::stored(), VConf<TypeParam>("db/test/value").getOrDefault(Sample<TypeParam>::fallback()));
    EXPECT_TRUE(loggedTexts(this->device, "WRN").empty());
}

TYPED_TEST(VConfTest, AbsentKeyFallsBackWithOneWarningOrThrows) {
    const VConf<TypeParam> absent("db/test/absent");
    EXPECT_EQ(Sample<TypeParam>::fallback(), absent.getOrDefault(Sample<TypeParam>::fallback()));
    try {
        absent.get();
        ADD_FAILURE() << "get() did not throw";
    } catch (const VConfException& e) {
        EXPECT_EQ("vconf_get failed while trying to access key: db/test/absent",
                  *boost::get_error_info<Common::Utils::errinfo_stream>(e));
        EXPECT_EQ(-1, *boost::get_error_info<Common::Utils::errinfo_errorcode>(e));
        EXPECT_THAT(*boost::get_error_info<boost::throw_function>(e), ::testing::ContainsRegex("VConfT<.*>::get\\(\\) const"));
    }
    EXPECT_THAT(loggedTexts(this->device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/test/absent, return default value",
                            "vconf_get failed while trying to access key: db/test/absent"));
    EXPECT_THAT(this->device.logMessages(), ::testing::Each(::testing::HasSubstr("] IVConfTizen.h:")));
}

TYPED_TEST(VConfTest, RefusedWriteThrowsAfterWarning) {
    // vconf accepts only the db/, file/ and memory/ prefixes.
    EXPECT_THROW(VConf<TypeParam>("bad/key").set(Sample<TypeParam>::stored()), VConfException);
    EXPECT_THAT(loggedTexts(this->device, "WRN"), ElementsAre("vconf_set failed while trying to access key: bad/key"));
}

TEST(VConfWrappersTest, BoolIsStoredAsIntAndAFailedReadLeavesFalse) {
    Testing::TestDevice device;
    ASSERT_EQ(0, VConfDetails::vconf_set_bool_wrapper("db/test/flag", true));
    int raw = 0;
    ASSERT_EQ(0, vconf_get_bool("db/test/flag", &raw));
    EXPECT_EQ(1, raw);
    bool value = true;
    EXPECT_NE(0, VConfDetails::vconf_get_bool_wrapper("db/test/absent", &value));
    EXPECT_FALSE(value);
}

TEST(VConfWrappersTest, StringReadLeavesOutputUntouchedOnFailure) {
    Testing::TestDevice device;
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
