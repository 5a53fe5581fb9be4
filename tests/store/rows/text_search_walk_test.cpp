// How a search goes through the records: bit by bit, and while they change.
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "platform/store/rows/text_search.h"
#include "tests/store/rows/text_search_fixture.h"

namespace store {
namespace {

using TextSearchWalkTest = TextSearchFixture;

TEST_F(TextSearchWalkTest, AChangeOfTheRecordsBetweenTwoStepsIsFollowed) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b'), ('c'), ('d')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T] order by A desc");
  TextSearch search(*rows, {0}, TextNeedle(u"a", nullptr), texts_);
  std::int64_t passed = 0;
  ASSERT_TRUE(search.passOver(1, never(), &passed));
  ASSERT_EQ(1, passed);
  ASSERT_TRUE(rows->remove());
  ASSERT_TRUE(rows->moveNext());
  ASSERT_TRUE(rows->setValue(0, std::string("ba")));
  ASSERT_TRUE(rows->update());
  ASSERT_TRUE(search.passOver(100, never(), &passed));
  EXPECT_EQ(0, passed);
}

TEST_F(TextSearchWalkTest, StopsWhenItsTimeIsUpAndGoesOn) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare(
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) INSERT INTO T SELECT i FROM n");
  prepare("UPDATE T SET A = 'x' WHERE A = '29990'");
  open();
  for (const char* source : {"Select * from [T]", "Select * from [T] order by A",
                             "Select A from [T] order by -A", "Select A || '' from T union all select 'z'"}) {
    const std::unique_ptr<Recordset> rows = records(source);
    const std::unique_ptr<Recordset> plain = records(source);
    const Found expected = searchPlainly(*plain, u"x", {0});
    TextSearch search(*rows, {0}, TextNeedle(u"x", &oddFolding()), texts_);
    std::int64_t all = 0;
    int steps = 0;
    // Each call is out of time from its first moment on, and gets on all the same.
    for (; rows->position() != expected.position && steps < 40'000; ++steps) {
      std::int64_t passed = 0;
      ASSERT_TRUE(search.passOver(1 << 30, Clock::now(), &passed));
      all += passed;
    }
    EXPECT_EQ(expected.passed, all) << source;
    EXPECT_GT(steps, 10) << source;
    std::int64_t passed = 0;
    ASSERT_TRUE(search.passOver(1 << 30, never(), &passed));
    EXPECT_EQ(0, passed);
  }
}

// In an order of their own the rows are not read when the search comes to them, but along the table before.
TEST_F(TextSearchWalkTest, ARecordThatAnotherProgramMakesAMatchAheadOfTheSearchIsFound) {
  prepare(
      "CREATE TABLE T (K INTEGER, A Varchar (20));"
      "CREATE TABLE W (K INTEGER, A Varchar (20), PRIMARY KEY (K)) WITHOUT ROWID;"
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
      "INSERT INTO T SELECT i, 'text ' || i FROM n;"
      "INSERT INTO W SELECT K, A FROM T");
  open();
  for (const char* source : {"Select * from [T]", "Select * from [T] Order By -K", "Select * from [W]",
                             "Select * from [W] Order By -K"}) {
    const std::unique_ptr<Recordset> rows = records(source);
    TextSearch search(*rows, {1}, TextNeedle(u"x!", &oddFolding()), texts_);
    std::int64_t passed = 0;
    ASSERT_TRUE(search.passOver(10'000, never(), &passed));
    ASSERT_EQ(10'000, passed);
    const std::string table = std::string(source).find("[T]") != std::string::npos ? "T" : "W";
    // More often than the table is gone through again.
    for (int change = 0; change < 8; ++change) {
      const std::int64_t wanted = rows->position() + 1000;
      const bool isBackwards = std::string(source).find("Order") != std::string::npos;
      const std::string key = std::to_string(isBackwards ? 30'001 - wanted : wanted);
      prepare("UPDATE " + table + " SET A = 'x! ' WHERE K = " + key);
      ASSERT_TRUE(search.passOver(2000, never(), &passed));
      EXPECT_EQ(1000, passed) << source << ", change " << change;
      ASSERT_EQ(wanted, rows->position());
      ASSERT_TRUE(rows->moveNext());
    }
    prepare("UPDATE " + table + " SET A = 'none' WHERE A = 'x! '");
  }
}

TEST_F(TextSearchWalkTest, ATableThatWasDroppedIsLeftToThePlainWay) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  prepare("DROP TABLE T");
  TextSearch search(*rows, {0}, TextNeedle(u"b", nullptr), texts_);
  std::int64_t passed = 7;
  EXPECT_EQ(ErrorCode::structureChanged, search.passOver(9, never(), &passed).code());
  EXPECT_EQ(0, passed);
  EXPECT_EQ(1, rows->position());
}

TEST_F(TextSearchWalkTest, AColumnThatAnotherProgramAddsIsNotInTheWay) {
  prepare("CREATE TABLE T (N INTEGER PRIMARY KEY, A Varchar (20)); INSERT INTO T VALUES (1, 'a'), (2, 'b')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  prepare("ALTER TABLE T ADD COLUMN X");
  EXPECT_EQ((Found{1, 2}), search(*rows, u"b"));
  ASSERT_TRUE(rows->moveFirst());
  TextSearch search(*rows, {1}, TextNeedle(u"b", &oddFolding()), texts_);
  std::int64_t passed = 0;
  ASSERT_TRUE(search.passOver(1, never(), &passed));
  ASSERT_TRUE(rows->moveFirst());
  prepare("ALTER TABLE T ADD COLUMN Y");
  const Status status = search.passOver(10, never(), &passed);
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ(1, passed);
}

// SQLite would have to sort the whole table before it gives the first row.
TEST_F(TextSearchWalkTest, ATableWhoseKeyHasAnOrderOfItsOwnIsGoneThroughBitByBit) {
  prepare(
      "CREATE TABLE T (A INTEGER, B INTEGER, C TEXT, PRIMARY KEY (A, B DESC)) WITHOUT ROWID;"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
      "INSERT INTO T SELECT i % 7, i, 'text ' || i FROM n");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T] Order By C");
  TextSearch search(*rows, {2}, TextNeedle(u"nowhere", &oddFolding()), texts_);
  std::int64_t all = 0;
  while (rows->position() > 0) {
    std::int64_t passed = 0;
    ASSERT_TRUE(search.passOver(20000, Clock::now() + std::chrono::milliseconds(1), &passed));
    ASSERT_GT(passed, 0) << "behind " << all;
    all += passed;
  }
  EXPECT_EQ(20000, all);
}

TEST_F(TextSearchWalkTest, AFewRecordsOfAMuchLargerTableAreLookedAtOneByOne) {
  prepare(
      "CREATE TABLE T (A INTEGER, B INTEGER, C TEXT);"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500000) "
      "INSERT INTO T SELECT i, i % 100 = 0, 'text ' || i FROM n");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T] Where B = 1 Order By A Desc");
  TextSearch search(*rows, {2}, TextNeedle(u"nowhere", &oddFolding()), texts_);
  std::int64_t passed = 0;
  ASSERT_TRUE(search.passOver(5000, Clock::now() + std::chrono::seconds(30), &passed));
  EXPECT_EQ(5000, passed);
}

}  // namespace
}  // namespace store
