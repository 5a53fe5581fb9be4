#include "platform/store/rows/text_search.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/store/rows/search_fixture.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

using Clock = RowScan::Clock;

/// How a search ended: how many records it passed over, and where the recordset stood then.
struct Found {
  std::int64_t passed = 0;
  std::int64_t position = 0;
  bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
  *stream << found.passed << " passed, at " << found.position;
}

class TextSearchTest : public StoreTest {
 protected:
  static Clock::time_point never() { return Clock::now() + std::chrono::hours(1); }

  /// The search on `records` from where it stands.
  Found search(Recordset& records, std::u16string_view text, const std::vector<std::size_t>& columns,
               bool matchCase = false, std::int64_t most = std::numeric_limits<std::int64_t>::max()) {
    TextSearch search(records, columns, TextNeedle(text, matchCase ? nullptr : &oddFolding()), texts_);
    Found found;
    const Status status = search.passOver(most, never(), &found.passed);
    EXPECT_TRUE(status) << status.message();
    found.position = records.position();
    return found;
  }
  Found search(Recordset& records, std::u16string_view text) { return search(records, text, all(records)); }

  static std::vector<std::size_t> all(const Recordset& records) {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < records.columns().size(); ++column) columns.push_back(column);
    return columns;
  }

  /// The plain way: record after record by its values.
  Found searchPlainly(Recordset& records, std::u16string_view text, const std::vector<std::size_t>& columns,
                      bool matchCase = false, std::int64_t most = std::numeric_limits<std::int64_t>::max()) {
    Found found;
    while (found.passed < most && records.position() > 0 &&
           !isMatch(records, text, columns, matchCase ? nullptr : &oddFolding())) {
      EXPECT_TRUE(records.moveNext());
      ++found.passed;
    }
    found.position = records.position();
    return found;
  }

  bool isMatch(Recordset& records, std::u16string_view needle, const std::vector<std::size_t>& columns,
               const CaseFolding* folding) {
    for (const std::size_t column : columns) {
      const FieldType& type = records.columns()[column].type;
      if (type.code == TypeCode::boolean || type.code == TypeCode::date) continue;
      Cell cell;
      if (!records.cell(column, &cell)) return needle.empty();
      if (occursPlainly(needle, textOfCell(cell, type), folding)) return true;
    }
    return false;
  }

  std::u16string textOfCell(const Cell& cell, const FieldType& type) {
    std::u16string text;
    switch (cell.kind) {
      case CellKind::null:
        return {};
      case CellKind::text:
        return decoded(cell.bytes);
      case CellKind::blob:
        for (std::size_t at = 0; at < cell.bytes.size() && at < 256; ++at) {
          char pair[4];
          std::snprintf(pair, sizeof pair, " %02X",
                        static_cast<unsigned>(static_cast<unsigned char>(cell.bytes[at])));
          text += decoded(at == 0 ? pair + 1 : pair);
        }
        if (cell.bytes.size() > 256)
          text += u" \u2026 (" + decoded(std::to_string(cell.bytes.size())) + u" bytes)";
        return text;
      case CellKind::integer: {
        const bool isReal = type.code == TypeCode::real && std::abs(cell.integer) <= 1LL << 53;
        return decoded(isReal ? std::to_string(static_cast<double>(cell.integer))
                              : std::to_string(cell.integer));
      }
      case CellKind::real:
        if (type.code == TypeCode::real || !std::isfinite(cell.real))
          return decoded(std::to_string(cell.real));
        texts_.textOf(cell, type, &text);
        return text;
    }
    return {};
  }

  OddTexts texts_;
};

TEST_F(TextSearchTest, BytesAreFoundByTheirPairsOfDigits) {
  prepare("CREATE TABLE T (A Image)");
  prepare("INSERT INTO T VALUES (x'4142'), (x'00FF7F'), (zeroblob(300)), (x'ABCD')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{1, 2}), search(*rows, u"ff 7f"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{2, 3}), search(*rows, u"300 bytes"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{3, 4}), search(*rows, u"B C"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{3, 4}), search(*rows, u"AB")) << "not the characters that the first bytes are";
}

TEST_F(TextSearchTest, PassesOverRecordsWithoutTheText) {
  prepare("CREATE TABLE T (A Varchar (20), B Integer)");
  prepare("INSERT INTO T VALUES ('one', 1), ('two', 2), ('three', 33), ('four', NULL), (NULL, 5)");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{2, 3}), search(*rows, u"THREE"));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"THREE"));
  EXPECT_EQ("three", textOf(*rows, 0));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{2, 3}), search(*rows, u"33"));
  EXPECT_EQ((Found{2, 5}), search(*rows, u"5"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{5, -3}), search(*rows, u"nowhere"));
  EXPECT_EQ((Found{0, -3}), search(*rows, u"nowhere"));
}

