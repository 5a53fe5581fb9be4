// The state before the first change of a session is kept, and nothing else is.
#include <chrono>
#include <thread>

#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

class FirstChangeTest : public CopiesTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    CopiesTest::SetUp();
    prepare(std::string("PRAGMA journal_mode = ") + GetParam());
    before_ = contentOf(path_);
  }

  void expectKeptOnce() {
    close();
    ASSERT_EQ(1u, kept().size());
    EXPECT_EQ(before_, contentOf(pathOfCopy(0)));
    EXPECT_EQ(CopyReason::change, kept()[0].name.reason);
    EXPECT_EQ(now_, kept()[0].name.time);
    expectNothingUnfinished();
  }
  void expectNothingKept() {
    close();
    EXPECT_TRUE(kept().empty());
    expectNothingUnfinished();
  }
  Status takeFailure() { return backend_->formerStates()->takeFailure(); }

  std::string before_;
};

INSTANTIATE_TEST_SUITE_P(Modes, FirstChangeTest, testing::Values("DELETE", "WAL"));

TEST_P(FirstChangeTest, ARecordThatIsChangedAddedOrDeleted) {
  openKeeping();
  // Records that are still there would keep the database open, which brings the copy in beside the test.
  auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("changed")) && rows->update());
  ASSERT_TRUE(rows->addNew() && rows->setValue(0, std::int64_t{4}) && rows->update());
  ASSERT_TRUE(rows->moveFirst() && rows->remove());
  rows.reset();
  EXPECT_EQ("3", inFile("SELECT count(*) FROM t"));
  expectKeptOnce();
}

TEST_P(FirstChangeTest, AStatement) {
  openKeeping();
  run("DELETE FROM t");
  run("INSERT INTO t VALUES (9, 'nine')");
  EXPECT_EQ("1", inFile("SELECT count(*) FROM t"));
  expectKeptOnce();
}

TEST_P(FirstChangeTest, AChangeOfTheStructure) {
  openKeeping();
  run("CREATE TABLE made (a Integer)");
  run("DROP TABLE t");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, WhatStandsInNoTransaction) {
  openKeeping();
  run("VACUUM");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, AnImport) {
  openKeeping();
  std::unique_ptr<TableLoad> load;
  ASSERT_TRUE(backend_->beginLoad({.table = "t", .columns = {"a", "b"}}, &load));
  const std::vector<Cell> row(2);
  ASSERT_TRUE(load->add(row));
  ASSERT_TRUE(load->commit());
  load.reset();
  EXPECT_EQ("4", inFile("SELECT count(*) FROM t"));
  expectKeptOnce();
}

TEST_P(FirstChangeTest, AChangeThatIsTakenBackIsOneOfTheSameSession) {
  openKeeping();
  backend_->history()->keep(1'000'000);
  run("DELETE FROM t WHERE a = 1");
  ASSERT_TRUE(backend_->history()->take(ChangeHistory::Way::back));
  EXPECT_EQ("3", inFile("SELECT count(*) FROM t"));
  expectKeptOnce();
}

TEST_P(FirstChangeTest, EachSessionHasItsOwn) {
  change("UPDATE t SET b = 'first'");
  now_ += kHour;
  const std::string between = contentOf(path_);
  change("UPDATE t SET b = 'second'");
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(between, contentOf(pathOfCopy(0)));
  EXPECT_EQ(before_, contentOf(pathOfCopy(1)));
}

TEST_P(FirstChangeTest, NothingWhileNothingIsChanged) {
  openKeeping();
  EXPECT_EQ("1 2 3", columnOf("Select * from [t]"));
  EXPECT_TRUE(backend_->tryWriting());
  run("DELETE FROM t WHERE a > 100");
  run("UPDATE t SET b = b WHERE 0");
  expectNothingKept();
}

TEST_P(FirstChangeTest, NothingOfAChangeThatWasRefused) {
  prepare("CREATE UNIQUE INDEX u ON t (a)");
  openKeeping();
  EXPECT_EQ(ErrorCode::constraint, tryRun("INSERT INTO t VALUES (10, 'x'), (1, 'again')").code());
  EXPECT_EQ(ErrorCode::errorsInCommand, tryRun("CREATE TABLE x (").code());
  expectNothingKept();
}

