// Dates in statements: what they find and store in a file, and what of a statement they leave alone.
#include "platform/store/sql/date_literals.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

constexpr const char* kSchema =
    "CREATE TABLE t (Id INTEGER PRIMARY KEY, Born Date, [Day of death] DateTime, a Text, Clock Time);"
    "CREATE TABLE u (Id Integer, Born Text, D DateTime);"
    "CREATE TABLE g (Id Integer, Twice Integer AS (Id * 2), Born Date);"
    "CREATE VIEW v AS SELECT Id AS No, Born AS b, a FROM t;";

// Statements as texts

/// What an SQLite database in memory with the tables above knows.
class KnownTypes : public DeclaredTypes {
 public:
  KnownTypes() {
    EXPECT_EQ(sqlite3_open(":memory:", &handle_), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle_, kSchema, nullptr, nullptr, nullptr), SQLITE_OK);
  }
  ~KnownTypes() override { sqlite3_close(handle_); }
  KnownTypes(const KnownTypes&) = delete;
  KnownTypes& operator=(const KnownTypes&) = delete;

  Status ofSelect(const std::string& select, std::optional<std::string>* type) override {
    ++questionCount;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, select.c_str(), -1, &statement, nullptr) == SQLITE_OK) {
      const char* declared = sqlite3_column_decltype(statement, 0);
      *type = declared != nullptr ? declared : "";
    }
    sqlite3_finalize(statement);
    return {};
  }
  Status ofInsert(const std::string&, std::vector<std::string>* types) override {
    *types = {"INTEGER", "Date", "DateTime", "Text", "Time"};
    return {};
  }

  int questionCount = 0;

 private:
  sqlite3* handle_ = nullptr;
};

std::string converted(std::string_view sql) {
  KnownTypes types;
  std::string text(sql);
  const Status status = makeDatesMoments(&text, DateOrder::monthDayYear, types);
  EXPECT_TRUE(status) << sql << ": " << status.message();
  return text;
}

void expectUnchanged(std::initializer_list<std::string_view> texts) {
  for (const std::string_view sql : texts) EXPECT_EQ(converted(sql), sql);
}

void expectNotUnderstood(std::initializer_list<std::string_view> texts) {
  for (const std::string_view sql : texts) {
    KnownTypes types;
    std::string text(sql);
    const Status status = makeDatesMoments(&text, DateOrder::monthDayYear, types);
    EXPECT_EQ(status.code(), ErrorCode::errorsInCommand) << sql;
    EXPECT_NE(status.message().find("is not understood"), std::string::npos) << sql;
    EXPECT_EQ(text, sql);
  }
}

constexpr const char* kBounds =
    " AND Born COLLATE BINARY >= '2001-03-08 23' AND Born COLLATE BINARY < '2001-03-09U')";

TEST(DateLiteralTextsTest, AComparisonIsMadeByTheCollationWithinBounds) {
  const std::string literal = "'2001-03-09 00:00:00' COLLATE quivane_moment";
  EXPECT_EQ(converted("SELECT a FROM t WHERE Born = '3/9/2001'"),
            "SELECT a FROM t WHERE (Born = " + literal + kBounds);
  EXPECT_EQ(
      converted("SELECT a FROM t WHERE a = 'x' AND '3/9/2001' IS Born OR 1 -- Born = '3/9/2001'"),
      "SELECT a FROM t WHERE a = 'x' AND (" + literal + " IS Born" + kBounds + " OR 1 -- Born = '3/9/2001'");
  EXPECT_EQ(converted("SELECT a FROM t WHERE NOT Born <> '3/9/2001'--x"),
            "SELECT a FROM t WHERE NOT Born <> " + literal + "--x");
  EXPECT_EQ(converted("SELECT Born < '3/9/2001' FROM t"), "SELECT Born < " + literal + " FROM t");
}

