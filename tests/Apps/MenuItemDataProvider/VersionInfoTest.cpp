// The version text helpers of the plug-in.

#include "Apps/MenuItemDataProvider/VersionInfo.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Apps {
namespace MenuProvider {
namespace {

TEST(DisplayForm, KeepsTheNumberAfterTheLastDashWithoutLeadingZeros) {
    EXPECT_EQ(displayForm("X-ABCDEF-01234.5"), "1234");
    EXPECT_EQ(displayForm("T-ABCDEFG-1024.3"), "1024");
    EXPECT_EQ(displayForm("1302.5.7"), "1302");
    EXPECT_EQ(displayForm("A-B-C-0042"), "42");
    EXPECT_EQ(displayForm("MODEL-"), "");
    EXPECT_EQ(displayForm(".5"), "");
}

TEST(DisplayForm, ZerosOnlyStayAsTheyAre) {
    EXPECT_EQ(displayForm("0000"), "0000");
    EXPECT_EQ(displayForm("T-X-000.9"), "000");
    EXPECT_EQ(displayForm(""), "");
}

TEST(SubstituteTag, ReplacesTheFirstTagOnly) {
    std::string out = "prefix|";
    substituteTag(out, "Version <<A>> <<A>>", "<<A>>", "12");
    EXPECT_EQ(out, "prefix|Version 12 <<A>>");

    std::string atEdges;
    substituteTag(atEdges, "<<A>>", "<<A>>", "");
    EXPECT_EQ(atEdges, "");
}

TEST(SubstituteTag, ErrorsReplaceTheSentence) {
    std::string out;
    substituteTag(out, nullptr, "<<A>>", "12");
    EXPECT_EQ(out, "ERROR_TEXT_NULL");
    out.clear();
    substituteTag(out, "Version <<A>", "<<A>>", "12");
    EXPECT_EQ(out, "ERROR_INVALID_TAG");
}

} // namespace
} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
