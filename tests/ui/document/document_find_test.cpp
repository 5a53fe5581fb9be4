// The search for text: its two passes, where they begin and end, and what the user is told.
#include <chrono>

#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DocumentFindTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    runStatements(path(), {L"CREATE TABLE 'Words' (w Text, v Text, b Boolean)",
                           L"INSERT INTO Words VALUES ('apple', 'red', 1)",
                           L"INSERT INTO Words VALUES ('Pear', 'green', 0)",
                           L"INSERT INTO Words VALUES ('apple tart', 'brown', 1)",
                           L"INSERT INTO Words VALUES ('cherry', 'apple red', 0)",
                           L"INSERT INTO Words VALUES ('plum', 'blue', 1)"});
    open();
    document().openTableSelection(3);
    document().setViewMode(ViewMode::form);
  }

  /// Opens the dialog with this text to be searched for, in all fields or in one.
  void find(const wchar_t* text, const wchar_t* field = nullptr, bool matchCase = false) {
    window().prompts.setFind = [=](FindState& state) {
      state.text = text;
      state.checkAllFields = field ? 0 : 1;
      state.fieldName = field ? field : L"w";
      state.matchCase = matchCase ? 1 : 0;
    };
    document().openFind();
    messages().clear();
    window().prompts.isFindDialogOutdated = true;
  }
  std::vector<std::wstring> texts() {
    std::vector<std::wstring> result;
    for (const auto& message : messages()) result.push_back(message.text);
    return result;
  }
};

TEST_F(DocumentFindTest, IsForTheFormAndAnOpenDatabase) {
  document().setViewMode(ViewMode::list);
  document().openFind();
  EXPECT_FALSE(window().prompts.findFields.has_value());
  window().prompts.isFindDialogOutdated = true;
  document().findNext();
  EXPECT_TRUE(window().prompts.isFindDialogOutdated);
  EXPECT_EQ(window().sight(), "grid: row 1 of 5");
  document().closeDatabase();
  document().setViewMode(ViewMode::form);
  document().openFind();
  EXPECT_THAT(texts(), ElementsAre(L"Cannot find text when a database is not open!"));
}

TEST_F(DocumentFindTest, OpeningItStoresANewRecordAndTheBarsSayThatItIsOne) {
  theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  document().newRecord();
  ASSERT_TRUE(document().isNewRecordPending());
  ASSERT_FALSE(window().bar.inMenu(PopupMenu::record, ID_RECORD_FIRST));
  find(L"pear");
  EXPECT_FALSE(document().isNewRecordPending());
  EXPECT_TRUE(window().bar.inMenu(PopupMenu::record, ID_RECORD_FIRST));
}

TEST_F(DocumentFindTest, AMatchIsShownAndTheCursorGoesOnBehindIt) {
  find(L"pear");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    2 / 5");
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_EQ(value(), L"Pear");
  EXPECT_EQ(window().form.focus, 0u);
  EXPECT_FALSE(window().prompts.isFindDialogOutdated);
  EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(DocumentFindTest, EachStepGoesToTheNextRecordThatMatches) {
  find(L"apple");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    1 / 5");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    3 / 5");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    4 / 5");
  EXPECT_EQ(window().form.focus, 1u);
}

TEST_F(DocumentFindTest, OneFieldAlone) {
  find(L"apple", L"v");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    4 / 5");
}

TEST_F(DocumentFindTest, AStepThatIsStoppedChangesNothing) {
  find(L"apple");
  document().findNext();
  const std::uint32_t behind = currentRecord;
  window().prompts.isFindDialogOutdated = true;
  window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return false; };
  document().findNext();
  EXPECT_EQ(currentRecord, behind);
  EXPECT_EQ(window().bar.position, L"    1 / 5");
  EXPECT_THAT(texts(), IsEmpty());
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_FALSE(window().prompts.isFindDialogOutdated);
  EXPECT_FALSE(window().prompts.isProgressShown);
  EXPECT_FALSE(document().isBusy());
  window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return true; };
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    3 / 5");
}

TEST_F(DocumentFindTest, AStepBehindTheLastRecordIsStoppedThere) {
  find(L"plum");
  document().findNext();
  ASSERT_EQ(currentRecord, 6u);
  window().prompts.goesOnSearching = [](std::uint32_t, std::uint32_t) { return false; };
  document().findNext();
  EXPECT_EQ(currentRecord, 6u);
  EXPECT_EQ(window().bar.position, L"    5 / 5");
}

TEST_F(DocumentFindTest, NoCommandOfTheSearchRunsDuringAStep) {
  find(L"zebra");
  int asked = 0;
  window().prompts.goesOnSearching = [&](std::uint32_t tested, std::uint32_t all) {
    EXPECT_TRUE(document().isBusy());
    EXPECT_TRUE(window().prompts.isProgressShown);
    EXPECT_LE(tested, all);
    EXPECT_EQ(all, 5u);
    if (++asked == 1) document().findNext();
    return true;
  };
  document().findNext();
  EXPECT_GT(asked, 0);
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'zebra'"));
  EXPECT_FALSE(window().prompts.isProgressShown);
}

TEST_F(DocumentFindTest, HowLongAStepHasLastedIsTold) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kPart{20};
  find(L"zebra");
  int asked = 0;
  window().prompts.goesOnSearching = [&](std::uint32_t, std::uint32_t) {
    EXPECT_GE(window().prompts.lasted, asked * kPart);
    ++asked;
    for (const auto end = Clock::now() + kPart; Clock::now() < end;) continue;
    return true;
  };
  document().findNext();
  EXPECT_GE(asked, 2);
}

