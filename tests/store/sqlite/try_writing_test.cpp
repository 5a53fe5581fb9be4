// Whether a change could be stored, before there is one.
#include <chrono>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;

class TryWritingTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare("CREATE TABLE t (a Integer); INSERT INTO t VALUES (1); PRAGMA user_version=7");
  }
};

TEST_F(TryWritingTest, ItCanAndNothingIsChangedInEitherKindOfJournal) {
  for (const char* mode : {"PRAGMA journal_mode=DELETE", "PRAGMA journal_mode=WAL"}) {
    prepare(mode);
    const std::string before = bytesOf(path_);
    open();
    const Status status = backend_->tryWriting();
    EXPECT_TRUE(status) << mode << status.message();
    EXPECT_EQ(before, bytesOf(path_)) << mode;
    EXPECT_EQ(0, OtherProgram(path_).tryRun("BEGIN IMMEDIATE; ROLLBACK")) << mode << ": no lock is left";
    backend_.reset();
    EXPECT_EQ("7", OtherProgram(path_).ask("PRAGMA user_version"));
    EXPECT_FALSE(fs::exists(path_.string() + "-journal"));
  }
}

TEST_F(TryWritingTest, ARecordThatIsBegunStaysBegun) {
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(0, std::int64_t{2}));
  EXPECT_TRUE(backend_->tryWriting());
  EXPECT_EQ("2", textOf(*rows, 0));
  EXPECT_TRUE(rows->update());
  EXPECT_EQ("2", OtherProgram(path_).ask("SELECT a FROM t"));
}

TEST_F(TryWritingTest, AFileThatIsMarkedReadOnlyCanNot) {
  fs::permissions(path_, fs::perms::owner_read);
  open();
  const Status status = backend_->tryWriting();
  EXPECT_EQ(ErrorCode::readOnly, status.code());
  EXPECT_EQ("The database can only be read.", status.message());
}

TEST_F(TryWritingTest, AnotherProgramsLockSaysNothingAndIsNotWaitedFor) {
  open();
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE");
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(backend_->tryWriting());
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2)) << "it waits for five else";
}

}  // namespace
}  // namespace store
