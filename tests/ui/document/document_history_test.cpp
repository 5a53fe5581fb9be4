// Changes that are taken back and done again, and the page that shows the record.
#include "records/parts/arranger.h"
#include "records/parts/record_history.h"
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const wchar_t* kFirst = L"Select * from [First One]";

class DocumentHistoryTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
    theAppSettings->options().setWarningOnDeletion(0);
  }

  void openOn(ViewMode mode) {
    open();
    document().setViewMode(mode);
  }
  void type(const wchar_t* text) { window().form.fields.front().content = text; }
  /// As the commands of the window do it.
  bool take(HistoryWay way) {
    const std::optional<ViewMode> page = document().history().take(way);
    if (!page) return false;
    document().setViewMode(*page);
    document().history().showTaken();
    return true;
  }
  bool undo() { return take(HistoryWay::back); }
  bool redo() { return take(HistoryWay::again); }
  bool isOffered(int command) { return document().isOffered(command); }
};

TEST_F(DocumentHistoryTest, IsOfferedWhenThereIsSomethingToTake) {
  EXPECT_FALSE(isOffered(ID_HISTORY_UNDO));
  openOn(ViewMode::form);
  EXPECT_FALSE(isOffered(ID_HISTORY_UNDO));
  EXPECT_FALSE(undo());
  EXPECT_THAT(messages(), IsEmpty());
  type(L"11");
  document().moveNextRecord();
  EXPECT_TRUE(isOffered(ID_HISTORY_UNDO));
  EXPECT_FALSE(isOffered(ID_HISTORY_REDO));
  EXPECT_EQ(document().history().text(HistoryWay::back), L"Undo change of '11'");
  EXPECT_TRUE(undo());
  EXPECT_FALSE(isOffered(ID_HISTORY_UNDO));
  EXPECT_TRUE(isOffered(ID_HISTORY_REDO));
  document().closeDatabase();
  EXPECT_FALSE(isOffered(ID_HISTORY_REDO));
}

TEST_F(DocumentHistoryTest, TheFormShowsTheRecordThatWasChanged) {
  openOn(ViewMode::form);
  document().moveNextRecord();
  type(L"21");
  document().moveFirstRecord();
  EXPECT_EQ(value(), L"10");
  EXPECT_TRUE(undo());
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_THAT(stored(kFirst), ElementsAre(L"10", L"20", L"30"));
  document().moveFirstRecord();
  EXPECT_TRUE(redo());
  EXPECT_EQ(value(), L"21");
  EXPECT_THAT(messages(), IsEmpty());
}

/// The keys of a large table take their time.
TEST_F(DocumentHistoryTest, ForAChangeOfValuesTheRecordsAreNotOpenedAnew) {
  for (const ViewMode mode : {ViewMode::form, ViewMode::list}) {
    openOn(ViewMode::form);
    type(L"11");
    document().moveNextRecord();
    document().setViewMode(mode);
    ASSERT_EQ(recordCount, 3u);
    runStatements(path(), {L"INSERT INTO [First One] VALUES (40)"});
    EXPECT_TRUE(undo());
    EXPECT_EQ(recordCount, 3u);
    EXPECT_EQ(currentRecord, 1u);
    EXPECT_TRUE(redo());
    EXPECT_EQ(recordCount, 3u);
    EXPECT_TRUE(undo());
    runStatements(path(), {L"DELETE FROM [First One] WHERE a = 40"});
    document().closeDatabase();
  }
}

