// The open file is deleted, or another one takes its place, as programs do that keep folders in step.
#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;

/// Windows lets nobody delete or rename a file that is open. Under Wine the folder that holds it can be
/// renamed all the same, and that takes its name from the file on every system.
class LostNameTest : public StoreTest {
 protected:
  LostNameTest() : place_(folder_.file("place")) {
    fs::create_directory(place_);
    path_ = place_ / "data.cdb";
  }
  void SetUp() override {
    StoreTest::SetUp();
    fill(path_, "ours");
  }
  void TearDown() override { backend_.reset(); }

  static void fill(const fs::path& path, const std::string& word) {
    OtherProgram(path).run(
        "CREATE TABLE t (a Integer, b Text); WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM "
        "s "
        "WHERE i < 300) INSERT INTO t SELECT i, '" +
        word + "' || printf('%0500d', 0) FROM s");
  }

  void take() { fs::rename(place_, away_); }
  void giveBack() {
    fs::remove_all(place_);
    fs::rename(away_, place_);
  }
  /// Another database stands under the name of the open one then.
  void replace(const std::string& mode = "DELETE") {
    take();
    fs::create_directory(place_);
    prepare("PRAGMA journal_mode = " + mode);
    fill(path_, "theirs");
  }

  /// The first word of the record that is read anew.
  static std::string wordOf(Recordset& rows) {
    EXPECT_TRUE(rows.moveLast());
    EXPECT_TRUE(rows.moveFirst());
    return textOf(rows, 1).substr(0, textOf(rows, 1).find('0'));
  }

  void expectEachChangeRefused(Recordset& rows, ErrorCode code) {
    EXPECT_EQ(code, backend_->checkFile().code());
    ASSERT_TRUE(rows.setValue(1, std::string("typed")));
    EXPECT_EQ(code, rows.update().code());
    EXPECT_EQ("typed", textOf(rows, 1)) << "what was typed is kept";
    ASSERT_TRUE(rows.cancelUpdate());
    EXPECT_EQ(code, rows.remove().code());
    ASSERT_TRUE(rows.addNew());
    ASSERT_TRUE(rows.setValue(0, std::int64_t{1000}));
    EXPECT_EQ(code, rows.update().code());
    ASSERT_TRUE(rows.cancelUpdate());
    for (const char* sql : {"DELETE FROM t", "INSERT INTO t VALUES (1, 'x')", "CREATE TABLE u (a Integer)",
                            "DROP TABLE t", "VACUUM", "ANALYZE"}) {
      const Status status = tryRun(sql);
      EXPECT_EQ(code, status.code()) << sql << ": " << status.message();
    }
    EXPECT_EQ(300, rows.recordCount());
    EXPECT_EQ("300", columnOf("SELECT count(*) FROM t"));
  }

  const fs::path place_;
  const fs::path away_ = folder_.file("away");
};

TEST_F(LostNameTest, AFileThatHasItsNameIsSaidToHaveIt) {
  open();
  EXPECT_TRUE(backend_->checkFile());
  run("INSERT INTO t VALUES (1, 'x')");
  EXPECT_TRUE(backend_->checkFile());
}

TEST_F(LostNameTest, NothingIsAcknowledgedInADeletedFile) {
  for (const char* mode : {"DELETE", "WAL"}) {
    SCOPED_TRACE(mode);
    prepare("PRAGMA journal_mode = " + std::string(mode));
    open();
    const auto rows = records("Select * from [t]");
    take();
    expectEachChangeRefused(*rows, ErrorCode::fileGone);
    EXPECT_EQ("ours", wordOf(*rows)) << "reading goes on";
    EXPECT_FALSE(fs::exists(place_)) << "nothing was made where the file was";
    giveBack();
    EXPECT_TRUE(backend_->checkFile());
    ASSERT_TRUE(rows->setValue(0, std::int64_t{7}));
    EXPECT_TRUE(rows->update()) << "with its name the file takes changes again";
    backend_.reset();
  }
}

TEST_F(LostNameTest, NothingIsAcknowledgedInAReplacedFileAndTheOtherOneIsLeftAlone) {
  for (const char* mode : {"DELETE", "WAL"}) {
    SCOPED_TRACE(mode);
    prepare("PRAGMA journal_mode = " + std::string(mode));
    open();
    auto rows = records("Select * from [t]");
    replace();
    const std::string theirs = bytesOf(path_);
    expectEachChangeRefused(*rows, ErrorCode::fileReplaced);
    EXPECT_EQ("ours", wordOf(*rows));
    rows.reset();
    backend_.reset();
    EXPECT_TRUE(theirs == bytesOf(path_));
    giveBack();
  }
}

TEST_F(LostNameTest, AChangeThatWasBegunBeforeIsRefusedToo) {
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("before")));
  ASSERT_TRUE(rows->update());
  ASSERT_TRUE(rows->setValue(1, std::string("typed")));
  replace();
  EXPECT_EQ(ErrorCode::fileReplaced, rows->update().code());
  ASSERT_TRUE(rows->cancelUpdate());
  EXPECT_EQ("before", textOf(*rows, 1));
}

