// A table that was deleted comes back alone.
#include "platform/store/sqlite/files/durable_file.h"
#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

class TableReturnTest : public CopiesTest {
 protected:
  void SetUp() override {
    CopiesTest::SetUp();
    prepare(
        "CREATE TABLE \"odd 'name\" (n Integer PRIMARY KEY AUTOINCREMENT, twice AS (n * 2) STORED, word "
        "Text);"
        "INSERT INTO \"odd 'name\" (n, word) VALUES (5, 'five'), (90, 'ninety');"
        "DELETE FROM \"odd 'name\" WHERE n = 90;"
        "CREATE INDEX iw ON \"odd 'name\" (word); CREATE TABLE noted (w);"
        "CREATE TRIGGER tw AFTER INSERT ON \"odd 'name\" BEGIN INSERT INTO noted VALUES (new.word); END;"
        "CREATE TABLE k (x Text, y Integer, PRIMARY KEY (x, y)) WITHOUT ROWID; INSERT INTO k VALUES ('k', 1);"
        "DELETE FROM t WHERE a = 2");
    whole_ = contentOf(path_);
  }

  void drop(const std::string& table) {
    now_ += kSecond;
    openKeeping();
    ASSERT_TRUE(backend_->formerStates()->keepBeforeDeletion());
    run("DROP TABLE \"" + table + "\"");
    close();
    now_ += kSecond;
  }
  std::vector<std::string> missing(std::size_t copy = 0) {
    std::vector<std::string> tables;
    const Status status = goingBack().listMissingTables(utf8Of(path_), utf8Of(pathOfCopy(copy)), &tables);
    EXPECT_TRUE(status) << status.message();
    return tables;
  }
  Status putBack(const std::string& table, std::size_t copy = 0) {
    return goingBack().putTableBack(utf8Of(path_), utf8Of(pathOfCopy(copy)), table);
  }
  GoingBack goingBack() { return GoingBack(*copies_, 0, nullptr); }

  std::string whole_;
};

using Names = std::vector<std::string>;

TEST_F(TableReturnTest, ComesBackWithItsRowsIndexesTriggersAndNumbers) {
  drop("odd 'name");
  drop("k");
  drop("t");
  EXPECT_EQ(Names{"t"}, missing());
  EXPECT_EQ((Names{"t", "odd 'name", "k"}), (missing(2)));
  now_ += kSecond;
  for (const char* table : {"odd 'name", "k", "t"}) {
    const Status status = putBack(table, kept().size() - 1);
    ASSERT_TRUE(status) << table << ": " << status.message();
    now_ += kSecond;
  }
  EXPECT_EQ(whole_, contentOf(path_));
  EXPECT_EQ("90", inFile("SELECT seq FROM sqlite_sequence WHERE name = 'odd ''name'"));
  EXPECT_EQ("10", inFile("SELECT twice FROM \"odd 'name\""));
}

TEST_F(TableReturnTest, ThePresentStateIsKeptFirst) {
  drop("t");
  prepare("INSERT INTO k VALUES ('later', 2)");
  const std::string present = contentOf(path_);
  ASSERT_TRUE(putBack("t"));
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(CopyReason::goingBack, kept()[0].name.reason);
  EXPECT_EQ(present, contentOf(pathOfCopy(0)));
  EXPECT_EQ("2", inFile("SELECT count(*) FROM k")) << "what was changed since stays";
}

TEST_F(TableReturnTest, OneThatIsThereIsNotTouched) {
  drop("t");
  prepare("CREATE TABLE T (other); INSERT INTO T VALUES ('new')");
  const std::string present = contentOf(path_);
  EXPECT_EQ(Names{}, missing());
  EXPECT_EQ(ErrorCode::tableExists, putBack("t").code());
  EXPECT_EQ(present, contentOf(path_));
  EXPECT_EQ(1u, kept().size());
}

TEST_F(TableReturnTest, OneThatTheCopyDoesNotHaveIsTold) {
  drop("t");
  EXPECT_EQ(ErrorCode::noTable, putBack("never").code());
}

TEST_F(TableReturnTest, RecordsThatReferToNoneAreNotPutBack) {
  prepare(
      "CREATE TABLE parent (id Integer PRIMARY KEY); CREATE TABLE child (p Integer REFERENCES parent);"
      "INSERT INTO parent VALUES (1); INSERT INTO child VALUES (1)");
  drop("child");
  prepare("DELETE FROM parent");
  const std::string present = contentOf(path_);
  const Status status = putBack("child");
  EXPECT_EQ(ErrorCode::constraint, status.code()) << status.message();
  EXPECT_EQ(present, contentOf(path_));
  prepare("INSERT INTO parent VALUES (1)");
  EXPECT_TRUE(putBack("child"));
  EXPECT_EQ("1", inFile("SELECT p FROM child"));
}

