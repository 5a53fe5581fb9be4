// The search through all tables, and the way to what it has found.
#include <vector>

#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DocumentEverywhereTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    runStatements(path(),
                  {L"CREATE TABLE 'Books' (Title Text, Born datetime, Raw, Pages Integer)",
                   L"INSERT INTO Books VALUES ('Ulysses', '2001-03-09', x'0A20', 20), ('the \x00C4ra of "
                   L"fish', NULL, NULL, 9223372036854775807), ('x' || char(13, 10) || 'y', NULL, NULL, 1)"});
    open();
  }

  std::vector<std::wstring> places(const wchar_t* text) {
    std::vector<std::wstring> found;
    last_.clear();
    isWhole_ = document().findEverywhere(text, [&](const FoundPlace& place) {
      found.push_back(std::wstring(place.table.text()) + L"/" + std::to_wstring(place.record) + L"/" +
                      place.field.text() + L"/" + place.excerpt);
      last_.push_back(place);
      return found.size() < most_;
    });
    return found;
  }

  std::vector<FoundPlace> last_;
  bool isWhole_ = false;
  std::size_t most_ = 100;
};

TEST_F(DocumentEverywhereTest, EachPlaceInEachTableIsTold) {
  EXPECT_THAT(places(L"20"), ElementsAre(L"First One/2/a/20", L"Books/1/Raw/0A 20", L"Books/1/Pages/20",
                                         L"Books/2/Pages/9223372036854775807"));
  EXPECT_TRUE(isWhole_);
  EXPECT_THAT(places(L"uLySS"), ElementsAre(L"Books/1/Title/Ulysses"));
  EXPECT_THAT(places(L"\x00E4RA"), ElementsAre(L"Books/2/Title/the \x00C4ra of fish"));
  EXPECT_THAT(places(L"4775807"), ElementsAre(L"Books/2/Pages/9223372036854775807"));
  EXPECT_THAT(places(L"2001"), IsEmpty()) << "dates are not searched";
  EXPECT_THAT(places(L"y"), ElementsAre(L"Books/1/Title/Ulysses", L"Books/3/Title/x  y"));
  EXPECT_THAT(places(L"nowhere"), IsEmpty());
  EXPECT_TRUE(isWhole_);
  EXPECT_FALSE(document().findEverywhere(L"", [](const FoundPlace&) { return true; }));
}

TEST_F(DocumentEverywhereTest, OfALongValueThereIsAnExcerpt) {
  runStatements(path(), {L"UPDATE Books SET Title = hex(zeroblob(500)) || 'needle' || hex(zeroblob(500))"});
  const std::vector<std::wstring> found = places(L"NEEDLE");
  ASSERT_EQ(found.size(), 3u);
  EXPECT_THAT(found[0], testing::StartsWith(L"Books/1/Title/...00000000000000000000needle0"));
  EXPECT_LT(found[0].size(), 110u);
}

TEST_F(DocumentEverywhereTest, ItEndsWhenNobodyWantsMore) {
  most_ = 2;
  EXPECT_EQ(places(L"0").size(), 2u);
  EXPECT_FALSE(isWhole_);
  most_ = 100;
  window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return false; };
  EXPECT_LE(places(L"0").size(), 1u) << "the user has stopped it";
  EXPECT_FALSE(isWhole_);
  EXPECT_FALSE(document().isBusy());
}

TEST_F(DocumentEverywhereTest, ItEndsAmongTablesWithoutARecordToo) {
  runStatements(path(), {L"DELETE FROM Books", L"DELETE FROM 'First One'", L"DELETE FROM Second"});
  int asked = 0;
  window().prompts.goesOnBusy = [&](Progress::What what) {
    if (what == Progress::What::searchingTables) ++asked;
    return true;
  };
  EXPECT_THAT(places(L"0"), IsEmpty());
  EXPECT_TRUE(isWhole_);
  EXPECT_EQ(asked, 3) << "between four tables";
  window().prompts.goesOnBusy = [&](Progress::What) { return false; };
  EXPECT_THAT(places(L"0"), IsEmpty());
  EXPECT_FALSE(isWhole_);
  EXPECT_FALSE(window().prompts.isProgressShown);
}

TEST_F(DocumentEverywhereTest, ATableThatIsGoneIsTold) {
  runStatements(path(), {L"DROP TABLE Second"});
  const std::vector<std::wstring> found = places(L"20");
  ASSERT_EQ(found.size(), 5u);
  EXPECT_EQ(last_[1].record, 0u);
  EXPECT_STREQ(last_[1].table.text(), L"Second");
  EXPECT_FALSE(last_[1].excerpt.empty());
}

TEST_F(DocumentEverywhereTest, ThePlaceIsShownOnTheForm) {
  document().setViewMode(ViewMode::list);
  places(L"fish");
  ASSERT_EQ(last_.size(), 1u);
  ASSERT_TRUE(document().chooseFound(last_[0]));
  document().setViewMode(ViewMode::form);
  document().showFound(last_[0], L"fish");
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"the \x00C4ra of fish");
  EXPECT_STREQ(document().tableName().text(), L"Books");
}

TEST_F(DocumentEverywhereTest, APlaceThatIsGoneIsTold) {
  places(L"fish");
  ASSERT_EQ(last_.size(), 1u);
  runStatements(path(), {L"DELETE FROM Books WHERE Title LIKE '%fish'"});
  ASSERT_TRUE(document().chooseFound(last_[0]));
  document().setViewMode(ViewMode::form);
  document().showFound(last_[0], L"fish");
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"The text is no longer there: another program has changed the records."));
}

TEST_F(DocumentEverywhereTest, TheSearchLeavesTheRecordThatIsShown) {
  document().setViewMode(ViewMode::form);
  document().moveLastRecord();
  ASSERT_EQ(value(), L"30");
  places(L"20");
  EXPECT_EQ(value(), L"30");
  EXPECT_EQ(currentRecord, 3u);
  document().moveFirstRecord();
  EXPECT_EQ(value(), L"10");
}

}  // namespace