TEST_F(LostNameTest, TheJournalOfTheOtherFileIsNeitherUndoneNorDeleted) {
  open();
  auto rows = records("Select * from [t]");
  EXPECT_EQ("ours", wordOf(*rows));
  replace();
  const fs::path journal = utf8Of(path_) + "-journal";
  // A cache of a few pages sends changed ones into the file before the end of the transaction.
  OtherProgram other(path_);
  other.run("PRAGMA cache_size = 5; BEGIN; UPDATE t SET b = upper(b) || 'y'");
  const std::string begun = bytesOf(journal);
  ASSERT_GT(begun.size(), 512u);
  EXPECT_EQ(ErrorCode::fileReplaced, backend_->checkFile().code());
  EXPECT_EQ("ours", wordOf(*rows));
  EXPECT_EQ("300", columnOf("SELECT count(*) FROM t WHERE b LIKE 'ours%'"));
  EXPECT_FALSE(tryRun("DELETE FROM t"));
  EXPECT_TRUE(begun == bytesOf(journal));
  rows.reset();
  backend_.reset();
  EXPECT_TRUE(begun == bytesOf(journal)) << "after the closing";
  other.run("COMMIT");
  EXPECT_EQ("300", other.ask("SELECT count(*) FROM t WHERE b LIKE 'THEIRS%y'"));
  EXPECT_EQ("ok", other.ask("PRAGMA integrity_check"));
}

TEST_F(LostNameTest, TheWriteAheadFilesOfTheOtherOneAreNeitherReadNorDeleted) {
  open();
  auto rows = records("Select * from [t]");
  EXPECT_EQ("ours", wordOf(*rows));
  replace("WAL");
  auto other = std::make_unique<OtherProgram>(path_);
  other->run("UPDATE t SET b = upper(b)");
  EXPECT_EQ("ours", wordOf(*rows));
  EXPECT_EQ("300", columnOf("SELECT count(*) FROM t WHERE b LIKE 'ours%'"));
  rows.reset();
  backend_.reset();
  EXPECT_TRUE(fs::exists(utf8Of(path_) + "-wal"));
  EXPECT_TRUE(fs::exists(utf8Of(path_) + "-shm"));
  EXPECT_EQ("300", other->ask("SELECT count(*) FROM t WHERE b LIKE 'THEIRS%'"));
  other.reset();
  EXPECT_EQ("ok", OtherProgram(path_).ask("PRAGMA integrity_check"));
  EXPECT_EQ("300", OtherProgram(path_).ask("SELECT count(*) FROM t WHERE b LIKE 'THEIRS%'"));
}

TEST_F(LostNameTest, WhatIsOpenIsSavedUnderAnotherName) {
  const fs::path copy = folder_.file("copy ü.cdb");
  for (const char* mode : {"DELETE", "WAL"}) {
    SCOPED_TRACE(mode);
    prepare("PRAGMA journal_mode = " + std::string(mode));
    open();
    run("INSERT INTO t VALUES (301, 'last')");
    take();
    const Status status = backend_->saveCopy(utf8Of(copy));
    EXPECT_TRUE(status) << status.message();
    EXPECT_FALSE(fs::exists(utf8Of(copy) + "-journal"));
    EXPECT_EQ(ErrorCode::fileGone, backend_->checkFile().code()) << "the backend stays with its own";
    EXPECT_EQ("ok", OtherProgram(copy).ask("PRAGMA integrity_check"));
    EXPECT_EQ("301", OtherProgram(copy).ask("SELECT count(*) FROM t"));
    EXPECT_EQ("last", OtherProgram(copy).ask("SELECT b FROM t WHERE a = 301"));
    EXPECT_EQ(OtherProgram(copy).ask("PRAGMA application_id"), "1367766638");
    giveBack();
    run("DELETE FROM t WHERE a = 301");
    backend_.reset();
    fs::remove(copy);
  }
}

TEST_F(LostNameTest, ACopyTakesNobodysPlaceAndLeavesNothingWhenItFails) {
  open();
  const fs::path taken = folder_.file("taken");
  writeBytes(taken, "theirs");
  EXPECT_EQ(ErrorCode::fileExists, backend_->saveCopy(utf8Of(taken)).code());
  EXPECT_EQ("theirs", bytesOf(taken));
  EXPECT_EQ(ErrorCode::fileExists, backend_->saveCopy(utf8Of(path_)).code());
  EXPECT_EQ(ErrorCode::fileExists, backend_->saveCopy(utf8Of(place_)).code());
  EXPECT_EQ(ErrorCode::cannotOpen, backend_->saveCopy(utf8Of(folder_.file("missing") / "x.cdb")).code());
  EXPECT_EQ(ErrorCode::cannotOpen, backend_->saveCopy("").code());
  EXPECT_EQ(ErrorCode::cannotOpen, backend_->saveCopy(std::string("a\0b", 3)).code());

  OtherProgram other(path_);
  other.run("BEGIN EXCLUSIVE");
  backend_.reset();
  EXPECT_EQ(ErrorCode::noTable, storeWithoutDatabase()->saveCopy(utf8Of(folder_.file("none"))).code());
  EXPECT_FALSE(fs::exists(folder_.file("none")));
}

TEST_F(LostNameTest, ACopyOfALockedFileFailsAndLeavesNothing) {
  open({.lockWait = 0});
  OtherProgram other(path_);
  other.run("BEGIN EXCLUSIVE");
  const fs::path copy = folder_.file("copy.cdb");
  EXPECT_EQ(ErrorCode::locked, backend_->saveCopy(utf8Of(copy)).code());
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_FALSE(fs::exists(utf8Of(copy) + "-journal"));
  other.run("COMMIT");
  EXPECT_TRUE(backend_->saveCopy(utf8Of(copy)));
}

}  // namespace
}  // namespace store
