// Whether anybody else has changed the database, without reading it.
#include <chrono>
#include <string>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

class OthersChangesTest : public StoreTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare("PRAGMA journal_mode=" + std::string(GetParam()) +
            "; CREATE TABLE t (a Integer); INSERT INTO t VALUES (1)");
    open();
    isNew();
  }
  /// Whether the number is another one than the last time.
  bool isNew() {
    std::int64_t count = 0;
    const Status status = backend_->countOthersChanges(&count);
    EXPECT_TRUE(status) << status.message();
    const bool changed = count != last_;
    last_ = count;
    return changed;
  }

 private:
  std::int64_t last_ = -1;
};

TEST_P(OthersChangesTest, WithoutAnyTheNumberStays) {
  EXPECT_FALSE(isNew());
  EXPECT_EQ("1", columnOf("Select * from t"));
  EXPECT_FALSE(isNew()) << "reading is none";
  OtherProgram(path_).ask("SELECT count(*) FROM t");
  EXPECT_FALSE(isNew()) << "nor is another program's";
}

TEST_P(OthersChangesTest, EachOfAnotherProgramIsNoticedOnce) {
  OtherProgram other(path_);
  for (const char* sql : {"INSERT INTO t VALUES (2)", "UPDATE t SET a = 3 WHERE a = 2",
                          "DELETE FROM t WHERE a = 3", "CREATE TABLE u (b)", "VACUUM"}) {
    other.run(sql);
    EXPECT_TRUE(isNew()) << sql;
    EXPECT_FALSE(isNew()) << sql;
  }
  other.run("BEGIN; INSERT INTO t VALUES (4); ROLLBACK");
  EXPECT_FALSE(isNew()) << "it was undone";
}

TEST_P(OthersChangesTest, OurOwnAreNone) {
  run("INSERT INTO t VALUES (2)");
  EXPECT_FALSE(isNew());
  const auto rows = records("Select * from t");
  ASSERT_TRUE(rows->setValue(0, std::int64_t{7}));
  ASSERT_TRUE(rows->update());
  ASSERT_TRUE(rows->remove());
  EXPECT_FALSE(isNew());
  run("CREATE TABLE u (b)");
  run("VACUUM");
  EXPECT_FALSE(isNew());
}

TEST_P(OthersChangesTest, ThoseOfAnotherConnectionOfOursAre) {
  std::unique_ptr<Backend> second;
  ASSERT_TRUE(openDatabase(utf8Of(path_), {}, &second));
  std::int64_t affected = 0;
  std::unique_ptr<RowSource> rows;
  ASSERT_TRUE(second->run("INSERT INTO t VALUES (2)", &affected, &rows));
  EXPECT_TRUE(isNew());
}

// What is lent for the next reading would be as old as itself, and in the way of the others.
TEST_P(OthersChangesTest, TheyAreNoticedRightAfterAReading) {
  const auto rows = records("Select * from t");
  EXPECT_EQ("1", textOf(*rows, 0));
  isNew();
  EXPECT_EQ(0, OtherProgram(path_).tryRun("PRAGMA busy_timeout=0; INSERT INTO t VALUES (2)"));
  EXPECT_TRUE(isNew());
  EXPECT_EQ("1", textOf(*rows, 0));
}

TEST_P(OthersChangesTest, NobodyIsWaitedFor) {
  OtherProgram other(path_);
  other.run("BEGIN EXCLUSIVE");
  const auto begin = std::chrono::steady_clock::now();
  std::int64_t count = -7;
  Status status = backend_->countOthersChanges(&count);
  if (std::string(GetParam()) == "WAL") {
    // Readers are never locked out.
    EXPECT_TRUE(status) << status.message();
  } else {
    EXPECT_EQ(ErrorCode::locked, status.code());
    EXPECT_EQ(-7, count);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2)) << "it waits for five else";
  other.run("INSERT INTO t VALUES (2); COMMIT");
  EXPECT_TRUE(isNew());
}

INSTANTIATE_TEST_SUITE_P(, OthersChangesTest, testing::Values("DELETE", "WAL"),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace store
