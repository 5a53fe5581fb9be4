// The search in a server's records finds what the plain way finds, though the server leaves most of them out.
#include <random>

#include "platform/store/rows/text_search.h"
#include "platform/store/rows/utf.h"
#include "platform/store/sql/dialect.h"
#include "tests/server/server_fixture.h"
#include "tests/store/allocation_probe.h"
#include "tests/store/rows/search_fixture.h"

namespace store {
namespace {

class ServerSearchTest : public StoreTest {
 protected:
  static std::vector<std::size_t> all(const Recordset& records) {
    std::vector<std::size_t> columns(records.columns().size());
    for (std::size_t column = 0; column < columns.size(); ++column) columns[column] = column;
    return columns;
  }
  /// Where the search stops that begins at the record.
  std::int64_t search(Recordset& records, std::int64_t from, std::u16string_view text, bool matchCase) {
    EXPECT_TRUE(records.setPosition(from));
    TextSearch search(records, all(records), TextNeedle(text, matchCase ? nullptr : &oddFolding()), texts_);
    std::int64_t passed = 0;
    const Status status =
        search.passOver(INT64_MAX, RowScan::Clock::now() + std::chrono::minutes(1), &passed);
    EXPECT_TRUE(status) << status.message();
    return records.position();
  }
  /// The same by the rules alone, record after record.
  std::int64_t searchPlainly(Recordset& records, std::int64_t from, std::u16string_view text,
                             bool matchCase) {
    TextTest test(records.columns(), all(records), TextNeedle(text, matchCase ? nullptr : &oddFolding()),
                  texts_);
    EXPECT_TRUE(records.setPosition(from));
    while (records.position() > 0) {
      for (const std::size_t column : all(records)) {
        Cell cell;
        EXPECT_TRUE(records.cell(column, &cell));
        if (test.isWanted(column, cell)) return records.position();
      }
      EXPECT_TRUE(records.moveNext());
    }
    return records.position();
  }

  OddTexts texts_;
};

TEST_F(ServerSearchTest, BothWaysAgree) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, a text, b integer, c double precision, d bytea, e numeric)",
      database_);
  runOnServer("CREATE TABLE w (j text, k integer, a text, PRIMARY KEY (j, k))", database_);
  std::mt19937 random(7);
  const auto below = [&](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  // Letters that stand for others, some of them for ASCII, and what has a meaning in patterns.
  const std::vector<std::string> kPieces = {"a",        "A",
                                            "s",        "S",
                                            "\xC5\xBF", "k",
                                            "K",        "\xE2\x84\xAA",
                                            "i",        "I",
                                            "\xC4\xB1", "\xC3\xA9",
                                            "\xC3\x89", "%",
                                            "_",        "\\",
                                            "'",        "1",
                                            "2",        ".",
                                            " ",        "\xF0\x9F\x98\x80"};
  const auto text = [&](std::size_t most) {
    std::string made;
    for (std::size_t count = below(most + 1); count > 0; --count) made += kPieces[below(kPieces.size())];
    return made;
  };
  std::string values;
  std::string tuples;
  for (int key = 1; key <= 300; ++key) {
    const std::string own = quotedText(text(6));
    values += (key == 1 ? "(" : ", (") + std::to_string(key) + ", " + (below(9) == 0 ? "NULL" : own) + ", " +
              std::to_string(below(2000)) + ", " + std::to_string(below(100)) + ".5, '\\x" +
              (below(2) == 0 ? "a1" : "12ff") + "', " + std::to_string(below(50)) + ".10)";
    tuples += (key == 1 ? "('j" : ", ('j") + std::to_string(below(5)) + "', " + std::to_string(key) + ", " +
              own + ")";
  }
  runOnServer("INSERT INTO t VALUES " + values, database_);
  runOnServer("INSERT INTO w VALUES " + tuples, database_);
  open();
  int found = 0;
  for (const char* source :
       {"Select * from [t]", "Select * from [w]", "SELECT a, k, b FROM t WHERE k % 3 = 0 ORDER BY a",
        "SELECT DISTINCT a FROM t"}) {
    const auto records = this->records(source);
    ASSERT_NE(nullptr, records);
    for (int number = 0; number < 60; ++number) {
      const std::u16string needle = decoded(text(3));
      if (needle.empty()) continue;
      const bool matchCase = below(2) == 0;
      const auto from =
          static_cast<std::int64_t>(1 + below(static_cast<std::size_t>(records->recordCount())));
      const std::int64_t place = searchPlainly(*records, from, needle, matchCase);
      if (place > 0) ++found;
      ASSERT_EQ(place, search(*records, from, needle, matchCase))
          << source << " from " << from << ": " << testing::PrintToString(toUtf8(needle));
    }
  }
  EXPECT_GT(found, 60) << "most was looked for in vain";
}