TEST_P(FirstChangeTest, WithoutAFolderNothingIsKept) {
  open();
  EXPECT_EQ(nullptr, backend_->formerStates());
  run("DELETE FROM t");
  expectNothingKept();
}

TEST_P(FirstChangeTest, AfterARefusedChangeOtherProgramsChangesBelongToTheFormerState) {
  prepare("CREATE UNIQUE INDEX u ON t (a)");
  openKeeping();
  EXPECT_EQ(ErrorCode::constraint, tryRun("INSERT INTO t VALUES (1, 'again')").code());
  prepare("INSERT INTO t VALUES (7, 'by another')");
  before_ = contentOf(path_);
  run("DELETE FROM t");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, AfterARefusedCommitTheSameCopyServes) {
  openKeeping();
  OtherProgram reader(path_);
  const bool isWriteAhead = std::string(GetParam()) == "WAL";
  if (!isWriteAhead) {
    reader.run("BEGIN; SELECT * FROM t");
    EXPECT_EQ(ErrorCode::locked, tryRun("DELETE FROM t").code());
    reader.run("COMMIT");
  }
  now_ += kHour;
  const std::int64_t begun = isWriteAhead ? now_ : now_ - kHour;
  run("DELETE FROM t");
  close();
  ASSERT_EQ(1u, kept().size());
  EXPECT_EQ(begun, kept()[0].name.time);
  EXPECT_EQ(before_, contentOf(pathOfCopy(0)));
}

TEST_P(FirstChangeTest, NothingIsLeftOfAChangeThatCouldNotBeCommitted) {
  if (std::string(GetParam()) == "WAL") GTEST_SKIP() << "readers don't hinder a commit there";
  openKeeping();
  OtherProgram reader(path_);
  reader.run("BEGIN; SELECT * FROM t");
  EXPECT_EQ(ErrorCode::locked, tryRun("DELETE FROM t").code());
  expectNothingKept();
}

TEST_P(FirstChangeTest, AFileOfManyPiecesIsCopiedToTheByte) {
  prepare("INSERT INTO t VALUES (7, randomblob(1000000)); PRAGMA journal_mode = DELETE");
  const std::string bytes = bytesOf(path_);
  ASSERT_GT(bytes.size(), 1'000'000u);
  openKeeping();
  run("DELETE FROM t");
  close();
  ASSERT_EQ(1u, kept().size());
  EXPECT_TRUE(bytes == bytesOf(pathOfCopy(0)));
}

TEST_P(FirstChangeTest, ManyPagesInTheLogAreInTheCopy) {
  OtherProgram other(path_);
  other.run("PRAGMA wal_autocheckpoint = 0; INSERT INTO t VALUES (7, hex(randomblob(500000)))");
  before_ = contentOf(path_);
  openKeeping();
  run("DELETE FROM t");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, WhatOthersHaveInTheLogIsInTheCopy) {
  OtherProgram other(path_);
  other.run("PRAGMA wal_autocheckpoint = 0; INSERT INTO t VALUES (7, 'in the log')");
  before_ = contentOf(path_);
  openKeeping();
  run("DELETE FROM t");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, OthersReadMeanwhileAndTheirTransactionsStayAsTheyAre) {
  OtherProgram reader(path_);
  if (std::string(GetParam()) == "WAL") reader.run("BEGIN");
  EXPECT_EQ("3", reader.ask("SELECT count(*) FROM t"));
  openKeeping();
  run("DELETE FROM t");
  EXPECT_EQ(std::string(GetParam()) == "WAL" ? "3" : "0", reader.ask("SELECT count(*) FROM t"));
  reader.tryRun("COMMIT");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, TwoAtOnceHaveOneEach) {
  openKeeping();
  std::shared_ptr<Backend> first = backend_;
  openKeeping();
  run("INSERT INTO t VALUES (4, 'second')");
  std::shared_ptr<Backend> second = backend_;
  backend_ = first;
  now_ += kSecond;
  run("INSERT INTO t VALUES (5, 'first')");
  // As long as one is open its copy may get another name, once its records are counted.
  backend_.reset();
  first.reset();
  second.reset();
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ("3", OtherProgram(pathOfCopy(1)).ask("SELECT count(*) FROM t"));
  EXPECT_EQ("4", OtherProgram(pathOfCopy(0)).ask("SELECT count(*) FROM t"));
}

