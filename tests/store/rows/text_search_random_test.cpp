// The search beside the plain way, record after record, over random tables and queries.
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/store/rows/text_search.h"
#include "tests/store/rows/text_search_fixture.h"

namespace store {
namespace {

/// Random tables and queries, searched by both ways from random places.
class RandomSearchTest : public TextSearchFixture {
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

}  // namespace
}  // namespace store