TEST_F(ServerSearchTest, RecordsOfALargeTableAreLeftToTheServer) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, a text)", database_);
  runOnServer("INSERT INTO t SELECT i, 'row ' || i FROM generate_series(1, 200000) i", database_);
  runOnServer("UPDATE t SET a = 'The Needle' WHERE k IN (150000, 199999)", database_);
  open();
  const auto records = this->records("Select * from [t]");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(150000, search(*records, 1, u"needle", false));
  EXPECT_EQ(199999, search(*records, 150001, u"needle", false));
  EXPECT_EQ(-3, search(*records, 1, u"needle", true)) << "behind the last";
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20))
      << "row by row it takes minutes";
}

TEST_F(ServerSearchTest, OfManyRecordsThatMayBeWantedFewKeysAreThereAtATime) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, a text)", database_);
  runOnServer("CREATE TABLE w (k text PRIMARY KEY, a text)", database_);
  // The server can't tell whether those with other letters are wanted.
  runOnServer(
      "INSERT INTO t SELECT i, CASE WHEN i > 99000 THEN 'Needle' ELSE '\u00e9' END FROM "
      "generate_series(1, 100000) i",
      database_);
  runOnServer("INSERT INTO w SELECT 'key ' || to_char(k, '000000'), a FROM t", database_);
  open();
  for (const char* table : {"t", "w"}) {
    const auto records = this->records(table, SourceKind::table);
    ASSERT_NE(nullptr, records);
    // All keys are there afterwards.
    ASSERT_TRUE(records->moveLast());
    EXPECT_EQ("Needle", textOf(*records, 1));
    int questions = 0;
    bool isStopped = false;
    backend_->askWhileBusy([&](Busy) {
      ++questions;
      return isStopped;
    });
    testsupport::resetPeak();
    const std::size_t before = testsupport::liveBytes();
    EXPECT_EQ(99001, search(*records, 98990, u"needle", false)) << table;
    EXPECT_LT(testsupport::peakBytes() - before, std::size_t{4} << 20) << table;
    EXPECT_GE(questions, 5) << table;
    isStopped = true;
    ASSERT_TRUE(records->setPosition(1));
    TextSearch search(*records, {1}, TextNeedle(u"needle", &oddFolding()), texts_);
    std::int64_t passed = 0;
    const Status status =
        search.passOver(INT64_MAX, RowScan::Clock::now() + std::chrono::minutes(1), &passed);
    EXPECT_EQ(ErrorCode::stopped, status.code()) << table;
    backend_->askWhileBusy({});
    EXPECT_EQ("100000", columnOf("SELECT count(*) FROM t")) << "the transaction of the search is over";
  }
}

TEST_F(ServerSearchTest, ARecordThatWasChangedOrDeletedMeanwhileIsNotFound) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, a text)", database_);
  runOnServer("INSERT INTO t SELECT i, 'x' FROM generate_series(1, 4) i", database_);
  open();
  const auto records = this->records("Select * from [t]");
  TextSearch search(*records, {1}, TextNeedle(u"x", nullptr), texts_);
  std::int64_t passed = 0;
  const auto never = RowScan::Clock::now() + std::chrono::minutes(1);
  ASSERT_TRUE(search.passOver(INT64_MAX, never, &passed));
  EXPECT_EQ(1, records->position());
  runOnServer("DELETE FROM t WHERE k = 2", database_);
  runOnServer("UPDATE t SET a = 'y' WHERE k = 3", database_);
  ASSERT_TRUE(records->moveNext());
  ASSERT_TRUE(search.passOver(INT64_MAX, never, &passed));
  EXPECT_EQ(4, records->position());
}

}  // namespace
}  // namespace store