TEST(DateLiteralTextsTest, BoundsStandOnlyWhereTheyChangeNothing) {
  for (const char* sql :
       {"SELECT a = Born < '3/9/2001' FROM t", "SELECT a FROM t WHERE 1 IS NOT Born < '3/9/2001'",
        "SELECT a FROM t WHERE a BETWEEN 'x' AND Born < '3/9/2001'",
        "SELECT a FROM t WHERE Born NOT BETWEEN '3/9/2001' AND '3/9/2001'",
        "SELECT a FROM t WHERE Born NOT IN ('3/9/2001')", "SELECT a FROM t WHERE Born IN ('3/9/2001', a)"}) {
    EXPECT_EQ(converted(sql).find("COLLATE BINARY"), std::string::npos) << converted(sql);
    EXPECT_NE(converted(sql).find("COLLATE quivane_moment"), std::string::npos) << converted(sql);
  }
  expectUnchanged({"SELECT a FROM t WHERE a < Born = '3/9/2001'",
                   "SELECT a FROM t WHERE a = Born = '3/9/2001'",
                   "SELECT a FROM t WHERE Born = '3/9/2001' < a"});
}

TEST(DateLiteralTextsTest, LiteralsBesideOtherThingsStay) {
  expectUnchanged(
      {"SELECT a FROM t WHERE a = '2001/03/09'", "SELECT '2001/03/09' AS Born FROM t",
       "SELECT a FROM t WHERE Born LIKE '2001/03/09'", "SELECT Born, '2001/03/09' FROM t",
       "SELECT a FROM t WHERE '2001/03/09' = Born(a)", "SELECT a FROM t WHERE Born() = '2001/03/09'",
       "SELECT a FROM t WHERE Born.b = '2001/03/09'", "SELECT a FROM t WHERE '2001/03/09' = Born.b",
       "'2001/03/09'", "'2001/03/09' Born", "SELECT a FROM t WHERE Borns = '2001/03/09'",
       "SELECT a FROM t WHERE Clock = '2001/03/09'", "SELECT a FROM t WHERE 'Born' = '2001/03/09'",
       "SELECT a FROM t WHERE Born = -- '2001/03/09'\n 1", "DELETE FROM t WHERE Born < [3/9/2001]",
       "DELETE FROM t WHERE Born < `3/9/2001`", "DELETE FROM t WHERE Born < \"3/9/2001\".a"});
}

TEST(DateLiteralTextsTest, PartsOfLargerValuesStay) {
  expectUnchanged(
      {"SELECT a FROM t WHERE Born = '2001/03/09' || a", "SELECT a FROM t WHERE a || Born = '2001/03/09'",
       "SELECT a FROM t WHERE '2001/03/09' = Born || ''", "SELECT a FROM t WHERE a || '2001/03/09' = Born",
       "SELECT a FROM t WHERE '2001/03/09' = t.Born + 1", "SELECT a FROM t WHERE 1 + t.Born = '2001/03/09'",
       "SELECT a FROM t WHERE Born BETWEEN '2001/03/09' || a AND '2001/03/09' || a",
       "SELECT a FROM t WHERE Born = max('3/9/2001', a)", "SELECT a FROM t WHERE max(Born, a) = '3/9/2001'",
       "SELECT a FROM t WHERE abs(Born) = '3/9/2001'", "SELECT a FROM t WHERE Born IN (date('2001/01/01'))",
       "SELECT a FROM t WHERE Born IN ('2001/01/01' || '')",
       "INSERT INTO t (Born) VALUES ('2001/03/09' || 'a')",
       "INSERT INTO t (Born) VALUES (date('2001/03/09'))"});
}

TEST(DateLiteralTextsTest, TextsThatAreNoDatesStay) {
  for (const char* literal :
       {"''", "'unknown'", "' '", "'2451978'", "'-1.5e3'", "'2001'", "'2001-03'", "'2001-02-31'",
        "'2001-03-09T10:00+02:00'", "'14:05'", "\"March 9, 2001\"", "\"31/12/2001\""}) {
    expectUnchanged({std::string("SELECT a FROM t WHERE Born > ") + literal,
                     std::string("INSERT INTO t (Born) VALUES (") + literal + ")"});
  }
}

