// A copy in the place of the database.
#include "platform/store/sqlite/copies/going_back.h"

#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/files/durable_file.h"
#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

class GoingBackTest : public CopiesTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    CopiesTest::SetUp();
    prepare(std::string("PRAGMA journal_mode = ") + GetParam());
    former_ = contentOf(path_);
    change("UPDATE t SET b = 'later'");
    prepare("CREATE TABLE another (x); INSERT INTO another VALUES (zeroblob(20000))");
    present_ = contentOf(path_);
    ASSERT_EQ(1u, kept().size());
    copy_ = pathOfCopy(0);
    now_ += kHour;
  }
  bool isWriteAhead() const { return std::string(GetParam()) == "WAL"; }

  void expectUnchanged() {
    EXPECT_EQ(present_, contentOf(path_));
    EXPECT_EQ(keptBefore_, kept().size()) << "nothing was changed, so there is no former state";
    expectNothingUnfinished();
  }
  void expectGoneBack() {
    EXPECT_EQ(former_, contentOf(path_));
    ASSERT_EQ(keptBefore_ + 1, kept().size());
    EXPECT_EQ(CopyReason::goingBack, kept()[0].name.reason);
    EXPECT_EQ(present_, contentOf(pathOfCopy(0)));
    EXPECT_EQ(former_, contentOf(pathOfCopy(1)));
    expectNothingUnfinished();
  }

  std::string former_;
  std::string present_;
  std::filesystem::path copy_;
  std::size_t keptBefore_ = 1;
};

INSTANTIATE_TEST_SUITE_P(Modes, GoingBackTest, testing::Values("DELETE", "WAL"));

TEST_P(GoingBackTest, TheFormerStateIsBackAndThePresentOneIsACopy) {
  const Status status = putBack(copy_);
  ASSERT_TRUE(status) << status.message();
  expectGoneBack();
  EXPECT_EQ(isWriteAhead() ? "wal" : "delete", inFile("PRAGMA journal_mode"));
  EXPECT_FALSE(std::filesystem::exists(utf8Of(path_) + "-journal"));
}

TEST_P(GoingBackTest, AndForthAgain) {
  ASSERT_TRUE(putBack(copy_));
  now_ += kHour;
  ASSERT_TRUE(putBack(pathOfCopy(0)));
  EXPECT_EQ(present_, contentOf(path_));
  EXPECT_EQ(3u, kept().size());
}

TEST_P(GoingBackTest, OtherProgramsThatHaveTheFileOpenSeeIt) {
  OtherProgram other(path_);
  EXPECT_EQ("later", other.ask("SELECT b FROM t WHERE a = 1"));
  ASSERT_TRUE(putBack(copy_));
  EXPECT_EQ("one", other.ask("SELECT b FROM t WHERE a = 1"));
  EXPECT_EQ("(none)", other.ask("SELECT name FROM sqlite_schema WHERE name = 'another'"));
  other.run("INSERT INTO t VALUES (4, 'by the other')");
  EXPECT_EQ("4", inFile("SELECT count(*) FROM t"));
  EXPECT_EQ("ok", inFile("PRAGMA integrity_check"));
}

TEST_P(GoingBackTest, AFileThatIsGoneIsMadeAnew) {
  // What is left of it beside would be taken for the new one's: its log, or a transaction to be undone.
  const std::filesystem::path beside = utf8Of(path_) + (isWriteAhead() ? "-wal" : "-journal");
  std::string left;
  {
    OtherProgram writer(path_);
    writer.run("PRAGMA wal_autocheckpoint = 0; PRAGMA cache_size = 1; BEGIN");
    writer.run("UPDATE t SET b = 'left over'; INSERT INTO another VALUES (zeroblob(2000000))");
    if (isWriteAhead()) writer.run("COMMIT");
    left = bytesOf(beside);
    if (!isWriteAhead()) writer.run("ROLLBACK");
  }
  ASSERT_GT(left.size(), 0u);
  std::filesystem::remove(path_);
  writeBytes(beside, left);
  ASSERT_TRUE(putBack(copy_));
  EXPECT_FALSE(std::filesystem::exists(beside));
  EXPECT_EQ(former_, contentOf(path_));
  EXPECT_EQ(1u, kept().size());
}

TEST_P(GoingBackTest, ADamagedDatabaseIsReplacedAndKeptAsItIs) {
  std::string damaged = bytesOf(path_);
  damaged.replace(0, 16, "no database here");
  writeBytes(path_, damaged);
  for (const char* beside : {"-wal", "-shm"}) std::filesystem::remove(utf8Of(path_) + beside);
  const Status status = putBack(copy_);
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ(former_, contentOf(path_));
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(damaged, bytesOf(pathOfCopy(0)));
}

