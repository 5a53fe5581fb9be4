#include "platform/store/engine/dialect.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

#include "tests/store/memory_database.h"

namespace store {
namespace {

using Texts = MemoryDatabase::Texts;

Statement read(std::string_view text) {
  Statement statement;
  const Status status = readStatement(text, &statement);
  EXPECT_TRUE(status) << text << ": " << status.message();
  return statement;
}

std::string sqlOf(std::string_view text) {
  return read(text).sql;
}

void expectUnchanged(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) EXPECT_EQ(sqlOf(text), text);
}

/// Runs what the dialect makes of `text`.
bool runDialect(MemoryDatabase* database, std::string_view text) {
  return database->run(sqlOf(text));
}

/// Name and declared type, in lower case, of each column: "Full name|varchar (255)".
Texts columnsOf(MemoryDatabase* database, const std::string& table) {
  return database->query("SELECT name || '|' || lower(type) FROM pragma_table_info(" + quotedName(table) +
                         ")");
}

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

// CREATE TABLE

TEST(DialectTest, CreateTableAsTheApplicationWritesIt) {
  EXPECT_EQ(sqlOf("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)"),
            "CREATE TABLE \"QuivaneQueries\" (\"QueryName\" Text, \"SQL\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'People' (Id Integer ,'Full name' Varchar (255) ,Born Datetime)"),
            "CREATE TABLE \"People\" (\"Id\" Integer, \"Full name\" Varchar (255), \"Born\" Datetime)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'O'Brien's list' (Customer's Varchar (255) ,'Bob's full name' Text)"),
            "CREATE TABLE \"O'Brien's list\" (\"Customer's\" Varchar (255), \"Bob's full name\" Text)");
}

TEST(DialectTest, CreateTableWithEveryDesignedType) {
  MemoryDatabase database;
  ASSERT_TRUE(runDialect(&database,
                         "CREATE TABLE 'All types' (A Bit ,B Datetime ,C Float ,D SmallInt ,E Integer ,"
                         "F Varchar (255) ,G Text)"));
  EXPECT_EQ(columnsOf(&database, "All types"), (Texts{"A|bit", "B|datetime", "C|float", "D|smallint",
                                                      "E|integer", "F|varchar (255)", "G|text"}));
}

TEST(DialectTest, CreateTableTakesEveryTypeNameOfTheHandheld) {
  for (const std::string type : {"varchar",
                                 "VARCHAR(1)",
                                 "varchar (255)",
                                 "varchar\t( 20 )",
                                 "text",
                                 "Text(100)",
                                 "integer",
                                 "INT",
                                 "SmallInt",
                                 "double",
                                 "datetime",
                                 "boolean",
                                 "varbinary",
                                 "varbinary(8)",
                                 "long varbinary",
                                 "Long  VarBinary",
                                 "bit",
                                 "float",
                                 "real",
                                 "date",
                                 "time",
                                 "timestamp",
                                 "image",
                                 "blob",
                                 "bigint",
                                 "unsigned smallint",
                                 "smallint unsigned",
                                 "integer unsigned",
                                 "Unsigned int",
                                 "unsigned integer (4)",
                                 "int unsigned",
                                 "unsigned bigint",
                                 "bigint unsigned"}) {
    // A name that only the dialect reads shows that the type was taken.
    EXPECT_EQ(sqlOf("CREATE TABLE t (Order " + type + ")"), "CREATE TABLE \"t\" (\"Order\" " + type + ")");
    EXPECT_EQ(sqlOf("CREATE TABLE t (Order " + type + " ,b Text)"),
              "CREATE TABLE \"t\" (\"Order\" " + type + ", \"b\" Text)");
    MemoryDatabase database;
    EXPECT_TRUE(runDialect(&database, "CREATE TABLE t (Order " + type + ")")) << type;
  }
}

