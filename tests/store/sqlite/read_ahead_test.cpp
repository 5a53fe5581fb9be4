#include "platform/store/sqlite/files/read_ahead.h"

#include <chrono>
#include <cstring>
#include <string>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

constexpr int kPage = 4096;
constexpr int kAhead = 1 << 18;

/// A file in memory that counts how often it is read.
class CountedFile : public sqlite3_file {
 public:
  explicit CountedFile(int pageCount) : sqlite3_file{&kMethods} {
    for (int page = 0; page < pageCount; ++page) {
      bytes_ += std::string(kPage, static_cast<char>('a' + page % 26));
    }
  }

  std::string& bytes() { return bytes_; }
  int readCount() const { return readCount_; }
  void failAll() { fails_ = true; }

 private:
  static int read(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
    auto* counted = static_cast<CountedFile*>(file);
    ++counted->readCount_;
    if (counted->fails_) return SQLITE_IOERR_READ;
    const auto wanted = static_cast<std::size_t>(length);
    const auto start = static_cast<std::size_t>(offset);
    std::memset(data, 0, wanted);
    if (start >= counted->bytes_.size()) return SQLITE_IOERR_SHORT_READ;
    const std::size_t count = counted->bytes_.copy(static_cast<char*>(data), wanted, start);
    return count == wanted ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
  }

  static constexpr sqlite3_io_methods kMethods = {
      1,       nullptr, &read,   nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
      nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

  std::string bytes_;
  int readCount_ = 0;
  bool fails_ = false;
};

class ReadAheadTest : public testing::Test {
 protected:
  int readPage(int page) {
    page_.assign(kPage, '?');
    return readAhead_.read(&file_, page_.data(), kPage, sqlite3_int64{page} * kPage);
  }
  void expectPages(int first, int last) {
    for (int page = first; page < last; ++page) {
      ASSERT_EQ(SQLITE_OK, readPage(page));
      ASSERT_EQ(std::string(kPage, file_.bytes()[static_cast<std::size_t>(page) * kPage]), page_) << page;
    }
  }

  CountedFile file_{1000};
  ReadAhead readAhead_;
  std::string page_;
};

TEST_F(ReadAheadTest, PagesInARowAreReadInLargePieces) {
  expectPages(0, 1000);
  EXPECT_LT(file_.readCount(), 100);
}

/// Within one transaction, which nothing is forgotten in.
TEST_F(ReadAheadTest, ASecondWayThroughIsReadInLargePiecesToo) {
  expectPages(0, 1000);
  const int readCount = file_.readCount();
  expectPages(0, 1000);
  EXPECT_LE(file_.readCount() - readCount, readCount);
}

TEST_F(ReadAheadTest, PassingOverSomePagesIsStillARow) {
  for (int page = 0; page < 900; page += 3) expectPages(page, page + 1);
  EXPECT_LT(file_.readCount(), 100);
}

TEST_F(ReadAheadTest, PagesHereAndThereAreReadAlone) {
  for (int step = 0; step < 300; ++step) expectPages(step * 379 % 1000, step * 379 % 1000 + 1);
  EXPECT_EQ(300, file_.readCount());
}

TEST_F(ReadAheadTest, AfterForgettingTheFileIsReadAnew) {
  expectPages(0, 20);
  file_.bytes().replace(20 * kPage, kPage, kPage, '!');
  readAhead_.forget();
  expectPages(20, 21);
  EXPECT_EQ(std::string(kPage, '!'), page_);
}

TEST_F(ReadAheadTest, WhatIsBehindTheEndIsLeftToTheFile) {
  file_.bytes().resize(file_.bytes().size() - 100);
  expectPages(0, 999);
  EXPECT_EQ(SQLITE_IOERR_SHORT_READ, readPage(999));
  EXPECT_EQ(SQLITE_IOERR_SHORT_READ, readPage(1000));
  EXPECT_EQ(std::string(kPage, '\0'), page_);
}

TEST_F(ReadAheadTest, AFileThatCantBeReadFailsForEachPage) {
  expectPages(0, 3);
  file_.failAll();
  for (int page = 3; page < 10; ++page) EXPECT_EQ(SQLITE_IOERR_READ, readPage(page));
}

TEST_F(ReadAheadTest, TheHeadIsNeverReadAhead) {
  char head[100];
  for (int time = 0; time < 10; ++time) {
    EXPECT_EQ(SQLITE_OK, readAhead_.read(&file_, head, sizeof head, time * 100));
  }
  EXPECT_EQ(10, file_.readCount());
}

/// What another program changes between two readings of the same pages is seen by the second one.
class ReadingBesideTest : public StoreTest, public testing::WithParamInterface<const char*> {};

TEST_P(ReadingBesideTest, ChangesOfAnotherProgramAreSeen) {
  constexpr std::size_t kRowCount = 200;
  OtherProgram other(path_);
  ASSERT_EQ(GetParam(), other.ask(std::string("PRAGMA journal_mode=") + GetParam()));
  other.run("CREATE TABLE T (id INTEGER PRIMARY KEY, a TEXT)");
  other.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
      "INSERT INTO T SELECT i, '0' || printf('%0500d', 0) FROM n");
  open();
  for (char round = '1'; round < '6'; ++round) {
    other.run(std::string("UPDATE T SET a = '") + round + "' || printf('%0500d', 0)");
    if (round % 2 == 0) other.tryRun("PRAGMA wal_checkpoint(TRUNCATE)");
    // In the write-ahead mode a transaction that is open still is one of before, for some milliseconds.
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    std::string seen;
    while (seen != std::string(kRowCount, round) && std::chrono::steady_clock::now() < until) {
      const std::unique_ptr<Recordset> recordset = records("SELECT * FROM T WHERE id <= 200");
      ASSERT_NE(nullptr, recordset);
      for (seen.clear(); !recordset->isEof();) {
        seen += textOf(*recordset, 1).front();
        ASSERT_TRUE(recordset->moveNext());
      }
    }
    EXPECT_EQ(std::string(kRowCount, round), seen);
  }
}
INSTANTIATE_TEST_SUITE_P(InEachMode, ReadingBesideTest, testing::Values("delete", "truncate", "wal"));

}  // namespace
}  // namespace store