TEST_P(FirstChangeTest, AfterTheClockWasSetBackTheNewCopyStays) {
  for (int number = 0; number < 5; ++number) {
    now_ += kSecond;
    change("INSERT INTO t VALUES (9, 'x')");
  }
  now_ -= kHour;
  before_ = contentOf(path_);
  change("DELETE FROM t");
  ASSERT_EQ(6u, kept().size());
  EXPECT_EQ(before_, contentOf(pathOfCopy(5)));
}

TEST_P(FirstChangeTest, TheNameSaysHowManyRecordsThereAreAndTheCopyIsMarked) {
  prepare(
      "CREATE TABLE other (x); INSERT INTO other VALUES (1), (2); CREATE VIEW v AS SELECT * FROM t;"
      "CREATE VIRTUAL TABLE f USING fts5(y); INSERT INTO f VALUES ('of a virtual table')");
  openKeeping();
  run("DELETE FROM t");
  // The counting may be broken off when the file is closed.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  const auto isCounted = [&] {
    // One look at the folder: while the copy gets its other name the next one may find none.
    const auto copies = kept();
    return !copies.empty() && copies[0].name.records;
  };
  while (!isCounted() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  close();
  ASSERT_EQ(1u, kept().size());
  EXPECT_EQ(5, kept()[0].name.records);
  EXPECT_TRUE((std::filesystem::status(pathOfCopy(0)).permissions() & std::filesystem::perms::owner_write) ==
              std::filesystem::perms::none);
}

TEST_P(FirstChangeTest, OlderCopiesGo) {
  for (int number = 0; number < 8; ++number) {
    now_ += kSecond;
    change("INSERT INTO t VALUES (" + std::to_string(10 + number) + ", 'x')");
  }
  ASSERT_EQ(5u, kept().size());
  EXPECT_EQ("10", OtherProgram(pathOfCopy(0)).ask("SELECT count(*) FROM t"));
  EXPECT_EQ("6", OtherProgram(pathOfCopy(4)).ask("SELECT count(*) FROM t"));
}

TEST_P(FirstChangeTest, ADeletionIsKeptBeforeItAndNeedsNoSecondCopy) {
  openKeeping();
  ASSERT_TRUE(backend_->formerStates()->keepBeforeDeletion());
  run("DROP TABLE t");
  run("CREATE TABLE another (a)");
  close();
  ASSERT_EQ(1u, kept().size());
  EXPECT_EQ(CopyReason::tableDeletion, kept()[0].name.reason);
  EXPECT_EQ(3, kept()[0].name.records);
  EXPECT_EQ(before_, contentOf(pathOfCopy(0)));
}

TEST_P(FirstChangeTest, ALaterDeletionIsKeptToo) {
  openKeeping();
  run("INSERT INTO t VALUES (4, 'four')");
  now_ += kSecond;
  const std::string between = contentOf(path_);
  ASSERT_TRUE(backend_->formerStates()->keepBeforeDeletion());
  run("DROP TABLE t");
  close();
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(between, contentOf(pathOfCopy(0)));
  EXPECT_EQ(before_, contentOf(pathOfCopy(1)));
}

TEST_P(FirstChangeTest, ADeletionIsNotKeptWhileAnotherProgramWrites) {
  openKeeping();
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE; INSERT INTO t VALUES (8, 'unfinished')");
  EXPECT_EQ(ErrorCode::locked, backend_->formerStates()->keepBeforeDeletion().code());
  other.run("ROLLBACK");
  expectNothingKept();
}

// ---- What can't be kept

TEST_P(FirstChangeTest, AfterADeletionThatCouldNotBeKeptTheNextChangeIsStillTheFirst) {
  openKeeping();
  free_ = 100;
  EXPECT_EQ(ErrorCode::tooLarge, backend_->formerStates()->keepBeforeDeletion().code());
  free_.reset();
  run("DELETE FROM t");
  EXPECT_TRUE(takeFailure());
  expectKeptOnce();
}

