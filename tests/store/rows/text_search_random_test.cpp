// The search beside the plain way, record after record, over random tables and queries.
#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/store/rows/text_search.h"
#include "tests/store/rows/text_search_fixture.h"
#include "tests/support/random_values.h"

namespace store {
namespace {

/// Random tables and queries, searched by both ways from random places.
class RandomSearchTest : public TextSearchFixture {
 protected:
  void fill(const std::string& table, int count) {
    OtherProgram other(path_);
    other.run("PRAGMA synchronous=OFF");
    other.run("BEGIN");
    for (int row = 0; row < count; ++row) {
      std::string values;
      for (int column = 0; column < 9; ++column) values += ", " + values_.literal();
      other.run("INSERT OR IGNORE INTO " + table + " VALUES (" + std::to_string(values_.number(5000)) +
                values + ")");
    }
    other.run("COMMIT");
  }

  static bool areSearched(const Recordset& records, const std::vector<std::size_t>& columns) {
    return std::any_of(columns.begin(), columns.end(), [&](std::size_t column) {
      const TypeCode code = records.columns()[column].type.code;
      return code != TypeCode::boolean && code != TypeCode::date;
    });
  }

  static constexpr const char* kColumns =
      "(K Integer PRIMARY KEY, A Varchar (20), B Text, C Integer, D SmallInt, E Double, F Bit, G Datetime, H "
      "Varbinary (20), I)";

  RandomValues values_{20010309};
};

TEST_F(RandomSearchTest, BothWaysAgree) {
  prepare(std::string("CREATE TABLE T ") + kColumns);
  prepare(std::string("CREATE TABLE W ") + kColumns + " WITHOUT ROWID");
  prepare("CREATE VIEW V AS SELECT * FROM T WHERE K % 3");
  fill("T", 300);
  fill("W", 300);
  open();
  int found = 0;
  int emptyCount = 0;
  for (int round = 0; round < 400; ++round) {
    static const std::vector<const char*> sources{"Select * from [T]",
                                                  "Select * from [T] order by A",
                                                  "Select * from T where K > 2500",
                                                  "Select B, A || 'a', E * 1.5, K from T order by K desc",
                                                  "Select * from [W]",
                                                  "Select * from W order by B",
                                                  "Select * from [V]",
                                                  "Select T.A, W.B, W.E from T join W on T.K = W.K"};
    const char* source = sources[values_.number(sources.size() - 1)];
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
    const std::u16string needle = decoded(values_.text(2));
    emptyCount += needle.empty() ? 1 : 0;
    const bool matchCase = values_.number(1) == 0;
    const std::vector<std::size_t> columns =
        values_.number(1) == 0 ? all(*fast)
                               : std::vector<std::size_t>{values_.number(fast->columns().size() - 1)};
    const auto most = static_cast<std::int64_t>(values_.number(3) == 0 ? values_.number(50) : 100000);
    for (std::int64_t start = 0; start < fast->recordCount();
         start += 1 + static_cast<std::int64_t>(values_.number(100))) {
      ASSERT_TRUE(fast->move(start, MoveOrigin::first));
      ASSERT_TRUE(plain->move(start, MoveOrigin::first));
      // The empty text stands in every value, and of fields that are not searched it passes over none,
      // either.
      const Found expected = needle.empty() && !areSearched(*plain, columns)
                                 ? Found{0, start + 1}
                                 : searchPlainly(*plain, needle, columns, matchCase, most);
      found += expected.position > 0 ? 1 : 0;
      ASSERT_EQ(expected, search(*fast, needle, columns, matchCase, most))
          << "round " << round << ", " << source << ", from " << start;
    }
  }
  EXPECT_GT(found, 200);
  EXPECT_GT(emptyCount, 50);
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
