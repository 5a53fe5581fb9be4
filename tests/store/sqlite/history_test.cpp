// Changes of records that are taken back and done again.
#include "tests/store/sqlite/history_fixture.h"

namespace store {
namespace {

using Way = ChangeHistory::Way;

TEST_F(HistoryTest, KeepsNothingBeforeItIsTold) {
  prepare("CREATE TABLE t(a TEXT)");
  open();
  addTo("t", "one");
  EXPECT_EQ(nullptr, history().next(Way::back));
  EXPECT_EQ(ErrorCode::noCurrentRecord, history().take(Way::back).code());
}

TEST_F(HistoryTest, TakesEachKindOfChangeBackAndDoesItAgain) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1), ('two', 2), ('three', 3)");
  openKeeping();
  const std::string first = contentOf("t");
  addTo("t", "four");
  EXPECT_EQ("added t 'four' 1", told(Way::back));
  const std::string second = contentOf("t");
  change("t", 2, 0, "zwei");
  EXPECT_EQ("changed t 'zwei' 1", told(Way::back));
  const std::string third = contentOf("t");
  remove("t", 1);
  EXPECT_EQ("deleted t 'one' 1", told(Way::back));
  const std::string fourth = contentOf("t");

  takeBack();
  EXPECT_EQ(third, contentOf("t"));
  EXPECT_EQ("deleted t 'one' 1", told(Way::again));
  takeBack();
  EXPECT_EQ(second, contentOf("t"));
  takeBack();
  EXPECT_EQ(first, contentOf("t"));
  EXPECT_EQ("", told(Way::back));
  doAgain();
  EXPECT_EQ(second, contentOf("t"));
  doAgain();
  doAgain();
  EXPECT_EQ(fourth, contentOf("t"));
  EXPECT_EQ("", told(Way::again));
}

TEST_F(HistoryTest, ANewChangeDropsWhatCouldBeDoneAgain) {
  prepare("CREATE TABLE t(a TEXT)");
  openKeeping();
  addTo("t", "one");
  addTo("t", "two");
  takeBack();
  addTo("t", "three");
  EXPECT_EQ("", told(Way::again));
  takeBack();
  takeBack();
  EXPECT_EQ("", contentOf("t"));
}

TEST_F(HistoryTest, AChangeThatWasRefusedIsNoStep) {
  prepare("CREATE TABLE t(a TEXT UNIQUE); INSERT INTO t VALUES('one'), ('two')");
  openKeeping();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(0, std::string("two")));
  EXPECT_EQ(ErrorCode::constraint, rows->update().code());
  EXPECT_EQ("", told(Way::back));
}

TEST_F(HistoryTest, RecordsComeBackUnderTheirRowIds) {
  for (const char* table :
       {"a TEXT, b", "a TEXT PRIMARY KEY, b", "a TEXT, b, PRIMARY KEY(a, b)", "a INTEGER PRIMARY KEY, b"}) {
    SCOPED_TRACE(table);
    remake(std::string("CREATE TABLE t(") + table + "); INSERT INTO t(rowid, a, b) VALUES(3, 3, 'x'), " +
           "(7, 7, 'y'), (9, 9, 'z')");
    openKeeping();
    const std::string before = contentOf("t");
    remove("t", 2);
    remove("t", 2);
    takeBack();
    takeBack();
    EXPECT_EQ(before, contentOf("t"));
    doAgain();
    takeBack();
    EXPECT_EQ(before, contentOf("t"));
    change("t", 1, 0, "5");
    const std::string behind = contentOf("t");
    takeBack();
    EXPECT_EQ(before, contentOf("t"));
    doAgain();
    EXPECT_EQ(behind, contentOf("t"));
  }
}

TEST_F(HistoryTest, ATableWithoutRowIds) {
  prepare(
      "CREATE TABLE t(a TEXT, b INTEGER, c, PRIMARY KEY(b, a)) WITHOUT ROWID;"
      "INSERT INTO t VALUES('one', 1, x'00ff'), ('two', 2, NULL)");
  openKeeping();
  const std::string before = contentOf("t");
  change("t", 1, 1, "5");
  remove("t", 1);
  addTo("t", "new", 8);
  for (int n = 0; n < 3; ++n) takeBack();
  EXPECT_EQ(before, contentOf("t"));
  for (int n = 0; n < 3; ++n) doAgain();
  for (int n = 0; n < 3; ++n) takeBack();
  EXPECT_EQ(before, contentOf("t"));
}

