#include "platform/store/sqlite/sources/companion_scan.h"

#include <chrono>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/store/rows/text_search.h"
#include "tests/store/rows/search_fixture.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;
using Clock = RowScan::Clock;

/// Notes which threads have asked.
class NotingTexts : public OddTexts {
 public:
  bool textOf(const Cell& cell, const FieldType& type, std::u16string* text) override {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      threads_.insert(std::this_thread::get_id());
    }
    return OddTexts::textOf(cell, type, text);
  }
  std::size_t threadCount() const { return threads_.size(); }
  void forget() { threads_.clear(); }

 private:
  std::mutex mutex_;
  std::set<std::thread::id> threads_;
};

/// A table so large that a second thread takes part. Its numbers are none that a search tells without asking.
class CompanionScanTest : public StoreTest {
 protected:
  static constexpr std::int64_t kCount = 400'000;

  void SetUp() override {
    StoreTest::SetUp();
    prepare("CREATE TABLE T (K Integer PRIMARY KEY, A Varchar (20), B Integer)");
    prepare("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(kCount) +
            ") INSERT INTO T SELECT i * 2, 'hay', i + 0.5 FROM n");
  }

  void putNeedlesAt(const std::vector<std::int64_t>& positions) {
    for (const std::int64_t position : positions) {
      prepare("UPDATE T SET A = 'needle' WHERE K = " + std::to_string(position * 2));
    }
  }

  /// The positions at which a search stops on its way to the end, each step of which may take so long.
  std::vector<std::int64_t> find(Recordset& records, std::u16string_view text,
                                 std::chrono::milliseconds patience = std::chrono::hours(1)) {
    TextSearch search(records, {0, 1, 2}, TextNeedle(text, nullptr), texts_);
    std::vector<std::int64_t> found;
    while (!records.isEof()) {
      std::int64_t passed = 0;
      const bool isTimed = patience < std::chrono::minutes(1);
      const Status status = search.passOver(kCount, Clock::now() + patience, &passed);
      EXPECT_TRUE(status) << status.message();
      if (!status || records.isEof()) break;
      std::string value = textOf(records, 1);
      if (!isTimed || value == "needle") found.push_back(records.position());
      EXPECT_TRUE(records.moveNext());
    }
    return found;
  }

  static bool hasOneProcessor() { return std::thread::hardware_concurrency() < 2; }

  NotingTexts texts_;
};

