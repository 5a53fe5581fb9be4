#include "platform/store/odbc/dialect/server_statement.h"

#include <gtest/gtest.h>
#include <string>

#include "platform/store/sql/dialect.h"
#include "tests/store/odbc/known_names.h"

namespace store {
namespace {

std::string forServer(std::string_view sql) {
  KnownNames names;
  std::string translated;
  const Status status = toServerSql(sql, names, &translated);
  EXPECT_TRUE(status) << status.message();
  return translated;
}

std::string readable(std::string_view sql) {
  KnownNames names;
  std::string translated;
  EXPECT_TRUE(toReadableSql(sql, names, &translated));
  return translated;
}

TEST(ServerStatementTest, NamesAreFoundInAnyLetterCaseAndQuoting) {
  EXPECT_EQ("Select * from \"Books\"", forServer("Select * from [books]"));
  EXPECT_EQ("Select * from \"Books\"", forServer("Select * from BOOKS"));
  EXPECT_EQ("Select * from \"Books\"", forServer("Select * from 'Books'"));
  EXPECT_EQ("Select * from \"Books\"", forServer("Select * from `Books`"));
  EXPECT_EQ("SELECT \"Title\", \"Pages\" FROM \"Books\" WHERE \"Pages\" > 5 ORDER BY \"Title\"",
            forServer("SELECT title, [PAGES] FROM books WHERE pages > 5 ORDER BY TITLE"));
  EXPECT_EQ("SELECT \"Books\".\"Title\" FROM \"Books\"", forServer("SELECT books.title FROM Books"));
}

TEST(ServerStatementTest, AKeywordStaysOneThoughAColumnIsCalledSo) {
  EXPECT_EQ("SELECT \"order\" FROM \"Books\" ORDER BY \"order\"",
            forServer("SELECT [order] FROM Books ORDER BY \"order\""));
}

TEST(ServerStatementTest, WhatHasAnOrderOfItsOwnIsOrderedByIt) {
  EXPECT_EQ("Select * from \"Books\" ORDER BY (\"Price\") DESC, upper(CAST(\"Title\" AS text))",
            forServer("Select * from [Books] ORDER BY quivane_fold([Price]) DESC, quivane_fold([Title])"));
  EXPECT_EQ("SELECT * FROM (SELECT \"Price\" FROM \"Books\" ORDER BY 1) AS quivane_3 ORDER BY (\"Price\")",
            forServer("SELECT * FROM (SELECT Price FROM Books ORDER BY 1) ORDER BY quivane_fold([Price])"));
  EXPECT_EQ("Select * from \"Books\" WHERE upper(CAST(\"Price\" AS text)) = upper(CAST('9.50' AS text))",
            forServer("Select * from [Books] WHERE quivane_fold([Price]) = quivane_fold('9.50')"));
  EXPECT_EQ("Select * from \"Books\" ORDER BY upper(CAST(\"Price\" || 'x' AS text))",
            forServer("Select * from [Books] ORDER BY quivane_fold([Price] || 'x')"));
}

TEST(ServerStatementTest, ANumberBesideSinglesIsOneOfThem) {
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Weight\" = CAST(0.1 AS real) AND \"Pages\" = 0.1",
            forServer("SELECT * FROM Books WHERE [Weight] = 0.1 AND Pages = 0.1"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Weight\" >= -CAST(0.1 AS real) OR \"Weight\" < 1e300",
            forServer("SELECT * FROM Books WHERE weight >= -0.1 OR weight < 1e300"));
}

TEST(ServerStatementTest, ATableOfAnotherSchemaIsCalledByBoth) {
  EXPECT_EQ("Select * from \"sales\".\"orders\"", forServer("Select * from [sales.orders]"));
  EXPECT_EQ("Select * from \"sales\".\"orders\" where \"Number\" = 1",
            forServer("Select * from Sales.Orders where number = 1"));
  EXPECT_EQ("Select * from \"sales.orders\"", readable("Select * from [sales.orders]"));
}

TEST(ServerStatementTest, UnknownNamesPassForTheServerToJudge) {
  EXPECT_EQ("SELECT nothing FROM \"Books\"", forServer("SELECT nothing FROM Books"));
  EXPECT_EQ("Select * from \"No such\"", forServer("Select * from [No such]"));
}

TEST(ServerStatementTest, TextsStayTextsInEitherQuotes) {
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Title\" = 'it''s [pages]'",
            forServer("SELECT * FROM Books WHERE Title = 'it''s [pages]'"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Title\" = 'it''s'",
            forServer("SELECT * FROM Books WHERE Title = \"it's\""));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Title\" IN ('a', 'b')",
            forServer("SELECT * FROM Books WHERE Title IN (\"a\", \"b\")"));
}

TEST(ServerStatementTest, NamesThatAStatementGivesKeepTheirLetters) {
  EXPECT_EQ("SELECT count(*) AS \"Total\" FROM \"Books\" ORDER BY \"Total\"",
            forServer("SELECT count(*) AS Total FROM Books ORDER BY total"));
  EXPECT_EQ("SELECT CAST(\"Pages\" AS text) FROM \"Books\"",
            forServer("SELECT CAST(Pages AS text) FROM Books"));
  EXPECT_EQ("ALTER TABLE \"Books\" RENAME TO \"Volumes\"", forServer("ALTER TABLE books RENAME TO Volumes"));
  EXPECT_EQ("ALTER TABLE \"Books\" ADD COLUMN \"Shelf\" text",
            forServer("ALTER TABLE Books ADD COLUMN Shelf text"));
  EXPECT_EQ("CREATE VIEW \"Long\" AS SELECT * FROM \"Books\"",
            forServer("CREATE VIEW Long AS SELECT * FROM Books"));
  EXPECT_EQ("CREATE INDEX \"I\" ON \"Books\" (\"Title\" DESC)",
            forServer("CREATE INDEX I ON Books (title DESC)"));
}

TEST(ServerStatementTest, WhatTheServerSpellsOtherwiseIsSpelledSo) {
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Title\" ILIKE 'a%'",
            forServer("SELECT * FROM Books WHERE Title LIKE 'a%'"));
  EXPECT_EQ("SELECT COALESCE(CAST(\"Title\" AS text), '') FROM \"Books\"",
            forServer("SELECT ifnull(Title, '') FROM Books"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Pages\" = 5", forServer("SELECT * FROM Books WHERE Pages == 5"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Title\" = CAST('\\x00fF' AS bytea)",
            forServer("SELECT * FROM Books WHERE Title = x'00fF'"));
}

TEST(ServerStatementTest, ZeroAndOneAreBooleansBesideAColumnOfThem) {
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"InPrint\" = TRUE AND \"Pages\" = 1",
            forServer("SELECT * FROM Books WHERE InPrint = 1 AND Pages = 1"));
  EXPECT_EQ("UPDATE \"Books\" SET \"InPrint\" = FALSE", forServer("UPDATE Books SET inprint = 0"));
  EXPECT_EQ("INSERT INTO \"Books\" (\"Title\", \"InPrint\") VALUES ('a', '1'), ('b', 1 + 1)",
            forServer("INSERT INTO Books (title, inprint) VALUES ('a', 1), ('b', 1 + 1)"));
}

TEST(ServerStatementTest, ASelectInFromGetsANameUnlessItIsToBeReadOn) {
  EXPECT_EQ("SELECT * FROM (SELECT * FROM \"Books\") AS quivane_3 ORDER BY \"Title\"",
            forServer("SELECT * FROM (SELECT * FROM Books) ORDER BY Title"));
  EXPECT_EQ("SELECT * FROM (SELECT * FROM \"Books\") AS \"b\"",
            forServer("SELECT * FROM (SELECT * FROM Books) AS b"));
  EXPECT_EQ("SELECT * FROM (SELECT * FROM \"Books\") b", forServer("SELECT * FROM (SELECT * FROM Books) b"));
  EXPECT_EQ("SELECT * FROM (SELECT * FROM \"Books\") ORDER BY \"Title\"",
            readable("SELECT * FROM (SELECT * FROM Books) ORDER BY Title"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE \"Pages\" IN (SELECT max(\"Pages\") FROM \"Books\")",
            forServer("SELECT * FROM Books WHERE Pages IN (SELECT max(Pages) FROM Books)"));
}

TEST(ServerStatementTest, JoinsFindTheColumnsOfAllTheirTables) {
  EXPECT_EQ(
      "SELECT b.\"Title\", m.\"name\" FROM \"Books\" b INNER JOIN \"members\" m ON m.\"id\" = b.\"Pages\"",
      forServer("SELECT b.title, m.Name FROM Books b INNER JOIN Members m ON m.ID = b.pages"));
  EXPECT_EQ("SELECT \"Title\" FROM \"Books\", \"members\"", forServer("SELECT title FROM Books, Members"));
}

TEST(ServerStatementTest, WhatFiltersAndOrdersIsWhatTheServerHasOfTheKind) {
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE upper(CAST(\"Title\" AS text)) = upper(CAST('a' AS text))",
            forServer("SELECT * FROM Books WHERE quivane_fold([Title]) = quivane_fold('a')"));
  EXPECT_EQ(
      "SELECT * FROM \"Books\" WHERE (strpos(upper(concat_ws(chr(31), \"Title\", \"Pages\")), "
      "upper('it''s')) > 0)",
      forServer("SELECT * FROM Books WHERE quivane_contains('it''s', Title, Pages)"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE COALESCE(CAST(\"Cover\" AS text), '') IN ('', '\\x')",
            forServer("SELECT * FROM Books WHERE ifnull(\"Cover\", '') IN ('', x'')"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE COALESCE(CAST(\"Title\" AS text), '') NOT IN ('', '')",
            forServer("SELECT * FROM Books WHERE ifnull([title], '') NOT IN ('', x'')"))
      << "a text of these two signs is not empty";
  EXPECT_EQ(
      "SELECT * FROM (SELECT \"Title\" AS \"T\" FROM \"Books\") AS quivane_3 WHERE COALESCE(CAST(\"T\" AS "
      "text), '') IN ('', CASE WHEN pg_typeof(\"T\") = CAST('bytea' AS regtype) THEN '\\x' ELSE '' END)",
      forServer("SELECT * FROM (SELECT Title AS T FROM Books) WHERE ifnull([T], '') IN ('', x'')"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE COALESCE(CAST(\"InPrint\" AS integer), 0) <> 0",
            forServer("SELECT * FROM Books WHERE ifnull(InPrint, 0) <> 0"));
  EXPECT_EQ("SELECT * FROM \"Books\" WHERE FALSE", forServer("SELECT * FROM Books WHERE 0"));
}

TEST(ServerStatementTest, SubscriptsAreNoNames) {
  EXPECT_EQ("SELECT \"Title\"[1] FROM \"Books\"", forServer("SELECT Title[1] FROM Books"));
}

TEST(ServerStatementTest, SeveralStatementsAreRefusedWhole) {
  KnownNames names;
  std::string untouched = "untouched";
  for (const std::string_view sql : {std::string_view("SELECT 1 FROM Books; DROP TABLE Books"),
                                     std::string_view("DELETE FROM Books\0", 18)}) {
    EXPECT_EQ(ErrorCode::errorsInCommand, toServerSql(sql, names, &untouched).code());
    EXPECT_EQ("untouched", untouched);
  }
  EXPECT_EQ("SELECT ';' FROM \"Books\"", forServer("SELECT ';' FROM Books"));
}

TEST(ServerStatementTest, AWithClauseIsWhatFollowsIt) {
  EXPECT_TRUE(changesRows("WITH a AS (SELECT 1) INSERT INTO b SELECT * FROM a"));
  EXPECT_TRUE(changesRows("with a as (select 1) delete from b"));
  EXPECT_FALSE(changesRows("WITH a AS (DELETE FROM b RETURNING *) SELECT * FROM a"));
  EXPECT_FALSE(changesRows("SELECT 1"));
}

}  // namespace
}  // namespace store
