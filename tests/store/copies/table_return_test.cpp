// A table that was deleted comes back alone.
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

TEST_F(TableReturnTest, OfADatabaseThatIsGoneAllTablesAreMissing) {
  drop("t");
  std::filesystem::remove(path_);
  EXPECT_EQ((Names{"t", "odd 'name", "noted", "k"}), missing());
}

}  // namespace
}  // namespace store