TEST_F(DocumentHistoryTest, ARecordWhosePlaceTheChangeTookComesBack) {
  runStatements(path(), {L"CREATE TABLE 'Fourth' (a Integer UNIQUE ON CONFLICT REPLACE)",
                         L"INSERT INTO Fourth VALUES (1)", L"INSERT INTO Fourth VALUES (2)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  type(L"2");
  document().moveNextRecord();
  EXPECT_THAT(stored(L"Select * from [Fourth]"), ElementsAre(L"2"));
  EXPECT_TRUE(undo());
  EXPECT_EQ(recordCount, 2u);
  EXPECT_EQ(value(), L"1");
  EXPECT_TRUE(redo());
  EXPECT_EQ(recordCount, 1u);
  EXPECT_EQ(value(), L"2");
}

TEST_F(DocumentHistoryTest, WhatIsTypedIsTheNewestChange) {
  openOn(ViewMode::form);
  type(L"11");
  EXPECT_TRUE(isOffered(ID_HISTORY_UNDO));
  EXPECT_FALSE(isOffered(ID_HISTORY_REDO));
  EXPECT_EQ(document().history().text(HistoryWay::back), L"Undo what is typed");
  EXPECT_EQ(document().history().text(HistoryWay::again), L"Redo");
  EXPECT_TRUE(undo());
  EXPECT_EQ(value(), L"10");
  EXPECT_TRUE(redo());
  EXPECT_EQ(value(), L"11");
}

TEST_F(DocumentHistoryTest, WhatIsTypedAndRefusedIsTakenOffTheFormWhenTheUserAgrees) {
  runStatements(path(), {L"CREATE TABLE 'Fourth' (a Integer UNIQUE)", L"INSERT INTO Fourth VALUES (1)",
                         L"INSERT INTO Fourth VALUES (2)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  type(L"3");
  document().moveNextRecord();
  document().moveFirstRecord();
  for (const bool isNew : {false, true}) {
    if (isNew) document().newRecord();
    const std::wstring before = value();
    type(L"2");
    window().prompts.agrees = false;
    EXPECT_FALSE(undo());
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_THAT(messages().front().text, HasSubstr(L"Do you want to discard what was typed?"));
    EXPECT_EQ(window().form.fields.front().content, L"2") << "the form stays as it is";
    window().prompts.agrees = true;
    window().prompts.messages.clear();
    EXPECT_FALSE(undo());
    EXPECT_EQ(messages().size(), 1u);
    EXPECT_EQ(value(), isNew ? L"2" : before);
    EXPECT_FALSE(document().isNewRecordPending());
    EXPECT_THAT(stored(L"Select * from [Fourth]"), ElementsAre(L"3", L"2")) << "nothing older was taken back";
    window().prompts.messages.clear();
  }
}

TEST_F(DocumentHistoryTest, ADeletedRecordComesBackInItsPlace) {
  openOn(ViewMode::form);
  document().moveNextRecord();
  document().deleteRecord();
  EXPECT_EQ(value(), L"10");
  EXPECT_TRUE(undo());
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(recordCount, 3u);
  EXPECT_TRUE(redo());
  EXPECT_EQ(recordCount, 2u);
  EXPECT_THAT(stored(kFirst), ElementsAre(L"10", L"30"));
}

TEST_F(DocumentHistoryTest, AnAddedRecordGoesAndComesAgain) {
  openOn(ViewMode::form);
  document().newRecord();
  type(L"40");
  document().moveFirstRecord();
  EXPECT_TRUE(undo());
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(value(), L"10");
  EXPECT_TRUE(redo());
  EXPECT_EQ(value(), L"40");
  EXPECT_EQ(currentRecord, 4u);
}

TEST_F(DocumentHistoryTest, TheOnlyRecordGoesAndComes) {
  open();
  document().openTableSelection(2);
  document().setViewMode(ViewMode::form);
  document().newRecord();
  type(L"5");
  EXPECT_TRUE(undo());
  EXPECT_EQ(recordCount, 0u);
  EXPECT_THAT(stored(L"Select * from [Empty]"), IsEmpty());
  EXPECT_TRUE(redo());
  EXPECT_EQ(value(), L"5");
  EXPECT_EQ(recordCount, 1u);
}

TEST_F(DocumentHistoryTest, TheListShowsTheRow) {
  openOn(ViewMode::list);
  currentRecord = 3;
  document().rowChosen();
  document().deleteRecord();
  EXPECT_TRUE(undo());
  EXPECT_EQ(document().viewMode(), ViewMode::list);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentHistoryTest, AFormThatHadNoRecordIsMadeForTheOneThatComesBack) {
  open();
  document().openTableSelection(1);
  document().setViewMode(ViewMode::list);
  currentRecord = 1;
  document().rowChosen();
  document().deleteRecord();
  ASSERT_EQ(recordCount, 0u);
  const int builds = window().form.builds;
  document().setViewMode(ViewMode::form);
  ASSERT_EQ(window().form.builds, builds) << "without a record there are no editors";
  EXPECT_TRUE(undo());
  EXPECT_EQ(window().form.builds, builds + 1);
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentHistoryTest, TheRightTableIsOpened) {
  openOn(ViewMode::form);
  type(L"11");
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"1");
  EXPECT_TRUE(undo());
  EXPECT_EQ(document().tableName().text(), std::wstring(L"First One"));
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentHistoryTest, FromAPageOfNamesTheFormShowsIt) {
  openOn(ViewMode::form);
  document().moveLastRecord();
  type(L"33");
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  EXPECT_TRUE(undo());
  EXPECT_EQ(document().viewMode(), ViewMode::form);
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentHistoryTest, AQueryThatHasTheRecordStaysInUse) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"20");
  type(L"25");
  EXPECT_TRUE(undo());
  EXPECT_TRUE(document().openedFromQuery());
  EXPECT_EQ(value(), L"20");
}

TEST_F(DocumentHistoryTest, AQueryThatHasItNoLongerGivesWayToTheTable) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::form);
  type(L"5");
  EXPECT_TRUE(undo());
  EXPECT_TRUE(redo());
  EXPECT_FALSE(document().openedFromQuery());
  EXPECT_EQ(value(), L"5");
}