TEST_F(HistoryTest, EveryKindOfValueComesBackToTheByte) {
  prepare(
      "CREATE TABLE t(a TEXT, b, g AS (length(a)), s AS (b) STORED);"
      "INSERT INTO t VALUES('one', NULL), (CAST(x'61ff00ff62' AS TEXT), 1e300), ('', x''), ('x', x'0001'),"
      "('y', 9223372036854775807), ('z', -0.5), ('w', zeroblob(100000))");
  openKeeping();
  const std::string before = contentOf("t");
  for (int n = 0; n < 7; ++n) remove("t", 1);
  EXPECT_EQ("", contentOf("t"));
  for (int n = 0; n < 7; ++n) takeBack();
  EXPECT_EQ(before, contentOf("t"));
}

// ---- What belongs to a step

TEST_F(HistoryTest, WhatTriggersChangedComesBackAndTheyDontRunAgain) {
  prepare(
      "CREATE TABLE t(a TEXT); CREATE TABLE log(n INTEGER PRIMARY KEY, what TEXT);"
      "INSERT INTO log VALUES(1, 'begin');"
      "CREATE TRIGGER i AFTER INSERT ON t BEGIN INSERT INTO log(what) VALUES('+' || new.a); END;"
      "CREATE TRIGGER d AFTER DELETE ON t BEGIN DELETE FROM log; INSERT INTO log(what) VALUES('-'); END;"
      "CREATE TRIGGER u AFTER UPDATE ON t BEGIN UPDATE log SET what = what || '!'; END");
  openKeeping();
  addTo("t", "one");
  const std::string added = contentOf("log");
  change("t", 1, 0, "two");
  const std::string changed = contentOf("log");
  EXPECT_EQ("changed t 'two' 1", told(Way::back));
  remove("t", 1);
  const std::string deleted = contentOf("log");
  takeBack();
  EXPECT_EQ(changed, contentOf("log"));
  takeBack();
  EXPECT_EQ(added, contentOf("log"));
  takeBack();
  EXPECT_EQ("1|1,begin;", contentOf("log"));
  for (int n = 0; n < 3; ++n) doAgain();
  EXPECT_EQ(deleted, contentOf("log"));
  addTo("t", "again");
  EXPECT_NE(deleted, contentOf("log")) << "they run for what is changed anew";
}

TEST_F(HistoryTest, WhatForeignKeysDeletedComesBack) {
  prepare(
      "CREATE TABLE p(id INTEGER PRIMARY KEY, n TEXT);"
      "CREATE TABLE c(k TEXT PRIMARY KEY, p REFERENCES p ON DELETE CASCADE ON UPDATE CASCADE);"
      "CREATE TABLE s(p REFERENCES p ON DELETE SET NULL ON UPDATE CASCADE);"
      "INSERT INTO p VALUES(1, 'one'), (2, 'two');"
      "INSERT INTO c VALUES('a', 1), ('b', 1), ('c', 2); INSERT INTO s VALUES(1), (2)");
  openKeeping();
  const std::string before = contentOf("p") + contentOf("s") + contentOf("c");
  remove("p", 1);
  EXPECT_EQ("deleted p 'one' 1", told(Way::back));
  EXPECT_EQ("3|c,2;", contentOf("c"));
  takeBack();
  EXPECT_EQ(before, contentOf("p") + contentOf("s") + contentOf("c"));
  doAgain();
  EXPECT_EQ("3|c,2;", contentOf("c"));
  takeBack();
  change("p", 1, 0, "8");
  takeBack();
  EXPECT_EQ(before, contentOf("p") + contentOf("s") + contentOf("c"));
  EXPECT_EQ("ok", OtherProgram(path_).ask(
                      "SELECT iif(count(*) = 0, 'ok', 'broken') FROM pragma_foreign_key_check"));
}

