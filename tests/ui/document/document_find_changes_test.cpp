// The search while another program changes the records: between two steps, and between two parts of one.
#include "tests/ui/document/find_both_ways.h"

namespace {

using testing::ElementsAreArray;

class DocumentFindChangesTest : public FindBothWaysTest {
 protected:
  static constexpr int kRowCount = 60;

  void elsewhere(const std::string& sql) { automationtest::SqliteFile(copy().wstring()).run(sql); }

  /// Often one that makes some records match.
  static std::string anyChange(RandomValues& values, int query, const Wanted& wanted) {
    const std::string table = query == 1 || query == 3 ? "W" : "T";
    const auto someOf = [&](std::size_t share) {
      return " WHERE K % " + std::to_string(share) + " = " + std::to_string(values.number(share - 1));
    };
    const std::string text = RandomValues::asText(narrowOf(wanted.text));
    switch (values.number(8)) {
      case 0:
        return "DELETE FROM " + table + someOf(9);
      case 1:
        return insertInto(table, values);
      case 2:
        return "UPDATE OR IGNORE " + table + " SET K = K + 100001" + someOf(9);
      case 3:  // other records in the place of those that were read
        return "UPDATE " + table + " SET A = L, B = A, L = B, H = 'a'" + someOf(5);
      case 4:
        return "UPDATE " + table + " SET A = " + values.literal() + ", L = " + values.literal() + someOf(3);
      default:
        return "UPDATE " + table + " SET A = " + text + ", E = " + text + ", L = " + text + someOf(5);
    }
  }
};

TEST_F(DocumentFindChangesTest, BothWaysComeToTheSameWhenRecordsChangeBetweenSteps) {
  constexpr std::uint64_t kSeed = 20010311;
  RandomValues values(kSeed);
  fillWith(values, kRowCount);
  for (int round = 0; round < 5; ++round) {
    const int query = static_cast<int>(values.number(kQueryCount - 1));
    const auto start = static_cast<std::uint32_t>(1 + values.number(30));
    std::vector<std::string> changes;
    chooseParts(values);
    std::vector<std::wstring> seen[2];
    std::optional<Wanted> wanted;
    for (const bool isPlain : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(startAnew(!isPlain));
      show(query, start);
      if (!wanted) {
        wanted = anyWanted(values);
        for (int step = 0; step < 2; ++step) changes.push_back(anyChange(values, query, *wanted));
      }
      enter(*wanted);
      seen[isPlain] = pressAround([&](int number) {
        const auto change = static_cast<std::size_t>(number);
        if (change < changes.size()) elsewhere(changes[change]);
        return press();
      });
    }
    ASSERT_THAT(seen[0], ElementsAreArray(seen[1])) << "seed " << kSeed << ", round " << round << ", query "
                                                    << query << ", from " << start << described({*wanted});
  }
  EXPECT_GT(components().passedCount, 100);
  EXPECT_GT(components().refusedCount, 20);
  EXPECT_GT(foundCount_, 10);
}

TEST_F(DocumentFindChangesTest, BothWaysComeToTheSameWhenRecordsChangeDuringAStep) {
  constexpr std::uint64_t kSeed = 20010312;
  RandomValues values(kSeed);
  fillWith(values, kRowCount);
  int changeCount = 0;
  for (int round = 0; round < 14; ++round) {
    const int query = static_cast<int>(values.number(kQueryCount - 1));
    const auto start = static_cast<std::uint32_t>(1 + values.number(30));
    /// What happens in a step when it has come so far.
    struct Change {
      std::uint32_t after;
      std::string sql;
      int times = 0;
    };
    std::vector<Change> changes;
    components().mostRecords = 1 + static_cast<long>(values.number(12));
    std::vector<std::wstring> seen[2];
    std::optional<Wanted> wanted;
    for (const bool isPlain : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(startAnew(!isPlain));
      show(query, start);
      if (!wanted) {
        wanted = anyWanted(values);
        for (int each = 0; each < 3; ++each)
          changes.push_back(
              {static_cast<std::uint32_t>(values.number(40)), anyChange(values, query, *wanted)});
      }
      enter(*wanted);
      std::size_t step = 0;
      window().prompts.goesOnSearching = [&](std::uint32_t tested, std::uint32_t all) {
        if (step >= changes.size() || tested >= all) return true;
        Change& change = changes[step];
        // The plain way is asked at each record, and so where the other one was, too.
        const bool isDue = isPlain ? change.times == 1 && tested == change.after
                                   : change.times == 0 && tested >= change.after;
        if (!isDue) return true;
        change.after = tested;
        ++change.times;
        elsewhere(change.sql);
        return true;
      };
      seen[isPlain] = pressAround([&](int number) {
        step = static_cast<std::size_t>(number);
        return press();
      });
    }
    ASSERT_THAT(seen[0], ElementsAreArray(seen[1])) << "seed " << kSeed << ", round " << round << ", query "
                                                    << query << ", from " << start << described({*wanted});
    for (const Change& change : changes) {
      EXPECT_NE(change.times, 1) << "only one way has met with it";
      changeCount += change.times;
    }
  }
  EXPECT_GT(components().passedCount, 100);
  EXPECT_GT(components().refusedCount, 20);
  EXPECT_GT(changeCount, 10);
}

}  // namespace
