#include "platform/store/sql/dialect.h"

#include <cstddef>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/store/sql/dialect_fixture.h"

namespace store {
namespace {

using Texts = MemoryDatabase::Texts;

// Kinds and ends of statements

TEST(DialectTest, KindIsThatOfTheFirstWord) {
  for (const char* text : {"select 1", "WITH a AS (SELECT 1) SELECT * FROM a", "Values (1)"}) {
    EXPECT_EQ(read(text).kind, StatementKind::select) << text;
  }
  for (const char* text :
       {"CREATE TABLE t (a)", "drop index i", "ALTER TABLE t ADD b", "REINDEX", "Analyze t"}) {
    EXPECT_EQ(read(text).kind, StatementKind::definition) << text;
  }
  for (const char* text :
       {"INSERT INTO t VALUES (1)", "update t SET a = 1", "DELETE FROM t", "REPLACE INTO t VALUES (1)"}) {
    EXPECT_EQ(read(text).kind, StatementKind::change) << text;
  }
  for (const char* text :
       {"PRAGMA page_size", "VACUUM", "EXPLAIN SELECT 1", "selects", "'select'", "(", "1"}) {
    EXPECT_EQ(read(text).kind, StatementKind::other) << text;
  }
  EXPECT_EQ(read("SELECT database FROM t").kind, StatementKind::select);
}

TEST(DialectTest, AlterAndDropTableTakeFromTables) {
  for (const char* text : {"ALTER TABLE t ADD b", "drop /* it */ table t", "DROP TABLE IF EXISTS 't'"}) {
    EXPECT_TRUE(read(text).takesFromTables) << text;
  }
  for (const char* text : {"CREATE TABLE t (a)", "DROP INDEX i", "DROP VIEW v", "REINDEX", "ANALYZE",
                           "DELETE FROM t", "DROP DATABASE 'd'"}) {
    EXPECT_FALSE(read(text).takesFromTables) << text;
  }
}

TEST(DialectTest, TextWithoutStatementFailsAndLeavesTheResult) {
  for (const char* text :
       {"", " ", ";", " ;; ", "-- nothing", "/* nothing */ ;", "/* without an end", "\xEF\xBB\xBF"}) {
    Statement statement{
        .kind = StatementKind::change, .sql = "kept", .path = "kept too", .takesFromTables = true};
    const Status status = readStatement(text, &statement);
    EXPECT_EQ(status.code(), ErrorCode::noCommand) << text;
    EXPECT_FALSE(status.message().empty());
    EXPECT_EQ(statement.kind, StatementKind::change);
    EXPECT_EQ(statement.sql, "kept");
    EXPECT_EQ(statement.path, "kept too");
  }
}

TEST(DialectTest, BlanksCommentsAndSemicolonsAtTheEndsAreTakenOff) {
  EXPECT_EQ(sqlOf("SELECT 1;"), "SELECT 1");
  EXPECT_EQ(sqlOf(" \t\r\nSELECT 1 ; ; "), "SELECT 1");
  EXPECT_EQ(sqlOf(";SELECT 1"), "SELECT 1");
  EXPECT_EQ(sqlOf("/* first */ SELECT 1 -- last; really"), "SELECT 1");
  EXPECT_EQ(sqlOf("SELECT 1 /* without an end ;"), "SELECT 1");
  EXPECT_EQ(sqlOf("SELECT 1 /* inside */ + 2"), "SELECT 1 /* inside */ + 2");
  EXPECT_EQ(sqlOf("SELECT ';';"), "SELECT ';'");
}

TEST(DialectTest, SeveralStatementsAreAllPassedOn) {
  expectUnchanged({"SELECT 1; SELECT 2", "DELETE FROM a; DELETE FROM b", "DROP TABLE a; DROP TABLE b",
                   "DROP TABLE 'a'; DROP TABLE b", "CREATE TABLE a (b int primary key); DROP TABLE 'a'",
                   "CREATE TABLE 'a' (b integer primary key); CREATE TABLE 'c' (d Text)"});
  MemoryDatabase database;
  EXPECT_FALSE(runDialect(&database, "CREATE TABLE a (b Integer); CREATE TABLE c (d Integer)"));
  EXPECT_FALSE(runDialect(&database, "CREATE TABLE 'a' ('b b' Text); CREATE TABLE 'c' ('d d' Text)"));
  EXPECT_FALSE(runDialect(&database, "CREATE TABLE 'a' (Bob's Text); DROP TABLE b"));
  EXPECT_EQ(database.tables(), Texts{});
}

TEST(DialectTest, OtherStatementsPassUnchanged) {
  expectUnchanged({"SELECT 'it''s', [a b], \"c\" FROM `d` WHERE e LIKE '%''%'", "UPDATE t SET a = 'O''Brien'",
                   "ALTER TABLE 'a' ADD COLUMN b Text", "CREATE INDEX 'i' ON 't' ('a')", "DROP INDEX 'i'",
                   "CREATE VIEW 'v' AS SELECT 'a'", "Select * from QuivaneQueries ORDER BY QueryName"});
}

// Databases

TEST(DialectTest, DatabaseStatementsGiveThePath) {
  const Statement created = read("CREATE DATABASE '\\My Documents\\Library.cdb'");
  EXPECT_EQ(created.kind, StatementKind::createDatabase);
  EXPECT_EQ(created.path, "\\My Documents\\Library.cdb");
  EXPECT_EQ(created.sql, "");
  const Statement dropped = read("drop database '\\Library.cdb' ;");
  EXPECT_EQ(dropped.kind, StatementKind::dropDatabase);
  EXPECT_EQ(dropped.path, "\\Library.cdb");
}

TEST(DialectTest, DatabasePathHoldsPlainApostrophes) {
  EXPECT_EQ(read("CREATE DATABASE '\\O'Brien's files\\it's.cdb'").path, "\\O'Brien's files\\it's.cdb");
  EXPECT_EQ(read("DROP DATABASE '\\O'Brien.cdb';").path, "\\O'Brien.cdb");
  EXPECT_EQ(read("DROP DATABASE '\\it''s.cdb'").path, "\\it's.cdb");
}

TEST(DialectTest, DatabasePathIsNeverShortenedByACommentOrSemicolonInIt) {
  EXPECT_EQ(read("DROP DATABASE '\\a'--b.cdb'").path, "\\a'--b.cdb");
  EXPECT_EQ(read("DROP DATABASE '\\a'; DROP DATABASE '\\b'").path, "\\a'; DROP DATABASE '\\b");
}

TEST(DialectTest, DatabasePathStandsInAnyQuotes) {
  EXPECT_EQ(read("CREATE DATABASE \"a b.cdb\"").path, "a b.cdb");
  EXPECT_EQ(read("CREATE DATABASE [a]b].cdb]").path, "a]b].cdb");
  EXPECT_EQ(read("CREATE DATABASE `a`").path, "a");
  EXPECT_EQ(read("CREATE DATABASE '\xCE\xB2\xCE\xB9\xCE\xB2\xCE\xBB\xCE\xAF\xCE\xB1.cdb'").path,
            "\xCE\xB2\xCE\xB9\xCE\xB2\xCE\xBB\xCE\xAF\xCE\xB1.cdb");
}

TEST(DialectTest, MalformedDatabaseStatementIsLeftForSqliteToRefuse) {
  MemoryDatabase database;
  using std::string_view_literals::operator""sv;
  for (const std::string_view text :
       {"CREATE DATABASE"sv, "DROP DATABASE a.cdb"sv, "DROP DATABASE 'a"sv, "DROP DATABASE '"sv,
        "DROP DATABASE 'a' b"sv, "DROP DATABASE 'a.cdb\0.txt'"sv}) {
    EXPECT_EQ(read(text).kind, StatementKind::other) << text;
    EXPECT_EQ(read(text).path, "") << text;
    EXPECT_EQ(sqlOf(text), text);
    EXPECT_FALSE(runDialect(&database, text)) << text;
  }
}

// DROP TABLE

TEST(DialectTest, DropTableReachesToTheLastQuote) {
  EXPECT_EQ(sqlOf("DROP TABLE 'Books'"), "DROP TABLE \"Books\"");
  EXPECT_EQ(sqlOf("DROP TABLE 'O'Brien's list'"), "DROP TABLE \"O'Brien's list\"");
  EXPECT_EQ(sqlOf("drop table 'O'Brien' ;"), "drop table \"O'Brien\"");
  EXPECT_EQ(sqlOf("DROP TABLE 'boys''"), "DROP TABLE \"boys'\"");
  EXPECT_EQ(sqlOf("DROP TABLE IF EXISTS 'O'Brien'"), "DROP TABLE IF EXISTS \"O'Brien\"");
  EXPECT_EQ(sqlOf("DROP TABLE [a]b]"), "DROP TABLE \"a]b\"");
  EXPECT_EQ(sqlOf("DROP TABLE \"say \"so\"\""), "DROP TABLE \"say \"\"so\"\"\"");
  EXPECT_EQ(sqlOf("DROP TABLE 'O'B -- c'"), "DROP TABLE \"O'B -- c\"");
}

TEST(DialectTest, DropTableOfProperSqlKeepsItsMeaning) {
  EXPECT_EQ(sqlOf("DROP TABLE 'it''s'"), "DROP TABLE \"it's\"");
  EXPECT_EQ(sqlOf("DROP TABLE 'a' -- it's"), "DROP TABLE \"a\"");
  EXPECT_EQ(sqlOf("DROP TABLE 'a'; /* Bob's and Al's */"), "DROP TABLE \"a\"");
  expectUnchanged({"DROP TABLE a", "DROP TABLE main.'it''s'", "DROP TABLE 'main'.'a'", "DROP TABLE"});
}

TEST(DialectTest, DropTableWithMoreBehindTheNameIsRefused) {
  MemoryDatabase database;
  ASSERT_TRUE(database.run("CREATE TABLE a (x)"));
  for (const char* text :
       {"DROP TABLE 'a' b", "DROP TABLE 'a", "DROP TABLE 'a'; SELECT 1", "DROP TABLE 'a' -- '\n b"}) {
    EXPECT_FALSE(runDialect(&database, text)) << text;
  }
  EXPECT_EQ(database.tables(), Texts{"a"});
}

TEST(DialectTest, TwoQuotedDropsAreOneStrangeName) {
  const std::string text = "DROP TABLE 'a'; DROP TABLE 'b'";
  EXPECT_EQ(sqlOf(text), "DROP TABLE \"a'; DROP TABLE 'b\"");
  MemoryDatabase database;
  ASSERT_TRUE(database.run("CREATE TABLE a (x)"));
  ASSERT_TRUE(database.run("CREATE TABLE b (x)"));
  EXPECT_FALSE(runDialect(&database, text));
  EXPECT_EQ(database.tables(), (Texts{"a", "b"}));
  ASSERT_TRUE(database.run("CREATE TABLE \"a'; DROP TABLE 'b\" (x)"));
  EXPECT_TRUE(runDialect(&database, text));
  EXPECT_EQ(database.tables(), (Texts{"a", "b"}));
}

// Select * from [table]

TEST(DialectTest, SelectAllReachesToTheLastBracket) {
  EXPECT_EQ(sqlOf("Select * from [a]b]"), "Select * from \"a]b\"");
  EXPECT_EQ(sqlOf("Select * from [a [b] c];"), "Select * from \"a [b] c\"");
  EXPECT_EQ(sqlOf("Select * from [a]'b]"), "Select * from \"a]'b\"");
  MemoryDatabase database;
  ASSERT_TRUE(database.run("CREATE TABLE \"a [b] \"\"c\" (x)"));
  EXPECT_TRUE(runDialect(&database, "Select * from [a [b] \"c]"));
}

TEST(DialectTest, SelectAllOfProperSqlPassesUnchanged) {
  expectUnchanged({"Select * from [Books]", "Select * from [O'Brien's list]", "Select * from [a] [b]",
                   "Select * from [a] WHERE [b] = [c]", "Select * from [a] JOIN [b]", "Select * from [a",
                   "Select * from [a] WHERE b = 1x"});
}

// Hostile input

TEST(DialectTest, ZeroCharacterNeverShortensAStatement) {
  using std::string_view_literals::operator""sv;
  for (const std::string_view text : {"SELECT 1\0"sv, "DELETE FROM t\0 WHERE a = 1"sv, "DROP TABLE 'a\0b'"sv,
                                      "CREATE TABLE 'a\0b' (c Text)"sv, "Select * from [a]\0b]"sv, "\0"sv}) {
    EXPECT_EQ(sqlOf(text), text);
    MemoryDatabase database;
    ASSERT_TRUE(database.run("CREATE TABLE t (a)"));
    EXPECT_FALSE(runDialect(&database, text)) << text;
  }
}

TEST(DialectTest, UnterminatedAndInvalidTextPassesUnchanged) {
  expectUnchanged({"SELECT 'a", "SELECT \"a", "SELECT [a", "SELECT `a", "DROP TABLE '", "DROP TABLE ''a",
                   "CREATE TABLE '", "CREATE TABLE 'a' ('", "CREATE TABLE 'a' (')", "Select * from [",
                   "SELECT x'0", "SELECT 1 /*", "CREATE TABLE \xFF\xFE (\x80 Text", "\xFF\xFF", "\xC3",
                   "SELECT \x01"});
}

TEST(DialectTest, LargeTextsTakeLinearTime) {
  // Reading each of them takes milliseconds; by the square of its length it would take minutes.
  constexpr std::size_t kLength = 1 << 18;
  constexpr std::clock_t kLimit = 5 * CLOCKS_PER_SEC;  // of the processor's time, where the system tells it
  for (const std::string_view head : {"", "DROP TABLE 'a", "CREATE TABLE 'a' (", "CREATE TABLE 'a"}) {
    for (const std::string_view unit :
         {"(", "'", "[", "/*", ";", "'' (", "' (", "'a Text,", "'a'' Text,", "'a'b'Text,", "'''b Text ,",
          "[a Text ,", "[a] Text ,", "'a' (b Text ,", "''' (a Text ,", "$a(", "'Text Text ",
          "'a Text ,''b Text ,"}) {
      std::string text(head);
      while (text.size() < kLength) text += unit;
      text += "]')";
      Statement statement;
      const std::clock_t start = std::clock();
      const Status status = readStatement(text, &statement);
      EXPECT_LT(std::clock() - start, kLimit) << head << " and many " << unit;
      EXPECT_TRUE(status || status.code() == ErrorCode::noCommand) << head << " and many " << unit;
    }
  }
}

TEST(DialectTest, QuotedNameDoublesDoubleQuotesOnly) {
  EXPECT_EQ(quotedName("a b"), "\"a b\"");
  EXPECT_EQ(quotedName("say \"so\" 'it' [x]"), "\"say \"\"so\"\" 'it' [x]\"");
  EXPECT_EQ(quotedName(""), "\"\"");
}

}  // namespace
}  // namespace store