TEST_F(CompanionScanTest, TakesPartInALongSearchAndInNoShortOne) {
  if (hasOneProcessor()) GTEST_SKIP() << "on one processor it is of no use";
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ(std::vector<std::int64_t>{}, find(*rows, u"77,77"));
  EXPECT_EQ(2u, texts_.threadCount());
  texts_.forget();
  ASSERT_TRUE(rows->moveFirst());
  TextSearch search(*rows, {2}, TextNeedle(u"50000,5", nullptr), texts_);
  std::int64_t passed = 0;
  ASSERT_TRUE(search.passOver(kCount, Clock::now() + std::chrono::hours(1), &passed));
  EXPECT_EQ(49'999, passed);
  EXPECT_EQ(1u, texts_.threadCount());
}

TEST_F(CompanionScanTest, FindsEachRecordWhereverThePartsMeet) {
  std::vector<std::int64_t> positions{1, 2};
  for (const std::int64_t part : {1 << 15, 1 << 16, 3 << 15, 1 << 17, 5 << 15, 3 << 16}) {
    positions.insert(positions.end(), {part - 1, part, part + 1, part + 2, part + 20'000});
  }
  positions.insert(positions.end(), {kCount - 1, kCount});
  putNeedlesAt(positions);
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ(positions, find(*rows, u"needle"));
}

TEST_F(CompanionScanTest, FindsTheFirstOneInItsOwnPart) {
  for (const std::int64_t position : {100'000, 131'073, 150'000, 196'608, 300'000, 399'999}) {
    putNeedlesAt({position, kCount});
    open();
    const std::unique_ptr<Recordset> rows = records("Select * from [T]");
    EXPECT_EQ((std::vector<std::int64_t>{position, kCount}), find(*rows, u"needle"));
    prepare("UPDATE T SET A = 'hay' WHERE A = 'needle'");
  }
}

TEST_F(CompanionScanTest, GoesOnWhereItsTimeWasUp) {
  const std::vector<std::int64_t> positions{90'000, 140'000, 250'000, 399'000};
  putNeedlesAt(positions);
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ(positions, find(*rows, u"needle", std::chrono::milliseconds(2)));
}

TEST_F(CompanionScanTest, SeesWhatAnotherProgramHasChangedAndDeleted) {
  putNeedlesAt({120'000, 200'000, 300'000});
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  prepare("DELETE FROM T WHERE K = 400000 OR K BETWEEN 250000 AND 260000");
  prepare("UPDATE T SET A = 'needle' WHERE K = 350000 * 2");
  prepare("INSERT INTO T VALUES (500001, 'needle', 0)");
  EXPECT_EQ((std::vector<std::int64_t>{120'000, 300'000, 350'000}), find(*rows, u"needle"));
}

TEST_F(CompanionScanTest, ReadsAWriteAheadLogToo) {
  prepare("PRAGMA journal_mode=WAL");
  OtherProgram other(path_);
  other.run("UPDATE T SET A = 'needle' WHERE K IN (300000, 400000, 700000)");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((std::vector<std::int64_t>{150'000, 200'000, 350'000}), find(*rows, u"needle"));
}

TEST_F(CompanionScanTest, RecordsOfOursBehindTheOthersAreSearchedToo) {
  putNeedlesAt({200'000});
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  for (const std::int64_t key : {5, 100'001, 3}) {
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, key));
    ASSERT_TRUE(rows->setValue(1, std::string("needle")));
    ASSERT_TRUE(rows->update());
  }
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((std::vector<std::int64_t>{200'000, kCount + 1, kCount + 2, kCount + 3}), find(*rows, u"needle"));
}

// What stands under the name of the open file is another one with the same table: its records are nobody's
// answer.
TEST_F(CompanionScanTest, ReadsNoOtherFileOfTheSameName) {
  const fs::path place = folder_.path() / "place";
  const fs::path away = folder_.path() / "away";
  fs::create_directory(place);
  putNeedlesAt({150'000, 250'000, 350'000});
  fs::rename(path_, place / "data.cdb");
  path_ = place / "data.cdb";
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  fs::rename(place, away);
  fs::create_directory(place);
  fs::copy_file(away / "data.cdb", path_);
  prepare("UPDATE T SET A = iif(K % 6 = 0, 'needle', 'hay')");
  EXPECT_EQ((std::vector<std::int64_t>{150'000, 250'000, 350'000}), find(*rows, u"needle"));
  fs::remove_all(place);
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((std::vector<std::int64_t>{150'000, 250'000, 350'000}), find(*rows, u"needle"))
      << "no file at all";
  fs::rename(away, place);
}

// The two look at the file at moments of their own. What they look at is the same table all the same.
TEST_F(CompanionScanTest, ATableOfTheSameNameIsNotTakenForTheOldOne) {
  putNeedlesAt({150'000});
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  TextSearch search(*rows, {1}, TextNeedle(u"needle", nullptr), texts_);
  std::int64_t passed = 0;
  ASSERT_TRUE(search.passOver(100'000, Clock::now() + std::chrono::hours(1), &passed));
  ASSERT_EQ(100'000, passed);
  prepare("DROP TABLE T; CREATE TABLE T (Other Integer, A Varchar (20))");
  EXPECT_EQ(ErrorCode::structureChanged,
            search.passOver(kCount, Clock::now() + std::chrono::hours(1), &passed).code());
  EXPECT_EQ(0, passed);
}

}  // namespace
}  // namespace store
