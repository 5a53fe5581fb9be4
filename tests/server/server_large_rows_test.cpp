// Rows so large that few of them have room beside one another.
#include "tests/server/server_fixture.h"
#include "tests/store/allocation_probe.h"

namespace store {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;
constexpr std::size_t kRowMegabytes = 4;
// One row, in all the forms that it has on its way.
constexpr std::size_t kMostMegabytes = 64;

class LargeRowsTest : public StoreTest {
 protected:
  void SetUp() override {
    runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text, x bytea)", database_);
    runOnServer("CREATE TABLE named (k text PRIMARY KEY, v text)", database_);
    open();
  }
  /// Walks over some records and back, and tells how much memory that took at most.
  static std::size_t megabytesOfWalk(Recordset& rows, std::size_t column) {
    testsupport::resetPeak();
    const std::size_t before = testsupport::liveBytes();
    for (int number = 0; number < 4; ++number) {
      Cell cell;
      EXPECT_TRUE(rows.cell(column, &cell));
      EXPECT_EQ(kRowMegabytes * kMegabyte, cell.bytes.size());
      EXPECT_TRUE(rows.moveNext());
    }
    for (int number = 0; number < 3; ++number) {
      Cell cell;
      EXPECT_TRUE(rows.movePrevious());
      EXPECT_TRUE(rows.cell(column, &cell));
      EXPECT_EQ(kRowMegabytes * kMegabyte, cell.bytes.size());
    }
    return (testsupport::peakBytes() - before) / kMegabyte;
  }
};

TEST_F(LargeRowsTest, OfATableComeAloneAlsoWhereTheServerKeepsThemShort) {
  runOnServer("INSERT INTO t SELECT i, repeat('x', 4 << 20), NULL FROM generate_series(1, 40) i", database_);
  const auto rows = records("t", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_LT(megabytesOfWalk(*rows, 1), kMostMegabytes);
  rows->readAhead(20, 20);
  ASSERT_TRUE(rows->setPosition(20));
  EXPECT_LT(megabytesOfWalk(*rows, 1), kMostMegabytes);
}

TEST_F(LargeRowsTest, OfBytesComeAlone) {
  runOnServer(
      "INSERT INTO t SELECT i, NULL, decode(repeat('00', 4 << 20), 'hex') FROM generate_series(1, 20) i",
      database_);
  const auto rows = records("t", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_LT(megabytesOfWalk(*rows, 2), 2 * kMostMegabytes) << "each byte is two letters on its way";
}

TEST_F(LargeRowsTest, OfATableWithTextsForKeysComeAlone) {
  runOnServer("INSERT INTO named SELECT 'key ' || i, repeat('x', 4 << 20) FROM generate_series(1, 20) i",
              database_);
  const auto rows = records("named", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_LT(megabytesOfWalk(*rows, 1), kMostMegabytes);
}

TEST_F(LargeRowsTest, OfAStatementComeFew) {
  runOnServer("INSERT INTO t SELECT generate_series(1, 40)", database_);
  const auto rows = records("SELECT DISTINCT repeat('x', 4 << 20) || k AS v FROM t");
  ASSERT_NE(nullptr, rows);
  testsupport::resetPeak();
  const std::size_t before = testsupport::liveBytes();
  for (int number = 0; number < 4; ++number) {
    Cell cell;
    ASSERT_TRUE(rows->cell(0, &cell));
    EXPECT_LT(kRowMegabytes * kMegabyte, cell.bytes.size());
    ASSERT_TRUE(rows->moveNext());
  }
  EXPECT_LT((testsupport::peakBytes() - before) / kMegabyte, kMostMegabytes);
}

TEST_F(LargeRowsTest, AmongSmallOnesAreShownInTheirPlaces) {
  runOnServer(
      "INSERT INTO t SELECT i, CASE WHEN i % 7 = 0 THEN repeat('x', 300000) ELSE 'v' END || i, NULL FROM "
      "generate_series(1, 100) i",
      database_);
  runOnServer("INSERT INTO named SELECT 'key ' || to_char(k, '000'), v FROM t", database_);
  for (const char* table : {"t", "named"}) {
    const auto rows = records(table, SourceKind::table);
    ASSERT_NE(nullptr, rows);
    for (const bool backwards : {false, true}) {
      ASSERT_TRUE(backwards ? rows->moveLast() : rows->moveFirst());
      for (int step = 0; step < 100; ++step) {
        const int number = backwards ? 100 - step : step + 1;
        Cell cell;
        ASSERT_TRUE(rows->cell(1, &cell)) << number;
        EXPECT_EQ((number % 7 == 0 ? std::string(300000, 'x') : "v") + std::to_string(number), cell.bytes);
        ASSERT_TRUE(backwards ? rows->movePrevious() : rows->moveNext());
      }
    }
  }
}

}  // namespace
}  // namespace store
