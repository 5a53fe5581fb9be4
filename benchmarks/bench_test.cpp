#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "benchmarks/bare_database.h"
#include "benchmarks/find_measures.h"
#include "benchmarks/order_measures.h"
#include "tests/support/paths.h"

// That the benchmark of the search works, on a small table. How long it takes is ./bench's to say.

namespace bench {
namespace {

class BenchTest : public testing::Test {
 protected:
  static constexpr int kRecords = 100'000;

  BenchTest() {
    const std::u8string utf8 = folder_.file("bench.cdb").u8string();
    path_.assign(utf8.begin(), utf8.end());
    sqlite3* made = nullptr;
    EXPECT_EQ(sqlite3_open(path_.c_str(), &made), SQLITE_OK);
    const std::string sql =
        "PRAGMA synchronous=OFF; CREATE TABLE Measurements (Id Integer, Station Varchar (40), Observer "
        "Varchar "
        "(60), Place Varchar (255), Count SmallInt, Level Integer, Valid Bit, Taken Datetime, Reading "
        "Double, "
        "Remarks Text); WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(kRecords) +
        ") INSERT INTO Measurements SELECT i, 'Harbour', 'Anna Lindqvist', 'Plot ' || (i % 997), i % 2000 - "
        "1000, "
        "i * 7919 % 2000000, i % 2, '2001-03-09 10:00:00', i / 1024.0, 'A heron stood on the gauge.' FROM n";
    EXPECT_EQ(sqlite3_exec(made, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(made);
    prepareFind(path_);
  }

  testsupport::TempFolder folder_;
  std::string path_;
};

// Each measurement itself ends the program when it does not pass over the records that it should.
TEST_F(BenchTest, EachSearchIsMeasuredOnBothSides) {
  for (const Measure& measure : makeFindMeasures(path_)) {
    SCOPED_TRACE(measure.name);
    EXPECT_GT(measure.engine(), 0);
    EXPECT_GT(measure.bare(), 0);
  }
}

TEST_F(BenchTest, EachOrderIsMeasuredOnBothSides) {
  for (const Measure& measure : makeOrderMeasures(path_)) {
    SCOPED_TRACE(measure.name);
    EXPECT_GT(measure.engine(), 0);
    EXPECT_GT(measure.bare(), 0);
  }
}

TEST_F(BenchTest, TheBareStatementsFindNothingEither) {
  BareDatabase bare(path_);
  for (const BareSearch& search : bareSearches())
    EXPECT_EQ(bare.runToEnd(search.statement), 0) << search.name;
  EXPECT_EQ(bare.runToEnd("SELECT 1 FROM Measurements WHERE Remarks LIKE '%HERON%'"), kRecords);
}

TEST_F(BenchTest, TheNextMatchIsMeasured) {
  EXPECT_GT(secondsOfMatch(path_), 0);
}

}  // namespace
}  // namespace bench
