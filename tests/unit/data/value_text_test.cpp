// What the user reads of a value, for every type.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

#include "data/values/date_value.h"
#include "data/values/value_conversion.h"
#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

constexpr wchar_t kUnknown[] = L"<not recognised>";

class ValueTextTest : public DataTest {
 protected:
  std::wstring text(std::uint32_t field) { return database_.valueText(field).text(); }
};

TEST_F(ValueTextTest, WholeNumbersBooleansAndTexts) {
  openTable(
      L"a smallint, b integer, c bit, d bit, e \"unsigned smallint\", f \"unsigned integer\", "
      L"g varchar(20), h text",
      {L"-32768, -2147483648, 1, 0, 65535, 4294967295, 'a b', 'line 1\r\nline 2'"});
  const wchar_t* const expected[] = {L"-32768", L"-2147483648", L"-1",  L"0",
                                     L"65535",  L"4294967295",  L"a b", L"line 1\r\nline 2"};
  for (std::uint32_t field = 0; field < 8; ++field) EXPECT_EQ(text(field), expected[field]) << field;
}

TEST_F(ValueTextTest, TextOfEveryScript) {
  openTable(L"a text", {L"'\x0391\x03B8\x03AE\x03BD\x03B1 \x041C\x043E\x0441\x043A\x0432\x0430 "
                        L"\x6771\x4EAC \xD83D\xDE00'"});
  EXPECT_EQ(text(0),
            L"\x0391\x03B8\x03AE\x03BD\x03B1 \x041C\x043E\x0441\x043A\x0432\x0430 \x6771\x4EAC \xD83D\xDE00");
}

TEST_F(ValueTextTest, DoublesHaveSixDecimals) {
  openTable(L"a double, b double, c double, d float, e double",
            {L"0.5, -1234567.1234565, 1e15, 0.0000004, 0"});
  EXPECT_EQ(text(0), L"0.500000");
  EXPECT_EQ(text(1), L"-1234567.123457");
  EXPECT_EQ(text(2), L"1000000000000000.000000");
  EXPECT_EQ(text(3), L"0.000000");
  EXPECT_EQ(text(4), L"0.000000");
}

TEST_F(ValueTextTest, NullsAreEmptyAndNoDateIsNone) {
  openTable(
      L"a smallint, b integer, c bit, d double, e varchar(5), f text, g varbinary(5), h image, i datetime",
      {L"null, null, null, null, null, null, null, null, null"});
  for (std::uint32_t field = 0; field < 8; ++field) EXPECT_EQ(text(field), L"") << field;
  EXPECT_EQ(text(8), L"None");
}

TEST_F(ValueTextTest, DatesReadInTheUsersLanguage) {
  openTable(L"a datetime, b datetime, c datetime", {L"'2001-03-09', '2001-03-09 14:05:07', '1899-12-31'"});
  EXPECT_EQ(text(0), L"3/9/2001");
  EXPECT_EQ(text(1), L"3/9/2001 2:05:07 PM");
  EXPECT_EQ(text(2), L"12/31/1899");
}

TEST_F(ValueTextTest, TheDayOfTheAutomationsEpochShowsNone) {
  openTable(L"a datetime, b datetime, c datetime", {L"'1899-12-30', '1899-12-30 08:00:00', '1899-12-29'"});
  EXPECT_EQ(text(0), L"None");
  EXPECT_EQ(text(1), L"None");
  EXPECT_EQ(text(2), L"12/29/1899");
}

TEST_F(ValueTextTest, ABooleanWrittenAs1ReadsAsTrue) {
  openTable(L"a bit", {L"0"});
  ASSERT_TRUE(database_.setValueFromEditor(0, FakeEditor::withCheck(true)));
  ASSERT_TRUE(database_.update());
  EXPECT_EQ(text(0), L"-1");
}

