// Numbers and dates for a user whose language writes a comma before decimals. Run with German formats.
#include <windows.h>

#include "data/values/date_value.h"
#include "data/values/value_conversion.h"
#include "gtest/gtest.h"

namespace {

double numberOf(const wchar_t* text) {
  const Variant number = doubleFromText(text);
  EXPECT_EQ(number.type(), VT_R8) << testing::PrintToString(std::wstring(text));
  return number.type() == VT_R8 ? number.get().dblVal : -1;
}

class GermanTest : public testing::Test {
 protected:
  void SetUp() override {
    wchar_t separator[4] = {};
    ASSERT_NE(GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, separator, 4), 0);
    ASSERT_STREQ(separator, L",") << "the formats are not German";
  }
};

TEST_F(GermanTest, DoublesAreShownWithAPoint) {
  EXPECT_STREQ(textOfDouble(1234.5).text(), L"1234.500000");
}

TEST_F(GermanTest, WhatIsShownReadsBackAsTheSameNumber) {
  for (const double value : {1234.5, -0.25, 0.000001, 1e15}) {
    EXPECT_EQ(numberOf(textOfDouble(value).text()), value) << value;
  }
}

TEST_F(GermanTest, NumbersAsTheUserWritesThemAreReadToo) {
  EXPECT_EQ(numberOf(L"2,5"), 2.5);
  EXPECT_EQ(numberOf(L"1.234,5"), 1234.5);
  EXPECT_EQ(numberOf(L"1.234.567"), 1234567.0);
  EXPECT_EQ(numberOf(L"7"), 7.0);
}

TEST_F(GermanTest, TextsThatAreNoNumberAreEmpty) {
  for (const wchar_t* text : {L"", L".", L"-", L"-.", L"abc", L"1.5x"}) {
    EXPECT_EQ(doubleFromText(text).type(), VT_EMPTY) << testing::PrintToString(std::wstring(text));
  }
}

TEST_F(GermanTest, DatesAreReadAsTheUserWritesThem) {
  EXPECT_EQ(dateFromText(L"9.3.2001"), 36959.0);
  EXPECT_EQ(dateFromText(L"09.03.2001"), 36959.0);
}

}  // namespace
