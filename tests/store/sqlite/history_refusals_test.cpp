// What the history refuses to take back, and what it does not keep.
#include "platform/store/sqlite/history/change_recorder.h"
#include "tests/store/sqlite/history_fixture.h"

namespace store {
namespace {

using Way = ChangeHistory::Way;

// ---- Refusals

TEST_F(HistoryTest, ARecordThatAnotherProgramHasChangedIsLeftAlone) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1), ('two', 2)");
  openKeeping();
  addTo("t", "old");
  change("t", 1, 0, "eins");
  OtherProgram(path_).run("UPDATE t SET b = 99 WHERE rowid = 1");
  const std::string theirs = contentOf("t");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another program has changed the record since.");
  EXPECT_EQ(theirs, contentOf("t"));
  EXPECT_EQ("added t 'old' 1", told(Way::back)) << "what can never be taken back is in nobody's way";
  OtherProgram(path_).run("UPDATE t SET b = 5 WHERE a = 'old'");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another program has changed the record since.");
  EXPECT_EQ("", told(Way::back));
}

TEST_F(HistoryTest, ARecordThatAnotherProgramHasDeletedStaysDeleted) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1), ('two', 2)");
  openKeeping();
  change("t", 1, 0, "eins");
  OtherProgram(path_).run("DELETE FROM t WHERE rowid = 1");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another program has deleted the record.");
  EXPECT_EQ("2|two,2;", contentOf("t"));
}

TEST_F(HistoryTest, ARecordThatTookThePlaceOfADeletedOneIsLeftAlone) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER); INSERT INTO t VALUES('one', 1), ('two', 2)");
  openKeeping();
  remove("t", 2);
  OtherProgram(path_).run("INSERT INTO t VALUES('theirs', 2)");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another record stands in its place.");
  EXPECT_EQ("1|one,1;2|theirs,2;", contentOf("t"));
}

TEST_F(HistoryTest, ARowIdThatIsTakenIsLeftToItsOwnerWhereTheKeyIsAnother) {
  prepare("CREATE TABLE t(a TEXT PRIMARY KEY); INSERT INTO t VALUES('one'), ('two')");
  openKeeping();
  remove("t", 2);
  OtherProgram(path_).run("INSERT INTO t VALUES('theirs')");
  takeBack();
  EXPECT_EQ("1|one;2|theirs;3|two;", contentOf("t"));
}

TEST_F(HistoryTest, OfSeveralTheRowIdsThatAreTakenAreLeftToTheirOwnersToo) {
  prepare("CREATE TABLE t(a TEXT PRIMARY KEY); INSERT INTO t VALUES('one'), ('two'), ('three')");
  openKeeping();
  run("DELETE FROM t WHERE a <> 'one'");
  OtherProgram(path_).run("INSERT INTO t VALUES('theirs')");
  takeBack();
  EXPECT_EQ("1|one;2|theirs;3|three;4|two;", contentOf("t"));
}

TEST_F(HistoryTest, ALetterCaseCountsInARecordThatIsLeftAlone) {
  prepare(
      "CREATE TABLE t(a TEXT COLLATE NOCASE PRIMARY KEY, b TEXT COLLATE NOCASE); INSERT INTO t VALUES('one', "
      "'x')");
  openKeeping();
  addTo("t", "two");
  OtherProgram(path_).run("UPDATE t SET a = 'Two' WHERE a = 'two'");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another program has changed the record since.");
  change("t", 1, 1, "y");
  OtherProgram(path_).run("UPDATE t SET b = 'Y' WHERE a = 'one'");
  expectRefusal(Way::back, ErrorCode::changedElsewhere, "Another program has changed the record since.");
}

TEST_F(HistoryTest, ARuleOfTheDatabaseHoldsAtTheTakingBackToo) {
  prepare("CREATE TABLE t(a TEXT, u TEXT UNIQUE); INSERT INTO t VALUES('one', 'x'), ('two', 'y')");
  openKeeping();
  change("t", 1, 1, "z");
  OtherProgram(path_).run("UPDATE t SET u = 'x' WHERE a = 'two'");
  expectRefusal(Way::back, ErrorCode::constraint, "UNIQUE constraint failed: t.u");
  EXPECT_EQ("1|one,z;2|two,x;", contentOf("t"));
}

TEST_F(HistoryTest, ARuleThatWouldPutItInThePlaceOfAnotherOneDoesNot) {
  for (const char* rule : {"REPLACE", "IGNORE", "ROLLBACK", "FAIL", "ABORT"}) {
    SCOPED_TRACE(rule);
    remake(std::string("CREATE TABLE t(a TEXT, u TEXT UNIQUE ON CONFLICT ") + rule +
           "); INSERT INTO t VALUES('one', 'x'), ('two', 'y')");
    openKeeping();
    remove("t", 1);
    OtherProgram(path_).run("UPDATE t SET u = 'x' WHERE a = 'two'");
    const Status refused = history().take(Way::back);
    EXPECT_EQ(ErrorCode::constraint, refused.code()) << refused.message();
    EXPECT_EQ("2|two,x;", contentOf("t"));
    addTo("t", "still", 5);
  }
}