TEST_F(HistoryTest, SeveralThatWereDeletedAtOnceComeBackUnderTheirRowIdsToo) {
  for (const char* mode : {"DELETE", "WAL"}) {
    SCOPED_TRACE(mode);
    remake(std::string("PRAGMA journal_mode=") + mode +
           "; CREATE TABLE t(a TEXT, b, PRIMARY KEY(a, b)); INSERT INTO t(rowid, a, b) VALUES(3, 'z', 1), "
           "(7, 'y', 2), (9, 'x', 3), (12, 'w', 4)");
    openKeeping();
    const std::string before = contentOf("t");
    run("DELETE FROM t WHERE b < 4");
    run("UPDATE t SET a = 'changed'");
    takeBack();
    takeBack();
    EXPECT_EQ(before, contentOf("t"));
    doAgain();
    doAgain();
    EXPECT_EQ("12|changed,4;", contentOf("t"));
    takeBack();
    takeBack();
    EXPECT_EQ(before, contentOf("t"));
  }
}

TEST_F(HistoryTest, RowIdsComeBackWhereTheTableWasEmptied) {
  prepare(
      "CREATE TABLE t(a TEXT PRIMARY KEY); INSERT INTO t(rowid, a) VALUES(1, 'm'), (2, 'c'), (3, 'x'), (4, "
      "'a'), "
      "(5, 'k'), (-7, 'z')");
  openKeeping();
  const std::string before = contentOf("t");
  run("DELETE FROM t");
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
  run("UPDATE t SET a = a || '!'");
  const std::string behind = contentOf("t");
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
  doAgain();
  EXPECT_EQ(behind, contentOf("t"));
}

TEST_F(HistoryTest, AnImportIsOneStep) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1)");
  openKeeping();
  const std::string before = contentOf("t");
  load("t", {"x", "y", "z"});
  EXPECT_EQ("imported t '' 3", told(Way::back));
  const std::string behind = contentOf("t");
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
  doAgain();
  EXPECT_EQ(behind, contentOf("t"));
}

TEST_F(HistoryTest, AStatementIsOneStep) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1), ('two', 2)");
  openKeeping();
  const std::string before = contentOf("t");
  run("UPDATE t SET b = b + 10");
  EXPECT_EQ("statement t '' 2", told(Way::back));
  run("DELETE FROM t");
  EXPECT_EQ("statement t '' 2", told(Way::back));
  takeBack();
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
}

TEST_F(HistoryTest, TheStructureIsNoStep) {
  prepare("CREATE TABLE t(a TEXT)");
  openKeeping();
  addTo("t", "one");
  run("CREATE TABLE u(a Text)");
  EXPECT_EQ("added t 'one' 1", told(Way::back));
  takeBack();
  EXPECT_EQ("", contentOf("t"));
}

// ---- The record that a step is about

TEST_F(HistoryTest, TellsWhereTheRecordStands) {
  prepare(
      "CREATE TABLE t(a TEXT); INSERT INTO t VALUES('one'), ('two'), ('three'); CREATE TABLE u(a TEXT);"
      "INSERT INTO u VALUES('x')");
  openKeeping();
  remove("t", 2);
  takeBack();
  ASSERT_TRUE(history().taken());
  EXPECT_EQ("t", history().taken()->table);
  EXPECT_EQ(2, records("Select * from [t]")->positionOf(*history().taken()));
  EXPECT_EQ(2, records("SELECT a FROM T ORDER BY a")->positionOf(*history().taken()) - 1);
  EXPECT_EQ(0, records("SELECT a FROM t WHERE a = 'one'")->positionOf(*history().taken()));
  EXPECT_EQ(0, records("Select * from [u]")->positionOf(*history().taken()));
  EXPECT_EQ(0, records("SELECT count(*) FROM t")->positionOf(*history().taken()));
  doAgain();
  EXPECT_FALSE(history().taken());
}