TEST_F(DocumentHistoryTest, AFilterThatLeavesTheRecordOutGivesWay) {
  openOn(ViewMode::list);
  currentRecord = 1;
  document().rowChosen();
  document().deleteRecord();
  Arrangement arrangement;
  arrangement.require({.field = L"a", .test = Arrangement::Test::equal, .value = L"30", .shown = L"30"});
  ASSERT_TRUE(document().arranger().arrange(arrangement));
  EXPECT_EQ(recordCount, 1u);
  EXPECT_TRUE(undo());
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_TRUE(document().arranger().present().isEmpty());
  EXPECT_TRUE(redo());
  EXPECT_EQ(recordCount, 2u);
}

TEST_F(DocumentHistoryTest, AnOrderStays) {
  openOn(ViewMode::list);
  currentRecord = 1;
  document().rowChosen();
  document().deleteRecord();
  Arrangement arrangement;
  arrangement.orderBy({.field = L"a", .isDescending = true});
  ASSERT_TRUE(document().arranger().arrange(arrangement));
  EXPECT_TRUE(undo());
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_FALSE(document().arranger().present().isEmpty());
}

TEST_F(DocumentHistoryTest, ASavedQueryComesBackOnItsPage) {
  addQueries();
  openOn(ViewMode::queries);
  document().openQuerySelection(0);
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteQueryCommand(), CommandResult::done);
  EXPECT_EQ(window().queries->items.size(), 1u);
  EXPECT_TRUE(undo());
  EXPECT_EQ(document().viewMode(), ViewMode::queries);
  EXPECT_EQ(window().queries->items.size(), 2u);
}

TEST_F(DocumentHistoryTest, ARecordThatAnotherProgramHasChangedIsLeftAloneAndThatIsTold) {
  openOn(ViewMode::form);
  type(L"11");
  document().moveNextRecord();
  runStatements(path(), {L"UPDATE [First One] SET a = 99 WHERE a = 11"});
  EXPECT_FALSE(undo());
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text,
            L"The change could not be undone.\nAnother program has changed the record since.");
  EXPECT_THAT(stored(kFirst), ElementsAre(L"99", L"20", L"30"));
  EXPECT_FALSE(isOffered(ID_HISTORY_UNDO));
}

