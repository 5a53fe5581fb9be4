#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "platform/store/sql/dialect.h"
#include "tests/store/memory_database.h"

namespace store {
namespace {

using Texts = MemoryDatabase::Texts;

SingleTableSelect read(std::string_view sql) {
  const std::optional<SingleTableSelect> select = readSingleTableSelect(sql);
  EXPECT_TRUE(select) << sql;
  return select.value_or(SingleTableSelect{});
}

void expectRead(std::initializer_list<std::string_view> texts) {
  for (const std::string_view sql : texts) EXPECT_TRUE(readSingleTableSelect(sql)) << sql;
}

void expectEmpty(std::initializer_list<std::string_view> texts) {
  for (const std::string_view sql : texts) EXPECT_FALSE(readSingleTableSelect(sql)) << sql;
}

TEST(SingleTableSelectTest, PartsAreSlicesOfTheText) {
  const SingleTableSelect select = read(
      "SELECT Title, Year+1 AS y FROM Books b WHERE Author IN (SELECT Id FROM Authors) ORDER BY 2 DESC LIMIT "
      "10");
  EXPECT_EQ(select.table, "Books");
  EXPECT_EQ(select.columnList, "Title, Year+1 AS y");
  EXPECT_EQ(select.tableClause, "Books b");
  EXPECT_EQ(select.qualifier, "\"b\"");
  EXPECT_EQ(select.tail, "WHERE Author IN (SELECT Id FROM Authors) ORDER BY 2 DESC LIMIT 10");
  EXPECT_FALSE(select.isPlainTable);
}

TEST(SingleTableSelectTest, PlainTableIsOnlyAnAsteriskAndAName) {
  for (const std::string_view sql :
       {"Select * from [Full list]", "SELECT ALL * FROM [Full list];", "select*from\"Full list\"-- all"}) {
    const SingleTableSelect select = read(sql);
    EXPECT_EQ(select.table, "Full list") << sql;
    EXPECT_EQ(select.columnList, "*") << sql;
    EXPECT_EQ(select.qualifier, "\"Full list\"") << sql;
    EXPECT_EQ(select.tail, "") << sql;
    EXPECT_TRUE(select.isPlainTable) << sql;
  }
  for (const std::string_view sql : {"SELECT *, 1 FROM t", "SELECT t.* FROM t", "SELECT * FROM t ORDER BY a",
                                     "SELECT * FROM t b", "SELECT * FROM main.t", "SELECT a FROM t"}) {
    EXPECT_FALSE(read(sql).isPlainTable) << sql;
  }
}

TEST(SingleTableSelectTest, WhatOnlyChoosesAmongItsRowsMayStandAroundIt) {
  const SingleTableSelect select =
      read("SELECT * FROM (select * from (SELECT a FROM t b WHERE a > 1) WHERE a < 9) ORDER BY a LIMIT 3");
  EXPECT_EQ(select.table, "t");
  EXPECT_EQ(select.columnList, "a");
  EXPECT_EQ(select.tail, "WHERE a > 1");
  ASSERT_EQ(select.around.size(), 2U);
  EXPECT_EQ(select.around[0].tail, "WHERE a < 9");
  EXPECT_EQ(select.around[0].order, "");
  EXPECT_EQ(select.around[1].tail, "ORDER BY a LIMIT 3");
  EXPECT_EQ(select.around[1].order, "ORDER BY a");
  EXPECT_FALSE(read("SELECT * FROM (SELECT * FROM t)").isPlainTable);
  expectEmpty({"SELECT a FROM (SELECT a FROM t)", "SELECT * FROM (SELECT a FROM t) x",
               "SELECT * FROM (SELECT a FROM t), u", "SELECT * FROM (SELECT a FROM t) GROUP BY a",
               "SELECT * FROM (SELECT a FROM t) ORDER BY row_number() OVER (ORDER BY a)",
               "SELECT DISTINCT * FROM (SELECT a FROM t)", "SELECT * FROM (SELECT a FROM t",
               "SELECT * FROM ()", "SELECT * FROM (SELECT a FROM t; SELECT 1)"});
}

TEST(SingleTableSelectTest, ItIsNotLookedForBeyondSomeDepth) {
  std::string sql = "SELECT * FROM t";
  for (std::size_t count = 0; count < SingleTableSelect::kMostAround; ++count) {
    sql = "SELECT * FROM (" + sql + ") WHERE 1";
  }
  expectRead({sql});
  expectEmpty({"SELECT * FROM (" + sql + ")"});
}

TEST(SingleTableSelectTest, AliasAddressesTheColumns) {
  EXPECT_EQ(read("SELECT a FROM t AS b").qualifier, "\"b\"");
  EXPECT_EQ(read("SELECT a FROM t AS [b c]").qualifier, "\"b c\"");
  EXPECT_EQ(read("SELECT a FROM t 'b''c' WHERE 1").qualifier, "\"b'c\"");
  EXPECT_EQ(read("SELECT a FROM t \"say \"\"b\"\"\"").qualifier, "\"say \"\"b\"\"\"");
  EXPECT_EQ(read("SELECT a FROM t AS left WHERE 1").qualifier, "\"left\"");
  EXPECT_EQ(read("SELECT a FROM t AS b WHERE 1").tableClause, "t AS b");
}

TEST(SingleTableSelectTest, NamesStandInAnyQuotes) {
  EXPECT_EQ(read("SELECT a FROM [from]").table, "from");
  EXPECT_EQ(read("SELECT a FROM \"say \"\"so\"\"\"").table, "say \"so\"");
  EXPECT_EQ(read("SELECT a FROM `group`").table, "group");
  EXPECT_EQ(read("SELECT a FROM 'it''s'").table, "it's");
  EXPECT_EQ(read("SELECT a FROM \xCE\xB2\xCE\xB9").table, "\xCE\xB2\xCE\xB9");
}

TEST(SingleTableSelectTest, MainIsTheOnlySchema) {
  const SingleTableSelect select = read("SELECT a FROM [Main] . [t] WHERE 1");
  EXPECT_EQ(select.table, "t");
  EXPECT_EQ(select.tableClause, "[Main] . [t]");
  EXPECT_EQ(select.qualifier, "\"t\"");
  expectEmpty({"SELECT a FROM temp.t", "SELECT a FROM other.t", "SELECT a FROM main.",
               "SELECT a FROM main.t.u", "SELECT a FROM .t"});
}

TEST(SingleTableSelectTest, WordsInStringsNamesAndParenthesesDoNotCount) {
  const SingleTableSelect select = read(
      "SELECT [from], 'a from b', \"group\", (SELECT 1 FROM u), x AS \"union\" "
      "FROM t WHERE 'group by' <> [having] AND (a IN (SELECT a FROM u GROUP BY a UNION SELECT 2))");
  EXPECT_EQ(select.columnList, "[from], 'a from b', \"group\", (SELECT 1 FROM u), x AS \"union\"");
  EXPECT_EQ(select.table, "t");
  EXPECT_EQ(select.tail,
            "WHERE 'group by' <> [having] AND (a IN (SELECT a FROM u GROUP BY a UNION SELECT 2))");
}

TEST(SingleTableSelectTest, LiteralsOfEveryKindAreRead) {
  const std::string columns =
      "1e+5, .5e-1, 1.e3, 0x1F, 1_000, x'0F', X'', ?, ?1, :a, @b, $c::d(e), a->'$.b', a->>1";
  EXPECT_EQ(read("SELECT " + columns + " FROM t").columnList, columns);
}

TEST(SingleTableSelectTest, DistinctFromIsAnOperator) {
  const SingleTableSelect select =
      read("SELECT a IS NOT DISTINCT FROM b, a IS DISTINCT FROM c FROM t WHERE a IS DISTINCT FROM b");
  EXPECT_EQ(select.columnList, "a IS NOT DISTINCT FROM b, a IS DISTINCT FROM c");
  EXPECT_EQ(select.table, "t");
}

TEST(SingleTableSelectTest, CommentsAtTheEndsOfPartsAreLeftOut) {
  const SingleTableSelect select = read(
      "/* 1 */ SELECT /* 2 */ a, -- 3\n b -- 4\n FROM /* 5 */ t /* 6 */ b -- from u\n WHERE a /* 7 */ = 1 -- "
      "8; 9");
  EXPECT_EQ(select.columnList, "a, -- 3\n b");
  EXPECT_EQ(select.tableClause, "t /* 6 */ b");
  EXPECT_EQ(select.tail, "WHERE a /* 7 */ = 1");
}

TEST(SingleTableSelectTest, OtherFormsOfSelectAreEmpty) {
  expectEmpty({"SELECT DISTINCT a FROM t",
               "SELECT a FROM t, u",
               "SELECT a FROM t JOIN u",
               "SELECT a FROM t b LEFT JOIN u",
               "SELECT a FROM t NATURAL JOIN u",
               "SELECT a FROM t CROSS JOIN u",
               "SELECT a FROM t INNER JOIN u ON 1",
               "SELECT a FROM t b, u",
               "SELECT a FROM (SELECT a FROM t)",
               "SELECT a FROM (t)",
               "SELECT a FROM json_each('[1]')",
               "SELECT a FROM t b('x')",
               "SELECT a FROM t GROUP BY a",
               "SELECT a FROM t WHERE 1 GROUP BY a",
               "SELECT a FROM t HAVING 1",
               "SELECT a FROM t WHERE 1 HAVING 1",
               "SELECT a FROM t UNION SELECT a FROM u",
               "SELECT a FROM t WHERE 1 UNION ALL SELECT 1",
               "SELECT a FROM t EXCEPT SELECT 1",
               "SELECT a FROM t INTERSECT SELECT 1",
               "SELECT a FROM t ORDER BY a INTERSECT SELECT 1",
               "SELECT a FROM t WINDOW w AS ()",
               "SELECT a FROM t WHERE 1 WINDOW w AS (ORDER BY a)",
               "SELECT a FROM t INDEXED BY i",
               "SELECT a FROM t NOT INDEXED",
               "WITH u AS (SELECT 1) SELECT a FROM u",
               "VALUES (1)",
               "SELECT 1",
               "SELECT",
               "SELECT FROM t",
               "SELECT a FROM",
               "SELECT a FROM WHERE",
               "SELECT a FROM WHERE 1",
               "SELECT a FROM t WHERE 1 EXCEPT SELECT 1",
               "SELECT a FROM 1",
               "SELECT a FROM t AS",
               "SELECT a FROM t b c",
               "SELECT a FROM t SET a = 1",
               "EXPLAIN SELECT a FROM t",
               "(SELECT a FROM t)",
               "INSERT INTO t SELECT a FROM u",
               "DELETE FROM t",
               "UPDATE t SET a = 1",
               "PRAGMA page_size",
               ""});
}

TEST(SingleTableSelectTest, WindowFunctionsAreEmpty) {
  expectEmpty({"SELECT row_number() OVER (ORDER BY a) FROM t", "SELECT lag(a) over w FROM t",
               "SELECT first_value(a) OVER \"w\" FROM t", "SELECT my(a) FILTER (WHERE a) FROM t",
               "SELECT a FROM t ORDER BY rank() OVER (ORDER BY a)", "SELECT abs(lag(a) OVER w) FROM t"});
  expectRead({"SELECT abs(a) over FROM t", "SELECT abs(a) filter, over FROM t", "SELECT (a) over, b FROM t",
              "SELECT over FROM filter", "SELECT window FROM t WHERE window = 1 ORDER BY window",
              "SELECT a FROM t WHERE window IS 1", "SELECT (SELECT row_number() OVER () FROM u) FROM t",
              "SELECT abs((SELECT abs(lag(a) OVER w) FROM u WINDOW w AS ())) FROM t"});
}

TEST(SingleTableSelectTest, AggregatesAreForTheCallerToAskAbout) {
  expectRead(
      {"SELECT count(*) FROM t", "SELECT (SELECT sum(a) FROM u) FROM t", "SELECT a FROM t ORDER BY max(a)"});
}

TEST(SingleTableSelectTest, TheOrderIsASliceOfTheTail) {
  EXPECT_EQ(read("SELECT a FROM t WHERE b ORDER BY (SELECT c LIMIT 1), d DESC LIMIT 2").order,
            "ORDER BY (SELECT c LIMIT 1), d DESC");
  EXPECT_EQ(read("SELECT a FROM t ORDER BY a -- so").order, "ORDER BY a");
  EXPECT_EQ(read("SELECT a FROM t WHERE a LIMIT 2").order, "");
  EXPECT_EQ(read("SELECT a FROM t").order, "");
}

TEST(SingleTableSelectTest, TextThatSqliteCannotReadIsEmpty) {
  using std::string_view_literals::operator""sv;
  expectEmpty({"SELECT 'a FROM t"sv, "SELECT a FROM [t"sv, "SELECT a FROM t WHERE `a"sv,
               "SELECT a FROM t WHERE a = 1st"sv, "SELECT a FROM t\0"sv, "SELECT a\0 FROM t"sv,
               "SELECT (a FROM t"sv, "SELECT a) FROM t"sv, "SELECT a FROM t WHERE (a"sv,
               "SELECT a FROM t WHERE a)"sv, "SELECT )a( FROM t"sv, "SELECT a FROM t; SELECT b FROM u"sv,
               ";SELECT a FROM t"sv, "SELECT a; FROM t"sv, "SELECT a FROM t {"sv});
  expectRead({"SELECT a FROM t;", "SELECT a FROM t ; ; ", "SELECT a FROM t -- 'b", "SELECT a FROM t /* [b"});
}

TEST(SingleTableSelectTest, DeepParenthesesAndLongListsAreRead) {
  const std::string open(500000, '(');
  const std::string close(500000, ')');
  EXPECT_EQ(read("SELECT " + open + "a" + close + " FROM t").table, "t");
  EXPECT_FALSE(readSingleTableSelect("SELECT " + open + "sum(a) OVER ()" + close + " FROM t"));
  EXPECT_FALSE(readSingleTableSelect("SELECT " + open + "a FROM t"));
  std::string list = "SELECT a";
  for (int i = 0; i < 100000; ++i) list += ", 'a' || b";
  EXPECT_EQ(read(list + " FROM t").table, "t");
}

/// The values of the first column of `sql`, read row by row: first the keys, then each row by its key.
Texts readByKeys(MemoryDatabase* database, const std::string& sql) {
  const SingleTableSelect select = read(sql);
  const std::string rowId = select.qualifier + ".rowid";
  const std::string rowQuery =
      "SELECT " + select.columnList + " FROM " + select.tableClause + " WHERE " + rowId + " = ";
  Texts values;
  const std::string columnsAndKey = select.columnList + ", " + rowId + " AS rowKey";
  for (const std::string& key : database->query("SELECT rowKey FROM (SELECT " + columnsAndKey + " FROM " +
                                                select.tableClause + " " + select.tail + ")")) {
    const Texts row = database->query(rowQuery + key);
    EXPECT_EQ(row.size(), 1u) << sql;
    values.insert(values.end(), row.begin(), row.end());
  }
  return values;
}

TEST(SingleTableSelectTest, PartsPutTogetherGiveTheSameRows) {
  MemoryDatabase database;
  ASSERT_TRUE(database.run("CREATE TABLE [My books] (Title, Year, [from], \"group\")"));
  ASSERT_TRUE(database.run(
      "INSERT INTO [My books] VALUES ('a', 2003, 1, 'x'), ('b', 2001, 2, 'y'), ('c', 2002, 3, 'x')"));
  for (const std::string sql :
       {"Select * from [My books]", "SELECT Title, Year+1 AS y FROM [My books] b ORDER BY 2 DESC LIMIT 2",
        "SELECT ALL Year AS y FROM \"My books\" WHERE y > 2001 ORDER BY y;",
        "SELECT b.* FROM 'My books' AS 'b' ORDER BY [from] DESC",
        "SELECT [from], (SELECT count(*) FROM [My books]) FROM main.[My books] WHERE \"group\" = 'x' -- and "
        "more",
        "SELECT max(Year, 2002), Title FROM `My books` WHERE Year IN (SELECT Year FROM [My books] WHERE "
        "[from] <> 2)",
        "SELECT Title FROM [My books] AS left WHERE left.Year IS NOT DISTINCT FROM 2002"}) {
    const Texts expected = database.query(sql);
    EXPECT_FALSE(expected.empty()) << sql;
    EXPECT_EQ(readByKeys(&database, sql), expected) << sql;
  }
}

}  // namespace
}  // namespace store