TEST(DialectTest, ColumnsOfMemoAreOfText) {
  EXPECT_EQ(sqlOf("CREATE TABLE t (a Memo ,b MEMO (9))"), "CREATE TABLE \"t\" (\"a\" text , \"b\" text (9))");
  EXPECT_EQ(sqlOf("CREATE TABLE t (memo memo not null, [memo] memo)"),
            "CREATE TABLE t (memo text not null, [memo] text )");
  EXPECT_EQ(sqlOf("ALTER TABLE memo ADD COLUMN memo memo DEFAULT 'memo'"),
            "ALTER TABLE memo ADD COLUMN memo text DEFAULT 'memo'");
  EXPECT_EQ(sqlOf("ALTER TABLE t ADD memo memo;"), "ALTER TABLE t ADD memo text ");
}

TEST(DialectTest, WhatIsCalledMemoKeepsItsName) {
  for (const std::string text :
       {"CREATE TABLE t (a text, CONSTRAINT memo CHECK (a, memo))", "CREATE TABLE t AS SELECT a memo FROM u",
        "CREATE TABLE t AS SELECT * FROM (SELECT a memo, b memo FROM u)", "CREATE TABLE memo (memo, b int)",
        "CREATE TABLE t (memo integer primary key, b text default (memo))",
        "ALTER TABLE t RENAME COLUMN memo TO a", "ALTER TABLE memo RENAME TO memo", "SELECT a memo FROM t",
        "ALTER TABLE t ADD COLUMN memo text"}) {
    EXPECT_EQ(sqlOf(text), text);
  }
}

TEST(DialectTest, CreateTableWithAnyOtherTypePassesUnchanged) {
  for (const std::string type :
       {"", "numeric", "varchar(max)", "varchar()", "varchar(1", "varchar 1", "decimal(10,2)", "unsigned",
        "unsigned text", "long text", "text not null", "integer primary key", "text default 'a'",
        "text collate nocase", "unsigned int int", "int64", "texts"}) {
    const std::string text = "CREATE TABLE t (Order " + type + ")";
    EXPECT_EQ(sqlOf(text), text);
  }
}

TEST(DialectTest, CreateTableNamesMayBeWordsOfSqlNumbersAndSigns) {
  MemoryDatabase database;
  ASSERT_TRUE(
      runDialect(&database,
                 "CREATE TABLE 'Select' (Order Integer ,Group Text ,Select Bit ,1st Text ,A,B Text ,"
                 "50% Float ,a;b Text ,Price($) Float ,(x Text ,y) Text ,#1 Integer ,--no Text ,/* Text ,"
                 "\xE2\x82\xAC Double ,Primary Text)"));
  EXPECT_EQ(columnsOf(&database, "Select"),
            (Texts{"Order|integer", "Group|text", "Select|bit", "1st|text", "A,B|text", "50%|float",
                   "a;b|text", "Price($)|float", "(x|text", "y)|text", "#1|integer", "--no|text", "/*|text",
                   "\xE2\x82\xAC|double", "Primary|text"}));
}

TEST(DialectTest, CreateTableNamesMayHoldApostrophesAnywhere) {
  MemoryDatabase database;
  ASSERT_TRUE(runDialect(&database,
                         "CREATE TABLE 'boys'' ('90s Integer ,Dad's Text ,James' Text ,'the boys'' Text ,"
                         "'Bob's old one' Varchar (255) ,'c d' Text)"));
  EXPECT_EQ(database.tables(), Texts{"boys'"});
  EXPECT_EQ(columnsOf(&database, "boys'"),
            (Texts{"'90s|integer", "Dad's|text", "James'|text", "the boys'|text",
                   "Bob's old one|varchar (255)", "c d|text"}));
}

TEST(DialectTest, CreateTableNamesWithApostrophesInPairs) {
  EXPECT_EQ(sqlOf("CREATE TABLE 't' ('the boys' list' Text ,'the girls' list' Text)"),
            "CREATE TABLE \"t\" (\"the boys' list\" Text, \"the girls' list\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE 't' ('Bob's and Al's' Text)"),
            "CREATE TABLE \"t\" (\"Bob's and Al's\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE 't' ('Bob's a, (b)' Text ,'Al's y' Text)"),
            "CREATE TABLE \"t\" (\"Bob's a, (b)\" Text, \"Al's y\" Text)");
}

