// Records of SQLite's tables under what only SQLite can do: files that are rebuilt, row ids that are given
// out again, values without a type, triggers in its language.
#include "tests/store/rows/numbers_fixture.h"

namespace store {
namespace {

class FileRowsTest : public NumbersTest {};

TEST_F(FileRowsTest, AValueWrittenBackUnchangedTouchesNothing) {
  openNumbers(1);
  OtherProgram other(path_);
  const std::string before = other.ask("PRAGMA data_version");
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{10}));
  ASSERT_TRUE(numbers_->setValue(1, std::string("row 1")));
  EXPECT_EQ(EditMode::none, numbers_->editMode());
  ASSERT_TRUE(numbers_->update());
  EXPECT_EQ(before, other.ask("PRAGMA data_version"));
}

TEST_F(FileRowsTest, OnlyWrittenFieldsAreStored) {
  prepare("CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'b')");
  prepare("CREATE TRIGGER b AFTER UPDATE OF b ON t BEGIN SELECT RAISE(ABORT, 'b was written'); END");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(0, std::int64_t{2}));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("2", inFile("SELECT a FROM t"));
}

TEST_F(FileRowsTest, ARebuiltFileNeverShowsAnotherRow) {
  openNumbers(5);
  // Row ids of a table without a key of its own are given out anew.
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 10");
  OtherProgram(path_).run("VACUUM");
  ASSERT_TRUE(numbers_->moveNext());
  Cell cell;
  EXPECT_EQ(ErrorCode::structureChanged, numbers_->cell(0, &cell).code());
  EXPECT_EQ(ErrorCode::structureChanged, numbers_->remove().code());
  EXPECT_EQ("4", inFile("SELECT count(*) FROM Numbers"));
  EXPECT_EQ("20 30 40 50", columnOf("Select * from [Numbers]"));
}

TEST_F(FileRowsTest, ARebuildingBetweenReadingAndWritingChangesNoOtherRow) {
  openNumbers(5);
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{21}));
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 10");
  OtherProgram(path_).run("VACUUM");
  EXPECT_EQ(ErrorCode::structureChanged, numbers_->update().code());
  EXPECT_EQ("140", inFile("SELECT sum(N) FROM Numbers"));
}

TEST_F(FileRowsTest, ARebuiltFileKeepsTheRowsOfATableWithItsOwnKey) {
  prepare("CREATE TABLE Keyed (Id INTEGER PRIMARY KEY, Name Text)");
  prepare("INSERT INTO Keyed VALUES (1, 'a'), (2, 'b'), (3, 'c')");
  open();
  const auto keyed = records("Select * from [Keyed]");
  OtherProgram(path_).run("DELETE FROM Keyed WHERE Id = 1");
  OtherProgram(path_).run("VACUUM");
  ASSERT_TRUE(keyed->moveLast());
  EXPECT_EQ("c", textOf(*keyed, 1));
}

struct Rebuilding {
  const char* former;
  const char* present;
  const char* rows;
};