TEST_F(HistoryTest, RecordsThatOthersReferToStay) {
  prepare(
      "CREATE TABLE p(id INTEGER PRIMARY KEY); CREATE TABLE c(p REFERENCES p ON DELETE CASCADE);"
      "INSERT INTO p VALUES(1)");
  openKeeping();
  run("INSERT INTO p VALUES(2)");
  OtherProgram(path_).run("INSERT INTO c VALUES(2)");
  expectRefusal(Way::back, ErrorCode::constraint,
                "FOREIGN KEY constraint failed: records would refer to one that is not there.");
  EXPECT_EQ("1|2;", contentOf("c"));
}

TEST_F(HistoryTest, ATableThatIsGoneOrAnotherOne) {
  prepare("CREATE TABLE t(a TEXT); CREATE TABLE u(a TEXT); CREATE TABLE v(a TEXT)");
  openKeeping();
  addTo("v", "stays");
  addTo("t", "one");
  addTo("u", "two");
  OtherProgram(path_).run("ALTER TABLE u ADD b; DROP TABLE t");
  expectRefusal(Way::back, ErrorCode::structureChanged,
                "The table u is no longer there, or has got another structure.");
  expectRefusal(Way::back, ErrorCode::structureChanged,
                "The table t is no longer there, or has got another structure.");
  takeBack();
  EXPECT_EQ("", contentOf("v"));
}

TEST_F(HistoryTest, WhatCanPassIsTriedAgain) {
  prepare("CREATE TABLE t(a TEXT)");
  openKeeping({.lockWait = 0});
  addTo("t", "one");
  {
    OtherProgram other(path_);
    other.run("BEGIN IMMEDIATE");
    EXPECT_EQ(ErrorCode::locked, history().take(Way::back).code());
    EXPECT_EQ("added t 'one' 1", told(Way::back));
    other.run("ROLLBACK");
  }
  takeBack();
  EXPECT_EQ("", contentOf("t"));
}

TEST_F(HistoryTest, AFileThatHasLostItsNameTakesNothingBack) {
  prepare("CREATE TABLE t(a TEXT)");
  openKeeping();
  addTo("t", "one");
  std::error_code error;
  std::filesystem::rename(path_, folder_.file("other.cdb"), error);
  if (error) GTEST_SKIP() << "this system keeps open files under their names";
  EXPECT_EQ(ErrorCode::fileGone, history().take(Way::back).code());
  EXPECT_EQ("added t 'one' 1", told(Way::back));
  std::filesystem::rename(folder_.file("other.cdb"), path_);
  takeBack();
}

