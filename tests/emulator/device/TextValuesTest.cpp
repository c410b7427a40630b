#include "orvo/device/TextValues.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>

namespace Orvo {
namespace Emulator {
namespace {

TEST(TextValuesTest, IntegersMustBeWholeDecimalTextsInRange)
{
    int value = 7;
    EXPECT_TRUE(parseInt("-2147483648", value));
    EXPECT_EQ(INT_MIN, value);
    for (const std::string& bad : std::vector<std::string>{"", " 1", "1 ", "2147483648", "1.0", "0x10", "1e3", std::string("1\0", 2)}) {
        value = 7;
        EXPECT_FALSE(parseInt(bad, value)) << bad;
        EXPECT_EQ(7, value);
    }
}

TEST(TextValuesTest, DoublesRoundTripExactlyAndShortFormsStayShort)
{
    for (const double value : {0.1, -1.0 / 3.0, 1e300, DBL_MIN / 4, DBL_MAX, 0.0}) {
        double back = 0;
        ASSERT_TRUE(parseDouble(formatDouble(value), back)) << formatDouble(value);
        EXPECT_EQ(value, back);
        ASSERT_TRUE(parseDouble(formatDoubleShort(value), back));
        EXPECT_EQ(value, back);
    }
    EXPECT_EQ("0.1", formatDoubleShort(0.1));
    double out = 0;
    EXPECT_FALSE(parseDouble("1e999", out));
    EXPECT_FALSE(parseDouble("1.5x", out));
}

TEST(TextValuesTest, NumbersIgnoreTheProcessLocale)
{
    // The decimal point of a locale must never leak into the device's files.
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr && std::setlocale(LC_NUMERIC, "fr_FR.UTF-8") == nullptr)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    double out = 0;
    const bool parsed = parseDouble("2.5", out);
    const std::string text = formatDouble(2.5);
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_TRUE(parsed);
    EXPECT_EQ(2.5, out);
    EXPECT_EQ("2.5", text);
}

} // namespace
} // namespace Emulator
} // namespace Orvo
