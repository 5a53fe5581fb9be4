// The search with the components' own search and without it, in random tables.
#include "tests/ui/document/find_both_ways.h"

namespace {

using testing::ElementsAreArray;

class DocumentFindRandomTest : public FindBothWaysTest {
 protected:
  static constexpr int kRowCount = 60;
};

TEST_F(DocumentFindRandomTest, BothWaysComeToTheSameRecordsAndMessages) {
  constexpr std::uint64_t kSeed = 20010309;
  RandomValues values(kSeed);
  fillWith(values, kRowCount);
  open();
  for (int round = 0; round < 22; ++round) {
    const int query = static_cast<int>(values.number(kQueryCount - 1));
    show(query, 1);
    const auto start = static_cast<std::uint32_t>(1 + values.number(recordCount - 1));
    // The second one begins where the first one has left everything.
    const std::vector<Wanted> searches{anyWanted(values), anyWanted(values)};
    chooseParts(values);
    std::vector<std::wstring> seen[2];
    for (const bool isPlain : {false, true}) {
      components().isOn = !isPlain;
      goTo(start);
      for (const Wanted& wanted : searches) {
        enter(wanted);
        const std::vector<std::wstring> steps = pressAround();
        seen[isPlain].insert(seen[isPlain].end(), steps.begin(), steps.end());
      }
    }
    ASSERT_THAT(seen[0], ElementsAreArray(seen[1])) << "seed " << kSeed << ", round " << round << ", query "
                                                    << query << ", from " << start << described(searches);
  }
  EXPECT_GT(components().passedCount, 1000);
  EXPECT_GT(components().refusedCount, 300);
  EXPECT_GT(foundCount_, 500);
}

TEST_F(DocumentFindRandomTest, StepsThatAreStoppedChangeNothingOfThoseThatFollow) {
  constexpr std::uint64_t kSeed = 20010313;
  RandomValues values(kSeed);
  fillWith(values, kRowCount);
  open();
  int stopCount = 0;
  for (int round = 0; round < 32; ++round) {
    const int query = static_cast<int>(values.number(kQueryCount - 1));
    show(query, 1);
    const auto start = static_cast<std::uint32_t>(1 + values.number(recordCount - 1));
    const Wanted wanted = anyWanted(values);
    components().isOn = values.number(1) == 0;
    components().mostRecords = 1 + static_cast<long>(values.number(9));
    goTo(start);
    enter(wanted);
    const std::vector<std::wstring> unstopped = pressAround();
    goTo(start);
    enter(wanted);
    const auto stopAndGoOn = [&](int) {
      const std::wstring before = sight();
      auto questionsLeft = static_cast<int>(values.number(15));
      window().prompts.goesOnSearching = [&](std::uint32_t, std::uint32_t) { return --questionsLeft >= 0; };
      std::wstring seen = press();
      window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return true; };
      if (questionsLeft >= 0) return seen;
      ++stopCount;
      EXPECT_EQ(seen, before) << "seed " << kSeed << ", round " << round << ", stopped";
      return press();
    };
    ASSERT_THAT(pressAround(stopAndGoOn), ElementsAreArray(unstopped))
        << "seed " << kSeed << ", round " << round << ", query " << query << ", from " << start
        << described({wanted});
  }
  EXPECT_GT(stopCount, 25);
}

TEST_F(DocumentFindRandomTest, BothWaysComeToTheSameWithANewRecord) {
  constexpr std::uint64_t kSeed = 20010310;
  RandomValues values(kSeed);
  fillWith(values, kRowCount);
  constexpr int kUpdatable[] = {0, 2, 5};
  for (int round = 0; round < 9; ++round) {
    const int query = kUpdatable[values.number(2)];
    const auto start = static_cast<std::uint32_t>(1 + values.number(15));
    const std::wstring typed = wideOf(values.text(3));
    const bool isNewBefore = values.number(1) == 0;
    chooseParts(values);
    std::vector<std::wstring> seen[2];
    std::optional<Wanted> wanted;
    for (const bool isPlain : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(startAnew(!isPlain));
      show(query, start);
      if (!wanted) wanted = anyWanted(values);
      const auto type = [&] {
        document().newRecord();
        EXPECT_TRUE(document().isNewRecordPending());
        for (std::uint32_t field = 0; field < document().fieldCount(); ++field) {
          if (std::wstring(document().fieldName(field).text()) == L"B")
            window().form.fields[field].content = typed;
        }
      };
      if (isNewBefore) type();
      enter(*wanted);
      if (!isNewBefore) type();
      seen[isPlain] = pressAround();
      seen[isPlain].push_back(stored(L"Select max(B) from T", copy()).front());
    }
    ASSERT_THAT(seen[0], ElementsAreArray(seen[1])) << "seed " << kSeed << ", round " << round << ", query "
                                                    << query << ", from " << start << described({*wanted});
  }
  EXPECT_GT(components().passedCount, 100);
  EXPECT_GT(components().refusedCount, 30);
}

}  // namespace