TEST(DialectTest, CreateTableNameMayHoldParentheses) {
  EXPECT_EQ(sqlOf("CREATE TABLE 'O'Brien (old)' (Id Integer)"),
            "CREATE TABLE \"O'Brien (old)\" (\"Id\" Integer)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'a (b' (Id Integer)"), "CREATE TABLE \"a (b\" (\"Id\" Integer)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'James' (old)' (Id Integer)"),
            "CREATE TABLE \"James' (old)\" (\"Id\" Integer)");
}

TEST(DialectTest, CreateTableTakesNamesInAnyQuotes) {
  EXPECT_EQ(sqlOf("CREATE TABLE [a b] ([c d] Text ,\"e \"\"f\" Text ,`g h` Text ,'i''j' Text)"),
            "CREATE TABLE \"a b\" (\"c d\" Text, \"e \"\"f\" Text, \"g h\" Text, \"i'j\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE \"say \"so\"\" (a Text)"), "CREATE TABLE \"say \"\"so\"\"\" (\"a\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE [a]b] ([c]d] Text)"), "CREATE TABLE \"a]b\" (\"c]d\" Text)");
  EXPECT_EQ(sqlOf("create table t(a int,b text)"), "CREATE TABLE \"t\" (\"a\" int, \"b\" text)");
}

TEST(DialectTest, CreateTableOptionsFollowTheList) {
  EXPECT_EQ(sqlOf("CREATE TABLE 'a' (Order Integer) STRICT"),
            "CREATE TABLE \"a\" (\"Order\" Integer) STRICT");
  EXPECT_EQ(sqlOf("CREATE TABLE 'a's' (Bob's Text)without rowid , strict;"),
            "CREATE TABLE \"a's\" (\"Bob's\" Text) without rowid , strict");
  EXPECT_EQ(sqlOf("CREATE TABLE 'a' (b Text) -- Bob's (old)"), "CREATE TABLE \"a\" (\"b\" Text)");
}

TEST(DialectTest, CreateTableListThatDoesNotFitPassesUnchanged) {
  expectUnchanged({"CREATE TABLE 'a' (x text default 'b (c)')",
                   "CREATE TABLE a (b integer primary key, c text not null)", "CREATE TABLE a (b)",
                   "CREATE TABLE a ()", "CREATE TABLE a (b Text ,)", "CREATE TABLE a (Order Text /b Text)",
                   "CREATE TABLE a (b Text", "CREATE TABLE a",
                   "CREATE TABLE a (b Integer, primary key (b)) WITHOUT ROWID",
                   "CREATE TABLE a (b Text) anything", "CREATE TABLE a (b Text, c Text /* Text */)"});
  EXPECT_EQ(sqlOf("CREATE TABLE 'O'Brien' (Id integer primary key, b text default 'c (d)') STRICT;"),
            "CREATE TABLE \"O'Brien\" (Id integer primary key, b text default 'c (d)') STRICT");
}

TEST(DialectTest, CreateTableOfProperSqlKeepsItsMeaning) {
  // Two columns in SQL; a comma belongs to a name only as the application writes it.
  expectUnchanged({"CREATE TABLE t (a,b text)", "CREATE TABLE 't' (a,b text, c integer)"});
  EXPECT_EQ(sqlOf("CREATE TABLE 't' (A,B Text)"), "CREATE TABLE \"t\" (\"A,B\" Text)");
  // Nor do the entries between two quotes.
  expectUnchanged({"CREATE TABLE 't' ('q' numeric, 'c d' int)", "CREATE TABLE 't' ('q' numeric ,'c d' int)",
                   "CREATE TABLE 't' ('q' text check('a' <> 'b') ,'c d' int)",
                   "CREATE TABLE 't' ('a','b' text)",
                   "CREATE TABLE t ('q'text check('a' <> 'b'),'c d' int)"});
  // What begins a comment does not begin a name.
  expectUnchanged(
      {"CREATE TABLE 't' (a Integer, --x Text,\n b Text)", "CREATE TABLE 't' (a Text, /*x Text, */ b Text)"});
  // A quote that SQL doubles does not end a name.
  EXPECT_EQ(sqlOf("CREATE TABLE 'a'' (b' ('c'' Text ,d' Text)"),
            "CREATE TABLE \"a' (b\" (\"c' Text ,d\" Text)");
}