TEST_F(TableReturnTest, ItWaitsForNobodyAndChangesNothingThen) {
  drop("t");
  const std::string present = contentOf(path_);
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE");
  EXPECT_EQ(ErrorCode::locked, putBack("t").code());
  other.run("ROLLBACK");
  EXPECT_EQ(present, contentOf(path_));
  EXPECT_EQ(1u, kept().size());
}

TEST_F(TableReturnTest, RecordsMayReferToEachOther) {
  prepare(
      "CREATE TABLE node (id Integer PRIMARY KEY, above Integer REFERENCES node);"
      "INSERT INTO node VALUES (1, 2), (2, 3), (3, NULL)");
  drop("node");
  const Status status = putBack("node");
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("1 2, 2 3, 3 ", inFile("SELECT group_concat(id || ' ' || ifnull(above, ''), ', ') FROM node"));
}

TEST_F(TableReturnTest, OfADamagedCopyNothingComesBack) {
  prepare("CREATE TABLE much (x); INSERT INTO much VALUES (zeroblob(100000))");
  drop("t");
  const std::string present = contentOf(path_);
  const std::filesystem::path copy = pathOfCopy(0);
  markReadOnly(utf8Of(copy), false);
  const std::string bytes = bytesOf(copy);
  writeBytes(copy, bytes.substr(0, bytes.size() - 4096));
  EXPECT_EQ(ErrorCode::damaged, putBack("t").code());
  EXPECT_EQ(present, contentOf(path_));
  EXPECT_EQ(1u, kept().size());
}

TEST_F(TableReturnTest, NotIntoAFileThatIsNotToBeWritten) {
  drop("t");
  const std::string present = contentOf(path_);
  markReadOnly(utf8Of(path_), true);
  EXPECT_EQ(ErrorCode::readOnly, putBack("t").code());
  markReadOnly(utf8Of(path_), false);
  EXPECT_EQ(present, contentOf(path_));
  EXPECT_EQ(1u, kept().size());
}

TEST_F(TableReturnTest, WhatHasItsRecordsElsewhereDoesNotComeBackAlone) {
  prepare("CREATE VIRTUAL TABLE f USING fts5(y); INSERT INTO f VALUES ('word')");
  drop("f");
  EXPECT_EQ(ErrorCode::notAvailable, putBack("f").code());
  EXPECT_EQ(1u, kept().size());
}

TEST_F(TableReturnTest, WhileThePresentStateIsKeptNobodyElseWrites) {
  drop("t");
  OtherProgram other(path_);
  int tries = 0;
  GoingBack asking(*copies_, 0, [&](Busy) {
    const std::vector<std::filesystem::path> files = filesOfCopies();
    if (std::any_of(files.begin(), files.end(), [](const std::filesystem::path& file) {
          return isUnfinishedName(utf8Of(file.filename()));
        })) {
      EXPECT_EQ(SQLITE_BUSY, other.tryRun("INSERT INTO k VALUES ('meanwhile', 3)") & 0xFF);
      ++tries;
    }
    return false;
  });
  const Status status = asking.putTableBack(utf8Of(path_), utf8Of(pathOfCopy(0)), "t");
  ASSERT_TRUE(status) << status.message();
  EXPECT_GT(tries, 0);
}

TEST_F(TableReturnTest, TheCopyThatItComesFromIsNotThrownAwayForTheNewOne) {
  for (int number = 0; number < 5; ++number) {
    now_ += kSecond;
    change("INSERT INTO k VALUES ('x', " + std::to_string(number + 10) + ")");
  }
  ASSERT_EQ(5u, kept().size());
  const std::filesystem::path oldest = pathOfCopy(4);
  now_ += kSecond;
  prepare("DROP TABLE t");
  ASSERT_TRUE(putBack("t", 4));
  EXPECT_TRUE(std::filesystem::exists(oldest));
}

TEST_F(TableReturnTest, OfADatabaseThatIsGoneAllTablesAreMissing) {
  drop("t");
  std::filesystem::remove(path_);
  EXPECT_EQ((Names{"t", "odd 'name", "noted", "k"}), missing());
}

}  // namespace
}  // namespace store
