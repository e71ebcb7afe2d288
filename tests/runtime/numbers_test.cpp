#include "runtime/error.h"
#include "runtime/numbers.h"

#include <gtest/gtest.h>

#include <limits>

using namespace runtime;

TEST(LeadingNumber, Table)
{
    constexpr struct {
        const char *name;
        std::string_view text;
        double want;
    } cases[] = {
        {"bitrate", "128kbit", 128},     {"frequency", "44100 Hz", 44100},
        {"no number", "Not defined", 0}, {"empty", "", 0},
        {"blanks in front", "  7x", 7},  {"minus", "-1", -1},
        {"fraction", "0.5)", 0.5},       {"sign alone", "-", 0},
        {"bracket", "17)Rock", 17},      {"no exponent", "1e5", 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(LeadingNumber(c.text), c.want);
    }
}

TEST(ParseNumber, Table)
{
    EXPECT_EQ(ParseNumber(" 17 "), 17);
    EXPECT_EQ(ParseNumber("-1.5"), -1.5);
    EXPECT_EQ(ParseNumber("1E3"), 1000);
    EXPECT_EQ(ParseNumber("3/12"), std::nullopt);
    EXPECT_EQ(ParseNumber("17 Rock"), std::nullopt);
    EXPECT_EQ(ParseNumber(""), std::nullopt);
    EXPECT_EQ(ParseNumber("1E"), std::nullopt);
    EXPECT_EQ(ParseNumber("."), std::nullopt);
}

TEST(ParseNumber, TooSmallIsZeroTooLargeIsInfinite)
{
    const std::string zeros(330, '0');
    for (const std::string &small :
         {std::string("1e-400"), "0." + zeros + "1", std::string("-1.1E-400"),
          "0." + zeros + "1e-70", "1" + zeros + "e-800",
          std::string("1e-00000000000000000000000400"), std::string("1e-99999999999999999999")}) {
        EXPECT_EQ(ParseNumber(small), 0) << small;
        EXPECT_EQ(TextToInt16(small), 0) << small;
    }
    for (const std::string &large : {std::string("1e400"), "1" + zeros, std::string("0.1e400"),
                                     std::string("0.001e+99999999999999999999")})
        EXPECT_EQ(ParseNumber(large), std::numeric_limits<double>::infinity()) << large;
    EXPECT_EQ(ParseNumber("1" + zeros + "e-330"), 1);
    EXPECT_EQ(ParseNumber("0e400"), 0);
    EXPECT_EQ(LeadingNumber("0." + zeros + "1 x"), 0);
    EXPECT_EQ(LeadingNumber("1" + zeros), std::numeric_limits<double>::infinity());
    EXPECT_EQ(LeadingNumber("0." + zeros + zeros), 0);
}

TEST(Rounding, HalfToEvenAndOverflow)
{
    EXPECT_EQ(RoundToInt16(2.5), 2);
    EXPECT_EQ(RoundToInt16(3.5), 4);
    EXPECT_EQ(RoundToInt16(-0.5), 0);
    EXPECT_EQ(RoundToInt16(32767.4), 32767);
    try {
        (void)RoundToInt16(32768);
        FAIL() << "no overflow";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number, kOverflow);
    }
    EXPECT_THROW((void)RoundToInt32(2147483648.0), RuntimeError);
}

TEST(TextToInt16, Errors)
{
    EXPECT_EQ(TextToInt16(" 7 "), 7);
    try {
        (void)TextToInt16("3/12");
        FAIL() << "no type mismatch";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number, kTypeMismatch);
    }
}

TEST(TextToFlag, Table)
{
    EXPECT_TRUE(TextToFlag("1"));
    EXPECT_TRUE(TextToFlag("-1"));
    EXPECT_TRUE(TextToFlag("true"));
    EXPECT_FALSE(TextToFlag("0"));
    EXPECT_FALSE(TextToFlag("False"));
    EXPECT_THROW((void)TextToFlag("yes"), RuntimeError);
}

TEST(NumberText, Shortest)
{
    EXPECT_EQ(NumberText(17), "17");
    EXPECT_EQ(NumberText(-1), "-1");
    EXPECT_EQ(NumberText(0.5), "0.5");
    EXPECT_EQ(NumberText(-0.0), "0");
}