// The columns are called as before, and what was the key of one record may be that of several, or of another.
TEST_F(FileRowsTest, ATableThatCameToAnotherKeyIsToBeOpenedAgain) {
  const Rebuilding rebuildings[] = {
      {"(A Integer PRIMARY KEY, B Integer, C Text) WITHOUT ROWID",
       "(A Integer, B Integer, C Text, PRIMARY KEY (A, B)) WITHOUT ROWID",
       "(2, 1, 'two'), (2, 2, 'another'), (3, 1, 'three')"},
      {"(A Integer, B Integer, C Text, PRIMARY KEY (A, B)) WITHOUT ROWID",
       "(A Integer, B Integer, C Text, PRIMARY KEY (B, A)) WITHOUT ROWID",
       "(2, 1, 'another'), (1, 2, 'two')"},
      {"(A Integer PRIMARY KEY, B Integer, C Text)", "(A Integer, B Integer PRIMARY KEY, C Text)",
       "(2, 1, 'two'), (1, 2, 'another')"},
      {"(A Integer PRIMARY KEY, B Integer, C Text)", "(A Integer, B Integer, C Text, PRIMARY KEY (A, B))",
       "(3, 1, 'three'), (2, 1, 'two')"},
      {"(A Integer PRIMARY KEY, B Integer, C Text)",
       "(A Integer PRIMARY KEY, B Integer, C Text, rowid Integer)", "(1, 1, 'one', 2), (2, 1, 'two', 1)"},
      {"(A Integer PRIMARY KEY, B Integer, C Text) WITHOUT ROWID",
       "(A Integer, B Integer, C Text, PRIMARY KEY (A, B))", "(2, 1, 'two'), (2, 2, 'another')"},
  };
  for (const Rebuilding& each : rebuildings) {
    SCOPED_TRACE(each.present);
    OtherProgram(path_).run("DROP TABLE IF EXISTS T; CREATE TABLE T " + std::string(each.former) +
                            "; INSERT INTO T VALUES (1, 1, 'one'), (2, 1, 'two')");
    open();
    const auto rows = records("Select A, B, C from [T]");
    ASSERT_TRUE(rows->moveLast());
    EXPECT_EQ("two", textOf(*rows, 2));
    ASSERT_TRUE(rows->setValue(2, std::string("mine")));
    OtherProgram(path_).run("DROP TABLE T; CREATE TABLE T " + std::string(each.present) +
                            "; INSERT INTO T VALUES " + each.rows);
    const std::string all = "SELECT group_concat(A || B || C) FROM (SELECT * FROM T ORDER BY C)";
    const std::string before = inFile(all);
    EXPECT_EQ(ErrorCode::structureChanged, rows->update().code());
    ASSERT_TRUE(rows->cancelUpdate());
    Cell cell;
    EXPECT_EQ(ErrorCode::structureChanged, rows->cell(2, &cell).code());
    EXPECT_EQ(ErrorCode::structureChanged, rows->remove().code());
    EXPECT_EQ(before, inFile(all));
  }
}

TEST_F(FileRowsTest, ATableThatWasMadeAgainWithItsKeyGoesOn) {
  prepare(
      "CREATE TABLE T (A Integer, B Integer, C Text, PRIMARY KEY (B, A)) WITHOUT ROWID;"
      "INSERT INTO T VALUES (1, 1, 'one'), (2, 1, 'two')");
  open();
  const auto rows = records("Select * from [T]");
  ASSERT_TRUE(rows->moveLast());
  EXPECT_EQ("two", textOf(*rows, 2));
  ASSERT_TRUE(rows->setValue(2, std::string("mine")));
  OtherProgram(path_).run(
      "DROP TABLE T; CREATE TABLE T (A Integer, B Integer, C Text, D Text, PRIMARY KEY (B, A)) WITHOUT ROWID;"
      "INSERT INTO T VALUES (1, 1, 'one', 'd'), (2, 1, 'two', 'd')");
  EXPECT_TRUE(rows->update());
  EXPECT_EQ("one,mine", inFile("SELECT group_concat(C) FROM (SELECT * FROM T ORDER BY B, A)"));
}

// A key that tells two texts apart which are the same to their column.
TEST_F(FileRowsTest, TheKeyTellsTextsApartAsTheKeyDoes) {
  prepare(
      "CREATE TABLE T (K Text COLLATE NOCASE, V Text, PRIMARY KEY (K COLLATE BINARY)) WITHOUT ROWID;"
      "INSERT INTO T VALUES ('A', 'upper'), ('a', 'lower')");
  open();
  EXPECT_EQ("upper lower", columnOf("Select * from [T]", 1));
  const auto rows = records("Select * from [T]");
  ASSERT_TRUE(rows->moveLast());
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  EXPECT_TRUE(rows->update());
  EXPECT_EQ("upper mine", inFile("SELECT group_concat(V, ' ') FROM (SELECT V FROM T ORDER BY V DESC)"));
  EXPECT_TRUE(rows->remove());
  EXPECT_EQ("upper", inFile("SELECT group_concat(V) FROM T"));
}