TEST(DateLiteralTextsTest, ADateThatIsNotUnderstoodIsTold) {
  for (const std::string literal : {"'March 9, 2001'", "'31/12/2001'", "'2001.3.9'", "'9 Mar 01'",
                                    "'2001/13/45'", "'3/9/2001 25:00'", "'3/9'", "'it''s 3'"}) {
    expectNotUnderstood(
        {"SELECT a FROM t WHERE Born > " + literal, "SELECT a FROM t WHERE " + literal + " = Born",
         "SELECT a FROM t WHERE Born BETWEEN '2001-01-01' AND " + literal,
         "SELECT a FROM t WHERE " + literal + " BETWEEN Born AND a",
         "SELECT a FROM t WHERE Born IN (NULL, " + literal + ")", "UPDATE t SET a = 1, Born = " + literal,
         "INSERT INTO t (a, Born) VALUES (1, " + literal + ")", "INSERT INTO t SELECT 1, (" + literal + ")"});
    expectUnchanged({"SELECT a FROM t WHERE a > " + literal, "SELECT a FROM t WHERE Born LIKE " + literal});
  }
}

TEST(DateLiteralTextsTest, BrokenTextIsKept) {
  using std::string_view_literals::operator""sv;
  expectUnchanged({"",
                   "Born = '2001/03/09",
                   "Born = 'x' '",
                   "Born =",
                   "= '2001/03/09'",
                   "BETWEEN '2001/03/09'",
                   "BETWEEN AND '2001/03/09'",
                   "AND '1' BETWEEN",
                   "IN ('2001/03/09'",
                   "IN ('2001/03/09')",
                   "IN ()",
                   "INTO",
                   "INTO t (",
                   "INTO t () VALUES ('1')",
                   "INTO t (Born) VALUES",
                   "SET",
                   "SET '1'",
                   "SET = '1'",
                   "SET () = ('1/1/2001')",
                   "SET (a = '1/1/2001'",
                   "UPDATE t SET Born = ",
                   "UPDATE t SET Born = , '1'",
                   "INSERT INTO t (Born, VALUES ('2001/03/09')",
                   ".'2001/03/09'.",
                   ")))) '2001/03/09'",
                   "))('1/1/2001'))",
                   "SELECT FROM WITH '1/1/2001'",
                   "WITH (SELECT '1/1/2001'",
                   "INSERT INTO t SELECT",
                   "INSERT INTO t SELECT ,'1'",
                   "INSERT INTO t VALUES ('1'",
                   "Born \0= '2001/03/09'"sv});
}

TEST(DateLiteralTextsTest, DeepAndLongTextsAreRead) {
  const std::string parentheses(500000, '(');
  expectUnchanged({parentheses + "Born = '2001/03/09'"});
  std::string list = "SELECT a FROM t WHERE Born IN (0";
  std::string chain = "SELECT a FROM t WHERE 0";
  std::string subqueries = "SELECT a FROM t WHERE a";
  for (int i = 0; i < 20000; ++i) {
    list += ",'1/2/2001'";
    chain += " OR Born = '1/2/2001' OR t.[Day of death] < '1/2/2001'";
    if (i < 20) subqueries += " IN (SELECT a FROM t WHERE Born = '1/2/2001' AND a";
  }
  subqueries += std::string(20, ')');
  for (const std::string& sql : {list + ")", chain, subqueries}) {
    KnownTypes types;
    std::string text = sql;
    EXPECT_TRUE(makeDatesMoments(&text, DateOrder::monthDayYear, types));
    EXPECT_NE(text, sql);
    EXPECT_LE(types.questionCount, 20);
  }
}

// Statements in a file

class DateLiteralsTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare(kSchema);
    // One moment in all forms, two moments beside it, and what is no moment.
    prepare(
        "INSERT INTO t (Id, Born) VALUES (1, '2001-03-09'), (2, '2001-03-09 00:00:00'), "
        "(3, '2001-03-09 00:00:00.000'), (4, '2001-03-09T00:00Z'), (5, '2001-03-08 23:59:59.9996'), "
        "(6, '2001-03-08 23:59'), (7, '2001-03-09 00:00:00.001'), (8, NULL), (9, 2451977.5), (10, "
        "'unknown')");
    prepare("UPDATE t SET a = Born, [Day of death] = Born");
    prepare("INSERT INTO u SELECT Id, Born, Born FROM t");
    prepare("INSERT INTO u VALUES (99, '3/9/2001', NULL)");
    open();
  }

  std::string idsWhere(const std::string& condition, const std::string& table = "t") {
    return columnOf("SELECT Id FROM " + table + " WHERE " + condition + " ORDER BY Id");
  }
  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  std::string storedBy(const std::string& sql, const std::string& column = "Born",
                       const std::string& table = "t") {
    run(sql);
    return inFile("SELECT group_concat(" + column + ", '|') FROM (SELECT " + column + " FROM " + table +
                  " WHERE Id >= 1000 ORDER BY Id)");
  }
};

TEST_F(DateLiteralsTest, EveryFormInTheFileIsTheSameMomentForEveryOperator) {
  for (const std::string literal :
       {"'2001/03/09'", "'3/9/2001'", "'3/9/01'", "'2001-03-09'", "'2001-03-09 00:00:00.000'", "\"3/9/2001\"",
        "('3/9/2001')", "(('2001-03-09T00:00'))", "' 3/9/2001 12:00 AM '"}) {
    for (const std::string column :
         {"Born", "[born]", "t.Born", "main.[t].\"Born\"", "(Born)", "[Day of death]"}) {
      for (const char* op : {" = ", " == ", " IS ", " IS NOT DISTINCT FROM ", "="}) {
        EXPECT_EQ(idsWhere(column + op + literal), "1 2 3 4 5") << column << op << literal;
        EXPECT_EQ(idsWhere(literal + op + column), "1 2 3 4 5") << literal << op << column;
      }
      EXPECT_EQ(idsWhere(column + " <> " + literal), "6 7 9 10");
      EXPECT_EQ(idsWhere(column + " is not " + literal), "6 7 8 9 10");
      EXPECT_EQ(idsWhere(literal + " IS DISTINCT FROM " + column), "6 7 8 9 10");
      EXPECT_EQ(idsWhere(column + "<" + literal), "6 9");
      EXPECT_EQ(idsWhere(literal + ">" + column), "6 9");
      EXPECT_EQ(idsWhere(column + " <= " + literal), "1 2 3 4 5 6 9");
      EXPECT_EQ(idsWhere(column + " > " + literal), "7 10");
      EXPECT_EQ(idsWhere(literal + "<=" + column), "1 2 3 4 5 7 10");
    }
  }
}

TEST_F(DateLiteralsTest, BetweenAndIn) {
  EXPECT_EQ(idsWhere("Born BETWEEN '3/9/2001' AND ('3/9/2001') AND 1"), "1 2 3 4 5");
  EXPECT_EQ(idsWhere("Born NOT BETWEEN '3/9/2001' AND '2001/3/9'"), "6 7 9 10");
  EXPECT_EQ(idsWhere("Born BETWEEN '3/8/2001' AND date('2001-03-08')"), "");
  EXPECT_EQ(idsWhere("Born BETWEEN date('2001-01-01') AND '3/9/2001'"), "1 2 3 4 5 6");
  EXPECT_EQ(idsWhere("'3/9/2001' BETWEEN Born AND [Day of death]"), "1 2 3 4 5");
  EXPECT_EQ(idsWhere("('3/9/2001') NOT BETWEEN Born AND [Day of death]"), "6 7 9 10");
  EXPECT_EQ(idsWhere("Born IN ('3/9/2001', ('3/8/2001 23:59'), 'unknown')"), "1 2 3 4 5 6 10");
  EXPECT_EQ(idsWhere("Born IN ('3/9/2001', '3/8/2001 23:59', '1/1/1900')"), "1 2 3 4 5 6");
  EXPECT_EQ(idsWhere("(Born) NOT IN ('3/9/2001')"), "6 7 9 10");
  EXPECT_EQ(idsWhere("Born IN (SELECT D FROM u WHERE D = '3/9/2001' AND Born <> '3/9/2001')"), "1 2 3 4 5");
}

