#include "platform/store/exchange/formats/number_text.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace store::exchange {
namespace {

std::string textOf(double value) {
  return std::string(std::string_view(RealText(value)));
}

TEST(NumberText, OnlyWhatComesOutTheSameIsAPlainInteger) {
  EXPECT_EQ(readPlainInteger("0"), 0);
  EXPECT_EQ(readPlainInteger("-12"), -12);
  EXPECT_EQ(readPlainInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(readPlainInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  for (const char* text : {"", "-", "007", "-0", "+3", "1,5", "1.0", "1e5", " 1", "1 ", "9223372036854775808",
                           "12345678901234567890", "0x10", "--1"}) {
    EXPECT_EQ(readPlainInteger(text), std::nullopt) << text;
  }
}

TEST(NumberText, OnlyWhatComesOutTheSameIsAPlainReal) {
  for (const char* text :
       {"0", "1", "-12", "1.5", "0.1", "-0.25", "123456789.123456", "0.0001", "0.00001", "1e+16", "1e-06",
        "9007199254740993.5", "1234567890123456", "3.141592653589793", "1.7976931348623157e+308"}) {
    const std::optional<double> value = readPlainReal(text);
    if (std::string(text) == "9007199254740993.5") {
      EXPECT_EQ(value, std::nullopt) << text;
      continue;
    }
    ASSERT_TRUE(value) << text;
    EXPECT_EQ(textOf(*value), text);
  }
  for (const char* text : {"",
                           ".",
                           ".5",
                           "5.",
                           "1.50",
                           "01.5",
                           "-0",
                           "+1.5",
                           "1,5",
                           "1e5",
                           "1E+16",
                           "inf",
                           "nan",
                           "0.1000000000000000055",
                           "12345678901234567890",
                           "0.000001",
                           "1.2.3",
                           "1-2",
                           "-",
                           "-.5"}) {
    EXPECT_EQ(readPlainReal(text), std::nullopt) << text;
  }
}

// Any double, by its bits: its text is read as the same double, and is one that detection takes.
TEST(NumberText, EveryDoubleComesBackFromItsText) {
  std::mt19937_64 random(20010309);
  for (int round = 0; round < 200'000; ++round) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = textOf(value);
    const std::optional<double> read = readPlainReal(text);
    ASSERT_TRUE(read) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(*read), std::bit_cast<std::uint64_t>(value)) << text;
  }
}

// The quick way and the thorough one agree.
TEST(NumberText, ShortDecimalsAreJudgedAsTheyAreWritten) {
  std::mt19937_64 random(7);
  const std::string signs = "0123456789.-e+";
  for (int round = 0; round < 300'000; ++round) {
    std::string text;
    for (std::size_t length = random() % 12; length > 0; --length)
      text += signs[random() % (random() % 3 ? 11 : 14)];
    double value = 0;
    std::size_t used = 0;
    try {
      value = text.empty() || text[0] == '+' ? 0 : std::stod(text, &used);
    } catch (const std::exception&) {
      used = 0;
    }
    const bool isSame = used == text.size() && used > 0 && textOf(value) == text && text != "-0";
    EXPECT_EQ(readPlainReal(text).has_value(), isSame) << text;
  }
}

TEST(NumberText, PeopleWriteNumbersInManyWays) {
  EXPECT_EQ(readInteger("007"), 7);
  EXPECT_EQ(readInteger("+3"), 3);
  EXPECT_EQ(readInteger("-5"), -5);
  for (const char* text : {"", "+", "+-3", "1.0", "1e3", "9223372036854775808", "1 000"}) {
    EXPECT_EQ(readInteger(text), std::nullopt) << text;
  }
  EXPECT_EQ(readReal("1e5"), 1e5);
  EXPECT_EQ(readReal("+1.50"), 1.5);
  EXPECT_EQ(readReal("inf"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(readReal("9007199254740992"), 9007199254740992.0);
  EXPECT_EQ(readReal("0.10000000000000001"), 0.1);
  EXPECT_EQ(readReal("1.500000000000000000000"), 1.5);
  for (const char* text : {"", "1,5", "nan", "1.5x", "++1", "9007199254740993", "1e999",
                           "12345678901234567.25", "3.14159265358979323846"}) {
    EXPECT_EQ(readReal(text), std::nullopt) << text;
  }
}

TEST(NumberText, DecimalsAreTheSameHoweverTheyAreWritten) {
  EXPECT_TRUE(isSameDecimal("1.50", 1.5));
  EXPECT_TRUE(isSameDecimal("15e-1", 1.5));
  EXPECT_TRUE(isSameDecimal("+100", 100));
  EXPECT_TRUE(isSameDecimal("0.000", 0));
  EXPECT_TRUE(isSameDecimal("1e300", 1e300));
  EXPECT_FALSE(isSameDecimal("12345678901234567890", 12345678901234567890.0));
  EXPECT_FALSE(isSameDecimal("1.5000000000000000001", 1.5));
  EXPECT_FALSE(isSameDecimal("", 0));
  EXPECT_FALSE(isSameDecimal("-1.5", 1.5));
}

TEST(NumberText, WhatSqliteTakesForANumberLooksNumeric) {
  for (const char* text : {"7", "007", " 7 ", "1e5", "+3", ".5", "5.", "-0"})
    EXPECT_TRUE(looksNumeric(text)) << text;
  for (const char* text : {"", " ", "x", "1x", "0x1F", "1 2", "-", "e5", "."})
    EXPECT_FALSE(looksNumeric(text)) << text;
}

}  // namespace
}  // namespace store::exchange