TEST_F(ValueTextTest, BytesAreReadAsPairsOfDigits) {
  openTable(L"a image, b image, c varbinary(9), d image, e text",
            {L"x'410042FF', x'0a', x'', null, x'DEAD'"});
  EXPECT_EQ(text(0), L"41 00 42 FF");
  EXPECT_EQ(text(1), L"0A");
  EXPECT_EQ(text(2), L"");
  EXPECT_EQ(text(3), L"");
  EXPECT_EQ(text(4), L"DE AD") << "bytes in a field of texts";
}

TEST_F(ValueTextTest, OfManyBytesTheFirstAreReadAndTheNumberOfAll) {
  openTable(L"a image, b image", {L"zeroblob(256), zeroblob(10240)"});
  EXPECT_EQ(text(0).size(), 256u * 3 - 1);
  EXPECT_TRUE(text(0).ends_with(L"00 00"));
  EXPECT_EQ(text(1), text(0) + L" \x2026 (10240 bytes)");
}

TEST_F(ValueTextTest, ValuesOfOtherTypesThanTheirFieldsAreShown) {
  openTable(L"a integer, b double, c datetime, d bit, e integer, f smallint, g datetime, h integer",
            {L"'n/a', 'about 5', 'last spring', 'perhaps', 9007199254740993, 70000, 1.5e300, 0.25"});
  EXPECT_EQ(text(0), L"n/a");
  EXPECT_EQ(text(1), L"about 5");
  EXPECT_EQ(text(2), L"last spring");
  EXPECT_EQ(text(3), L"perhaps");
  EXPECT_EQ(text(4), L"9007199254740993");
  EXPECT_EQ(text(5), L"70000");
  EXPECT_NE(text(6), L"None");
  EXPECT_NE(text(6), L"");
  EXPECT_EQ(text(7), L"0.25");
}

TEST_F(ValueTextTest, IntegersOf64BitsAndUntypedColumnsAreShown) {
  openTable(L"a bigint, b, c", {L"-9223372036854775808, 9223372036854775807, 'x'"});
  EXPECT_EQ(text(0), L"-9223372036854775808");
  EXPECT_EQ(text(1), L"9223372036854775807");
  EXPECT_EQ(text(2), L"x");
}

// ---- Field types that the store does not make

class FakeValueTextTest : public testing::Test {
 protected:
  void addField(LONG type, Variant value) {
    store_.addField({.name = L"f", .type = type, .attributes = 4}, std::move(value));
  }
  void open() { ASSERT_TRUE(database_.openRecordset(L"x")); }
  std::wstring text(std::uint32_t field) { return database_.valueText(field).text(); }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeValueTextTest, TypesThatAreNotKnownAreNotRecognised) {
  const LONG types[] = {4, 6, 8, 9, 10, 0, 1, 12, 14, 16, 17, 20, 48, 72, 128, 129, 200, 201, 206, -1};
  for (const LONG type : types) addField(type, Variant::fromLong(5));
  open();
  for (std::uint32_t field = 0; field < std::size(types); ++field) {
    EXPECT_EQ(text(field), kUnknown) << types[field];
    EXPECT_FALSE(database_.setValueFromEditor(field, FakeEditor::withText(L"6"))) << types[field];
  }
  EXPECT_THAT(store_.cursors.front()->written, testing::IsEmpty());
}

TEST_F(FakeValueTextTest, AllKnownTypesShowTheTextOfTheirValue) {
  const LONG types[] = {2, 3, 11, 18, 19, 202, 203, 204, 205};
  for (const LONG type : types) addField(type, Variant::fromText(L"as it is"));
  open();
  for (std::uint32_t field = 0; field < std::size(types); ++field) {
    EXPECT_EQ(text(field), L"as it is") << types[field];
  }
}

TEST_F(FakeValueTextTest, ValuesThatCantBeFetchedAreEmpty) {
  for (const LONG type : {3L, 5L, 7L, 11L, 202L}) addField(type, Variant::fromLong(1));
  open();
  for (FakeField& field : store_.fields) field.result = E_FAIL;
  EXPECT_EQ(text(0), L"");
  EXPECT_EQ(text(1), L"");
  EXPECT_EQ(text(2), L"None");
  EXPECT_EQ(text(3), L"");
  EXPECT_EQ(text(4), L"");
}