TEST_F(DateLiteralsTest, InAJoinATextThatIsNamedLikeADateIsNone) {
  EXPECT_EQ(columnOf("SELECT u.Id FROM t JOIN u ON 1 WHERE t.Id = 1 AND u.Born = '3/9/2001'"), "99");
  EXPECT_EQ(
      columnOf("SELECT x.Id FROM t, u AS x WHERE t.Id = 1 AND t.Born = '3/9/2001' AND x.[Born] = '3/9/2001'"),
      "99");
  EXPECT_EQ(idsWhere("Born = '3/9/2001'", "u"), "99");
  EXPECT_EQ(idsWhere("EXISTS (SELECT 1 FROM u WHERE Born = '3/9/2001' AND t.Born = '3/9/2001')"),
            "1 2 3 4 5");
  EXPECT_EQ(
      columnOf("SELECT count(*) FROM t JOIN u ON u.Id = t.Id AND u.D = '3/9/2001' AND t.Born = '3/9/2001'"),
      "5");
  EXPECT_EQ(columnOf("SELECT count(*) FROM (t JOIN u USING (Id)) WHERE D = '3/9/2001'"), "5");
}

TEST_F(DateLiteralsTest, ADateIsOneThroughViewsSubqueriesAndAliases) {
  EXPECT_EQ(columnOf("SELECT count(*) FROM v WHERE b = '3/9/2001'"), "5");
  EXPECT_EQ(columnOf("SELECT count(*) FROM (SELECT Born AS x FROM t) AS s WHERE s.x = '3/9/2001'"), "5");
  EXPECT_EQ(
      columnOf("SELECT count(*) FROM (SELECT b AS x FROM v UNION ALL SELECT D FROM u) WHERE x = '3/9/2001'"),
      "10");
  EXPECT_EQ(columnOf("WITH c(x) AS (SELECT Born FROM t WHERE Born >= '3/9/2001') SELECT count(*) FROM c "
                     "WHERE x = '3/9/2001'"),
            "5");
  EXPECT_EQ(
      columnOf(
          "WITH RECURSIVE c(x, n) AS (SELECT Born, 1 FROM t WHERE Id = 3 UNION ALL SELECT x, n + 1 FROM c "
          "WHERE n < 3 AND x = '3/9/2001') SELECT count(*) FROM c"),
      "3");
  EXPECT_EQ(columnOf("SELECT Born AS x FROM t WHERE x = '3/9/2001' AND Id = 1"), "2001-03-09");
  EXPECT_EQ(idsWhere("(SELECT count(*) FROM (SELECT 1 WHERE t.Born = '3/9/2001')) = 1"), "1 2 3 4 5");
  EXPECT_EQ(idsWhere("Id IN (WITH c AS (SELECT Id AS n, D FROM u) SELECT n FROM c WHERE c.D = '3/9/2001')"),
            "1 2 3 4 5");
  EXPECT_EQ(columnOf("SELECT count(*) FROM t AS x WHERE x.Born = '3/9/2001' UNION ALL SELECT count(*) FROM u "
                     "WHERE Born = "
                     "'3/9/2001'"),
            "5 1");
  EXPECT_EQ(columnOf("SELECT sum(CASE WHEN Born = '3/9/2001' THEN 1 ELSE 0 END) FROM t"), "5");
  EXPECT_EQ(columnOf("SELECT count(*) FROM t GROUP BY Born HAVING Born = '3/9/2001' ORDER BY 1"),
            "1 1 1 1 1");
}

TEST_F(DateLiteralsTest, TheNameOfAResultHidesTheColumnsOfTablesAround) {
  const std::string texts = "(SELECT a AS D FROM t WHERE D = '2001-03-09 00:00:00')";
  EXPECT_EQ(columnOf("SELECT count(*) FROM u JOIN " + texts + " ON u.Id = 1"), "1");
  EXPECT_EQ(columnOf("SELECT count(*) FROM u WHERE Id IN (SELECT count(*) FROM " + texts + ")"), "1");
  EXPECT_EQ(columnOf("SELECT (SELECT count(*) FROM (SELECT 1) WHERE D = '3/9/2001') FROM u WHERE Id < 2"),
            "1");
  EXPECT_EQ(
      columnOf(
          "SELECT count(*) FROM u WHERE EXISTS (SELECT a AS D FROM t WHERE D = '2001-03-09 00:00:00' AND "
          "Id = 1)"),
      "0");
}