TEST_F(TextSearchTest, PassesOverNoMoreThanItMay) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b'), ('c'), ('d')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{2, 3}), search(*rows, u"d", {0}, false, 2));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"d", {0}, false, 0));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"d", {0}, false, -1));
  EXPECT_EQ((Found{1, 4}), search(*rows, u"d", {0}, false, 5));
}

TEST_F(TextSearchTest, TheEmptyTextPassesOverNothing) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), (NULL)");
  open();
  EXPECT_EQ((Found{0, 1}), search(*records("Select * from [T]"), u""));
}

TEST_F(TextSearchTest, DatesAndTruthValuesAreNotLookedAt) {
  prepare("CREATE TABLE T (D Datetime, B Bit, A Varchar (20))");
  prepare("INSERT INTO T VALUES ('2001-03-09', 1, 'x'), ('two', 'two', 'y'), ('', '', 'two')");
  open();
  EXPECT_EQ((Found{2, 3}), search(*records("Select * from [T]"), u"two"));
  EXPECT_EQ((Found{3, -3}), search(*records("Select * from [T]"), u"2001"));
  // Alone they leave nothing to look at.
  EXPECT_EQ((Found{3, -3}), search(*records("Select * from [T]"), u"two", {0, 1}));
}

TEST_F(TextSearchTest, OneFieldAloneIsLookedAt) {
  prepare("CREATE TABLE T (A Varchar (20), B Varchar (20))");
  prepare("INSERT INTO T VALUES ('x', 'a'), ('a', 'x')");
  open();
  EXPECT_EQ((Found{1, 2}), search(*records("Select * from [T]"), u"a", {0}));
  EXPECT_EQ((Found{0, 1}), search(*records("Select * from [T]"), u"a", {1}));
}