TEST_F(FakeValueTextTest, ADateThatIsNoNumberShowsNone) {
  addField(7, Variant::fromDate(std::numeric_limits<double>::quiet_NaN()));
  addField(7, Variant::fromDate(std::numeric_limits<double>::infinity()));
  addField(7, Variant::fromDate(1e300));
  open();
  for (std::uint32_t field = 0; field < 3; ++field) EXPECT_EQ(text(field), L"None") << field;
}

TEST_F(FakeValueTextTest, NumbersInADateFieldReadAsTheyAreAnd0AsNone) {
  addField(7, Variant::fromLong(0));
  addField(7, Variant::fromLong(1700000000));
  addField(7, Variant::fromText(L"0"));
  addField(7, Variant::fromText(L"12"));
  open();
  EXPECT_EQ(text(0), L"None");
  EXPECT_EQ(text(1), L"1700000000");
  EXPECT_EQ(text(2), L"None");
  EXPECT_EQ(text(3), L"12");
}

// ---- "%f"

TEST(DoubleTextTest, FormatsAsPrintfDoes) {
  const double values[] = {0.0,       -0.0,  1.0,
                           -1.0,      0.1,   1.0 / 3,
                           2.5e-7,    5e-7,  0.9999995,
                           1e22,      1e23,  123456789.987654321,
                           -4.9e-324, 1e308, -1.7976931348623157e308,
                           0.5,       1.5,   2.5,
                           0.0000005, 1e-300};
  for (const double value : values) {
    char expected[400];
    std::snprintf(expected, sizeof expected, "%f", value);
    EXPECT_EQ(std::wstring(textOfDouble(value).text()),
              std::wstring(expected, expected + std::strlen(expected)))
        << value;
  }
}

TEST(DoubleTextTest, TheLongestDoubleIsShownInFull) {
  const std::wstring text = textOfDouble(-std::numeric_limits<double>::max()).text();
  EXPECT_EQ(text.size(), 317u);
  EXPECT_EQ(text.substr(0, 4), L"-179");
  EXPECT_EQ(text.substr(310), L".000000");
}

TEST(DoubleTextTest, NumbersThatAreNotFiniteHaveNames) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_STREQ(textOfDouble(infinity).text(), L"inf");
  EXPECT_STREQ(textOfDouble(-infinity).text(), L"-inf");
  EXPECT_STREQ(textOfDouble(std::numeric_limits<double>::quiet_NaN()).text(), L"nan");
}

// ---- Dates of editors

TEST(DateValueTest, TextsBecomeDates) {
  EXPECT_EQ(dateFromText(L"3/9/2001"), 36959.0);
  EXPECT_EQ(dateFromText(L"12/30/1899"), 0.0);
  ASSERT_TRUE(dateFromText(L"3/9/2001 2:05:07 PM").has_value());
  EXPECT_NEAR(*dateFromText(L"3/9/2001 2:05:07 PM"), 36959.586887, 1e-6);
}

TEST(DateValueTest, TextsThatNameNoDateBecomeNone) {
  for (const wchar_t* text : {L"", L"None", L"2/30/2001", L"last spring"}) {
    EXPECT_EQ(dateFromText(text), std::nullopt) << testing::PrintToString(std::wstring(text));
  }
}

TEST(DateValueTest, DatesHaveCalendarFields) {
  const std::optional<SYSTEMTIME> calendar = calendarFromDate(36959.25);
  ASSERT_TRUE(calendar.has_value());
  EXPECT_EQ(calendar->wYear, 2001);
  EXPECT_EQ(calendar->wMonth, 3);
  EXPECT_EQ(calendar->wDay, 9);
  EXPECT_EQ(calendar->wDayOfWeek, 5);
  EXPECT_EQ(calendar->wHour, 6);
}

TEST(DateValueTest, NumbersThatAreNoDatesHaveNone) {
  for (const double date :
       {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(calendarFromDate(date).has_value()) << date;
  }
}

}  // namespace
