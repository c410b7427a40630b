// Upgrade type texts, version number parsing and the on-screen version.
#include "ChildProcess.h"
#include "orvo/testing/LogLines.h"
#include "OrvoCommon/OrvoCommonUtils.h"

#include <boost/lexical_cast.hpp>
#include <dlog.h>
#include <gtest/gtest.h>

#include <csignal>
#include <climits>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

using OrvoCommon::UpgradeType;

TEST(UpgradeTypeTest, EachTypeHasItsText) {
    EXPECT_EQ(OrvoCommon::upgradeTypeToString(UpgradeType::OTA), "OTA");
    EXPECT_EQ(OrvoCommon::upgradeTypeToString(UpgradeType::OTN), "OTN");
    EXPECT_EQ(OrvoCommon::upgradeTypeToString(UpgradeType::USB), "USB");
    EXPECT_EQ(OrvoCommon::upgradeTypeToString(UpgradeType::POSTPONE), "POSTPONE");
}

TEST(UpgradeTypeDeathTest, ValuesWithoutTextStopTheProgram) {
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    TestDevice device;
    for (const int value : {0, 5}) {
        EXPECT_EXIT(
            {
                hideConsole();
                OrvoCommon::upgradeTypeToString(static_cast<UpgradeType>(value));
            },
            ::testing::KilledBySignal(SIGABRT), "ASSERTION FAILED: false, .*upgradeTypeToString.*OrvoCommon\\.cpp:[0-9]+\n")
            << value;
    }
}

struct ParsedVersion {
    const char* text;
    int major;
    int minor;
};

class ParseVersionTest : public ::testing::TestWithParam<ParsedVersion> {};

TEST_P(ParseVersionTest, SplitsAtTheFirstDot) {
    int major = 12345;
    int minor = 12345;
    OrvoCommon::parseVersion(GetParam().text, major, minor);
    EXPECT_EQ(major, GetParam().major);
    EXPECT_EQ(minor, GetParam().minor);
}

INSTANTIATE_TEST_SUITE_P(WellFormed, ParseVersionTest,
                         ::testing::Values(ParsedVersion{"1302.5", 1302, 5}, ParsedVersion{"1302", 1302, 0},
                                           ParsedVersion{"-7.1", -7, 1}, ParsedVersion{"+3.-2", 3, -2},
                                           ParsedVersion{"007.010", 7, 10},
                                           ParsedVersion{"2147483647.-2147483648", INT_MAX, INT_MIN}));

class MalformedVersionTest : public ::testing::TestWithParam<const char*> {};

TEST_P(MalformedVersionTest, FailsWithBadLexicalCast) {
    int major = 0;
    int minor = 0;
    EXPECT_THROW(OrvoCommon::parseVersion(GetParam(), major, minor), boost::bad_lexical_cast);
}

INSTANTIATE_TEST_SUITE_P(EmptyParts, MalformedVersionTest, ::testing::Values("", ".5", "1302.", "."));
INSTANTIATE_TEST_SUITE_P(SeveralDots, MalformedVersionTest, ::testing::Values("1.2.3", "1..2"));
INSTANTIATE_TEST_SUITE_P(Blanks, MalformedVersionTest, ::testing::Values("1302 ", " 1302", "1302. 5", "13 02"));
INSTANTIATE_TEST_SUITE_P(Signs, MalformedVersionTest, ::testing::Values("+", "-", "--1", "1.+", "1-"));
INSTANTIATE_TEST_SUITE_P(Overflow, MalformedVersionTest, ::testing::Values("2147483648", "-2147483649", "1.2147483648"));
INSTANTIATE_TEST_SUITE_P(OtherCharacters, MalformedVersionTest, ::testing::Values("abc", "0x10", "1e3", "1,5", "1302.5a"));

TEST(VersionStringForUITest, ShowsTheMajorNumberOnly) {
    TestDevice device;
    EXPECT_EQ(OrvoCommon::versionStringForUI("1302.5"), "1302");
    EXPECT_EQ(OrvoCommon::versionStringForUI("-7"), "-7");
    EXPECT_EQ(OrvoCommon::versionStringForUI("+0012.9"), "12");
    EXPECT_TRUE(loggedMessages(device, LOG_ID_SYSTEM).empty());
}

TEST(VersionStringForUITest, MalformedVersionIsLoggedAtFatalAndReturnedUnchanged) {
    TestDevice device;
    EXPECT_EQ(OrvoCommon::versionStringForUI("abc"), "abc");
    EXPECT_EQ(OrvoCommon::versionStringForUI(""), "");
    const std::vector<LogLine> lines = logLines(device, LOG_ID_SYSTEM);
    ASSERT_EQ(lines.size(), 2U);
    for (const LogLine& line : lines) {
        EXPECT_EQ(line.level, "FTL");
        EXPECT_EQ(line.priority, DLOG_FATAL);
        const std::string prefix = "OrvoCommon.cpp:";
        EXPECT_EQ(line.text.compare(0, prefix.size(), prefix), 0) << line.text;
        const std::string message = ">Exception caught in versionStringForUI. Ignoring: ";
        EXPECT_NE(line.text.find(message), std::string::npos) << line.text;
        // The verbose diagnostic text names the exception.
        EXPECT_NE(line.text.find("bad_lexical_cast"), std::string::npos) << line.text;
    }
}

} // namespace
} // namespace Testing
} // namespace Orvo
