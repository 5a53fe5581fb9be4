// Statements that define and change: what is taken, what is refused, and that a refused one leaves no trace.
#include <algorithm>
#include <cctype>

#include "platform/store/sql/dialect.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

class StatementsTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    open();
  }

  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  std::string tablesInFile() {
    return inFile(
        "SELECT group_concat(name, ' ') FROM (SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY "
        "rowid)");
  }

  void makeNumbers() {
    run("CREATE TABLE t (a Integer, b Varchar (20))");
    run("INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  }

  /// `sql` fails with `code` and a sentence, touches neither out-parameter, and the file is as it was.
  void expectRefused(ErrorCode code, std::string_view sql) {
    SCOPED_TRACE(std::string(sql.substr(0, 200)));
    const std::string before = bytesOf(path_);
    for (const bool asSource : {false, true}) {
      std::int64_t affected = -77;
      std::unique_ptr<RowSource> rows;
      const Status status =
          asSource ? backend_->openRows(sql, SourceKind::text, &rows) : backend_->run(sql, &affected, &rows);
      EXPECT_EQ(code, status.code()) << status.message();
      EXPECT_FALSE(status.message().empty());
      EXPECT_EQ(-77, affected);
      EXPECT_EQ(nullptr, rows);
    }
    EXPECT_EQ(before, bytesOf(path_));
  }

  std::int64_t affectedBy(std::string_view sql) {
    std::int64_t affected = -1;
    const Status status = tryRun(sql, &affected);
    EXPECT_TRUE(status) << sql << ": " << status.message();
    return affected;
  }
};

// As the application spells them

TEST_F(StatementsTest, TheQueriesTableIsMadeReadAndFilledAsTheApplicationDoesIt) {
  EXPECT_EQ(0, affectedBy("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)"));
  const auto queries = records("Select * from QuivaneQueries ORDER BY QueryName");
  ASSERT_NE(nullptr, queries);
  ASSERT_EQ(2u, queries->columns().size());
  EXPECT_EQ("QueryName", queries->columns()[0].name);
  EXPECT_EQ("SQL", queries->columns()[1].name);
  for (const char* name : {"b", "a", "c", "a"}) {
    ASSERT_TRUE(queries->addNew());
    ASSERT_TRUE(queries->setValue(0, std::string(name)));
    ASSERT_TRUE(queries->setValue(1, std::string("SELECT 1")));
    ASSERT_TRUE(queries->update());
  }
  EXPECT_EQ("a a b c", columnOf("Select * from QuivaneQueries ORDER BY QueryName"));
}

TEST_F(StatementsTest, ATableOfEveryDesignedTypeIsMade) {
  run("CREATE TABLE 'All of them' (Id Integer ,'Full name' Varchar (255) ,Born Datetime ,Yes Bit ,"
      "Part Float ,Little SmallInt ,Notes Text)");
  const auto all = records("Select * from [All of them]");
  ASSERT_NE(nullptr, all);
  std::string shape;
  for (const Column& column : all->columns()) {
    shape += column.name + ":" + std::to_string(static_cast<int>(column.type.code)) + " ";
    EXPECT_TRUE(column.updatable) << column.name;
  }
  EXPECT_EQ("Id:3 Full name:202 Born:7 Yes:11 Part:5 Little:2 Notes:203 ", shape);
}

TEST_F(StatementsTest, NamesWithAnApostropheOrABlankAreMadeReadAndDropped) {
  for (const char* name : {"Customer's", "It's Bob's", " ", "'", "1st", "select", "a-b", "a,b", "(x", "x)",
                           "\xCE\xB1\xCE\xB2", "a;b", "--", "/*", "50%", "Customer's (old)"}) {
    SCOPED_TRACE(name);
    run("CREATE TABLE " + quotedText(name) + " ('Owner''s' Integer ,'Full name' Text)");
    EXPECT_EQ(name, tablesInFile());
    const auto rows = records("Select * from [" + std::string(name) + "]");
    ASSERT_NE(nullptr, rows);
    EXPECT_EQ("Owner's", rows->columns()[0].name);
    EXPECT_EQ("Full name", rows->columns()[1].name);
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, std::int64_t{7}));
    ASSERT_TRUE(rows->update());
    EXPECT_EQ("7", columnOf("Select * from [" + std::string(name) + "]"));
    EXPECT_EQ("7", columnOf(name)) << "as the name of a table";
    run("DROP TABLE '" + std::string(name) + "'");
    EXPECT_EQ("(null)", tablesInFile());
  }
}