TEST_P(GoingBackTest, ADamagedStructureIsReplacedToo) {
  std::string damaged = bytesOf(path_);
  damaged.replace(100, 300, 300, '\xEE');
  writeBytes(path_, damaged);
  for (const char* beside : {"-wal", "-shm"}) std::filesystem::remove(utf8Of(path_) + beside);
  const Status status = putBack(copy_);
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ(former_, contentOf(path_));
  EXPECT_EQ(2u, kept().size());
}

TEST_P(GoingBackTest, ADamagedCopyIsRefused) {
  markReadOnly(utf8Of(copy_), false);
  const std::string whole = bytesOf(copy_);
  std::string damaged = whole;
  damaged.replace(damaged.size() - 4096, 100, 100, '\x11');
  for (const std::string& bytes : {damaged, whole.substr(0, whole.size() - 4096), whole.substr(0, 50),
                                   std::string(), std::string("text")}) {
    writeBytes(copy_, bytes);
    const Status status = putBack(copy_);
    EXPECT_EQ(ErrorCode::damaged, status.code()) << bytes.size();
    EXPECT_TRUE(status.message().starts_with("The copy is damaged: ")) << status.message();
    expectUnchanged();
  }
}

TEST_P(GoingBackTest, WhatBreaksItsOwnRulesIsNoDamage) {
  prepare(
      "CREATE TABLE r (x Integer NOT NULL, CHECK (x > 5)); PRAGMA ignore_check_constraints = ON;"
      "INSERT INTO r VALUES (1);"
      "CREATE TABLE n (x Integer); INSERT INTO n VALUES (NULL); PRAGMA writable_schema = ON;"
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE n (x Integer NOT NULL)' WHERE name = 'n'");
  ASSERT_EQ("NULL value in n.x", inFile("PRAGMA quick_check(n)"));
  now_ += kHour;
  change("DELETE FROM r");
  ASSERT_EQ(2u, kept().size());
  const Status status = putBack(pathOfCopy(0));
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("1", inFile("SELECT x FROM r"));
  EXPECT_EQ("1", inFile("SELECT x IS NULL FROM n"));
}

TEST_P(GoingBackTest, ACopyThatIsGoneIsTold) {
  removeFile(utf8Of(copy_));
  const Status status = putBack(copy_);
  EXPECT_EQ(ErrorCode::damaged, status.code());
  EXPECT_EQ("The copy is damaged: The file does not exist.", status.message());
  EXPECT_EQ(present_, contentOf(path_));
}

TEST_P(GoingBackTest, WhileAnotherProgramWritesItIsRefused) {
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE; INSERT INTO t VALUES (8, 'unfinished')");
  EXPECT_EQ(ErrorCode::locked, putBack(copy_).code());
  other.run("ROLLBACK");
  expectUnchanged();
}

TEST_P(GoingBackTest, WhileAnotherProgramReadsItIsRefusedWhereReadersHinderWriters) {
  OtherProgram other(path_);
  other.run("BEGIN");
  EXPECT_EQ("later", other.ask("SELECT b FROM t WHERE a = 1"));
  if (isWriteAhead()) {
    ASSERT_TRUE(putBack(copy_));
    EXPECT_EQ("later", other.ask("SELECT b FROM t WHERE a = 1"));
    other.run("COMMIT");
    expectGoneBack();
  } else {
    EXPECT_EQ(ErrorCode::locked, putBack(copy_).code());
    other.run("COMMIT");
    expectUnchanged();
  }
}

TEST_P(GoingBackTest, TheWaitingForAnotherProgramCanBeGivenUp) {
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE");
  int asked = 0;
  const Status status = putBack(
      copy_, [&](Busy busy) { return busy == Busy::waiting && ++asked > 3; }, 60'000);
  EXPECT_EQ(ErrorCode::locked, status.code());
  EXPECT_EQ(4, asked);
  other.run("ROLLBACK");
  expectUnchanged();
}

TEST_P(GoingBackTest, StoppedAnywhereNothingHasChanged) {
  prepare("INSERT INTO t VALUES (9, zeroblob(5000000))");
  former_ = contentOf(path_);
  change("DELETE FROM t WHERE a < 3");
  present_ = contentOf(path_);
  ASSERT_EQ(2u, kept().size());
  copy_ = pathOfCopy(0);
  keptBefore_ = 2;
  now_ += kHour;
  int least = 0;
  bool isDone = false;
  int tries = 0;
  for (; !isDone && least < 100'000; least += 1 + least / 2, ++tries) {
    SCOPED_TRACE(least);
    int asked = 0;
    const Status status = putBack(copy_, [&](Busy) { return asked++ == least; });
    isDone = static_cast<bool>(status);
    if (isDone) break;
    EXPECT_EQ(ErrorCode::stopped, status.code()) << status.message();
    expectUnchanged();
    if (HasFailure()) return;
  }
  EXPECT_GT(tries, 5);
  expectGoneBack();
}

TEST_P(GoingBackTest, StoppedOnceThePresentStateIsKeptNothingIsChangedEither) {
  const Status status = putBack(copy_, [&](Busy) { return kept().size() > keptBefore_; });
  EXPECT_EQ(ErrorCode::stopped, status.code()) << status.message();
  expectUnchanged();
}

TEST_P(GoingBackTest, WhileThePresentStateIsKeptNobodyElseWrites) {
  OtherProgram other(path_);
  int tries = 0;
  const Status status = putBack(copy_, [&](Busy) {
    const std::vector<std::filesystem::path> files = filesOfCopies();
    if (std::none_of(files.begin(), files.end(), [](const std::filesystem::path& file) {
          return isUnfinishedName(utf8Of(file.filename()));
        })) {
      return false;
    }
    EXPECT_EQ(SQLITE_BUSY, other.tryRun("INSERT INTO t VALUES (8, 'meanwhile')") & 0xFF);
    ++tries;
    return false;
  });
  ASSERT_TRUE(status) << status.message();
  EXPECT_GT(tries, 0);
  expectGoneBack();
}

TEST_P(GoingBackTest, AFileThatIsNotToBeWrittenIsLeftAlone) {
  markReadOnly(utf8Of(path_), true);
  EXPECT_EQ(ErrorCode::readOnly, putBack(copy_).code());
  markReadOnly(utf8Of(path_), false);
  expectUnchanged();
}

TEST_P(GoingBackTest, WithoutRoomForThePresentStateNothingIsPutBack) {
  free_ = 100;
  EXPECT_EQ(ErrorCode::tooLarge, putBack(copy_).code());
  expectUnchanged();
}

TEST_P(GoingBackTest, PagesOfAnotherSizeComeBack) {
  prepare("PRAGMA journal_mode = DELETE; PRAGMA page_size = 1024; VACUUM;");
  prepare(std::string("PRAGMA journal_mode = ") + GetParam());
  ASSERT_EQ("1024", inFile("PRAGMA page_size"));
  ASSERT_TRUE(putBack(copy_));
  expectGoneBack();
  EXPECT_EQ("4096", inFile("PRAGMA page_size"));
  EXPECT_EQ(isWriteAhead() ? "wal" : "delete", inFile("PRAGMA journal_mode"));
}

TEST_P(GoingBackTest, TheCopyThatIsPutBackIsNotThrownAwayForTheNewOne) {
  for (int number = 0; number < 4; ++number) {
    now_ += kSecond;
    change("INSERT INTO another VALUES (1)");
  }
  ASSERT_EQ(5u, kept().size());
  now_ += kSecond;
  ASSERT_TRUE(putBack(pathOfCopy(4)));
  ASSERT_EQ(6u, kept().size());
  EXPECT_EQ(former_, contentOf(pathOfCopy(5)));
}

// ---- Deleted databases

TEST_P(GoingBackTest, ADeletedDatabaseCanBeHadBack) {
  ASSERT_TRUE(GoingBack(*copies_, 0, nullptr).keepBeforeDeletion(utf8Of(path_)));
  ASSERT_TRUE(dropDatabase(utf8Of(path_)));
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(CopyReason::databaseDeletion, kept()[0].name.reason);
  // There is little time for the count: where the machine has none it is not said.
  EXPECT_EQ(4, kept()[0].name.records.value_or(*countRecords(kept()[0].path, nullptr)));
  EXPECT_EQ(1u, copies_->databases().size());
  ASSERT_TRUE(putBack(pathOfCopy(0)));
  EXPECT_EQ(present_, contentOf(path_));
}

TEST_P(GoingBackTest, WhatIsToBeDeletedAndCanNotBeKeptIsTold) {
  GoingBack goingBack(*copies_, 0, nullptr);
  free_ = 100;
  EXPECT_EQ(ErrorCode::tooLarge, goingBack.keepBeforeDeletion(utf8Of(path_)).code());
  free_.reset();
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE");
  EXPECT_EQ(ErrorCode::locked, goingBack.keepBeforeDeletion(utf8Of(path_)).code());
  other.run("ROLLBACK");
  EXPECT_EQ(ErrorCode::cannotOpen, goingBack.keepBeforeDeletion(utf8Of(folder_.path())).code());
  EXPECT_EQ(ErrorCode::cannotOpen, goingBack.keepBeforeDeletion(utf8Of(folder_.file("none.cdb"))).code());
  writeBytes(folder_.file("text.cdb"), "no database");
  EXPECT_TRUE(goingBack.keepBeforeDeletion(utf8Of(folder_.file("text.cdb"))));
  EXPECT_TRUE(copies_->copiesOf(utf8Of(folder_.file("text.cdb"))).empty());
  expectUnchanged();
}

}  // namespace
}  // namespace store