TEST_F(HistoryTest, ARecordsetThatWasOpenedBeforeShowsWhatCameBack) {
  prepare("CREATE TABLE t(a TEXT); INSERT INTO t VALUES('one'), ('two')");
  openKeeping();
  const auto rows = records("Select * from [t]");
  std::unique_ptr<Recordset> copy;
  ASSERT_TRUE(rows->clone(&copy));
  ASSERT_TRUE(rows->setValue(0, std::string("eins")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("eins", textOf(*copy, 0));
  takeBack();
  ASSERT_TRUE(copy->moveFirst());
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ("one", textOf(*copy, 0));
  EXPECT_EQ("one", textOf(*rows, 0));
  ASSERT_TRUE(rows->setValue(0, std::string("uno")));
  EXPECT_TRUE(rows->update()) << "it is what it was read as";
}

TEST_F(HistoryTest, StatementsThatWerePreparedBeforeTellOfEachRowToo) {
  prepare(
      "CREATE TABLE t(a TEXT); CREATE TABLE log(a TEXT); INSERT INTO t VALUES('one'), ('two');"
      "INSERT INTO log VALUES('x'), ('y'); CREATE TRIGGER u AFTER UPDATE ON t WHEN new.a = 'clear' BEGIN "
      "DELETE FROM log; END");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(0, std::string("once")));
  ASSERT_TRUE(rows->update());
  history().keep(kPlenty);
  ASSERT_TRUE(rows->setValue(0, std::string("clear")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("", contentOf("log"));
  takeBack();
  EXPECT_EQ("1|x;2|y;", contentOf("log"));
  ASSERT_TRUE(rows->moveFirst());
  ASSERT_TRUE(rows->setValue(0, std::string("clear")));
  ASSERT_TRUE(rows->update());
  takeBack();
  EXPECT_EQ("1|x;2|y;", contentOf("log")) << "also after one was taken";
}

TEST_F(HistoryTest, ATableThatIsEmptiedAfterATakingBackComesBackToo) {
  prepare("CREATE TABLE t(a TEXT); INSERT INTO t VALUES('one'), ('two')");
  openKeeping();
  const std::string before = contentOf("t");
  change("t", 1, 0, "eins");
  takeBack();
  run("DELETE FROM t");
  EXPECT_EQ("", contentOf("t"));
  takeBack();
  EXPECT_EQ(before, contentOf("t"));
}

TEST_F(HistoryTest, TheTakingOfManyRecordsCanBeStopped) {
  prepare("CREATE TABLE t(a TEXT, b INTEGER)");
  openKeeping();
  std::vector<std::string> texts;
  for (int n = 0; n < 5000; ++n) texts.push_back("row " + std::to_string(n));
  load("t", texts);
  int asked = 0;
  backend_->askWhileBusy([&asked](Busy) { return ++asked >= 3; });
  EXPECT_EQ(ErrorCode::stopped, history().take(Way::back).code());
  backend_->askWhileBusy({});
  EXPECT_EQ("5000", OtherProgram(path_).ask("SELECT count(*) FROM t"));
  takeBack();
  EXPECT_EQ("0", OtherProgram(path_).ask("SELECT count(*) FROM t"));
}

// ---- What is not kept

TEST_F(HistoryTest, NothingIsTakenBackPastWhatIsNotKept) {
  prepare("CREATE TABLE t(a TEXT PRIMARY KEY, b)");
  openKeeping();
  addTo("t", "one");
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(1, std::string("its key is null")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("", told(Way::back));
  addTo("t", "two");
  EXPECT_EQ("added t 'two' 1", told(Way::back));
  ASSERT_TRUE(rows->moveLast());
  ASSERT_TRUE(rows->remove());
  EXPECT_EQ("", told(Way::back)) << "its deletion neither";
}

TEST_F(HistoryTest, AKeyThatBecomesOneOfTheSameMeaningIsNotKept) {
  prepare("CREATE TABLE t(a TEXT COLLATE NOCASE PRIMARY KEY, b); INSERT INTO t VALUES('one', 1), ('two', 2)");
  openKeeping();
  change("t", 1, 1, "5");
  change("t", 1, 0, "ONE");
  EXPECT_EQ("", told(Way::back));
  change("t", 1, 0, "three");
  takeBack();
  EXPECT_EQ("1|ONE,5;2|two,2;", contentOf("t"));
}

TEST_F(HistoryTest, WhatCanNotBeKeptIsStoredNoneTheLess) {
  std::string columns;
  for (int n = 0; n < 901; ++n) columns += (n == 0 ? "c" : ", c") + std::to_string(n);
  for (const char* key : {"", " TEXT PRIMARY KEY"}) {
    std::string definition = columns;
    definition.insert(2, key);
    remake("CREATE TABLE t(" + definition + ")");
    openKeeping();
    addTo("t", "stored");
    EXPECT_EQ("", told(Way::back));
    EXPECT_EQ("stored", OtherProgram(path_).ask("SELECT c0 FROM t"));
  }
}

TEST_F(HistoryTest, ChangesOfWhatAVirtualTableStandsOnAreNotKept) {
  prepare(
      "CREATE TABLE t(a TEXT); CREATE VIRTUAL TABLE f USING fts5(a, content='t', content_rowid='rowid');"
      "CREATE TRIGGER i AFTER INSERT ON t BEGIN INSERT INTO f(rowid, a) VALUES(new.rowid, new.a); END");
  openKeeping();
  addTo("t", "one");
  EXPECT_EQ("", told(Way::back));
}

TEST_F(HistoryTest, TakesNoMoreMemoryThanItMay) {
  prepare("CREATE TABLE t(a TEXT)");
  open();
  history().keep(200'000);
  addTo("t", std::string(60'000, 'x'));
  addTo("t", std::string(60'000, 'y'));
  addTo("t", std::string(60'000, 'z'));
  addTo("t", std::string(60'000, 'w'));
  int steps = 0;
  while (history().next(Way::back) != nullptr) {
    takeBack();
    ++steps;
  }
  EXPECT_EQ(3, steps) << "the oldest is forgotten";
  addTo("t", "small");
  addTo("t", std::string(150'000, 'x'));
  EXPECT_EQ("", told(Way::back)) << "too large for one";
  run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
      "INSERT INTO t SELECT 'row ' || i FROM n");
  EXPECT_EQ("", told(Way::back));
  addTo("t", "small again");
  EXPECT_EQ("added t 'small again' 1", told(Way::back));
}

TEST_F(HistoryTest, GivesUpAtTheRowThatTakesMoreThanItMay) {
  prepare(
      "CREATE TABLE t(a INTEGER, b BLOB); WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
      "WHERE "
      "i < 40) INSERT INTO t SELECT i, zeroblob(1000000) FROM n");
  OtherProgram file(path_);
  ChangeRecorder recorder(file.handle());
  recorder.begin(2'500'000);
  file.run("DELETE FROM t WHERE a > 0");
  bool isKnown = true;
  Changeset changes;
  EXPECT_TRUE(recorder.read(&isKnown, &changes));
  EXPECT_FALSE(isKnown);
  ASSERT_EQ(1u, recorder.touched().size());
  EXPECT_GE(4u, recorder.touched().front().rowIds.size()) << "more are not remembered, nor their values";
}

}  // namespace
}  // namespace store