TEST_F(TextSearchTest, NothingIsPassedOverOffTheRecordsAndFromADirtyOne) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  ASSERT_TRUE(rows->setValue(0, std::string("c")));
  EXPECT_EQ((Found{0, 1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->cancelUpdate());
  ASSERT_TRUE(rows->addNew());
  EXPECT_EQ((Found{0, -1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->cancelUpdate());
  ASSERT_TRUE(rows->remove());
  EXPECT_EQ((Found{0, -1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->moveFirst());
  ASSERT_TRUE(rows->movePrevious());
  EXPECT_EQ((Found{0, -2}), search(*rows, u"z"));
}

TEST_F(TextSearchTest, RecordsAddedByOthersAreNotSeenAndDeletedOnesArePassedOver) {
  prepare("CREATE TABLE T (N Integer PRIMARY KEY, A Varchar (20))");
  prepare("INSERT INTO T VALUES (10, 'a'), (20, 'b'), (30, 'x'), (40, 'x')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  prepare("INSERT INTO T VALUES (15, 'x'), (25, 'x'); DELETE FROM T WHERE N = 30");
  EXPECT_EQ((Found{3, 4}), search(*rows, u"x"));
  EXPECT_EQ("40", textOf(*rows, 0));
}

TEST_F(TextSearchTest, WhatOthersChangedIsSeen) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b'), ('c')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{3, -3}), search(*rows, u"x"));
  prepare("UPDATE T SET A = 'x' WHERE A = 'b'");
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{1, 2}), search(*rows, u"x"));
}

TEST_F(TextSearchTest, RecordsOfOursStandWhereTheyWereAdded) {
  prepare("CREATE TABLE T (N Integer PRIMARY KEY, A Varchar (20))");
  prepare("INSERT INTO T VALUES (10, 'a'), (20, 'x')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  for (const std::int64_t key : {5, 15, 3}) {
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, key));
    ASSERT_TRUE(rows->setValue(1, key == 15 ? std::string("x") : std::string("a")));
    ASSERT_TRUE(rows->update());
  }
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{1, 2}), search(*rows, u"x"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ((Found{1, 4}), search(*rows, u"x"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ((Found{1, -3}), search(*rows, u"x"));
}

TEST_F(TextSearchTest, AChangeOfTheRecordsBetweenTwoStepsIsFollowed) {
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

TEST_F(TextSearchTest, StopsWhenItsTimeIsUpAndGoesOn) {
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

TEST_F(TextSearchTest, ATableThatWasDroppedIsLeftToThePlainWay) {
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

TEST_F(TextSearchTest, MoreFieldsThanAFunctionTakes) {
  std::string sql = "CREATE TABLE T (c0 Varchar (9)";
  for (int column = 1; column < 400; ++column) sql += ", c" + std::to_string(column) + " Varchar (9)";
  prepare(sql + ")");
  prepare("INSERT INTO T (c0) VALUES ('a'), ('b'), ('c')");
  prepare("UPDATE T SET c399 = 'x' WHERE c0 = 'c'");
  prepare("UPDATE T SET c100 = 'y' WHERE c0 = 'b'");
  open();
  EXPECT_EQ((Found{2, 3}), search(*records("Select * from [T]"), u"x"));
  EXPECT_EQ((Found{1, 2}), search(*records("Select * from [T]"), u"y"));
}

TEST_F(TextSearchTest, TheFunctionBehindItIsNotForStatements) {
  prepare("CREATE TABLE T (A Varchar (20))");
  open();
  EXPECT_FALSE(tryRun("INSERT INTO T VALUES (quivane_wanted(1, 0, 'a'))"));
  EXPECT_FALSE(tryRun("INSERT INTO T VALUES (quivane_wanted())"));
}

/// Random tables and queries, searched by both ways from random places.
class RandomSearchTest : public TextSearchTest {
 protected:
  std::size_t number(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
  }

  std::string piece() {
    static const std::vector<std::string> pieces{"a",
                                                 "A",
                                                 "b",
                                                 "ß",
                                                 "İ",
                                                 "ı",
                                                 "ς",
                                                 "Σ",
                                                 "σ",
                                                 "e\xCC\x81",
                                                 "é",
                                                 "É",
                                                 "K",
                                                 "\u212A",
                                                 "0",
                                                 "1",
                                                 "9",
                                                 ".",
                                                 "-",
                                                 "\xF0\x9F\x98\x80",
                                                 "\xED\xA0\xBD",
                                                 "\xFF",
                                                 "\xE4\xB8",
                                                 "中",
                                                 "x y"};
    return pieces[number(pieces.size() - 1)];
  }
  std::string piecesOf(std::size_t most) {
    std::string text;
    for (std::size_t count = number(most); count > 0; --count) text += piece();
    return text;
  }
  static std::string hexOf(const std::string& bytes) {
    std::string hex;
    for (const char byte : bytes) {
      constexpr std::string_view kDigits = "0123456789abcdef";
      hex += kDigits[static_cast<unsigned char>(byte) >> 4];
      hex += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return hex;
  }

  std::string literal() {
    switch (number(9)) {
      case 0:
        return "NULL";
      case 1:
        return std::to_string(static_cast<std::int64_t>(number(2000)) - 1000);
      case 2:
        return std::to_string(static_cast<std::int64_t>(random_()));
      case 3:
        return std::to_string(static_cast<double>(number(100000)) / 128 - 300);
      case 4:
        return number(3) == 0 ? "-9e999" : "1.5e300";
      case 5:
        return "x'" + hexOf(piecesOf(4)) + "'";
      case 6:
        return "CAST(x'" + hexOf(piecesOf(2) + std::string(1, '\0') + piecesOf(2)) + "' AS TEXT)";
      default:
        return "CAST(x'" + hexOf(piecesOf(6)) + "' AS TEXT)";
    }
  }

  void fill(const std::string& table, int count) {
    OtherProgram other(path_);
    other.run("PRAGMA synchronous=OFF");
    other.run("BEGIN");
    for (int row = 0; row < count; ++row) {
      std::string values;
      for (int column = 0; column < 9; ++column) values += ", " + literal();
      other.run("INSERT OR IGNORE INTO " + table + " VALUES (" + std::to_string(number(5000)) + values + ")");
    }
    other.run("COMMIT");
  }

  static constexpr const char* kColumns =
      "(K Integer PRIMARY KEY, A Varchar (20), B Text, C Integer, D SmallInt, E Double, F Bit, G Datetime, H "
      "Varbinary (20), I)";

  std::mt19937_64 random_{20010309};
};

TEST_F(RandomSearchTest, BothWaysAgree) {
  prepare(std::string("CREATE TABLE T ") + kColumns);
  prepare(std::string("CREATE TABLE W ") + kColumns + " WITHOUT ROWID");
  prepare("CREATE VIEW V AS SELECT * FROM T WHERE K % 3");
  fill("T", 300);
  fill("W", 300);
  open();
  int found = 0;
  for (int round = 0; round < 400; ++round) {
    static const std::vector<const char*> sources{"Select * from [T]",
                                                  "Select * from [T] order by A",
                                                  "Select * from T where K > 2500",
                                                  "Select B, A || 'a', E * 1.5, K from T order by K desc",
                                                  "Select * from [W]",
                                                  "Select * from W order by B",
                                                  "Select * from [V]",
                                                  "Select T.A, W.B, W.E from T join W on T.K = W.K"};
    const char* source = sources[number(sources.size() - 1)];
    const std::unique_ptr<Recordset> fast = records(source);
    if (round % 5 == 0) {
      OtherProgram other(path_);
      other.run("PRAGMA synchronous=OFF");
      other.run("DELETE FROM T WHERE K IN (SELECT K FROM T ORDER BY random() LIMIT 3)");
      other.run("DELETE FROM W WHERE K IN (SELECT K FROM W ORDER BY random() LIMIT 3)");
      fill("T", 3);
      fill("W", 3);
    }
    std::unique_ptr<Recordset> plain;
    ASSERT_TRUE(fast->clone(&plain));
    const std::u16string needle = decoded(piecesOf(2));
    if (needle.empty()) continue;
    const bool matchCase = number(1) == 0;
    const std::vector<std::size_t> columns =
        number(1) == 0 ? all(*fast) : std::vector<std::size_t>{number(fast->columns().size() - 1)};
    const auto most = static_cast<std::int64_t>(number(3) == 0 ? number(50) : 100000);
    for (std::int64_t start = 0; start < fast->recordCount();
         start += 1 + static_cast<std::int64_t>(number(100))) {
      ASSERT_TRUE(fast->move(start, MoveOrigin::first));
      ASSERT_TRUE(plain->move(start, MoveOrigin::first));
      const Found expected = searchPlainly(*plain, needle, columns, matchCase, most);
      found += expected.position > 0 ? 1 : 0;
      ASSERT_EQ(expected, search(*fast, needle, columns, matchCase, most))
          << "round " << round << ", " << source << ", from " << start;
    }
  }
  EXPECT_GT(found, 200);
}

// With more rows than are looked at one by one, in orders that are not the table's.
TEST_F(RandomSearchTest, BothWaysAgreeInLargeTables) {
  prepare("CREATE TABLE T (K Integer PRIMARY KEY, A Varchar (20), B Integer)");
  prepare("CREATE TABLE W (K Integer, J Varchar (9), A Varchar (20), PRIMARY KEY (J, K)) WITHOUT ROWID");
  prepare(
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 7000) INSERT INTO T SELECT i * 3, "
      "iif(i % 1000 = 7, 'Needle', 'hay'), i * 7919 % 7001 FROM n");
  prepare("INSERT INTO W SELECT K, B % 10, A FROM T");
  open();
  for (const char* source :
       {"Select * from [T]", "Select * from T order by B", "Select * from T order by A, B",
        "Select A, B from T where B % 3 order by K desc", "Select * from [W]", "Select * from W order by K",
        "Select * from T where K % 500 = 0 order by K"}) {
    const std::unique_ptr<Recordset> fast = records(source);
    prepare("UPDATE T SET A = 'needle' WHERE K % 6000 = 9; DELETE FROM T WHERE K % 100 = 7");
    prepare("INSERT INTO T SELECT K + 1, 'needle', 0 FROM T WHERE K % 999 = 0 ON CONFLICT DO NOTHING");
    prepare("UPDATE W SET A = 'needle' WHERE K % 6000 = 9; DELETE FROM W WHERE K % 100 = 7");
    std::unique_ptr<Recordset> plain;
    ASSERT_TRUE(fast->clone(&plain));
    int matches = 0;
    while (!fast->isEof()) {
      const Found expected = searchPlainly(*plain, u"NEEDLE", all(*plain));
      ASSERT_EQ(expected, search(*fast, u"NEEDLE", all(*fast))) << source;
      if (fast->isEof()) break;
      ++matches;
      ASSERT_TRUE(fast->moveNext());
      ASSERT_TRUE(plain->moveNext());
    }
    const bool isRare = std::string_view(source).find("500") != std::string_view::npos;
    EXPECT_GE(matches, isRare ? 0 : 4) << source;
  }
}

TEST_F(TextSearchTest, AColumnThatAnotherProgramAddsIsNotInTheWay) {
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
TEST_F(TextSearchTest, ATableWhoseKeyHasAnOrderOfItsOwnIsGoneThroughBitByBit) {
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

TEST_F(TextSearchTest, AFewRecordsOfAMuchLargerTableAreLookedAtOneByOne) {
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
