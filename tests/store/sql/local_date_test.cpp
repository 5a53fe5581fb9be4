#include "platform/store/sql/local_date.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

namespace store {
namespace {

/// The date in ISO 8601, or the text itself when it is no date.
std::string isoOf(const std::string& text, DateOrder order = DateOrder::monthDayYear,
                  DateShape shape = DateShape::date) {
  return isoOfLocalDate(text, order, shape).value_or(text);
}

void expectNoDates(std::initializer_list<const char*> texts, DateOrder order = DateOrder::monthDayYear) {
  for (const char* text : texts)
    EXPECT_EQ(isoOfLocalDate(text, order, DateShape::date), std::nullopt) << text;
}

TEST(LocalDateTest, YearFirstWithSlashesIsReadInEveryOrder) {
  for (const DateOrder order : {DateOrder::monthDayYear, DateOrder::dayMonthYear, DateOrder::yearMonthDay}) {
    EXPECT_EQ(isoOf("2001/03/09", order), "2001-03-09");
    EXPECT_EQ(isoOf("2001/3/9", order), "2001-03-09");
    EXPECT_EQ(isoOf("1899/12/30", order), "1899-12-30");
  }
}

TEST(LocalDateTest, OrderOfTheLocaleDecides) {
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::dayMonthYear), "2001-09-03");
  EXPECT_EQ(isoOf("03/09/2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("31/12/2001", DateOrder::dayMonthYear), "2001-12-31");
  EXPECT_EQ(isoOf("12/31/2001", DateOrder::monthDayYear), "2001-12-31");
  expectNoDates({"31/12/2001"}, DateOrder::monthDayYear);
  expectNoDates({"12/31/2001"}, DateOrder::dayMonthYear);
  expectNoDates({"3/9/2001"}, DateOrder::yearMonthDay);
}

TEST(LocalDateTest, DotsAndHyphensPartTheLocalesOrderOnly) {
  EXPECT_EQ(isoOf("9.3.2001", DateOrder::dayMonthYear), "2001-03-09");
  EXPECT_EQ(isoOf("3-9-2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("2001.3.9", DateOrder::yearMonthDay), "2001-03-09");
  EXPECT_EQ(isoOf("2001-3-9", DateOrder::yearMonthDay), "2001-03-09");
  expectNoDates({"2001.3.9", "3/9-2001", "3.9/2001", "3,9,2001", "3 9 2001"});
}

TEST(LocalDateTest, IsoDatesAreReadInEveryOrder) {
  for (const DateOrder order : {DateOrder::monthDayYear, DateOrder::dayMonthYear, DateOrder::yearMonthDay}) {
    EXPECT_EQ(isoOf("2001-3-9", order), "2001-03-09");
    EXPECT_EQ(isoOf("2001-03-09", order, DateShape::dateTime), "2001-03-09 00:00:00");
    EXPECT_EQ(isoOf("2001-03-09 14:05:07", order, DateShape::dateTime), "2001-03-09 14:05:07");
  }
}

TEST(LocalDateTest, TheShapeOfTheColumnIsFollowed) {
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 00:00:00");
  EXPECT_EQ(isoOf("3/9/2001 12:00am", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 00:00:00");
  EXPECT_EQ(isoOf("3/9/2001 12:00am", DateOrder::monthDayYear, DateShape::date), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/2001 4:05", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 04:05:00");
}

TEST(LocalDateTest, TwoDigitsOfAYearAreOneOfAHundredYears) {
  EXPECT_EQ(isoOf("3/9/01"), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/29"), "2029-03-09");
  EXPECT_EQ(isoOf("3/9/30"), "1930-03-09");
  EXPECT_EQ(isoOf("3/9/99"), "1999-03-09");
  EXPECT_EQ(isoOf("9.3.00", DateOrder::dayMonthYear), "2000-03-09");
  EXPECT_EQ(isoOf("01-3-9", DateOrder::yearMonthDay), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/01 2:05 PM", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 14:05:00");
  expectNoDates({"3/9/1", "3/9/001", "31/9/01", "2/29/01"});
}

TEST(LocalDateTest, TimeMayFollow) {
  EXPECT_EQ(isoOf("2001/03/09 14:05:07"), "2001-03-09 14:05:07");
  EXPECT_EQ(isoOf("3/9/2001 4:05"), "2001-03-09 04:05:00");
  EXPECT_EQ(isoOf("3/9/2001   0:01"), "2001-03-09 00:01:00");
  EXPECT_EQ(isoOf("3/9/2001 23:59:59"), "2001-03-09 23:59:59");
  EXPECT_EQ(isoOf("3/9/2001 2:05:07 PM"), "2001-03-09 14:05:07");
  EXPECT_EQ(isoOf("3/9/2001 12:01am"), "2001-03-09 00:01:00");
  EXPECT_EQ(isoOf("3/9/2001 12:30 pm"), "2001-03-09 12:30:00");
  expectNoDates({"3/9/2001 24:00", "3/9/2001 14:60", "3/9/2001 14:05:60", "3/9/2001 14", "3/9/2001 14:5",
                 "3/9/2001 14:05:7", "3/9/2001 13:00 PM", "3/9/2001 0:00 AM", "3/9/2001 1:00 P",
                 "3/9/2001T14:05", "3/9/200114:05", "3/9/2001 14:05:07.5", "3/9/2001 100:05",
                 "3/9/2001 14:05 x"});
}

TEST(LocalDateTest, DaysThatDoNotExistStay) {
  expectNoDates({"2001/13/45", "2001/02/29", "1900/02/29", "2001/04/31", "2001/00/01", "2001/01/00",
                 "0099/01/01", "13/1/2001", "0/0/0000"});
  EXPECT_EQ(isoOf("2000/02/29"), "2000-02-29");
  EXPECT_EQ(isoOf("2004/2/29"), "2004-02-29");
  EXPECT_EQ(isoOf("0100/01/01"), "0100-01-01");
  EXPECT_EQ(isoOf("9999/12/31"), "9999-12-31");
}

TEST(LocalDateTest, TextsOfAnyOtherFormStay) {
  expectNoDates({"",
                 " ",
                 "/",
                 "//",
                 "2001",
                 "2001/03",
                 "2001/03/",
                 "/03/09",
                 "2001/03/09/",
                 " 2001/03/09",
                 "2001/03/09 ",
                 "2001//09",
                 "2001/003/09",
                 "2001/03/009",
                 "201/03/09",
                 "20001/03/09",
                 "3/9/200",
                 "3/9/20001",
                 "a2001/03/09",
                 "2001/03/09a",
                 "2001/3a/09",
                 "-1/3/2001",
                 "March 9, 2001",
                 "2001/03/09''",
                 "\xD9\xA3/9/2001",
                 "99999999999999999999/1/1"});
}

}  // namespace
}  // namespace store
