#include "platform/store/rows/iso_date.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <random>
#include <string>

namespace store {
namespace {

using Text = std::optional<std::string>;

constexpr int kFirstDay = -657434;  // 1 January 100
constexpr int kLastDay = 2958465;   // 31 December 9999

std::string twoDigits(unsigned number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

/// The text of a day by the standard library's calendar.
std::string calendarText(int day) {
  using namespace std::chrono;
  const year_month_day date(sys_days(year(1899) / December / 30) + days(day));
  const std::string year = std::to_string(static_cast<int>(date.year()));
  return std::string(4 - year.size(), '0') + year + "-" + twoDigits(static_cast<unsigned>(date.month())) +
         "-" + twoDigits(static_cast<unsigned>(date.day()));
}

TEST(IsoDateTest, KnownDatesBothWays) {
  struct Case {
    double date;
    const char* text;
  };
  const Case cases[] = {
      {0, "1899-12-30 00:00:00"},       {1, "1899-12-31 00:00:00"},       {2, "1900-01-01 00:00:00"},
      {60, "1900-02-28 00:00:00"},      {61, "1900-03-01 00:00:00"},      {25569, "1970-01-01 00:00:00"},
      {36585, "2000-02-29 00:00:00"},   {36959.5, "2001-03-09 12:00:00"}, {0.25, "1899-12-30 06:00:00"},
      {2958465, "9999-12-31 00:00:00"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(formatIsoDate(c.date, DateShape::dateTime), Text(c.text));
    EXPECT_EQ(parseIsoDate(c.text), c.date) << c.text;
  }
}

TEST(IsoDateTest, TimeOfANegativeDateRunsForwards) {
  EXPECT_EQ(parseIsoDate("1899-12-29 06:00"), -1.25);
  EXPECT_EQ(formatIsoDate(-1.25, DateShape::dateTime), Text("1899-12-29 06:00:00"));
  EXPECT_EQ(parseIsoDate("1899-12-29"), -1.0);
  EXPECT_EQ(parseIsoDate("0100-01-01 18:00:00"), -657434.75);
  EXPECT_EQ(formatIsoDate(-657434.75, DateShape::dateTime), Text("0100-01-01 18:00:00"));
}

TEST(IsoDateTest, FractionsBelowTheEpochThatHaveNoDayLieOnDayZero) {
  EXPECT_EQ(formatIsoDate(-0.25, DateShape::dateTime), Text("1899-12-30 06:00:00"));
  EXPECT_EQ(formatIsoDate(-0.0, DateShape::dateTime), Text("1899-12-30 00:00:00"));
}

TEST(IsoDateTest, EachFormIsRead) {
  const double afternoon = 36959 + (14 * 60 + 5) / 1440.0;
  EXPECT_EQ(parseIsoDate("2001-03-09"), 36959.0);
  EXPECT_EQ(parseIsoDate("2001-03-09 14:05"), afternoon);
  EXPECT_EQ(parseIsoDate("2001-03-09T14:05"), afternoon);
  EXPECT_EQ(parseIsoDate("2001-03-09T14:05Z"), afternoon);
  EXPECT_EQ(parseIsoDate("2001-03-09 14:05:00"), afternoon);
  EXPECT_EQ(parseIsoDate("2001-03-09T14:05:00.000Z"), afternoon);
  EXPECT_EQ(parseIsoDate("2001-03-09 12:00:00.0"), 36959.5);
  EXPECT_EQ(parseIsoDate("18:00"), 0.75);
  EXPECT_EQ(parseIsoDate("18:00:00"), 0.75);
  EXPECT_EQ(parseIsoDate("18:00:00.000"), 0.75);
  EXPECT_EQ(parseIsoDate("00:00"), 0.0);
}

TEST(IsoDateTest, OtherTextsAreNoDates) {
  const char* const texts[] = {
      "",
      " ",
      "abc",
      "2001",
      "2001-03",
      "2001-3-9",
      "01-03-2009",
      "2001/03/09",
      "20010309",
      " 2001-03-09",
      "2001-03-09 ",
      "2001-03-09T",
      "2001-03-09Z",
      "2001-03-09  14:05",
      "2001-03-09 14",
      "2001-03-09 14:",
      "2001-03-09 14:5",
      "2001-03-09 14:05:",
      "2001-03-09 14:05:7",
      "2001-03-09 14:05:07.",
      "2001-03-09 14:05:07.Z",
      "2001-03-09 14:05:07.25x",
      "2001-03-09 14:05:07+01:00",
      "2001-03-09 14:05:07ZZ",
      "2001-03-09t14:05:07",
      "2001-03-09 +4:05:07",
      "-001-03-09",
      "+2001-03-09",
      "12001-03-09",
      "2001-03-0\xC2\xB2",
      "14:05 ",
      "14:",
      "1:05",
      "37000",
  };
  for (const char* text : texts) EXPECT_EQ(parseIsoDate(text), std::nullopt) << '"' << text << '"';
}

TEST(IsoDateTest, EmbeddedZeroIsNoDate) {
  EXPECT_EQ(parseIsoDate(std::string_view("2001-03-09\0", 11)), std::nullopt);
}

TEST(IsoDateTest, DaysThatDoNotExistAreRefused) {
  const char* const texts[] = {"2001-00-09", "2001-13-09", "2001-03-00", "2001-03-32", "2001-04-31",
                               "2001-06-31", "2001-09-31", "2001-11-31", "2001-02-29", "2000-02-30",
                               "1900-02-29", "2100-02-29", "0099-12-31", "0000-01-01"};
  for (const char* text : texts) EXPECT_EQ(parseIsoDate(text), std::nullopt) << text;
}

TEST(IsoDateTest, LastDaysOfMonthsAreTaken) {
  const char* const texts[] = {"2001-01-31", "2001-02-28", "2000-02-29", "2004-02-29", "2001-04-30",
                               "2001-07-31", "2001-08-31", "2001-12-31", "0100-01-01", "9999-12-31"};
  for (const char* text : texts) {
    const std::optional<double> date = parseIsoDate(text);
    ASSERT_TRUE(date.has_value()) << text;
    EXPECT_EQ(formatIsoDate(*date, DateShape::date), Text(text));
  }
}

TEST(IsoDateTest, TimesThatDoNotExistAreRefused) {
  const char* const texts[] = {"24:00", "24:00:00", "12:60", "12:00:60", "99:99:99", "2001-03-09 24:00"};
  for (const char* text : texts) EXPECT_EQ(parseIsoDate(text), std::nullopt) << text;
}

TEST(IsoDateTest, FractionsOfASecondAreReadToTheNearestMillisecond) {
  struct Case {
    const char* text;
    const char* nearest;
  };
  const Case cases[] = {
      {"14:05:07.2", "14:05:07.200"},     {"14:05:07.25", "14:05:07.250"},
      {"14:05:07.001", "14:05:07.001"},   {"14:05:07.0004999", "14:05:07"},
      {"14:05:07.0005", "14:05:07.001"},  {"14:05:07.1234567890123456789012345", "14:05:07.123"},
      {"14:05:07.99949", "14:05:07.999"}, {"14:05:07.9995", "14:05:08"},
      {"14:59:59.9999", "15:00:00"},
  };
  for (const Case& c : cases) EXPECT_EQ(parseIsoDate(c.text), parseIsoDate(c.nearest)) << c.text;
  EXPECT_EQ(parseIsoDate("00:00:00.001"), 1 / 86400000.0);
}

TEST(IsoDateTest, FractionCarriesToTheNextDay) {
  EXPECT_EQ(parseIsoDate("1999-12-31 23:59:59.9996"), parseIsoDate("2000-01-01"));
  EXPECT_EQ(parseIsoDate("1899-12-28 23:59:59.9996"), -1.0);
  EXPECT_EQ(parseIsoDate("1899-12-29 23:59:59.9996"), 0.0);
  EXPECT_EQ(parseIsoDate("23:59:59.9996"), 1.0);
}

TEST(IsoDateTest, FractionAtTheEndOfTimeStaysInRange) {
  EXPECT_EQ(parseIsoDate("9999-12-31 23:59:59.9999"), parseIsoDate("9999-12-31 23:59:59.999"));
}

TEST(IsoDateTest, MillisecondsShowOnlyWhenThereAreSome) {
  EXPECT_EQ(formatIsoDate(36959 + 50707250 / 86400000.0, DateShape::dateTime),
            Text("2001-03-09 14:05:07.250"));
  EXPECT_EQ(formatIsoDate(36959 + 50707001 / 86400000.0, DateShape::dateTime),
            Text("2001-03-09 14:05:07.001"));
  EXPECT_EQ(formatIsoDate(36959 + 50707000 / 86400000.0, DateShape::dateTime), Text("2001-03-09 14:05:07"));
}

TEST(IsoDateTest, DateShapeLeavesMidnightOut) {
  EXPECT_EQ(formatIsoDate(36959, DateShape::date), Text("2001-03-09"));
  EXPECT_EQ(formatIsoDate(36959.5, DateShape::date), Text("2001-03-09 12:00:00"));
  EXPECT_EQ(formatIsoDate(0, DateShape::date), Text("1899-12-30"));
}

TEST(IsoDateTest, TimeShapeLeavesDayZeroOut) {
  EXPECT_EQ(formatIsoDate(0.75, DateShape::time), Text("18:00:00"));
  EXPECT_EQ(formatIsoDate(0, DateShape::time), Text("00:00:00"));
  EXPECT_EQ(formatIsoDate(1.75, DateShape::time), Text("1899-12-31 18:00:00"));
  EXPECT_EQ(formatIsoDate(36959, DateShape::time), Text("2001-03-09 00:00:00"));
}

TEST(IsoDateTest, RoundingCarriesToTheNextDay) {
  const double almostOne = 1 - 1e-9;  // 86 microseconds before midnight
  EXPECT_EQ(formatIsoDate(36959 + almostOne, DateShape::dateTime), Text("2001-03-10 00:00:00"));
  EXPECT_EQ(formatIsoDate(36524 + almostOne, DateShape::date), Text("1999-12-31"));
  EXPECT_EQ(formatIsoDate(almostOne, DateShape::time), Text("1899-12-31 00:00:00"));
  EXPECT_EQ(formatIsoDate(-1 - almostOne, DateShape::dateTime), Text("1899-12-30 00:00:00"));
  EXPECT_EQ(formatIsoDate(-almostOne, DateShape::dateTime), Text("1899-12-31 00:00:00"));
  EXPECT_EQ(formatIsoDate(-1 - almostOne, DateShape::time), Text("00:00:00"));
}

TEST(IsoDateTest, RoundingAtTheEndOfTimeStaysInRange) {
  EXPECT_EQ(formatIsoDate(std::nextafter(2958466.0, 0.0), DateShape::dateTime),
            Text("9999-12-31 23:59:59.999"));
  EXPECT_EQ(formatIsoDate(std::nextafter(-657435.0, 0.0), DateShape::dateTime), Text("0100-01-02 00:00:00"));
}

TEST(IsoDateTest, NumbersOutsideTheCalendarHaveNoText) {
  const double dates[] = {2958466.0,
                          -657435.0,
                          1e10,
                          -1e10,
                          1e300,
                          -1e300,
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity(),
                          std::numeric_limits<double>::quiet_NaN()};
  for (const double date : dates) EXPECT_EQ(formatIsoDate(date, DateShape::dateTime), std::nullopt) << date;
}

TEST(IsoDateTest, DaysAgreeWithTheCalendarAndSurvive) {
  // 13 days apart, so that every day of the month and both sides of every leap day come up.
  for (int day = kFirstDay; day <= kLastDay; day += 13) {
    const Text text = formatIsoDate(day, DateShape::date);
    ASSERT_EQ(text, Text(calendarText(day)));
    ASSERT_EQ(parseIsoDate(*text), static_cast<double>(day));
  }
}

TEST(IsoDateTest, EveryDayAroundCenturiesAgreesWithTheCalendar) {
  for (int year = 100; year <= 9900; year += 100) {
    using namespace std::chrono;
    const int march = static_cast<int>(
        (sys_days(std::chrono::year(year) / March / 1) - sys_days(std::chrono::year(1899) / December / 30))
            .count());
    for (int day = march - 59; day < march + 320; ++day) {
      ASSERT_EQ(formatIsoDate(day, DateShape::date), Text(calendarText(day)));
      ASSERT_EQ(parseIsoDate(calendarText(day)), static_cast<double>(day));
    }
  }
}

TEST(IsoDateTest, EverySecondOfADaySurvives) {
  for (int second = 0; second < 86400; ++second) {
    const std::string text = twoDigits(static_cast<unsigned>(second / 3600)) + ":" +
                             twoDigits(static_cast<unsigned>(second / 60 % 60)) + ":" +
                             twoDigits(static_cast<unsigned>(second % 60));
    const std::optional<double> date = parseIsoDate(text);
    ASSERT_EQ(date, second / 86400.0) << text;
    ASSERT_EQ(formatIsoDate(*date, DateShape::time), Text(text));
  }
}

TEST(IsoDateTest, EveryMillisecondSurvivesOnAnyDay) {
  std::mt19937 random(20013);
  for (int round = 0; round < 200000; ++round) {
    const int day = std::uniform_int_distribution<int>(kFirstDay, kLastDay)(random);
    const auto millisecond = std::uniform_int_distribution<std::int64_t>(0, 86399999)(random);
    const double time = static_cast<double>(millisecond) / 86400000.0;
    const double date = day < 0 ? day - time : day + time;
    const Text text = formatIsoDate(date, DateShape::dateTime);
    ASSERT_TRUE(text.has_value());
    ASSERT_EQ(text->substr(0, 10), calendarText(day));
    const std::int64_t shown =
        std::stoll(text->substr(11, 2)) * 3600000 + std::stoll(text->substr(14, 2)) * 60000 +
        std::stoll(text->substr(17, 2)) * 1000 + (text->size() > 19 ? std::stoll(text->substr(20)) : 0);
    ASSERT_EQ(shown, millisecond) << *text;
    const std::optional<double> read = parseIsoDate(*text);
    ASSERT_TRUE(read.has_value());
    ASSERT_NEAR(*read, date, 1e-9);
    ASSERT_EQ(formatIsoDate(*read, DateShape::dateTime), text);
  }
}

}  // namespace
}  // namespace store