TEST_F(DateLiteralsTest, TheLeastAndTheGreatestOfADateColumnAreDates) {
  run("UPDATE t SET Born = '2001-03-08T10:00' WHERE Id > 5");
  EXPECT_EQ(columnOf("SELECT 1 FROM t GROUP BY Id > 5 HAVING max(Born) < '3/9/2001'"), "1");
  EXPECT_EQ(columnOf("SELECT count(*) FROM t GROUP BY Id HAVING '3/9/2001' = (MIN(t.[Born])) LIMIT 1"), "1");
  EXPECT_EQ(columnOf("SELECT count(*) FROM t HAVING max(Born) BETWEEN '3/9/2001' AND '3/9/2001'"), "10");
  EXPECT_EQ(columnOf("SELECT count(*) FROM t HAVING min(Born) IN ('3/9/2001')"), "10");
  EXPECT_EQ(tryRun("SELECT 1 FROM t HAVING max(Born) < 'March 9, 2001'").code(), ErrorCode::errorsInCommand);
}

TEST_F(DateLiteralsTest, AnIndexOnTheColumnStaysOfUse) {
  run("CREATE INDEX byBirth ON t (Born)");
  for (const char* condition :
       {"Born = '3/9/2001'", "'3/9/2001' = Born", "Born < '3/9/2001'", "Born > '3/9/2001' AND a = 'x'",
        "t.Born BETWEEN '3/9/2001' AND '3/10/2001'", "Born IN ('3/9/2001', '3/10/2001')"}) {
    const auto plan = records(std::string("EXPLAIN QUERY PLAN SELECT * FROM t WHERE ") + condition);
    ASSERT_NE(nullptr, plan);
    EXPECT_NE(textOf(*plan, 3).find("INDEX byBirth (Born"), std::string::npos)
        << condition << textOf(*plan, 3);
  }
  EXPECT_EQ(idsWhere("Born = '3/9/2001'"), "1 2 3 4 5");
  EXPECT_EQ(idsWhere("Born >= '3/9/2001'"), "1 2 3 4 5 7 10");
}

