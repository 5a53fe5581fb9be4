#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/engine/dialect.h"
#include "tests/store/memory_database.h"

namespace store {
namespace {

std::string converted(std::string_view sql, DateOrder order = DateOrder::monthDayYear,
                      DateShape shape = DateShape::date) {
  return withIsoDates(sql, {"Born", "Day of death"}, shape, order);
}

/// What becomes of 'literal' beside a date column, without the quotes.
std::string isoOf(const std::string& literal, DateOrder order = DateOrder::monthDayYear,
                  DateShape shape = DateShape::date) {
  const std::string head = "SELECT a FROM t WHERE Born = '";
  const std::string sql = converted(head + literal + "' AND 1", order, shape);
  EXPECT_EQ(sql.substr(0, head.size()), head);
  EXPECT_EQ(sql.substr(sql.size() - 7), "' AND 1");
  return sql.substr(head.size(), sql.size() - head.size() - 7);
}

void expectUnchanged(std::initializer_list<std::string_view> texts) {
  for (const std::string_view sql : texts) EXPECT_EQ(converted(sql), sql);
}

void expectLiteralUnchanged(std::initializer_list<const char*> literals,
                            DateOrder order = DateOrder::monthDayYear) {
  for (const char* literal : literals) EXPECT_EQ(isoOf(literal, order), literal);
}

// Forms of a date

TEST(DateLiteralsTest, YearFirstWithSlashesIsReadInEveryOrder) {
  for (const DateOrder order : {DateOrder::monthDayYear, DateOrder::dayMonthYear, DateOrder::yearMonthDay}) {
    EXPECT_EQ(isoOf("2001/03/09", order), "2001-03-09");
    EXPECT_EQ(isoOf("2001/3/9", order), "2001-03-09");
    EXPECT_EQ(isoOf("1899/12/30", order), "1899-12-30");
  }
}

TEST(DateLiteralsTest, OrderOfTheLocaleDecides) {
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::dayMonthYear), "2001-09-03");
  EXPECT_EQ(isoOf("03/09/2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("31/12/2001", DateOrder::dayMonthYear), "2001-12-31");
  EXPECT_EQ(isoOf("12/31/2001", DateOrder::monthDayYear), "2001-12-31");
  expectLiteralUnchanged({"31/12/2001"}, DateOrder::monthDayYear);
  expectLiteralUnchanged({"12/31/2001"}, DateOrder::dayMonthYear);
  expectLiteralUnchanged({"3/9/2001"}, DateOrder::yearMonthDay);
}

TEST(DateLiteralsTest, DotsAndHyphensPartTheLocalesOrderOnly) {
  EXPECT_EQ(isoOf("9.3.2001", DateOrder::dayMonthYear), "2001-03-09");
  EXPECT_EQ(isoOf("3-9-2001", DateOrder::monthDayYear), "2001-03-09");
  EXPECT_EQ(isoOf("2001.3.9", DateOrder::yearMonthDay), "2001-03-09");
  EXPECT_EQ(isoOf("2001-3-9", DateOrder::yearMonthDay), "2001-03-09");
  expectLiteralUnchanged({"2001.3.9", "3/9-2001", "3.9/2001", "3,9,2001", "3 9 2001"});
}

TEST(DateLiteralsTest, IsoDatesAreReadInEveryOrder) {
  for (const DateOrder order : {DateOrder::monthDayYear, DateOrder::dayMonthYear, DateOrder::yearMonthDay}) {
    EXPECT_EQ(isoOf("2001-3-9", order), "2001-03-09");
    EXPECT_EQ(isoOf("2001-03-09", order, DateShape::dateTime), "2001-03-09 00:00:00");
    EXPECT_EQ(isoOf("2001-03-09 14:05:07", order, DateShape::dateTime), "2001-03-09 14:05:07");
  }
}

TEST(DateLiteralsTest, TheShapeOfTheColumnIsFollowed) {
  EXPECT_EQ(isoOf("3/9/2001", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 00:00:00");
  EXPECT_EQ(isoOf("3/9/2001 12:00am", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 00:00:00");
  EXPECT_EQ(isoOf("3/9/2001 12:00am", DateOrder::monthDayYear, DateShape::date), "2001-03-09");
  EXPECT_EQ(isoOf("3/9/2001 4:05", DateOrder::monthDayYear, DateShape::dateTime), "2001-03-09 04:05:00");
}

TEST(DateLiteralsTest, TimeMayFollow) {
  EXPECT_EQ(isoOf("2001/03/09 14:05:07"), "2001-03-09 14:05:07");
  EXPECT_EQ(isoOf("3/9/2001 4:05"), "2001-03-09 04:05:00");
  EXPECT_EQ(isoOf("3/9/2001   0:01"), "2001-03-09 00:01:00");
  EXPECT_EQ(isoOf("3/9/2001 23:59:59"), "2001-03-09 23:59:59");
  EXPECT_EQ(isoOf("3/9/2001 2:05:07 PM"), "2001-03-09 14:05:07");
  EXPECT_EQ(isoOf("3/9/2001 12:01am"), "2001-03-09 00:01:00");
  EXPECT_EQ(isoOf("3/9/2001 12:30 pm"), "2001-03-09 12:30:00");
  expectLiteralUnchanged({"3/9/2001 24:00", "3/9/2001 14:60", "3/9/2001 14:05:60", "3/9/2001 14",
                          "3/9/2001 14:5", "3/9/2001 14:05:7", "3/9/2001 13:00 PM", "3/9/2001 0:00 AM",
                          "3/9/2001 1:00 P", "3/9/2001T14:05", "3/9/200114:05", "3/9/2001 14:05:07.5",
                          "3/9/2001 100:05", "3/9/2001 14:05 x"});
}

TEST(DateLiteralsTest, DaysThatDoNotExistStay) {
  expectLiteralUnchanged({"2001/13/45", "2001/02/29", "1900/02/29", "2001/04/31", "2001/00/01", "2001/01/00",
                          "0099/01/01", "13/1/2001", "0/0/0000"});
  EXPECT_EQ(isoOf("2000/02/29"), "2000-02-29");
  EXPECT_EQ(isoOf("2004/2/29"), "2004-02-29");
  EXPECT_EQ(isoOf("0100/01/01"), "0100-01-01");
  EXPECT_EQ(isoOf("9999/12/31"), "9999-12-31");
}

TEST(DateLiteralsTest, TextsOfAnyOtherFormStay) {
  expectLiteralUnchanged({"",
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
                          "3/9/01",
                          "3/9/200",
                          "3/9/20001",
                          "a2001/03/09",
                          "2001/03/09a",
                          "2001/3a/09",
                          "-1/3/2001",
                          "2001-03-09",
                          "2001-03-09 14:05:07",
                          "March 9, 2001",
                          "2001/03/09''",
                          "\xD9\xA3/9/2001",
                          "99999999999999999999/1/1"});
}

// Places of a literal

TEST(DateLiteralsTest, EveryComparisonOnEitherSide) {
  for (const std::string op : {"=", "==", "<>", "!=", "<", "<=", ">", ">=", " IS ", " is not ",
                               " IS DISTINCT FROM ", " IS NOT DISTINCT FROM "}) {
    EXPECT_EQ(converted("SELECT a FROM t WHERE Born" + op + "'2001/03/09'"),
              "SELECT a FROM t WHERE Born" + op + "'2001-03-09'");
    EXPECT_EQ(converted("SELECT a FROM t WHERE '2001/03/09'" + op + "Born"),
              "SELECT a FROM t WHERE '2001-03-09'" + op + "Born");
  }
}

TEST(DateLiteralsTest, ColumnNamesInAnyCaseAndQuotes) {
  for (const std::string column : {"Born", "BORN", "[born]", "\"Born\"", "`Born`", "t.Born", "[t].[Born]",
                                   "main.t.Born", "[Day of death]", "\"DAY OF death\""}) {
    EXPECT_EQ(converted("SELECT a FROM t WHERE " + column + " > '2001/03/09'"),
              "SELECT a FROM t WHERE " + column + " > '2001-03-09'");
    EXPECT_EQ(converted("SELECT a FROM t WHERE '2001/03/09' < " + column),
              "SELECT a FROM t WHERE '2001-03-09' < " + column);
  }
  EXPECT_EQ(withIsoDates("SELECT 1 WHERE \xCE\xB2 = '2001/3/9'", {"\xCE\xB2"}, DateShape::date,
                         DateOrder::monthDayYear),
            "SELECT 1 WHERE \xCE\xB2 = '2001-03-09'");
  EXPECT_EQ(withIsoDates("SELECT 1 WHERE [a]=\"2001/3/9\"", {"a"}, DateShape::date, DateOrder::monthDayYear),
            "SELECT 1 WHERE [a]='2001-03-09'");
}

TEST(DateLiteralsTest, DoubleQuotesHoldALiteralToo) {
  EXPECT_EQ(converted("DELETE FROM t WHERE Born < \"3/9/2001\""), "DELETE FROM t WHERE Born < '2001-03-09'");
  expectUnchanged({"DELETE FROM t WHERE Born < [3/9/2001]", "DELETE FROM t WHERE Born < `3/9/2001`",
                   "DELETE FROM t WHERE Born < \"3/9/2001\".a"});
}

TEST(DateLiteralsTest, BothBoundsOfBetween) {
  EXPECT_EQ(
      converted("SELECT a FROM t WHERE Born BETWEEN '2001/01/01' AND '2001/12/31' AND b = '2001/01/01'"),
      "SELECT a FROM t WHERE Born BETWEEN '2001-01-01' AND '2001-12-31' AND b = '2001/01/01'");
  EXPECT_EQ(converted("SELECT a FROM t WHERE t.Born not between date('now') and '2001/12/31'"),
            "SELECT a FROM t WHERE t.Born not between date('now') and '2001-12-31'");
  EXPECT_EQ(
      converted("SELECT a FROM t WHERE Born BETWEEN (SELECT 1 WHERE x BETWEEN 1 AND '2001/01/01') AND "
                "'2001/12/31'"),
      "SELECT a FROM t WHERE Born BETWEEN (SELECT 1 WHERE x BETWEEN 1 AND '2001/01/01') AND '2001-12-31'");
  EXPECT_EQ(converted("SELECT a FROM t WHERE '2001/03/09' BETWEEN Born AND [Day of death]"),
            "SELECT a FROM t WHERE '2001-03-09' BETWEEN Born AND [Day of death]");
  expectUnchanged({"SELECT a FROM t WHERE b BETWEEN '2001/01/01' AND '2001/12/31'",
                   "SELECT a FROM t WHERE Born AND '2001/12/31'",
                   "SELECT a FROM t WHERE Born BETWEEN 1 AND 2 AND '2001/12/31'"});
}

TEST(DateLiteralsTest, EveryElementOfAnInList) {
  EXPECT_EQ(converted("SELECT a FROM t WHERE Born IN ('2001/01/01', 5, '1/2/2001', '2001-01-03','x') AND b "
                      "IN ('2001/01/01')"),
            "SELECT a FROM t WHERE Born IN ('2001-01-01', 5, '2001-01-02', '2001-01-03','x') AND b IN "
            "('2001/01/01')");
  EXPECT_EQ(converted("SELECT a FROM t WHERE Born NOT IN ('2001/01/01')"),
            "SELECT a FROM t WHERE Born NOT IN ('2001-01-01')");
  expectUnchanged({"SELECT a FROM t WHERE Born IN (date('2001/01/01'))",
                   "SELECT a FROM t WHERE Born IN (SELECT b, '2001/01/01', c)",
                   "SELECT a FROM t WHERE Born IN ('2001/01/01' || '')"});
}

TEST(DateLiteralsTest, SetOfAnUpdate) {
  EXPECT_EQ(converted("UPDATE t SET a = '2001/03/09', Born = '2001/03/09', 'Day of death'='3/9/2001' WHERE b "
                      "= '2001/03/09'"),
            "UPDATE t SET a = '2001/03/09', Born = '2001-03-09', 'Day of death'='2001-03-09' WHERE b = "
            "'2001/03/09'");
}

TEST(DateLiteralsTest, ValuesOfAnInsertWithAColumnList) {
  EXPECT_EQ(converted("INSERT INTO t (a, Born, [Day of death]) VALUES ('2001/03/09', '2001/03/09', "
                      "'3/9/2001'), ('1/1/2001', ('1/1/2001'), NULL)"),
            "INSERT INTO t (a, Born, [Day of death]) VALUES ('2001/03/09', '2001-03-09', '2001-03-09'), "
            "('1/1/2001', ('1/1/2001'), NULL)");
  EXPECT_EQ(converted("insert or replace into main.[t] AS b ('Born') values ('2001/03/09'), ('2002/03/09')"),
            "insert or replace into main.[t] AS b ('Born') values ('2001-03-09'), ('2002-03-09')");
  EXPECT_EQ(
      converted("REPLACE INTO t (a, Born) VALUES (max(1, '2001/03/09', 2), '2001/03/09', '2001/03/09')"),
      "REPLACE INTO t (a, Born) VALUES (max(1, '2001/03/09', 2), '2001-03-09', '2001/03/09')");
  EXPECT_EQ(converted("INSERT INTO t (a, Born) VALUES (1, '2001/03/09') ON CONFLICT (a, '2001/03/09') DO "
                      "UPDATE SET Born='3/9/2001'"),
            "INSERT INTO t (a, Born) VALUES (1, '2001-03-09') ON CONFLICT (a, '2001/03/09') DO UPDATE SET "
            "Born='2001-03-09'");
  expectUnchanged({"INSERT INTO t VALUES ('2001/03/09')", "INSERT INTO t (a) VALUES ('2001/03/09')",
                   "INSERT INTO t (Born) SELECT '2001/03/09'", "INSERT INTO t (Born) SELECT ('2001/03/09')",
                   "INSERT INTO t (Born) VALUES ('2001/03/09' || 'a')",
                   "INSERT INTO t (Born, (a)) VALUES ('2001/03/09', 1)",
                   "INSERT INTO t (Born) VALUES (date('2001/03/09'))"});
}

TEST(DateLiteralsTest, LiteralsBesideOtherThingsStay) {
  expectUnchanged(
      {"SELECT a FROM t WHERE b = '2001/03/09'", "SELECT '2001/03/09' AS Born FROM t",
       "SELECT a FROM t WHERE Born LIKE '2001/03/09'", "SELECT Born, '2001/03/09' FROM t",
       "SELECT a FROM t WHERE '2001/03/09' = Born(a)", "SELECT a FROM t WHERE Born() = '2001/03/09'",
       "SELECT a FROM t WHERE Born.b = '2001/03/09'", "SELECT a FROM t WHERE '2001/03/09' = Born.b",
       "'2001/03/09'", "'2001/03/09' Born", "SELECT a FROM t WHERE Borns = '2001/03/09'",
       "SELECT a FROM t WHERE Born = -- '2001/03/09'\n 1"});
}

TEST(DateLiteralsTest, PartsOfLargerValuesStay) {
  expectUnchanged(
      {"SELECT a FROM t WHERE Born = '2001/03/09' || b", "SELECT a FROM t WHERE a || Born = '2001/03/09'",
       "SELECT a FROM t WHERE '2001/03/09' = Born || ''", "SELECT a FROM t WHERE b || '2001/03/09' = Born",
       "SELECT a FROM t WHERE '2001/03/09' = t.Born + 1", "SELECT a FROM t WHERE 1 + t.Born = '2001/03/09'",
       "SELECT a FROM t WHERE Born BETWEEN '2001/03/09' || b AND '2001/03/09' || b"});
}

TEST(DateLiteralsTest, AllElseIsKeptToTheByte) {
  EXPECT_EQ(converted("  SELECT '3/9/2001' , 'it''s' -- Born = '3/9/2001'\n FROM\tt /* Born='3/9/2001' */ "
                      "WHERE Born='3/9/2001';\xFF"),
            "  SELECT '3/9/2001' , 'it''s' -- Born = '3/9/2001'\n FROM\tt /* Born='3/9/2001' */ WHERE "
            "Born='2001-03-09';\xFF");
  const std::string sql = "SELECT a FROM t WHERE Born = '2001/03/09'";
  EXPECT_EQ(withIsoDates(sql, {}, DateShape::date, DateOrder::monthDayYear), sql);
}

TEST(DateLiteralsTest, BrokenTextIsKept) {
  using std::string_view_literals::operator""sv;
  expectUnchanged({"", "Born = '2001/03/09", "Born = 'x' '", "Born =", "= '2001/03/09'",
                   "BETWEEN '2001/03/09'", "IN ('2001/03/09'", "INTO", "INTO t (", "INTO t (Born) VALUES",
                   "INSERT INTO t (Born, VALUES ('2001/03/09')", ".'2001/03/09'.", ")))) '2001/03/09'",
                   "Born \0= '2001/03/09'"sv});
  EXPECT_EQ(converted(")) Born = '2001/03/09' (("), ")) Born = '2001-03-09' ((");
}

TEST(DateLiteralsTest, DeepAndLongTextsAreRead) {
  std::string sql(500000, '(');
  std::string expected = sql + "Born = '2001-03-09'";
  EXPECT_TRUE(converted(sql + "Born = '2001/03/09'") == expected);
  sql = "SELECT a FROM t WHERE Born IN (0";
  expected = sql;
  for (int i = 0; i < 50000; ++i) {
    sql += ",'1/2/2001'";
    expected += ",'2001-01-02'";
  }
  EXPECT_TRUE(converted(sql + ")") == expected + ")");
}

TEST(DateLiteralsTest, ConvertedLiteralsFindTheRowsInTheFile) {
  MemoryDatabase database;
  ASSERT_TRUE(database.run("CREATE TABLE t (Name Text, Born Date)"));
  ASSERT_TRUE(database.run(
      converted("INSERT INTO t (Name, Born) VALUES ('old', '12/30/1899'), ('new', '3/9/2001')")));
  EXPECT_EQ(database.query("SELECT Born FROM t"), (MemoryDatabase::Texts{"1899-12-30", "2001-03-09"}));
  EXPECT_EQ(database.query(converted("SELECT Name FROM t WHERE Born = '2001/3/9'")),
            MemoryDatabase::Texts{"new"});
  EXPECT_EQ(database.query(converted("SELECT Name FROM t WHERE Born BETWEEN '1/1/1800' AND '1/1/1900'")),
            MemoryDatabase::Texts{"old"});
}

}  // namespace
}  // namespace store