TEST_F(StatementsTest, TypeNamesAreTakenInAnyLetterCase) {
  run("CREATE TABLE t (a VARCHAR(10), b vArBiNaRy(4), c LONG VARBINARY, d integer, e BIT)");
  const auto rows = records("t", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ(TypeCode::varWChar, rows->columns()[0].type.code);
  EXPECT_EQ(TypeCode::varBinary, rows->columns()[1].type.code);
  EXPECT_EQ(TypeCode::longVarBinary, rows->columns()[2].type.code);
  EXPECT_EQ(TypeCode::integer, rows->columns()[3].type.code);
  EXPECT_EQ(TypeCode::boolean, rows->columns()[4].type.code);
}

TEST_F(StatementsTest, DatabasesAreMadeAndDroppedWhileAnotherIsOpen) {
  const std::filesystem::path other = folder_.file("Bob's other one.cdb");
  run("CREATE DATABASE '" + utf8Of(other) + "'");
  EXPECT_TRUE(std::filesystem::exists(other));
  run("DROP DATABASE '" + utf8Of(other) + "'");
  EXPECT_FALSE(std::filesystem::exists(other));
}

TEST_F(StatementsTest, ADatabaseNeedsAFile) {
  for (const char* path : {"", ":memory:", "file::memory:?cache=shared"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(ErrorCode::cannotOpen, tryRun("DROP DATABASE '" + std::string(path) + "'").code());
    const Status made = tryRun("CREATE DATABASE '" + std::string(path) + "'");
    std::error_code error;
    const std::filesystem::path file(path);
    EXPECT_EQ(static_cast<bool>(made), std::filesystem::exists(file, error)) << made.message();
    if (made) {
      EXPECT_TRUE(dropDatabase(path));
    }
  }
}

// One statement, whole

TEST_F(StatementsTest, SeveralStatementsAreRefusedWhole) {
  makeNumbers();
  for (const char* sql :
       {"DELETE FROM t; DELETE FROM t", "SELECT * FROM t; DELETE FROM t", "DELETE FROM t; SELECT * FROM t;",
        "DELETE FROM t;;;DELETE FROM t", "DELETE FROM t; -- and\n DELETE FROM t", "DELETE FROM t; rubbish",
        "DELETE FROM t /* ; */ ; /* x */ DROP TABLE t", "INSERT INTO t VALUES (9, 'x'); 'unfinished",
        "CREATE TABLE u (a); CREATE TABLE v (a)", "DROP TABLE t; DROP TABLE t"}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
  }
}

TEST_F(StatementsTest, ASecondStatementTakesNoEffectEvenWhereItIsOnlyRead) {
  makeNumbers();
  run("CREATE TABLE parent (id Integer PRIMARY KEY)");
  run("CREATE TABLE child (p Integer REFERENCES parent)");
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t; PRAGMA foreign_keys = OFF");
  EXPECT_EQ(ErrorCode::constraint, tryRun("INSERT INTO child VALUES (1)").code());
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t; PRAGMA query_only = ON");
  EXPECT_EQ(1, affectedBy("INSERT INTO t VALUES (4, 'four')"));
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t; PRAGMA case_sensitive_like = ON");
  EXPECT_EQ("1", columnOf("SELECT a FROM t WHERE b LIKE 'ONE'"));
}

TEST_F(StatementsTest, CommentsAndSemicolonsAtTheEndsAreIgnored) {
  makeNumbers();
  for (const char* sql :
       {"SELECT a FROM t;", "SELECT a FROM t ; ;", " ;\n SELECT a FROM t", "SELECT a FROM t -- ;",
        "SELECT a FROM t; -- DELETE FROM t", "/* ; */ SELECT a FROM t /* ; */ ;", "-- first\nSELECT a FROM t",
        "SELECT a FROM t /* not closed"}) {
    EXPECT_EQ("1 2 3", columnOf(sql)) << sql;
  }
  EXPECT_EQ(1, affectedBy("DELETE FROM t WHERE a = 2; -- done"));
}

TEST_F(StatementsTest, ATextWithoutAStatementIsRefused) {
  for (const char* sql : {"", " ", ";", " ;;; ", "-- nothing", "/* nothing */", "\r\n\t"}) {
    expectRefused(ErrorCode::noCommand, sql);
  }
}

TEST_F(StatementsTest, AZeroCharacterHidesNothing) {
  makeNumbers();
  using namespace std::string_view_literals;
  for (const std::string_view sql :
       {"DELETE FROM t\0"sv, "SELECT * FROM t\0; DELETE FROM t"sv, "DELETE FROM t\0 WHERE a = 1"sv,
        "DELETE FROM t;\0"sv, "SELECT '\0' FROM t"sv}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
  }
}

TEST_F(StatementsTest, ASelectWithoutATableIsRefused) {
  for (const char* sql :
       {"SELECT 1", "select 1 + 2 AS x", "SELECT", "SELECT (SELECT 1)", "SELECT 1 WHERE 0"}) {
    SCOPED_TRACE(sql);
    std::unique_ptr<RowSource> rows;
    const Status status = backend_->openRows(sql, SourceKind::text, &rows);
    EXPECT_FALSE(status);
    EXPECT_EQ(nullptr, rows);
  }
  expectRefused(ErrorCode::noTable, "SELECT 1");
}

TEST_F(StatementsTest, AStatementOfAMegabyteIsRefused) {
  makeNumbers();
  const std::string long_text(1'048'576, 'x');
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t WHERE b = '" + long_text + "'");
  expectRefused(ErrorCode::errorsInCommand, "INSERT INTO t VALUES (4, '" + long_text + "')");
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t WHERE b = '" + long_text);
  const Status junk = tryRun(long_text);
  EXPECT_EQ(ErrorCode::errorsInCommand, junk.code());
  EXPECT_LT(junk.message().size(), 1000u) << "a message is for reading";
  EXPECT_FALSE(tryRun(std::string(1'048'576, '(')));
  EXPECT_FALSE(
      tryRun("SELECT * FROM t WHERE a = " + std::string(500'000, '(') + "1" + std::string(500'000, ')')));
  EXPECT_FALSE(tryRun("CREATE DATABASE '" + long_text + "'"));
  EXPECT_FALSE(tryRun("DROP TABLE '" + long_text + "'"));
  EXPECT_FALSE(tryRun("CREATE TABLE '" + long_text + "' (a Integer)"));
}

TEST_F(StatementsTest, AStatementOfNearlyAMegabyteRuns) {
  makeNumbers();
  const std::string text(999'950, 'x');
  EXPECT_EQ(1, affectedBy("INSERT INTO t VALUES (4, '" + text + "')"));
  EXPECT_EQ("999950", inFile("SELECT length(b) FROM t WHERE a = 4"));
  for (const SourceKind kind : {SourceKind::text, SourceKind::unknown}) {
    std::unique_ptr<Recordset> found;
    const Status status = tryOpen("SELECT a FROM t WHERE b = '" + text + "'", &found, kind);
    ASSERT_TRUE(status) << status.message();
    EXPECT_EQ("4", columnOf(*found));
  }
}

TEST_F(StatementsTest, ParametersAreRefused) {
  makeNumbers();
  for (const char* sql : {"SELECT * FROM t WHERE a = ?", "SELECT * FROM t WHERE a = :x",
                          "DELETE FROM t WHERE a = @x", "INSERT INTO t VALUES ($a, ?2)"}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
  }
}

TEST_F(StatementsTest, NothingReachesOtherFilesOrTheTransactions) {
  makeNumbers();
  const std::filesystem::path other = folder_.file("other.cdb");
  for (const std::string& sql :
       {"ATTACH '" + utf8Of(other) + "' AS other", std::string("DETACH main"), std::string("BEGIN"),
        std::string("BEGIN IMMEDIATE"), std::string("COMMIT"), std::string("END"), std::string("ROLLBACK"),
        std::string("SAVEPOINT s"), std::string("RELEASE s"), std::string("ROLLBACK TO s"),
        "VACUUM INTO '" + utf8Of(other) + "'", "VACUUM main INTO '" + utf8Of(other) + "'"}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
    EXPECT_FALSE(std::filesystem::exists(other)) << sql;
  }
  EXPECT_EQ(1, affectedBy("DELETE FROM t WHERE a = 1")) << "the connection still works";
}

TEST_F(StatementsTest, PragmasThatWeakenOrChangeAreRefused) {
  makeNumbers();
  for (const char* sql :
       {"PRAGMA journal_mode = OFF", "PRAGMA journal_mode", "PRAGMA synchronous = OFF",
        "PRAGMA locking_mode = EXCLUSIVE", "PRAGMA writable_schema = ON", "PRAGMA foreign_keys = OFF",
        "PRAGMA application_id = 5", "PRAGMA user_version = 5", "PRAGMA encoding = 'UTF-16'",
        "PRAGMA schema_version = 1", "PRAGMA page_size = 512", "PRAGMA main.synchronous(0)",
        "PRAGMA wal_checkpoint", "PRAGMA incremental_vacuum", "PRAGMA optimize",
        "PRAGMA temp_store_directory = '/'", "PRAGMA no_such_pragma", "EXPLAIN PRAGMA synchronous = OFF"}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
  }
}

TEST_F(StatementsTest, PragmasThatTellGiveRows) {
  makeNumbers();
  EXPECT_EQ("a b", columnOf("PRAGMA table_info(t)", 1));
  EXPECT_EQ("ok", columnOf("PRAGMA integrity_check"));
  EXPECT_EQ("UTF-8", columnOf("PRAGMA encoding"));
  EXPECT_EQ("4096", columnOf("PRAGMA page_size"));
  EXPECT_EQ("a b", columnOf("SELECT name FROM pragma_table_info('t')"));
}

TEST_F(StatementsTest, ExplainGivesRowsAndRunsNothing) {
  makeNumbers();
  const auto plan = records("EXPLAIN QUERY PLAN DELETE FROM t");
  ASSERT_NE(nullptr, plan);
  EXPECT_FALSE(plan->isUpdatable());
  EXPECT_GT(records("EXPLAIN DELETE FROM t")->recordCount(), 0);
  EXPECT_EQ("3", inFile("SELECT count(*) FROM t"));
}

TEST_F(StatementsTest, NothingIsMadeInTheTemporaryDatabase) {
  makeNumbers();
  for (const char* sql : {"CREATE TEMP TABLE t (a Integer)", "CREATE TABLE temp.t (a Integer)",
                          "CREATE TEMP VIEW v AS SELECT * FROM t",
                          "CREATE TEMP TRIGGER r AFTER INSERT ON t BEGIN DELETE FROM t; END"}) {
    expectRefused(ErrorCode::errorsInCommand, sql);
  }
  const auto joined = records("SELECT x.a FROM t x, t y WHERE x.a = y.a ORDER BY 1");
  const std::string kept = columnOf("SELECT name FROM sqlite_temp_schema");
  ASSERT_NE("", kept) << "this test knows where results are kept";
  EXPECT_FALSE(tryRun("DELETE FROM temp.[" + kept + "]"));
  EXPECT_FALSE(tryRun("UPDATE temp.[" + kept + "] SET c0 = 0"));
  EXPECT_FALSE(tryRun("INSERT INTO temp.[" + kept + "] VALUES (0)"));
  EXPECT_FALSE(tryRun("DROP TABLE temp.[" + kept + "]"));
  EXPECT_EQ("1 2 3", columnOf(*joined));
}

// Changes

TEST_F(StatementsTest, AffectedCountsAreThoseOfTheStatement) {
  makeNumbers();
  EXPECT_EQ(2, affectedBy("INSERT INTO t VALUES (4, 'four'), (5, 'five')"));
  EXPECT_EQ(3, affectedBy("UPDATE t SET b = 'x' WHERE a > 2"));
  EXPECT_EQ(0, affectedBy("UPDATE t SET b = 'x' WHERE a > 100"));
  EXPECT_EQ(1, affectedBy("DELETE FROM t WHERE a = 1"));
  EXPECT_EQ(4, affectedBy("DELETE FROM t"));
  EXPECT_EQ(0, affectedBy("DELETE FROM t"));
  EXPECT_EQ(1, affectedBy("REPLACE INTO t VALUES (1, 'again')"));
  EXPECT_EQ(0, affectedBy("CREATE INDEX i ON t (a)"));
  EXPECT_EQ(1, affectedBy("WITH n(x) AS (VALUES (7)) INSERT INTO t SELECT x, 'with' FROM n"));
  EXPECT_EQ(2,
            affectedBy("WITH n(x) AS (SELECT a FROM t) UPDATE t SET b = 'w' WHERE a IN (SELECT x FROM n)"));
}

TEST_F(StatementsTest, AChangeThatBeginsWithACommonTableLeavesOpenRecordsetsReadable) {
  makeNumbers();
  const auto rows = records("Select * from [t]");
  run("WITH n(x) AS (VALUES (7)) INSERT INTO t SELECT x, 'with' FROM n");
  EXPECT_EQ("1 2 3", columnOf(*rows));
}

TEST_F(StatementsTest, InsertReturningStoresAndGivesNoRows) {
  makeNumbers();
  std::int64_t affected = -1;
  std::unique_ptr<RowSource> rows;
  ASSERT_TRUE(backend_->run("INSERT INTO t VALUES (4, 'four'), (5, 'five') RETURNING a", &affected, &rows));
  EXPECT_EQ(2, affected);
  EXPECT_EQ(nullptr, rows);
  EXPECT_EQ("5", inFile("SELECT count(*) FROM t"));
}

TEST_F(StatementsTest, AFailingInsertOfSeveralRowsStoresNone) {
  run("CREATE TABLE u (a Integer UNIQUE, b Text NOT NULL)");
  run("INSERT INTO u VALUES (1, 'x')");
  expectRefused(ErrorCode::constraint, "INSERT INTO u VALUES (2, 'x'), (3, 'x'), (1, 'x')");
  expectRefused(ErrorCode::constraint, "INSERT OR FAIL INTO u VALUES (2, 'x'), (1, 'x')");
  expectRefused(ErrorCode::constraint, "INSERT OR ROLLBACK INTO u VALUES (2, 'x'), (1, 'x')");
  expectRefused(ErrorCode::constraint, "INSERT INTO u VALUES (2, NULL)");
  expectRefused(ErrorCode::constraint, "UPDATE u SET b = NULL");
  EXPECT_EQ(1, affectedBy("INSERT OR IGNORE INTO u VALUES (2, 'x'), (1, 'x')"));
}

TEST_F(StatementsTest, ForeignKeysHold) {
  run("CREATE TABLE parent (id Integer PRIMARY KEY)");
  run("CREATE TABLE child (p Integer REFERENCES parent DEFERRABLE INITIALLY DEFERRED)");
  expectRefused(ErrorCode::constraint, "INSERT INTO child VALUES (1)");
  run("INSERT INTO parent VALUES (1)");
  run("INSERT INTO child VALUES (1)");
  expectRefused(ErrorCode::constraint, "DELETE FROM parent");
}

TEST_F(StatementsTest, DatesAreReadInTheOrderOfTheUser) {
  run("CREATE TABLE d (Born Datetime, Name Text)");
  run("INSERT INTO d (Born, Name) VALUES ('2001/03/09', 'x'), ('12/31/1999', 'y')");
  EXPECT_EQ("2001-03-09 00:00:00", inFile("SELECT Born FROM d WHERE Name = 'x'"));
  EXPECT_EQ("1999-12-31 00:00:00", inFile("SELECT Born FROM d WHERE Name = 'y'"));
  EXPECT_EQ("x", columnOf("SELECT Name FROM d WHERE Born = '3/9/2001'"));
  EXPECT_EQ("x", columnOf("SELECT Name FROM d WHERE Born > \"1/1/2000\" ORDER BY Born DESC"));
  EXPECT_EQ("y x",
            columnOf("SELECT Name FROM d WHERE Born BETWEEN '12/1/1999' AND '2001-12-31' ORDER BY Born"));
  EXPECT_EQ(1, affectedBy("UPDATE d SET Born = '4/5/2002' WHERE Born = '3/9/2001'"));
  EXPECT_EQ("2002-04-05 00:00:00", inFile("SELECT Born FROM d WHERE Name = 'x'"));
  EXPECT_EQ(1, affectedBy("DELETE FROM d WHERE Born < '1/1/2000'"));

  backend_.reset();
  open({.dateOrder = DateOrder::dayMonthYear});
  EXPECT_EQ("x", columnOf("SELECT Name FROM d WHERE Born = '5/4/2002'"));
  EXPECT_EQ(1, affectedBy("DELETE FROM d WHERE Born = '5.4.2002'"));
}

// Definitions

TEST_F(StatementsTest, DefinitionsAreTaken) {
  makeNumbers();
  run("CREATE INDEX byName ON t (b DESC)");
  run("ALTER TABLE t ADD COLUMN c Datetime");
  run("ALTER TABLE t RENAME TO u");
  run("ALTER TABLE u RENAME COLUMN c TO d");
  run("ALTER TABLE u DROP COLUMN d");
  run("CREATE VIEW v AS SELECT a FROM u");
  run("REINDEX u");
  run("DROP INDEX byName");
  EXPECT_EQ("1 2 3", columnOf("SELECT * FROM v ORDER BY 1"));
  run("DROP VIEW v");
  run("DROP TABLE u");
  EXPECT_EQ("(null)", tablesInFile());
  run("VACUUM");
  run("ANALYZE");
}

TEST_F(StatementsTest, ARefusedDefinitionLeavesNoTrace) {
  makeNumbers();
  run("CREATE TABLE u (a Integer UNIQUE)");
  expectRefused(ErrorCode::tableExists, "CREATE TABLE 'T' (a Integer)");
  expectRefused(ErrorCode::tableExists, "CREATE TABLE [t] (a Integer)");
  expectRefused(ErrorCode::tableExists, "CREATE VIEW t AS SELECT 1");
  expectRefused(ErrorCode::tableExists, "ALTER TABLE t RENAME TO u");
  expectRefused(ErrorCode::noTable, "DROP TABLE 'no such'");
  expectRefused(ErrorCode::noTable, "DROP VIEW no_such");
  expectRefused(ErrorCode::noTable, "ALTER TABLE no_such ADD COLUMN c");
  expectRefused(ErrorCode::noTable, "CREATE INDEX i ON no_such (a)");
  expectRefused(ErrorCode::badColumn, "CREATE INDEX i ON t (no_such)");
  expectRefused(ErrorCode::errorsInCommand, "DROP INDEX no_such");
  expectRefused(ErrorCode::errorsInCommand, "CREATE TABLE 'v' (a Integer ,a Text)");
  expectRefused(ErrorCode::errorsInCommand, "CREATE TABLE 'v' ()");
  expectRefused(ErrorCode::errorsInCommand, "CREATE TABLE '' (a Integer");
  expectRefused(ErrorCode::errorsInCommand, "CREATE TABLE sqlite_mine (a)");
  expectRefused(ErrorCode::errorsInCommand, "DROP TABLE sqlite_schema");
  run("INSERT INTO t VALUES (1, 'twice')");
  expectRefused(ErrorCode::constraint, "CREATE UNIQUE INDEX i ON t (a)");
}

TEST_F(StatementsTest, MistakesAreTold) {
  makeNumbers();
  expectRefused(ErrorCode::noTable, "SELECT * FROM no_such");
  expectRefused(ErrorCode::noTable, "Select * from [no such]");
  expectRefused(ErrorCode::noTable, "INSERT INTO no_such VALUES (1)");
  expectRefused(ErrorCode::badColumn, "SELECT no_such FROM t");
  expectRefused(ErrorCode::badColumn, "SELECT * FROM t WHERE no_such = 1");
  expectRefused(ErrorCode::badColumn, "INSERT INTO t (no_such) VALUES (1)");
  expectRefused(ErrorCode::badColumn, "UPDATE t SET no_such = 1");
  expectRefused(ErrorCode::errorsInCommand, "SELEKT * FROM t");
  expectRefused(ErrorCode::errorsInCommand, "SELECTION");
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM");
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t WHERE");
  expectRefused(ErrorCode::errorsInCommand, "SELECT * FROM t WHERE b = 'x");
  expectRefused(ErrorCode::errorsInCommand, "Select * from [t");
  expectRefused(ErrorCode::errorsInCommand, "SELECT no_such_function(a) FROM t");
  expectRefused(ErrorCode::errorsInCommand, "INSERT INTO t VALUES (1)");
  expectRefused(ErrorCode::errorsInCommand, "UPDATE sqlite_schema SET sql = ''");
  expectRefused(ErrorCode::errorsInCommand, "DELETE FROM sqlite_schema");
}

TEST_F(StatementsTest, TheOldRowsOfADroppedAndRemadeTableAreGone) {
  makeNumbers();
  const auto rows = records("Select * from [t]");
  run("DROP TABLE t");
  run("CREATE TABLE t (a Integer, b Varchar (20))");
  run("INSERT INTO t VALUES (100, 'another')");
  Cell cell;
  EXPECT_FALSE(rows->cell(0, &cell)) << "another table's row";
  EXPECT_FALSE(rows->remove());
  EXPECT_EQ("1", inFile("SELECT count(*) FROM t"));
}

}  // namespace
}  // namespace store
