// Upgrade type texts, version number parsing and the on-screen version.
#include "ChildProcess.h"
#include "orvo/testing/LogLines.h"
#include "OrvoCommon/OrvoCommonUtils.h"

#include <boost/lexical_cast.hpp>
#include <dlog.h>
#include <gmock/gmock.h>

#include <climits>
#include <csignal>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using namespace OrvoCommon;

TEST(UpgradeTypeDeathTest, EachTypeHasItsTextOtherValuesStopTheProgram) {
    EXPECT_EQ(upgradeTypeToString(UpgradeType::OTA) + upgradeTypeToString(UpgradeType::OTN) +
                  upgradeTypeToString(UpgradeType::USB) + upgradeTypeToString(UpgradeType::POSTPONE),
              "OTAOTNUSBPOSTPONE");
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    TestDevice device;
    for (const int value : {0, 5}) {
        EXPECT_EXIT(
            {
                hideConsole();
                upgradeTypeToString(static_cast<UpgradeType>(value));
            },
            KilledBySignal(SIGABRT), "ASSERTION FAILED: false, .*upgradeTypeToString.*OrvoCommon\\.cpp:[0-9]+\n")
            << value;
    }
}

TEST(ParseVersionTest, SplitsAtTheFirstDotIntoTwoInts) {
    const std::pair<const char*, std::pair<int, int>> wellFormed[] = {
        {"1302.5", {1302, 5}}, {"1302", {1302, 0}},  {"-7.1", {-7, 1}},
        {"+3.-2", {3, -2}},    {"007.010", {7, 10}}, {"2147483647.-2147483648", {INT_MAX, INT_MIN}}};
    for (const auto& [text, expected] : wellFormed) {
        std::pair<int, int> parsed(12345, 12345);
        parseVersion(text, parsed.first, parsed.second);
        EXPECT_EQ(parsed, expected) << text;
    }
    for (const char* malformed : {"", ".5", "1302.", ".", "1.2.3", "1..2", "1302 ", " 1302", "1302. 5", "+", "--1",
                                  "1.+", "1-", "2147483648", "-2147483649", "1.2147483648", "abc", "0x10", "1e3"}) {
        int major = 0;
        EXPECT_THROW(parseVersion(malformed, major, major), boost::bad_lexical_cast) << '"' << malformed << '"';
    }
}

TEST(VersionStringForUITest, ShowsTheMajorNumberOrLogsAtFatalAndReturnsTheInput) {
    TestDevice device;
    for (const auto& [version, shown] :
         {std::make_pair("1302.5", "1302"), std::make_pair("-7", "-7"), std::make_pair("+0012.9", "12"),
          std::make_pair("abc", "abc"), std::make_pair("", "")}) {
        EXPECT_EQ(versionStringForUI(version), shown);
    }
    const std::vector<LogLine> lines = logLines(device, LOG_ID_SYSTEM);
    ASSERT_EQ(lines.size(), 2U);
    for (const LogLine& line : lines) {
        EXPECT_EQ(std::make_pair(line.level, line.priority), std::make_pair(std::string("FTL"), int(DLOG_FATAL)));
        // The verbose diagnostic text names the exception.
        EXPECT_THAT(line.text, AllOf(ContainsRegex("^OrvoCommon\\.cpp:[0-9]+>Exception caught in versionStringForUI\\. "
                                                   "Ignoring: "),
                                     HasSubstr("bad_lexical_cast")));
    }
}

} // namespace
} // namespace Orvo::Testing