TEST_F(DateLiteralsTest, WhatIsFoundCanBeChanged) {
  const auto rows = records("SELECT Id, a FROM t WHERE Born = '3/9/2001' ORDER BY Born DESC, Id");
  ASSERT_NE(nullptr, rows);
  ASSERT_EQ(5u, rows->recordCount());
  ASSERT_TRUE(rows->setValue(1, std::string("x")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ(inFile("SELECT count(*) FROM t WHERE a = 'x'"), "1");
  std::int64_t affected = 0;
  ASSERT_TRUE(tryRun("DELETE FROM t WHERE Born = '3/9/2001'", &affected));
  EXPECT_EQ(affected, 5);
}

TEST_F(DateLiteralsTest, AnInsertStoresIsoInEveryForm) {
  const std::string expected = "2001-03-09";
  EXPECT_EQ(storedBy("INSERT INTO t (Id, Born, a) VALUES (1000, '3/9/2001', '3/9/2001')"), expected);
  EXPECT_EQ(storedBy("INSERT INTO t VALUES (1001, '3/9/2001', '3/9/2001', '3/9/2001', '3/9/2001')"),
            "2001-03-09|2001-03-09");
  EXPECT_EQ(inFile("SELECT [Day of death] || '|' || a || '|' || Clock FROM t WHERE Id = 1001"),
            "2001-03-09 00:00:00|3/9/2001|3/9/2001");
  run("DELETE FROM t WHERE Id >= 1000");
  EXPECT_EQ(
      storedBy("INSERT INTO t (Id, Born) VALUES (1000, ('3/9/2001')), (1001, NULL), (1002, \"3/10/2001\")"),
      "2001-03-09|2001-03-10");
  run("DELETE FROM t WHERE Id >= 1000");
  EXPECT_EQ(storedBy("INSERT INTO t SELECT 1000, '3/9/2001' AS d, NULL, NULL, NULL UNION ALL SELECT 1001, "
                     "('3/9/2001') d, 1, 2, 3 "
                     "FROM u WHERE D = '3/9/2001' AND Id = 1"),
            "2001-03-09|2001-03-09");
  run("DELETE FROM t WHERE Id >= 1000");
  EXPECT_EQ(storedBy("INSERT OR REPLACE INTO main.t AS x ('Born', Id) SELECT DISTINCT '3/9/2001', Id + 1000 "
                     "FROM u WHERE Id < 3"),
            "2001-03-09|2001-03-09");
  run("DELETE FROM t WHERE Id >= 1000");
  EXPECT_EQ(storedBy("WITH c(n) AS (SELECT 1000) REPLACE INTO t (Id, Born) SELECT c.*, '3/9/2001' FROM c"),
            expected);
  EXPECT_EQ(storedBy("INSERT INTO g VALUES (1000, '3/9/2001')", "Born", "g"), expected);
  // What stands in another column as a text is copied as it is.
  run("DELETE FROM t WHERE Id >= 1000");
  EXPECT_EQ(storedBy("INSERT INTO t (Id, Born) SELECT 1000, Born FROM u WHERE Id = 99"), "3/9/2001");
}

TEST_F(DateLiteralsTest, AnUpdateStoresIso) {
  run("UPDATE t SET a = '3/9/2001', Born = ('3/9/2001'), 'Day of death'='3/9/2001 2:05 PM' WHERE Born = "
      "'3/8/2001 23:59'");
  EXPECT_EQ(inFile("SELECT a || '|' || Born || '|' || [Day of death] FROM t WHERE Id = 6"),
            "3/9/2001|2001-03-09|2001-03-09 14:05:00");
  run("UPDATE t SET (a, Born) = ('3/10/2001', '3/10/2001') FROM u WHERE u.Id = t.Id AND u.Id = 1");
  EXPECT_EQ(inFile("SELECT a || '|' || Born FROM t WHERE Id = 1"), "3/10/2001|2001-03-10");
  run("UPDATE t SET Born = '3/11/2001' FROM u WHERE u.Id = t.Id AND u.Id = 1 AND D = '3/9/2001'");
  EXPECT_EQ(inFile("SELECT Born FROM t WHERE Id = 1"), "2001-03-11");
  run("INSERT INTO t (Id, Born) VALUES (2, '1/1/2000') ON CONFLICT (Id) DO UPDATE SET Born = '3/12/2001' "
      "WHERE excluded.Born = '1/1/2000' AND t.Born = '3/9/2001'");
  EXPECT_EQ(inFile("SELECT Born FROM t WHERE Id = 2"), "2001-03-12");
  run("UPDATE t SET a = Born < '1/1/2002' WHERE Id = 2");
  EXPECT_EQ(inFile("SELECT a FROM t WHERE Id = 2"), "1");
}

TEST_F(DateLiteralsTest, ADateThatIsNotUnderstoodChangesNothing) {
  for (const char* sql :
       {"DELETE FROM t WHERE Born <> 'March 9, 2001'", "UPDATE t SET Born = 'March 9, 2001'",
        "INSERT INTO t (Born) VALUES ('March 9, 2001')", "SELECT * FROM t WHERE Born > 'March 9, 2001'"}) {
    const Status status = tryRun(sql);
    EXPECT_EQ(status.code(), ErrorCode::errorsInCommand);
    EXPECT_EQ(status.message(),
              "The date 'March 9, 2001' is not understood. Write it as 'yyyy-mm-dd' or 'yyyy/mm/dd'.");
  }
  EXPECT_EQ(inFile("SELECT count(*) FROM t"), "10");
}

}  // namespace
}  // namespace store