TEST_F(DocumentFindTest, TheCaseOfLettersCountsWhenItIsAskedFor) {
  find(L"pear", L"w", true);
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'pear'"));
  find(L"Pear", L"w", true);
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    2 / 5");
}

TEST_F(DocumentFindTest, TheSecondPassBeginsAtTheFirstRecord) {
  document().moveLastRecord();
  find(L"pear");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    2 / 5");
  EXPECT_EQ(currentRecord, 3u);
}

TEST_F(DocumentFindTest, ATextThatOccursNowhereEndsAtTheStart) {
  document().moveNextRecord();
  find(L"zebra");
  document().findNext();
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(window().bar.position, L"    2 / 5");
  EXPECT_THAT(messages(),
              ElementsAre(FakePrompts::Message{PromptOwner::findDialog, L"All records searched for 'zebra'",
                                               L"Searched all records", Notice::searchEnd}));
}

TEST_F(DocumentFindTest, BooleansAreNotSearched) {
  find(L"-1");
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for '-1'"));
}

TEST_F(DocumentFindTest, SpecialCharactersAreTakenAsTheyAre) {
  for (const wchar_t* text : {L"%s%n%f", L"'", L"\"", L"[a]", L"😀"}) {
    find(text);
    document().findNext();
    EXPECT_THAT(texts(), ElementsAre(std::wstring(L"All records searched for '") + text + L"'"));
  }
}

TEST_F(DocumentFindTest, AChangeAfterAMatchGoesIntoTheRecordThatIsShown) {
  find(L"pear");
  document().findNext();
  ASSERT_EQ(currentRecord, 3u);
  window().form.fields[1].content = L"yellow";
  document().commitCurrentRecord();
  EXPECT_EQ(currentRecord, 2u) << "the cursor stood behind the record that was changed";
  EXPECT_THAT(stored(L"Select v from Words"),
              ElementsAre(L"red", L"yellow", L"brown", L"apple red", L"blue"));
}

TEST_F(DocumentFindTest, ADeletionAfterAMatchDeletesTheRecordThatIsShown) {
  theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  find(L"pear");
  document().findNext();
  document().deleteRecord();
  find(L"pear");
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'pear'"));
  find(L"tart");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    2 / 4");
}

TEST_F(DocumentFindTest, AfterAMatchTheListSelectsTheRecordThatIsShown) {
  find(L"pear");
  document().findNext();
  ASSERT_EQ(currentRecord, 3u);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 2 of 5");
  EXPECT_EQ(window().bar.position, L"    2 / 5");
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"Pear");
  EXPECT_EQ(window().bar.position, L"    2 / 5");
}

TEST_F(DocumentFindTest, AfterAMatchInTheLastRecordTheListSelectsThat) {
  find(L"plum");
  document().findNext();
  ASSERT_EQ(currentRecord, 6u);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 5 of 5");
  EXPECT_EQ(window().bar.position, L"    5 / 5");
}

TEST_F(DocumentFindTest, ASearchThatBeginsBehindTheLastRecordEndsOnIt) {
  document().moveLastRecord();
  find(L"plum");
  document().findNext();
  ASSERT_EQ(window().bar.position, L"    5 / 5");
  ASSERT_EQ(currentRecord, 6u);
  find(L"zebra");
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'zebra'"));
  EXPECT_EQ(window().bar.position, L"    5 / 5");
  EXPECT_EQ(value(), L"plum");
}

TEST_F(DocumentFindTest, TheDialogOpensOverAnEmptyTableToo) {
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(2);
  document().setViewMode(ViewMode::form);
  document().openFind();
  EXPECT_THAT(window().prompts.findFields, testing::Optional(ElementsAre(L"c")));
  find(L"zebra");
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'zebra'"));
  EXPECT_EQ(window().bar.position, L"No Records");
  document().findNext();
  EXPECT_THAT(texts(), testing::SizeIs(2));
}

TEST_F(DocumentFindTest, TheDialogOpensWithoutARecordsetAndNamesNoFields) {
  addQueries();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(1);
  document().setViewMode(ViewMode::form);
  ASSERT_FALSE(document().isRecordsetOpen());
  document().openFind();
  EXPECT_THAT(window().prompts.findFields, testing::Optional(IsEmpty()));
  find(L"zebra");
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'zebra'"));
  EXPECT_EQ(window().bar.position, L"No Records");
}

TEST_F(DocumentFindTest, TheRecordThatThePassesLeaveOutIsFoundAndShownLikeAnyOther) {
  find(L"plum");
  document().findNext();
  EXPECT_THAT(texts(), IsEmpty());
  EXPECT_EQ(window().bar.position, L"    5 / 5");
  EXPECT_EQ(currentRecord, 6u);
  EXPECT_EQ(window().form.focus, 0u);
  EXPECT_EQ(value(), L"plum");
  window().form.fields[1].content = L"violet";
  document().commitCurrentRecord();
  EXPECT_THAT(stored(L"Select v from Words"),
              ElementsAre(L"red", L"green", L"brown", L"apple red", L"violet"))
      << "a change means the record that is shown";
}

TEST_F(DocumentFindTest, AContinuedSearchOfOneFieldLeavesNoRecordOut) {
  // Each step of it ends its first pass a record earlier than the one before.
  runStatements(path(), {L"INSERT INTO Words VALUES ('sloe', 'blue', 1)"});
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  document().moveNextRecord();
  find(L"lue", L"v");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    5 / 6");
  document().findNext();
  EXPECT_EQ(window().bar.position, L"    6 / 6");
  EXPECT_THAT(texts(), IsEmpty());
  document().findNext();
  EXPECT_THAT(texts(), ElementsAre(L"All records searched for 'lue'"));
  EXPECT_EQ(window().bar.position, L"    2 / 6");
}

}  // namespace
