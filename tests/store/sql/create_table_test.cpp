// CREATE TABLE in the words of the handheld, which are not always those of SQL.
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

#include "tests/store/sql/dialect_fixture.h"

namespace store {
namespace {

using Texts = MemoryDatabase::Texts;

TEST(CreateTableTest, AsTheApplicationWritesIt) {
  EXPECT_EQ(sqlOf("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)"),
            "CREATE TABLE \"QuivaneQueries\" (\"QueryName\" Text, \"SQL\" Text)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'People' (Id Integer ,'Full name' Varchar (255) ,Born Datetime)"),
            "CREATE TABLE \"People\" (\"Id\" Integer, \"Full name\" Varchar (255), \"Born\" Datetime)");
  EXPECT_EQ(sqlOf("CREATE TABLE 'O''Brien''s list' ('Customer''s' Varchar (255) ,'Bob''s full name' Text)"),
            "CREATE TABLE \"O'Brien's list\" (\"Customer's\" Varchar (255), \"Bob's full name\" Text)");
}

TEST(CreateTableTest, WithEveryDesignedType) {
  MemoryDatabase database;
  ASSERT_TRUE(runDialect(&database,
                         "CREATE TABLE 'All types' (A Bit ,B Datetime ,C Float ,D SmallInt ,E Integer ,"
                         "F Varchar (255) ,G Text)"));
  EXPECT_EQ(columnsOf(&database, "All types"), (Texts{"A|bit", "B|datetime", "C|float", "D|smallint",
                                                      "E|integer", "F|varchar (255)", "G|text"}));
}

TEST(CreateTableTest, TakesEveryTypeNameOfTheHandheld) {
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

TEST(CreateTableTest, ColumnsOfMemoAreOfText) {
  EXPECT_EQ(sqlOf("CREATE TABLE t (a Memo ,b MEMO (9))"), "CREATE TABLE \"t\" (\"a\" text , \"b\" text (9))");
  EXPECT_EQ(sqlOf("CREATE TABLE t (memo memo not null, [memo] memo)"),
            "CREATE TABLE t (memo text not null, [memo] text )");
  EXPECT_EQ(sqlOf("ALTER TABLE memo ADD COLUMN memo memo DEFAULT 'memo'"),
            "ALTER TABLE memo ADD COLUMN memo text DEFAULT 'memo'");
  EXPECT_EQ(sqlOf("ALTER TABLE t ADD memo memo;"), "ALTER TABLE t ADD memo text ");
}

TEST(CreateTableTest, WhatIsCalledMemoKeepsItsName) {
  for (const std::string text :
       {"CREATE TABLE t (a text, CONSTRAINT memo CHECK (a, memo))", "CREATE TABLE t AS SELECT a memo FROM u",
        "CREATE TABLE t AS SELECT * FROM (SELECT a memo, b memo FROM u)", "CREATE TABLE memo (memo, b int)",
        "CREATE TABLE t (memo integer primary key, b text default (memo))",
        "ALTER TABLE t RENAME COLUMN memo TO a", "ALTER TABLE memo RENAME TO memo", "SELECT a memo FROM t",
        "ALTER TABLE t ADD COLUMN memo text"}) {
    EXPECT_EQ(sqlOf(text), text);
  }
}

TEST(CreateTableTest, WithAnyOtherTypePassesUnchanged) {
  for (const std::string type :
       {"", "numeric", "varchar(max)", "varchar()", "varchar(1", "varchar 1", "decimal(10,2)", "unsigned",
        "unsigned text", "long text", "text not null", "integer primary key", "text default 'a'",
        "text collate nocase", "unsigned int int", "int64", "texts"}) {
    const std::string text = "CREATE TABLE t (Order " + type + ")";
    EXPECT_EQ(sqlOf(text), text);
  }
}

TEST(CreateTableTest, WordsOfSqlAndNumbersNeedNoQuotes) {
  MemoryDatabase database;
  ASSERT_TRUE(runDialect(&database,
                         "CREATE TABLE 'Select' (Order Integer ,Group Text ,Select Bit ,1st Text ,"
                         "\xE2\x82\xAC Double ,Primary Text)"));
  EXPECT_EQ(columnsOf(&database, "Select"), (Texts{"Order|integer", "Group|text", "Select|bit", "1st|text",
                                                   "\xE2\x82\xAC|double", "Primary|text"}));
}

TEST(CreateTableTest, QuotedNamesMayHoldAnySign) {
  MemoryDatabase database;
  ASSERT_TRUE(runDialect(&database,
                         "CREATE TABLE 'O''Brien (old), boys''' ('A,B' Text ,'50%' Float ,'a;b' Text ,"
                         "'(x' Text ,'y)' Text ,'--no' Text ,'/*' Text ,'''90s' Integer ,'James''' Text ,"
                         "'Bob''s and Al''s' Varchar (255))"));
  EXPECT_EQ(database.tables(), Texts{"O'Brien (old), boys'"});
  EXPECT_EQ(columnsOf(&database, "O'Brien (old), boys'"),
            (Texts{"A,B|text", "50%|float", "a;b|text", "(x|text", "y)|text", "--no|text", "/*|text",
                   "'90s|integer", "James'|text", "Bob's and Al's|varchar (255)"}));
}

TEST(CreateTableTest, WhatIsMeantByAPlainQuoteInANameIsNotGuessed) {
  expectUnchanged({"CREATE TABLE 'O'Brien' (Id Integer)", "CREATE TABLE t (Customer's Text)",
                   "CREATE TABLE 't' ('Bob's full name' Text)", "CREATE TABLE 'a' (b' (Id Integer)",
                   "CREATE TABLE \"say \"so\"\" (a Text)", "CREATE TABLE t ([c]d] Text)",
                   "CREATE TABLE t (50% Float)", "CREATE TABLE t (Price($) Float)"});
  MemoryDatabase database;
  EXPECT_FALSE(runDialect(&database, "CREATE TABLE 'O'Brien' (Id Integer)"));
  EXPECT_EQ(database.tables(), Texts{});
}

TEST(CreateTableTest, TakesNamesInAnyQuotes) {
  EXPECT_EQ(sqlOf("CREATE TABLE [a b] ([c d] Text ,\"e \"\"f\" Text ,`g h` Text ,'i''j' Text)"),
            "CREATE TABLE \"a b\" (\"c d\" Text, \"e \"\"f\" Text, \"g h\" Text, \"i'j\" Text)");
  EXPECT_EQ(sqlOf("create table t(a int,b text)"), "CREATE TABLE \"t\" (\"a\" int, \"b\" text)");
}

TEST(CreateTableTest, OptionsFollowTheList) {
  EXPECT_EQ(sqlOf("CREATE TABLE 'a' (Order Integer) STRICT"),
            "CREATE TABLE \"a\" (\"Order\" Integer) STRICT");
  EXPECT_EQ(sqlOf("CREATE TABLE 'a''s' ('Bob''s' Text)without rowid , strict;"),
            "CREATE TABLE \"a's\" (\"Bob's\" Text) without rowid , strict");
  EXPECT_EQ(sqlOf("CREATE TABLE 'a' (b Text) -- Bob's (old)"), "CREATE TABLE \"a\" (\"b\" Text)");
}

TEST(CreateTableTest, ListThatDoesNotFitPassesUnchanged) {
  expectUnchanged({"CREATE TABLE 'a' (x text default 'b (c)')",
                   "CREATE TABLE a (b integer primary key, c text not null)", "CREATE TABLE a (b)",
                   "CREATE TABLE a ()", "CREATE TABLE a (b Text ,)", "CREATE TABLE a (Order Text /b Text)",
                   "CREATE TABLE a (b Text", "CREATE TABLE a",
                   "CREATE TABLE a (b Integer, primary key (b)) WITHOUT ROWID",
                   "CREATE TABLE a (b Text) anything", "CREATE TABLE a (b Text, c Text /* Text */)"});
}

TEST(CreateTableTest, OfProperSqlKeepsItsMeaning) {
  expectUnchanged({"CREATE TABLE t (a,b text)", "CREATE TABLE 't' (a,b text, c integer)",
                   "CREATE TABLE 't' (A,B Text)", "CREATE TABLE 't' ('q' numeric, 'c d' int)",
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

TEST(CreateTableTest, OtherFormsOfCreateTablePassUnchanged) {
  expectUnchanged({"CREATE TABLE IF NOT EXISTS 'a' (b Text)", "CREATE TEMP TABLE 'a' (b Text)",
                   "CREATE TEMPORARY TABLE a (b Text)", "CREATE TABLE x AS SELECT 1",
                   "CREATE TABLE 'x' AS SELECT * FROM 'json_each' ('[1]')", "CREATE TABLE main.'a' (b Text)",
                   "CREATE TABLE 'main'.'a' (b Text)", "CREATE VIRTUAL TABLE 'a' USING fts5 (b)"});
}

TEST(CreateTableTest, WithAStrangeNameMakesOneTable) {
  MemoryDatabase database;
  EXPECT_TRUE(runDialect(&database, "CREATE TABLE 'a''; DROP TABLE ''b' (Id Integer)"));
  EXPECT_EQ(database.tables(), Texts{"a'; DROP TABLE 'b"});
  EXPECT_FALSE(runDialect(&database, "CREATE TABLE 'a'; DROP TABLE 'b' (Id Integer)"));
  EXPECT_EQ(database.tables(), Texts{"a'; DROP TABLE 'b"});
}

/// A random name that the application's dialogs accept.
std::string randomName(std::mt19937* random) {
  static const Texts kParts = {"'", "'", " ", " ", "(", ")",  ",", ";",      "--",       "/",  "a", "Text",
                               "9", "$", "#", "=", ":", "@x", "%", "select", "\xC3\xA9", "\\", "x", "e1"};
  std::string name;
  const std::size_t partCount = 1 + (*random)() % 6;
  for (std::size_t i = 0; i < partCount; ++i) name += kParts[(*random)() % kParts.size()];
  return name;
}

TEST(CreateTableTest, EveryNameOfTheDialogsIsCreatedSelectedAndDropped) {
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
      list += quotedText(field) + " " + type;
    }
    const std::string create = "CREATE TABLE " + quotedText(table) + " (" + list + ")";
    MemoryDatabase database;
    ASSERT_TRUE(runDialect(&database, create)) << create << "\n" << sqlOf(create);
    ASSERT_EQ(database.tables(), Texts{table}) << create;
    ASSERT_EQ(database.query("SELECT name FROM pragma_table_info(" + quotedName(table) + ")"), fields)
        << create;
    ASSERT_TRUE(runDialect(&database, "Select * from [" + table + "]")) << table;
    ASSERT_TRUE(runDialect(&database, "DROP TABLE " + quotedText(table))) << table;
    ASSERT_EQ(database.tables(), Texts{});
  }
}

}  // namespace
}  // namespace store