TEST(DialectTest, OtherFormsOfCreateTablePassUnchanged) {
  expectUnchanged({"CREATE TABLE IF NOT EXISTS 'a' (b Text)", "CREATE TEMP TABLE 'a' (b Text)",
                   "CREATE TEMPORARY TABLE a (b Text)", "CREATE TABLE x AS SELECT 1",
                   "CREATE TABLE 'x' AS SELECT * FROM 'json_each' ('[1]')", "CREATE TABLE main.'a' (b Text)",
                   "CREATE TABLE 'main'.'a' (b Text)", "CREATE VIRTUAL TABLE 'a' USING fts5 (b)"});
}

TEST(DialectTest, CreateTableWithAStrangeNameMakesOneTable) {
  MemoryDatabase database;
  EXPECT_TRUE(runDialect(&database, "CREATE TABLE 'a'; DROP TABLE 'b' (Id Integer)"));
  EXPECT_EQ(database.tables(), Texts{"a'; DROP TABLE 'b"});
}

/// Names with which the application's statements are proper SQL of another meaning, which they keep.
bool hasTwoReadings(std::string name) {
  if (name.front() == '\'' || name.back() == '\'' || name.find("''") != std::string::npos) return true;
  name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
  for (const char* part : {"'(", "'Text", "'--", "'/", "';", ")--", ")/", ");"}) {
    if (name.find(part) != std::string::npos) return true;
  }
  return false;
}

/// A random name that the application's dialogs accept.
std::string randomName(std::mt19937* random) {
  static const Texts kParts = {"'", "'", " ", " ", "(", ")",  ",", ";",      "--",       "/",  "a", "Text",
                               "9", "$", "#", "=", ":", "@x", "%", "select", "\xC3\xA9", "\\", "x", "e1"};
  std::string name;
  do {
    name.clear();
    const std::size_t partCount = 1 + (*random)() % 6;
    for (std::size_t i = 0; i < partCount; ++i) name += kParts[(*random)() % kParts.size()];
  } while (hasTwoReadings(name));
  return name;
}

TEST(DialectTest, EveryNameOfTheDialogsIsCreatedSelectedAndDropped) {
  std::mt19937 random(7);
  for (int round = 0; round < 1000; ++round) {
    const std::string table = randomName(&random);
    Texts fields;
    std::string list;
    for (const char* type : {"Integer", "Varchar (255)", "Text"}) {
      // The number in front keeps the names different.
      const std::string field = std::to_string(fields.size()) + randomName(&random);
      fields.push_back(field);
      if (!list.empty()) list += " ,";
      list += field.find(' ') == std::string::npos ? field : "'" + field + "'";
      list += std::string(" ") + type;
    }
    std::string create = "CREATE TABLE '";
    create.append(table).append("' (").append(list).append(")");
    MemoryDatabase database;
    ASSERT_TRUE(runDialect(&database, create)) << create << "\n" << sqlOf(create);
    ASSERT_EQ(database.tables(), Texts{table}) << create;
    ASSERT_EQ(database.query("SELECT name FROM pragma_table_info(" + quotedName(table) + ")"), fields)
        << create;
    ASSERT_TRUE(runDialect(&database, "Select * from [" + table + "]")) << table;
    ASSERT_TRUE(runDialect(&database, "DROP TABLE '" + table + "'")) << table;
    ASSERT_EQ(database.tables(), Texts{});
  }
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