TEST_F(HistoryTest, TellsWhetherTheRowsHaveStayed) {
  prepare(
      "CREATE TABLE t(a TEXT UNIQUE ON CONFLICT REPLACE, b TEXT); INSERT INTO t VALUES('one', '1'), ('two', "
      "'2');"
      "CREATE TABLE k(a TEXT PRIMARY KEY, b TEXT) WITHOUT ROWID; INSERT INTO k VALUES('one', '1');"
      "CREATE TABLE u(a TEXT); CREATE TABLE seen(a TEXT);"
      "CREATE TRIGGER r AFTER UPDATE ON k WHEN new.b = 'see' BEGIN INSERT INTO seen VALUES('x'); END");
  openKeeping();
  EXPECT_FALSE(history().hasKeptRows()) << "none was taken";
  const auto expectBothWays = [&](bool isKept, const char* what) {
    SCOPED_TRACE(what);
    takeBack();
    EXPECT_EQ(isKept, history().hasKeptRows()) << "taken back";
    doAgain();
    EXPECT_EQ(isKept, history().hasKeptRows()) << "done again";
  };
  change("t", 1, 1, "eins");
  expectBothWays(true, "a value");
  change("k", 1, 1, "eins");
  expectBothWays(true, "a value beside a key");
  run("UPDATE t SET b = b || '+'");
  expectBothWays(true, "values of many");
  addTo("u", "new");
  expectBothWays(false, "a row");
  remove("u", 1);
  expectBothWays(false, "a row that goes");
  change("t", 1, 0, "two");
  expectBothWays(false, "a value that takes another row's place");
  change("k", 1, 0, "zwei");
  expectBothWays(false, "a key");
  change("k", 1, 1, "see");
  expectBothWays(false, "a row that a trigger adds elsewhere");
  history().keep(kPlenty);
  EXPECT_FALSE(history().hasKeptRows());
}

TEST_F(HistoryTest, AStepThatFailsHasKeptNoRows) {
  prepare("CREATE TABLE t(a TEXT); INSERT INTO t VALUES('one')");
  openKeeping();
  change("t", 1, 0, "eins");
  takeBack();
  ASSERT_TRUE(history().hasKeptRows());
  EXPECT_FALSE(history().take(Way::back));
  EXPECT_FALSE(history().hasKeptRows());
}

TEST_F(HistoryTest, ARecordIsCalledByItsFirstTextElseItsFirstValue) {
  prepare(
      "CREATE TABLE t(n INTEGER, b BLOB, x TEXT, y TEXT); INSERT INTO t VALUES(1, x'00', '', 'Ulysses'), "
      "(2, x'00', NULL, ' '), (NULL, x'00', NULL, NULL), (4, NULL, 'a' || char(13, 10) || 'b', ''),"
      "(5, NULL, printf('%.*c', 100, 'x') || 'y', NULL), (6, NULL, replace(hex(zeroblob(40)), '0', 'ä'), "
      "'')");
  openKeeping();
  std::string all;
  for (int n = 0; n < 6; ++n) {
    remove("t", 1);
    all += history().next(Way::back)->caption + "|";
  }
  std::string umlauts;
  for (int n = 0; n < 30; ++n) umlauts += "ä";
  EXPECT_EQ("Ulysses|2||a  b|" + std::string(60, 'x') + "…|" + umlauts + "…|", all);
}

TEST_F(HistoryTest, ATableOf900Columns) {
  std::string columns;
  for (int n = 0; n < 900; ++n) columns += (n == 0 ? "c" : ", c") + std::to_string(n);
  prepare("CREATE TABLE t(" + columns + "); INSERT INTO t(c0, c899) VALUES('one', 1), ('two', 2)");
  openKeeping();
  const std::string before = contentOf("t");
  remove("t", 1);
  change("t", 1, 0, "zwei");
  addTo("t", "three");
  for (int n = 0; n < 3; ++n) takeBack();
  EXPECT_EQ(before, contentOf("t"));
  for (int n = 0; n < 3; ++n) doAgain();
  for (int n = 0; n < 3; ++n) takeBack();
  EXPECT_EQ(before, contentOf("t"));
}

TEST_F(HistoryTest, KeysThatChangePlacesComeBack) {
  prepare(
      "CREATE TABLE t(k INTEGER PRIMARY KEY, u INTEGER UNIQUE); INSERT INTO t VALUES(1, 1), (2, 2), (3, 3)");
  openKeeping();
  const std::string before = contentOf("t");
  run("UPDATE t SET u = -u");
  run("UPDATE t SET u = iif(k = 3, 1, k + 1)");
  const std::string behind = contentOf("t");
  takeBack();
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
  doAgain();
  doAgain();
  EXPECT_EQ(behind, contentOf("t"));
}

}  // namespace
}  // namespace store