TEST_P(FirstChangeTest, WhatTakesTooLongIsGivenUpAndTheChangeIsMade) {
  CopySettings hurried = settings();
  hurried.mostWait = std::chrono::milliseconds(0);
  copies_ = std::make_shared<CopyFolder>(hurried);
  openKeeping();
  run("DELETE FROM t");
  const Status failure = takeFailure();
  EXPECT_EQ(ErrorCode::inputOutput, failure.code());
  EXPECT_EQ("It takes longer than five seconds.", failure.message());
  EXPECT_EQ("0", inFile("SELECT count(*) FROM t"));
  expectNothingKept();
}

TEST_P(FirstChangeTest, AFileThatIsTooLargeIsChangedAllTheSameAndSaidOnce) {
  free_ = 100;
  openKeeping();
  EXPECT_TRUE(takeFailure());
  run("DELETE FROM t WHERE a = 1");
  EXPECT_EQ(ErrorCode::tooLarge, takeFailure().code());
  EXPECT_TRUE(takeFailure()) << "once";
  run("DELETE FROM t WHERE a = 2");
  EXPECT_TRUE(takeFailure());
  EXPECT_EQ(ErrorCode::tooLarge, backend_->formerStates()->keepBeforeDeletion().code());
  openKeeping();
  run("DELETE FROM t WHERE a = 3");
  EXPECT_TRUE(takeFailure()) << "nor in another session";
  EXPECT_EQ("0", inFile("SELECT count(*) FROM t"));
  expectNothingKept();
}

TEST_P(FirstChangeTest, TheLogIsPartOfTheSize) {
  OtherProgram other(path_);
  other.run("PRAGMA wal_autocheckpoint = 0; INSERT INTO t VALUES (7, hex(randomblob(100000)))");
  free_ = 10 * 100'000;
  openKeeping();
  run("DELETE FROM t");
  EXPECT_EQ(ErrorCode::tooLarge, takeFailure().code());
  expectNothingKept();
}

TEST_P(FirstChangeTest, WithoutAPlaceForItTheChangeIsMadeAndItIsSaid) {
  writeBytes(copiesPath(), "in the way");
  openKeeping();
  run("DELETE FROM t");
  const Status failure = takeFailure();
  EXPECT_EQ(ErrorCode::cannotOpen, failure.code());
  EXPECT_NE("", failure.message());
  EXPECT_EQ("0", inFile("SELECT count(*) FROM t"));
}

TEST_P(FirstChangeTest, WhoIsStoppedHasChangedNothing) {
  OpenOptions options{.lockWait = 0, .copies = copies_};
  bool isToStop = true;
  options.question = [&](Busy) { return isToStop; };
  isToStop = false;
  open(options);
  isToStop = true;
  EXPECT_EQ(ErrorCode::stopped, tryRun("DELETE FROM t").code());
  EXPECT_EQ("3", inFile("SELECT count(*) FROM t"));
  EXPECT_TRUE(takeFailure());
  isToStop = false;
  run("DELETE FROM t");
  expectKeptOnce();
}

TEST_P(FirstChangeTest, WhatCanOnlyBeReadHasNoFormerStates) {
  std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
  openKeeping();
  EXPECT_EQ(nullptr, backend_->formerStates());
  EXPECT_EQ(ErrorCode::readOnly, tryRun("DELETE FROM t").code());
  expectNothingKept();
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
}

TEST_P(FirstChangeTest, AFileThatIsOpenedToBeReadIsNotWrittenTo) {
  open({.lockWait = 0, .isReadOnly = true, .copies = copies_});
  EXPECT_TRUE(backend_->isReadOnly());
  EXPECT_EQ(ErrorCode::readOnly, tryRun("DELETE FROM t").code());
  EXPECT_EQ("1 2 3", columnOf("Select * from [t]"));
  expectNothingKept();
}

TEST_P(FirstChangeTest, AFileThatLostItsNameTakesNoChangeAndNothingIsKept) {
  if (std::filesystem::path::preferred_separator == '\\') GTEST_SKIP() << "open files keep their names";
  openKeeping();
  std::filesystem::rename(path_, folder_.file("elsewhere.cdb"));
  EXPECT_EQ(ErrorCode::fileGone, tryRun("DELETE FROM t").code());
  expectNothingKept();
}

}  // namespace
}  // namespace store