TEST_F(FileRowsTest, OurStatementsThatLeaveTheTablesAloneKeepTheRecordsetAlive) {
  openNumbers(3);
  for (const char* statement :
       {"CREATE INDEX i ON Numbers (Name DESC)", "ANALYZE", "ANALYZE Numbers", "REINDEX", "DROP INDEX i",
        "CREATE VIEW v AS SELECT * FROM Numbers", "DROP VIEW v",
        "CREATE TRIGGER g AFTER DELETE ON Numbers BEGIN SELECT 1; END", "DROP TRIGGER g"}) {
    SCOPED_TRACE(statement);
    run(statement);
    ASSERT_TRUE(numbers_->moveLast());
    EXPECT_EQ("30", current());
    EXPECT_EQ("row 3", textOf(*numbers_, 1));
    ASSERT_TRUE(numbers_->moveFirst());
    EXPECT_EQ("10", current());
  }
  ASSERT_TRUE(numbers_->setValue(1, std::string("changed")));
  EXPECT_TRUE(numbers_->update());
  EXPECT_EQ("changed", inFile("SELECT Name FROM Numbers WHERE N = 10"));
}

TEST_F(FileRowsTest, OurStatementsThatTakeFromTablesRefuseTheRecordsetOrShowItsRows) {
  for (const char* statement :
       {"DROP TABLE other", "ALTER TABLE other ADD COLUMN b", "ALTER TABLE other RENAME TO another",
        "ALTER TABLE Numbers ADD COLUMN b Integer", "ALTER TABLE Numbers RENAME COLUMN Name TO Called",
        "ALTER TABLE Numbers DROP COLUMN Name", "ALTER TABLE Numbers RENAME TO Counted", "DROP TABLE Numbers",
        "VACUUM"}) {
    SCOPED_TRACE(statement);
    OtherProgram(path_).run(
        "DROP TABLE IF EXISTS Numbers; DROP TABLE IF EXISTS Counted; DROP TABLE IF EXISTS other;"
        "CREATE TABLE Numbers (N Integer, Name Varchar (20));"
        "INSERT INTO Numbers VALUES (10, 'row 1'), (20, 'row 2'), (30, 'row 3');"
        "DELETE FROM Numbers WHERE N = 20; CREATE TABLE other (a)");
    open();
    const auto rows = records("Select * from [Numbers]");
    run(statement);
    ASSERT_TRUE(rows->moveLast());
    Cell cell;
    const Status read = rows->cell(1, &cell);
    EXPECT_TRUE(read ? cell.bytes == "row 3" : read.code() == ErrorCode::structureChanged) << read.message();
    const Status added = rows->addNew();
    EXPECT_TRUE(added) << added.message();
    EXPECT_TRUE(rows->setValue(0, std::int64_t{40}));
    EXPECT_EQ(static_cast<bool>(read), static_cast<bool>(rows->update())) << "what is added can be shown";
    if (!read) {
      EXPECT_EQ(2, rows->recordCount());
    }
    EXPECT_TRUE(rows->cancelUpdate());
  }
}

// The row id of a deleted last row is given out again.
constexpr const char* kReplaceTheLast =
    "DELETE FROM Numbers WHERE N = 20; INSERT INTO Numbers VALUES (99, 'new')";

TEST_F(FileRowsTest, AnotherRowThatHasGotTheRowIdIsNotChanged) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->moveLast());
  ASSERT_TRUE(numbers_->setValue(1, std::string("mine")));
  OtherProgram(path_).run(kReplaceTheLast);
  EXPECT_EQ(ErrorCode::changedElsewhere, numbers_->update().code());
  EXPECT_EQ(EditMode::inProgress, numbers_->editMode());
  EXPECT_EQ("10 row 1,99 new", inFile("SELECT group_concat(N || ' ' || Name) FROM Numbers"));
  EXPECT_TRUE(numbers_->cancelUpdate());
  EXPECT_EQ("99", current()) << "now it is read as what it is";
}

