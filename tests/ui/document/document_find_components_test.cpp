// The search with the components' own search and without it, record by record.
#include "tests/ui/document/find_both_ways.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class DocumentFindWordsTest : public FindBothWaysTest {
 protected:
  void SetUp() override {
    FindBothWaysTest::SetUp();
    runStatements(
        path(),
        {L"CREATE TABLE 'Words' (w Text, v Text)", L"INSERT INTO Words VALUES ('pear', 'red')",
         L"INSERT INTO Words VALUES ('fig', 'blue')", L"INSERT INTO Words VALUES ('fig', NULL)",
         L"INSERT INTO Words VALUES ('plum', 'Pear')", L"INSERT INTO Words VALUES ('sloe', 'black')"});
    open();
    document().openTableSelection(3);
    document().setViewMode(ViewMode::form);
  }
};

TEST_F(DocumentFindWordsTest, ComponentsWithoutASearchAreSearchedAllTheSame) {
  components().isOn = false;
  goTo(2);
  enter({L"PEAR", std::nullopt, false});
  EXPECT_THAT(press(), HasSubstr(L"    4 / 5, cursor 5 and 5, field 1"));
  EXPECT_TRUE(isFound());
  EXPECT_THAT(press(), HasSubstr(L"    1 / 5, cursor 2 and 2, field 0"));
  EXPECT_TRUE(isFound());
  enter({L"zebra", std::nullopt, false});
  EXPECT_THAT(press(), HasSubstr(L" # Searched all records: All records searched for 'zebra'"));
  EXPECT_EQ(components().refusedCount, 3);
  EXPECT_EQ(components().passedCount, 0);
}

TEST_F(DocumentFindWordsTest, AStepThatIsStoppedInItsSecondPassShowsTheRecordFromWhichItStarted) {
  components().mostRecords = 1;
  for (const bool isOn : {true, false}) {
    components().isOn = isOn;
    goTo(3);
    bool isStopped = true;
    std::uint32_t stoppedAt = 0;
    window().prompts.goesOnSearching = [&](std::uint32_t tested, std::uint32_t) {
      // Behind the records 3 and 4, and the first one.
      if (!isStopped || tested < 3) return true;
      stoppedAt = currentRecord;
      return false;
    };
    enter({L"BLUE", std::nullopt, false});
    EXPECT_THAT(press(), StartsWith(L"    3 / 5, cursor 3 and 3, field 0, form: record 3 | fig | "));
    EXPECT_EQ(stoppedAt, 2u);
    EXPECT_THAT(messages(), IsEmpty());
    isStopped = false;
    EXPECT_THAT(press(), StartsWith(L"    2 / 5, cursor 3 and 3, field 1, form: record 2 | fig | blue"));

    // The same behind a match, where the search goes on.
    goTo(4);
    enter({L"pear", std::nullopt, false});
    const std::wstring found = press();
    EXPECT_THAT(found, StartsWith(L"    4 / 5, cursor 5 and 5, field 1, form: record 4 | plum | Pear"));
    window().prompts.goesOnSearching = [&](std::uint32_t, std::uint32_t) { return currentRecord > 1; };
    press();
    EXPECT_EQ(window().bar.position, L"    4 / 5");
    EXPECT_EQ(window().sight(), "form: record 4");
    EXPECT_EQ(currentRecord, 5u);
    EXPECT_EQ(components().position(), 5);
    window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return true; };
    EXPECT_THAT(press(), StartsWith(L"    1 / 5, cursor 2 and 2, field 0, form: record 1 | pear"));
    EXPECT_THAT(messages(), IsEmpty());
  }
}

}  // namespace