TEST_F(DocumentHistoryTest, WhatIsTooLargeToBeTakenBackLaterIsNotStoredAtAll) {
  runStatements(path(), {L"CREATE TABLE 'Pictures' (Title Text, Picture Image)",
                         L"INSERT INTO Pictures VALUES ('first', zeroblob(40000000)), ('second', NULL)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  document().moveNextRecord();
  type(L"changed");
  document().moveFirstRecord();
  window().form.fields[1].loaded = Bytes(40'000'000, 1);
  EXPECT_EQ(document().history().text(HistoryWay::back), L"Undo what is typed");
  EXPECT_FALSE(undo()) << "the form shows already what there is to be seen";
  EXPECT_FALSE(window().form.fields[1].isEdited());
  EXPECT_EQ(value(), L"first");
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_THAT(stored(L"Select hex(substr(Picture, 1, 2)) From Pictures Where Title = 'first'"),
              ElementsAre(L"0000"));
  EXPECT_EQ(document().history().text(HistoryWay::back), L"Undo change of 'changed'");
  EXPECT_TRUE(undo());
  EXPECT_EQ(value(), L"second");
}

TEST_F(DocumentHistoryTest, WhatIsTooLargeIsTakenOffTheMatchAndNotOffTheRecordBehind) {
  runStatements(path(), {L"CREATE TABLE 'Pictures' (Title Text, Picture Image)",
                         L"INSERT INTO Pictures VALUES ('first', NULL), ('second', NULL), ('third', NULL)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  window().prompts.setFind = [](FindState& state) {
    state.text = L"second";
    state.checkAllFields = 1;
  };
  document().openFind();
  document().findNext();
  ASSERT_EQ(value(), L"second");
  window().form.fields[1].loaded = Bytes(40'000'000, 1);
  EXPECT_FALSE(undo());
  EXPECT_EQ(value(), L"second");
  EXPECT_EQ(window().sight(), "form: record 2");
}

TEST_F(DocumentHistoryTest, ANewRecordThatIsTooLargeGoesAgain) {
  runStatements(path(), {L"CREATE TABLE 'Pictures' (Title Text, Picture Image)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  for (const wchar_t* title : {L"first", L"second"}) {
    document().newRecord();
    window().form.fields[1].loaded = Bytes(40'000'000, 1);
    EXPECT_FALSE(undo());
    EXPECT_FALSE(document().isNewRecordPending());
    document().newRecord();
    type(title);
    document().moveFirstRecord();
  }
  EXPECT_EQ(window().bar.position, L"    1 / 2");
  EXPECT_THAT(stored(L"Select Title From Pictures"), ElementsAre(L"first", L"second"));
}

TEST_F(DocumentHistoryTest, ForWhatIsStoredAsItWasNothingOlderIsTaken) {
  openOn(ViewMode::form);
  type(L"11");
  document().moveNextRecord();
  type(L"020");
  EXPECT_FALSE(undo());
  EXPECT_EQ(value(), L"20");
  EXPECT_THAT(stored(kFirst), ElementsAre(L"11", L"20", L"30"));
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_TRUE(undo());
  EXPECT_THAT(stored(kFirst), ElementsAre(L"10", L"20", L"30"));
}

TEST_F(DocumentHistoryTest, OfWhatNothingWasKeptIsToldThatItIsStored) {
  runStatements(path(), {L"CREATE TABLE 'Keyed' (a Text, b Text PRIMARY KEY)",
                         L"INSERT INTO Keyed VALUES ('old', NULL)"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  type(L"new");
  EXPECT_FALSE(undo());
  EXPECT_EQ(value(), L"new");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text,
            L"The change could not be undone.\nIt is stored, and what was there before was not kept.");
}

}  // namespace
