// A disk that is full.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

#include "tests/store/faults/small_disk_linux.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;

class FullDiskTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    fs::create_directory(disk_);
    isMounted_ = mountSmallDisk(disk_, 1);
    if (!isMounted_) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
    ASSERT_TRUE(createDatabase(utf8Of(path_)));
    OtherProgram(path_).run(std::string("PRAGMA journal_mode = ") + GetParam() +
                            "; CREATE TABLE t (a Integer, b Text)");
    open();
  }
  void TearDown() override {
    rows_.reset();
    backend_.reset();
    if (!isMounted_) return;
    EXPECT_TRUE(removeSmallDisk(disk_)) << "a file on it was left open";
  }

  void open() {
    rows_.reset();
    std::unique_ptr<Backend> opened;
    ASSERT_TRUE(openDatabase(utf8Of(path_), {}, &opened));
    backend_ = std::move(opened);
    std::unique_ptr<RowSource> source;
    ASSERT_TRUE(backend_->openRows("Select * from [t]", SourceKind::text, &source));
    rows_ =
        std::make_unique<Recordset>(backend_, std::move(source), CursorType::keyset, LockType::optimistic);
    ASSERT_TRUE(rows_->load());
  }
  Status add(std::int64_t number) {
    Status status = rows_->addNew();
    if (status) status = rows_->setValue(0, number);
    if (status) status = rows_->setValue(1, std::string(3000, 'x'));
    return status ? rows_->update() : status;
  }
  /// How many were acknowledged; `*refused` says why the next one was not.
  std::int64_t addUntilFull(Status* refused) {
    for (std::int64_t number = 1; number < 10'000; ++number) {
      *refused = add(number);
      if (!*refused) return number - 1;
    }
    return 10'000;
  }
  void expectSound(std::int64_t count) {
    OtherProgram other(path_);
    EXPECT_EQ("ok", other.ask("PRAGMA integrity_check"));
    EXPECT_EQ(std::to_string(count), other.ask("SELECT count(*) FROM t WHERE b = printf('%.*c', 3000, 'x')"));
  }

  testsupport::TempFolder folder_;
  const fs::path disk_ = folder_.file("disk");
  const fs::path path_ = disk_ / "data.cdb";
  bool isMounted_ = false;
  std::shared_ptr<Backend> backend_;
  std::unique_ptr<Recordset> rows_;
};

TEST_P(FullDiskTest, TakesNoMoreAndLosesNothing) {
  std::ofstream(disk_ / "filler", std::ios::binary) << std::string(200'000, 'f');
  Status refused;
  const std::int64_t count = addUntilFull(&refused);
  EXPECT_GT(count, 50);
  EXPECT_LT(count, 400);
  EXPECT_EQ(ErrorCode::inputOutput, refused.code()) << refused.message();
  EXPECT_EQ("database or disk is full", refused.message());
  Cell cell;
  ASSERT_TRUE(rows_->cell(0, &cell)) << "what was to be stored is kept";
  EXPECT_EQ(count + 1, cell.integer);

  // As soon as there is room it can be stored.
  fs::remove(disk_ / "filler");
  const Status stored = rows_->update();
  EXPECT_TRUE(stored) << stored.message();
  rows_.reset();
  backend_.reset();
  expectSound(count + 1);
}

TEST_P(FullDiskTest, WhatFailsAsAWholeLeavesNothing) {
  Status refused;
  const std::int64_t count = addUntilFull(&refused);
  ASSERT_FALSE(refused);
  rows_.reset();
  const fs::path copy = disk_ / "copy.cdb";
  EXPECT_FALSE(backend_->saveCopy(utf8Of(copy)));
  EXPECT_FALSE(fs::exists(copy));
  std::int64_t affected = 0;
  std::unique_ptr<RowSource> none;
  EXPECT_FALSE(backend_->run("UPDATE t SET b = b || printf('%.*c', 9000, 'y')", &affected, &none));
  EXPECT_FALSE(backend_->run("VACUUM", &affected, &none));
  std::unique_ptr<TableLoad> load;
  Status status = backend_->beginLoad({.table = "t", .columns = {"a", "b"}}, &load);
  const std::string content(3000, 'x');
  for (int number = 0; status && number < 500; ++number) {
    Cell values[2];
    values[0].kind = CellKind::integer;
    values[1].kind = CellKind::text;
    values[1].bytes = content;
    status = load->add(values);
  }
  if (status) status = load->commit();
  EXPECT_FALSE(status);
  load.reset();
  backend_.reset();
  expectSound(count);
}

INSTANTIATE_TEST_SUITE_P(, FullDiskTest, testing::Values("DELETE", "WAL"),
                         [](const testing::TestParamInfo<const char*>& mode) { return mode.param; });

}  // namespace
}  // namespace store
