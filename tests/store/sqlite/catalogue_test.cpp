#include "platform/store/sqlite/connection/catalogue.h"

#include "tests/store/store_fixture.h"

namespace store {
namespace {

class CatalogueTest : public StoreTest {
 protected:
  static std::string columnNames(const Recordset& recordset) {
    std::string names;
    for (const Column& column : recordset.columns()) names += (names.empty() ? "" : " ") + column.name;
    return names;
  }

  /// All values of the records, a record a line, parted by "|".
  std::string linesOf(std::string_view source) {
    const auto recordset = records(source, SourceKind::unknown);
    if (!recordset) return "(failed)";
    std::string lines;
    while (!recordset->isEof()) {
      for (std::size_t column = 0; column < recordset->columns().size(); ++column) {
        lines += (column == 0 ? "" : "|") + textOf(*recordset, column);
      }
      lines += "\n";
      if (!recordset->moveNext()) break;
    }
    return lines;
  }
};

constexpr const char* kOwnTables = "MSysFields|1|3\nMSysTables|2|3\nMSysIndexes|3|3\nMSysProcs|4|3\n";

TEST_F(CatalogueTest, AnEmptyDatabaseListsTheCatalogueItself) {
  open();
  EXPECT_EQ(kOwnTables, linesOf("SELECT * FROM MSysTables"));
  EXPECT_EQ("", linesOf("SELECT * FROM MSysIndexes"));
  EXPECT_EQ("", linesOf("SELECT * FROM MSysProcs"));
}

TEST_F(CatalogueTest, TheTablesHaveTheirColumns) {
  open();
  EXPECT_EQ("TableName TableID TableFlags", columnNames(*records("MSysTables", SourceKind::table)));
  EXPECT_EQ("TableID FieldName FieldID Len ODBCType", columnNames(*records("MSysFields", SourceKind::table)));
  EXPECT_EQ("TableID IndexName FieldID IndexFlags", columnNames(*records("MSysIndexes", SourceKind::table)));
  EXPECT_EQ("ProcName SQLText", columnNames(*records("MSysProcs", SourceKind::table)));
  const auto tables = records("MSysTables", SourceKind::table);
  EXPECT_EQ(TypeCode::varWChar, tables->columns()[0].type.code);
  EXPECT_EQ(TypeCode::integer, tables->columns()[1].type.code);
  EXPECT_EQ(TypeCode::integer, tables->columns()[2].type.code);
}

TEST_F(CatalogueTest, TheTablesAnswerToTheirNamesInAnyLetterCase) {
  open();
  for (const char* source : {"MSysTables", "msystables", "Select * from [MSysTables]",
                             "SELECT * FROM \"MSYSTABLES\"", "SELECT * FROM 'MSysTables'"}) {
    EXPECT_EQ(kOwnTables, linesOf(source)) << source;
  }
  EXPECT_TRUE(isCatalogueTable("mSYSprocs"));
  EXPECT_FALSE(isCatalogueTable("MSysTable"));
  EXPECT_FALSE(isCatalogueTable(""));
}

TEST_F(CatalogueTest, TheTablesOfTheUserFollowInTheOrderOfTheirMaking) {
  open();
  run("CREATE TABLE 'zebra' (a Integer)");
  run("CREATE TABLE 'Customer''s list' (a Integer)");
  run("CREATE TABLE 'apple' (a Integer)");
  run("CREATE VIEW view_of AS SELECT a FROM apple");
  run("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)");
  EXPECT_EQ("MSysFields MSysTables MSysIndexes MSysProcs zebra Customer's list apple view_of QuivaneQueries",
            columnOf("MSysTables"));
  EXPECT_EQ("zebra Customer's list apple QuivaneQueries",
            columnOf("SELECT TableName FROM MSysTables WHERE TableFlags = 0"));
  EXPECT_EQ("2", columnOf("SELECT TableFlags FROM MSysTables WHERE TableName = 'view_of'"));
  run("DROP TABLE 'zebra'");
  EXPECT_EQ("Customer's list apple view_of QuivaneQueries",
            columnOf("SELECT TableName FROM MSysTables WHERE TableFlags <> 3"));
}

TEST_F(CatalogueTest, IdentifiersJoinTheTables) {
  open();
  run("CREATE TABLE 'one' (a Integer)");
  run("CREATE TABLE 'two' (b Integer ,c Varchar (20))");
  run("CREATE INDEX byC ON two (c)");
  EXPECT_EQ("one.a two.b two.c",
            columnOf("SELECT t.TableName || '.' || f.FieldName FROM MSysTables t JOIN MSysFields f "
                     "ON f.TableID = t.TableID WHERE t.TableFlags = 0 ORDER BY t.TableID, f.FieldID"));
  EXPECT_EQ("two.byC.c",
            columnOf("SELECT t.TableName || '.' || i.IndexName || '.' || f.FieldName FROM MSysIndexes i "
                     "JOIN MSysTables t ON t.TableID = i.TableID "
                     "JOIN MSysFields f ON f.TableID = i.TableID AND f.FieldID = i.FieldID"));
  EXPECT_EQ("6", columnOf("SELECT count(DISTINCT TableID) FROM MSysTables"));
}

TEST_F(CatalogueTest, FieldsCarryLengthsAndTypes) {
  open();
  run("CREATE TABLE 'types' (Yes Bit ,Born Datetime ,Part Float ,Little SmallInt ,Whole Integer ,"
      "Short Varchar (255) ,Long Text ,Bytes Varbinary (16) ,Picture Image)");
  EXPECT_EQ("Yes|-7\nBorn|11\nPart|8\nLittle|5\nWhole|4\nShort|-9\nLong|-10\nBytes|-3\nPicture|-4\n",
            linesOf("SELECT FieldName, ODBCType FROM MSysFields WHERE TableID > 4 ORDER BY FieldID"));
  EXPECT_EQ("255", columnOf("SELECT Len FROM MSysFields WHERE FieldName = 'Short'"));
  EXPECT_EQ("16", columnOf("SELECT Len FROM MSysFields WHERE FieldName = 'Bytes'"));
  EXPECT_EQ("2", columnOf("SELECT Len FROM MSysFields WHERE FieldName = 'Little'"));
  EXPECT_EQ("0 1 2 3 4 5 6 7 8", columnOf("SELECT FieldID FROM MSysFields WHERE TableID > 4"));
}

TEST_F(CatalogueTest, TheCatalogueDescribesItsOwnFields) {
  open();
  EXPECT_EQ("TableName TableID TableFlags",
            columnOf("SELECT FieldName FROM MSysFields WHERE TableID = 2 ORDER BY FieldID"));
  EXPECT_EQ("5", columnOf("SELECT count(*) FROM MSysFields WHERE TableID = 1"));
  EXPECT_EQ("4", columnOf("SELECT count(*) FROM MSysFields WHERE TableID = 3"));
  EXPECT_EQ("2", columnOf("SELECT count(*) FROM MSysFields WHERE TableID = 4"));
}

TEST_F(CatalogueTest, IndexesTellTheirFieldsAndFlags) {
  open();
  run("CREATE TABLE 't' (a Integer ,b Text)");
  run("CREATE INDEX up ON t (b)");
  run("CREATE INDEX down ON t (a DESC, b)");
  run("CREATE INDEX anyCase ON t (b COLLATE NOCASE)");
  EXPECT_EQ("up|1|4\ndown|0|1\ndown|1|4\nanyCase|1|6\n",
            linesOf("SELECT IndexName, FieldID, IndexFlags FROM MSysIndexes"));
}

TEST_F(CatalogueTest, TheTablesCannotBeChangedThroughARecordset) {
  open();
  for (const char* source : {"MSysTables", "MSysFields", "MSysIndexes", "MSysProcs"}) {
    SCOPED_TRACE(source);
    const auto recordset = records(source, SourceKind::table);
    ASSERT_NE(nullptr, recordset);
    EXPECT_FALSE(recordset->isUpdatable());
    for (const Column& column : recordset->columns()) EXPECT_FALSE(column.updatable) << column.name;
    EXPECT_EQ(ErrorCode::readOnly, recordset->addNew().code());
    EXPECT_EQ(ErrorCode::readOnly, recordset->remove().code());
  }
}

TEST_F(CatalogueTest, TheTablesCannotBeChangedByStatements) {
  open();
  run("CREATE TABLE 't' (a Integer)");
  const std::string before = bytesOf(path_);
  for (const char* sql : {"INSERT INTO MSysTables VALUES ('x', 9, 0)", "DELETE FROM MSysTables",
                          "UPDATE MSysFields SET Len = 0", "DROP TABLE MSysTables", "DROP TABLE 'MSysProcs'",
                          "ALTER TABLE MSysProcs ADD COLUMN x", "CREATE INDEX i ON MSysTables (TableName)"}) {
    EXPECT_FALSE(tryRun(sql)) << sql;
  }
  EXPECT_EQ(before, bytesOf(path_));
}

TEST_F(CatalogueTest, TheNamesAreReserved) {
  open();
  run("CREATE TABLE 't' (a Integer)");
  const std::string before = bytesOf(path_);
  for (const char* sql :
       {"CREATE TABLE 'MSysTables' (a Integer)", "CREATE TABLE msysfields (a)",
        "CREATE VIEW MSysProcs AS SELECT 1", "CREATE VIRTUAL TABLE MSYSINDEXES USING fts5(a)",
        "CREATE TABLE main.MSysTables AS SELECT 1", "CREATE TEMP TABLE MSysTables (a)",
        "ALTER TABLE t RENAME TO MSysTables", "ALTER TABLE main.\"t\" RENAME TO 'msysprocs'"}) {
    EXPECT_FALSE(tryRun(sql)) << sql;
  }
  EXPECT_EQ(before, bytesOf(path_));
  EXPECT_EQ("MSysFields MSysTables MSysIndexes MSysProcs t", columnOf("MSysTables"));
  run("CREATE TABLE 'MSysTables2' (a Integer)");
}

TEST_F(CatalogueTest, TablesOfTheFileThatDifferInLetterCaseAreListedAndOpened) {
  prepare(
      "CREATE TABLE msystables (a Integer); INSERT INTO msystables VALUES (5); CREATE VIEW MSYSFIELDS AS "
      "SELECT 6");
  open();
  EXPECT_EQ("MSysFields MSysTables MSysIndexes MSysProcs msystables MSYSFIELDS",
            columnOf(*records("MSysTables", SourceKind::table)));
  EXPECT_EQ("5", columnOf(*records("msystables", SourceKind::table)));
  EXPECT_EQ("5", columnOf("Select * from [msystables]"));
  EXPECT_EQ("6", columnOf(*records("MSYSFIELDS", SourceKind::table)));
  EXPECT_EQ("TableID FieldName FieldID Len ODBCType", columnNames(*records("MSysFields", SourceKind::table)));
  EXPECT_EQ("ProcName SQLText", columnNames(*records("MSYSPROCS", SourceKind::table)));
}

TEST_F(CatalogueTest, ATableOfTheFileThatIsCalledLikeTheCatalogueDoesNotHideTheOthers) {
  prepare("CREATE TABLE MSysTables (TableName, Other); CREATE TABLE t (a Integer)");
  open();
  EXPECT_EQ("MSysFields MSysTables MSysIndexes MSysProcs MSysTables t",
            columnOf(*records("MSysTables", SourceKind::table)));
}

TEST_F(CatalogueTest, NothingIsWrittenIntoTheFile) {
  prepare("CREATE TABLE t (a Integer)");
  const std::string before = bytesOf(path_);
  open();
  for (const char* source : {"MSysTables", "MSysFields", "MSysIndexes", "MSysProcs"})
    records(source, SourceKind::table);
  backend_.reset();
  EXPECT_EQ(before, bytesOf(path_));
  EXPECT_EQ("t", OtherProgram(path_).ask("SELECT group_concat(name) FROM sqlite_schema"));
}

TEST_F(CatalogueTest, WhatAnotherProgramMakesIsListedAtOnce) {
  open();
  EXPECT_EQ(kOwnTables, linesOf("MSysTables"));
  prepare("CREATE TABLE elsewhere (a)");
  EXPECT_EQ(std::string(kOwnTables) + "elsewhere|5|0\n", linesOf("MSysTables"));
}

TEST_F(CatalogueTest, TablesThatOnlyServeOthersAreNotListed) {
  prepare("CREATE TABLE counted (a INTEGER PRIMARY KEY AUTOINCREMENT)");
  prepare("INSERT INTO counted DEFAULT VALUES; ANALYZE");
  prepare("CREATE VIRTUAL TABLE words USING fts5(body)");
  prepare("CREATE VIRTUAL TABLE boxes USING rtree(id, x0, x1)");
  open();
  EXPECT_EQ("counted words boxes", columnOf("SELECT TableName FROM MSysTables WHERE TableID > 4"));
  EXPECT_EQ("a body id x0 x1", columnOf("SELECT FieldName FROM MSysFields WHERE TableID > 4"));
}

TEST_F(CatalogueTest, ABrokenViewOrAnUnknownModuleHidesNothingElse) {
  prepare("CREATE TABLE first (a Integer)");
  prepare("CREATE TABLE gone (b)");
  prepare("CREATE VIEW broken AS SELECT b FROM gone");
  prepare(
      "PRAGMA writable_schema = ON; DELETE FROM sqlite_schema WHERE name = 'gone';"
      "INSERT INTO sqlite_schema VALUES ('table', 'foreign', 'foreign', 0, "
      "'CREATE VIRTUAL TABLE \"foreign\" USING no_such_module(x)')");
  prepare("CREATE TABLE last (c Integer)");
  open();
  EXPECT_EQ("first broken foreign last",
            columnOf("SELECT TableName FROM MSysTables WHERE TableID > 4 ORDER BY TableID"));
  EXPECT_EQ("a c", columnOf("SELECT FieldName FROM MSysFields WHERE TableID > 4 ORDER BY TableID"));
  EXPECT_EQ("", linesOf("MSysIndexes"));
  std::unique_ptr<Recordset> recordset;
  EXPECT_FALSE(tryOpen("Select * from [broken]", &recordset));
  EXPECT_FALSE(tryOpen("Select * from [foreign]", &recordset));
  EXPECT_EQ("", columnOf("Select * from [last]"));
  EXPECT_EQ("", columnOf("Select a from [first] where a = '1/2/2000' or 'broken' = 'foreign'"));
}

TEST_F(CatalogueTest, ThousandsOfTablesAreListed) {
  std::string sql = "BEGIN;";
  for (int n = 0; n < 2000; ++n) sql += "CREATE TABLE t" + std::to_string(n) + " (a Integer, b Text);";
  prepare(sql + "COMMIT");
  open();
  EXPECT_EQ(2004, records("MSysTables", SourceKind::table)->recordCount());
  EXPECT_EQ("4000", columnOf("SELECT count(*) FROM MSysFields WHERE TableID > 4"));
}

}  // namespace
}  // namespace store