TEST_F(FileRowsTest, AnotherRowThatHasGotTheRowIdIsNotDeletedInTheNameOfTheOneThatWasRead) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->moveLast());
  EXPECT_EQ("20", current());
  OtherProgram(path_).run(kReplaceTheLast);
  EXPECT_EQ(ErrorCode::changedElsewhere, numbers_->remove().code());
  EXPECT_EQ(2, numbers_->recordCount());
  EXPECT_EQ("2", inFile("SELECT count(*) FROM Numbers"));
  ASSERT_TRUE(numbers_->moveLast());
  EXPECT_EQ("99", current());
  EXPECT_TRUE(numbers_->remove()) << "this time it is the row that was read";
}

TEST_F(FileRowsTest, OnlyWhatTheRecordsetShowsOfTheTableIsCompared) {
  openNumbers(1);
  const auto shown = records("SELECT N, random() AS r, rowid FROM Numbers");
  EXPECT_EQ("10", textOf(*shown, 0));
  OtherProgram(path_).run("UPDATE Numbers SET Name = 'theirs'");
  ASSERT_TRUE(shown->setValue(0, std::int64_t{11}));
  EXPECT_TRUE(shown->update());
  EXPECT_EQ("11 theirs", inFile("SELECT N || ' ' || Name FROM Numbers"));
  EXPECT_EQ("11", textOf(*shown, 0));
  EXPECT_TRUE(shown->remove());
}

TEST_F(FileRowsTest, ValuesOfEveryKindAreComparedAsTheyAre) {
  prepare("CREATE TABLE t (k Integer, a, b, c, d, e)");
  prepare("INSERT INTO t VALUES (1, NULL, 9223372036854775807, 0.1, 'x' || char(0), x'00ff')");
  open();
  const auto t = records("Select * from [t]");
  ASSERT_TRUE(t->setValue(0, std::int64_t{2}));
  EXPECT_TRUE(t->update());
  OtherProgram(path_).run("UPDATE t SET c = CAST(0.1 AS TEXT)");
  ASSERT_TRUE(t->moveFirst());
  EXPECT_EQ("2", textOf(*t, 0));
  OtherProgram(path_).run("UPDATE t SET c = 0.1");
  ASSERT_TRUE(t->setValue(0, std::int64_t{3}));
  EXPECT_EQ(ErrorCode::changedElsewhere, t->update().code());
}

TEST_F(FileRowsTest, ATriggerThatIgnoresAChangeIsNoOtherProgram) {
  openNumbers(2);
  run("CREATE TRIGGER u BEFORE UPDATE ON Numbers WHEN old.N = 10 BEGIN SELECT RAISE(IGNORE); END");
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  EXPECT_EQ(ErrorCode::constraint, numbers_->update().code());
  EXPECT_EQ(EditMode::inProgress, numbers_->editMode());
  EXPECT_TRUE(numbers_->cancelUpdate());
  EXPECT_EQ("10", current());
}

TEST_F(FileRowsTest, ATriggerThatIgnoresADeletionKeepsTheRecord) {
  openNumbers(2);
  run("CREATE TRIGGER d BEFORE DELETE ON Numbers WHEN old.N = 10 BEGIN SELECT RAISE(IGNORE); END");
  EXPECT_EQ(ErrorCode::constraint, numbers_->remove().code());
  EXPECT_EQ(2, numbers_->recordCount());
  EXPECT_EQ(1, numbers_->position());
  EXPECT_EQ("10", current());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_TRUE(numbers_->remove());
  EXPECT_EQ("10", inFile("SELECT group_concat(N) FROM Numbers"));
}

}  // namespace
}  // namespace store
