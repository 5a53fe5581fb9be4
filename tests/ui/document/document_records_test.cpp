// New and deleted records, records that the store refuses, and going to a number.
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::VariantWith;

namespace {

class DocumentRecordsTest : public DocumentTest {
 protected:
  void showForm(int table = 0) {
    open();
    document().openTableSelection(table);
    document().setViewMode(ViewMode::form);
  }
  static void allow(std::uint32_t rights) { theAppSettings->options().setGenUpdateRights(rights); }
  static void warn() { theAppSettings->options().setWarningOnDeletion(1); }
  std::size_t storedCount() { return stored(document().sqlText().text()).size(); }
};

// ---- Typing into what can't be stored

TEST_F(DocumentRecordsTest, TypingIsLookedAtOnceInEachFile) {
  document().editBegun();
  EXPECT_EQ(window().prompts.typedCount, 0) << "without a database";
  showForm();
  document().editBegun();
  document().editBegun();
  EXPECT_EQ(window().prompts.typedCount, 1);
  document().closeDatabase();
  showForm();
  document().editBegun();
  EXPECT_EQ(window().prompts.typedCount, 2);
}

TEST_F(DocumentRecordsTest, WhereNothingCanBeStoredTheReasonIsTold) {
  showForm();
  document().tellUnwritable();
  EXPECT_THAT(messages(), IsEmpty());
  document().closeDatabase();
  document().tellUnwritable();
  EXPECT_THAT(messages(), IsEmpty()) << "without a database";
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY);
  showForm();
  document().tellUnwritable();
  EXPECT_THAT(messages(),
              ElementsAre(FakePrompts::Message{
                  PromptOwner::mainWindow, L"What is typed can't be stored.\nThe database can only be read.",
                  L"Quivane", Notice::refusal}));
  document().closeDatabase();
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

// ---- New records

TEST_F(DocumentRecordsTest, NewWithoutADatabaseIsRefused) {
  document().setViewMode(ViewMode::form);
  allow(kNewRecords);
  EXPECT_EQ(document().newRecord(), 0);
  EXPECT_THAT(messages(),
              ElementsAre(FakePrompts::Message{PromptOwner::mainWindow,
                                               L"Cannot create a new record when a database is not open!",
                                               L"Quivane", Notice::refusal}));
}

TEST_F(DocumentRecordsTest, WithoutRightsBothNewAndDeleteAreRefused) {
  showForm();
  allow(kNoNewRecordsOrDeletions);
  document().newRecord();
  document().deleteRecord();
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_EQ(messages()[0].text, L"Cannot create new records!\nUpdate rights currently disallow it");
  EXPECT_EQ(messages()[1].text, L"Cannot delete records!\nUpdate rights currently disallow it");
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentRecordsTest, WithRightsForNewRecordsOnlyDeleteIsRefused) {
  showForm();
  allow(kNewRecords);
  document().newRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(recordCount, 4u);
  EXPECT_EQ(currentRecord, 4u);
  document().deleteRecord();
  EXPECT_EQ(messages().size(), 1u);
}

TEST_F(DocumentRecordsTest, RightsOutsideTheThreeAllowNewRecordsButNoDeletions) {
  showForm();
  allow(3);
  document().newRecord();
  EXPECT_EQ(recordCount, 4u);
  document().deleteRecord();
  EXPECT_EQ(messages().size(), 1u);
}

TEST_F(DocumentRecordsTest, ANewRecordIsShownAtTheEndAndThePanelRaised) {
  showForm();
  allow(kNewRecords);
  document().newRecord();
  EXPECT_EQ(window().sight(), "form: record 4");
  EXPECT_TRUE(window().prompts.isPanelUp);
  EXPECT_EQ(value(), L"");
  EXPECT_EQ(window().bar.position, L"    4 / 4");
  EXPECT_TRUE(document().isNewRecordPending());
}

TEST_F(DocumentRecordsTest, BeforeANewRecordWhatWasChangedIsStored) {
  showForm();
  allow(kNewRecords);
  window().form.fields[0].content = L"15";
  document().newRecord();
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"15", L"20", L"30"));
}

TEST_F(DocumentRecordsTest, OnOtherPagesNewOnlyRefreshesTheBars) {
  open();
  allow(kNewRecords);
  document().setViewMode(ViewMode::list);
  window().bar.isOutdated = true;
  document().newRecord();
  EXPECT_FALSE(window().bar.isOutdated);
  EXPECT_FALSE(window().prompts.isPanelUp);
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentRecordsTest, TheFirstRecordOfATableBuildsTheForm) {
  showForm(2);
  allow(kNewRecords);
  document().newRecord();
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(window().form.fields.size(), 1u);
  EXPECT_TRUE(window().prompts.isPanelUp);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(recordCount, 1u);
}

TEST_F(DocumentRecordsTest, ANewRecordIsStoredByTheNextMove) {
  showForm();
  allow(kNewRecords);
  document().newRecord();
  document().movePreviousRecord();
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_FALSE(document().isNewRecordPending());
  EXPECT_EQ(storedCount(), 4u);
}

TEST_F(DocumentRecordsTest, ReadOnlyRecordsTakeNoNewOnes) {
  runStatements(path(), {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                         L"INSERT INTO QuivaneQueries VALUES ('all', 'Select distinct a from [First One]')"});
  open();
  allow(kNewRecords);
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::form);
  ASSERT_EQ(recordCount, 3u);
  document().newRecord();
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(messages().size(), 1u);
}

// ---- Deleted records

TEST_F(DocumentRecordsTest, DeleteWithoutADatabaseIsRefused) {
  document().setViewMode(ViewMode::form);
  allow(kNewRecordsAndDeletions);
  document().deleteRecord();
  EXPECT_THAT(messages(), ElementsAre(FakePrompts::Message{
                              PromptOwner::none, L"Cannot delete a record when a database is not open!",
                              L"Quivane", Notice::refusal}));
}

TEST_F(DocumentRecordsTest, ADeletionThatIsNotConfirmedDeletesNothing) {
  showForm();
  allow(kNewRecordsAndDeletions);
  warn();
  window().prompts.agrees = false;
  document().deleteRecord();
  EXPECT_THAT(messages(), ElementsAre(FakePrompts::Message{PromptOwner::mainWindow,
                                                           L"Are you sure you want to\ndelete this record?",
                                                           L"Delete this record?", Question::deleteRecord}));
  EXPECT_EQ(storedCount(), 3u);
  window().prompts.agrees = true;
  document().deleteRecord();
  EXPECT_EQ(storedCount(), 2u);
}

TEST_F(DocumentRecordsTest, AfterADeletionTheFormStepsBackByOneMore) {
  runStatements(path(), {L"INSERT INTO [First One] VALUES (40)", L"INSERT INTO [First One] VALUES (50)"});
  showForm();
  allow(kNewRecordsAndDeletions);
  document().moveLastRecord();
  ASSERT_EQ(value(), L"50");
  document().deleteRecord();
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
  EXPECT_EQ(window().bar.position, L"    3 / 4");
}

TEST_F(DocumentRecordsTest, AfterTheDeletionOfTheFirstOrSecondTheFirstIsShown) {
  showForm();
  allow(kNewRecordsAndDeletions);
  document().moveNextRecord();
  document().deleteRecord();
  EXPECT_EQ(value(), L"10");
  EXPECT_EQ(currentRecord, 1u);
  document().deleteRecord();
  EXPECT_EQ(value(), L"30");
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(DocumentRecordsTest, DeletingTheOnlyRecordLeavesNoRecordsAndGreyNavigation) {
  showForm(1);
  allow(kNewRecordsAndDeletions);
  window().form.strayEditorsShown = true;
  document().deleteRecord();
  EXPECT_EQ(window().bar.position, L"No Records");
  EXPECT_EQ(window().sight(), "form: no editors");
  for (const int command : {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_NUMBER}) {
    EXPECT_FALSE(window().bar.onToolbar(command)) << command;
  }
  EXPECT_EQ(storedCount(), 0u);
  document().deleteRecord();
  EXPECT_EQ(recordCount, 0u);
}

TEST_F(DocumentRecordsTest, DeletingANewRecordOnlyCancelsIt) {
  showForm();
  allow(kNewRecordsAndDeletions);
  document().newRecord();
  document().deleteRecord();
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
  EXPECT_EQ(storedCount(), 3u);
}

TEST_F(DocumentRecordsTest, TheRowOfADeletedRecordLeavesTheGrid) {
  open();
  allow(kNewRecordsAndDeletions);
  document().setViewMode(ViewMode::list);
  window().tapRow(2);
  document().deleteRecord();
  EXPECT_EQ(window().sight(), "grid: row 1 of 2");
  EXPECT_EQ(recordCount, 2u);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"10", L"30"));
  document().deleteRecord();
  EXPECT_EQ(window().sight(), "grid: row 1 of 1") << "the row that followed the first takes its place";
  EXPECT_EQ(currentRecord, 1u);
  document().deleteRecord();
  EXPECT_EQ(window().sight(), "grid: no rows");
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(window().bar.position, L"No Records");
  EXPECT_EQ(storedCount(), 0u);
}

// ---- What the store refuses

class RefusedRecordTest : public DocumentRecordsTest {
 protected:
  void SetUp() override {
    DocumentRecordsTest::SetUp();
    runStatements(path(), {L"CREATE TABLE 'Strict' (k Integer NOT NULL)", L"INSERT INTO Strict VALUES (1)",
                           L"INSERT INTO Strict VALUES (2)"});
    showForm(3);
    allow(kNewRecordsAndDeletions);
    // Its only field may not be empty.
    document().newRecord();
  }
};

TEST_F(RefusedRecordTest, KeepsTheFormAndSaysWhy) {
  window().prompts.agrees = false;
  document().moveFirstRecord();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"The record could not be written.\n"));
  EXPECT_THAT(messages()[0].text, testing::HasSubstr(L"Strict.k"));
  EXPECT_THAT(messages()[0].kind, VariantWith<Question>(Question::discard));
  EXPECT_EQ(window().sight(), "form: record 3");
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_TRUE(document().isNewRecordPending());
  EXPECT_FALSE(document().canLeaveRecord());
}

TEST_F(RefusedRecordTest, CanBeDiscarded) {
  window().prompts.agrees = true;
  document().moveFirstRecord();
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"1");
  EXPECT_FALSE(document().isNewRecordPending());
  EXPECT_EQ(recordCount, 2u);
  EXPECT_EQ(storedCount(), 2u);
  EXPECT_TRUE(document().canLeaveRecord());
}

TEST_F(RefusedRecordTest, CanBeDeleted) {
  document().deleteRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(recordCount, 2u);
  document().moveFirstRecord();
  EXPECT_EQ(value(), L"1");
}

TEST_F(RefusedRecordTest, IsDecidedAboutBeforeANumberIsAskedFor) {
  window().prompts.number = 3;
  window().prompts.agrees = false;
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, std::nullopt);
  EXPECT_TRUE(document().isNewRecordPending());
  window().prompts.agrees = true;
  window().prompts.number = 2;
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, 2u) << "without the discarded one";
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"2");
}

TEST_F(RefusedRecordTest, GivesWayToAnotherNewOneWhenItIsDiscarded) {
  window().prompts.agrees = true;
  const int built = window().form.builds;
  document().newRecord();
  EXPECT_EQ(window().form.builds, built);
  EXPECT_EQ(window().sight(), "form: record 3");
  EXPECT_EQ(window().bar.position, L"    3 / 3");
  EXPECT_TRUE(document().isNewRecordPending());
}

/// The first record of a table, which the store refuses.
class RefusedFirstRecordTest : public DocumentRecordsTest {
 protected:
  void SetUp() override {
    DocumentRecordsTest::SetUp();
    runStatements(path(), {L"CREATE TABLE 'Strict' (k Integer NOT NULL)"});
    showForm(3);
    allow(kNewRecordsAndDeletions);
    document().newRecord();
    window().prompts.agrees = true;
    window().form.strayEditorsShown = true;
    window().bar.isOutdated = true;
  }
  /// What the form is without a record.
  void expectNoRecord() {
    EXPECT_EQ(window().bar.position, L"No Records");
    EXPECT_FALSE(document().isNewRecordPending());
    EXPECT_FALSE(document().isRecordShown());
    EXPECT_EQ(window().sight(), "form: no editors");
    EXPECT_FALSE(window().bar.isOutdated) << "the menu bar offers what there is without records";
    EXPECT_FALSE(window().bar.inMenu(PopupMenu::record, ID_RECORD_DELETE));
    EXPECT_FALSE(window().bar.inMenu(PopupMenu::edit, ID_FIND));
    for (const int command : {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_NUMBER})
      EXPECT_FALSE(window().bar.onToolbar(command)) << command;
    EXPECT_EQ(storedCount(), 0u);
  }
};

TEST_F(RefusedFirstRecordTest, DiscardedByAMoveItLeavesNothingToTypeInto) {
  document().movePreviousRecord();
  expectNoRecord();
}

TEST_F(RefusedFirstRecordTest, DiscardedByWhatStaysOnTheFormItLeavesNothingToTypeInto) {
  document().openFind();
  expectNoRecord();
}

TEST_F(RefusedFirstRecordTest, DiscardedByAnotherNewOneItGivesWayToThat) {
  document().newRecord();
  EXPECT_EQ(window().bar.position, L"    1 / 1");
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_TRUE(document().isNewRecordPending());
  EXPECT_EQ(window().sight(), "form: record 1");
  window().form.fields.front().content = L"5";
  document().movePreviousRecord();
  EXPECT_EQ(storedCount(), 1u);
}

// ---- Going to a number

TEST_F(DocumentRecordsTest, ANumberLeadsTheFormThere) {
  showForm();
  window().prompts.number = 3;
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, 3u);
  EXPECT_EQ(window().sight(), "form: record 3");
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentRecordsTest, BeforeANumberIsAskedForWhatWasChangedIsStored) {
  showForm();
  window().form.fields[0].content = L"15";
  document().goToRecordNumber();
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"15", L"20", L"30"));
  EXPECT_EQ(window().sight(), "form: record 1");
}

TEST_F(DocumentRecordsTest, AskingForANumberStoresANewRecordWhichIsThenOneOfTheOthers) {
  showForm();
  allow(kNewRecords);
  document().newRecord();
  document().goToRecordNumber();
  EXPECT_FALSE(document().isNewRecordPending());
  EXPECT_EQ(currentRecord, 4u);
  EXPECT_EQ(storedCount(), 4u);
  EXPECT_TRUE(document().isRecordShown());
  EXPECT_TRUE(window().bar.inMenu(PopupMenu::record, ID_RECORD_FIRST));
}

TEST_F(DocumentRecordsTest, ANumberLeadsTheGridThere) {
  open();
  document().setViewMode(ViewMode::list);
  window().prompts.number = 2;
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, 3u);
  EXPECT_EQ(window().sight(), "grid: row 2 of 3");
  EXPECT_EQ(currentRecord, 2u);
}

TEST_F(DocumentRecordsTest, WithoutAnAnswerTheRecordStays) {
  showForm();
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, 3u);
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(currentRecord, 1u);
  document().setViewMode(ViewMode::tables);
  window().prompts.highestNumber.reset();
  document().goToRecordNumber();
  EXPECT_EQ(window().prompts.highestNumber, std::nullopt);
}

// ---- Deletions in the grid

class GridDeletionTest : public DocumentRecordsTest {
 protected:
  void chooseSecondRow() {
    open();
    allow(kNewRecordsAndDeletions);
    document().openTableSelection(0);
    document().setViewMode(ViewMode::list);
    window().tapRow(2);
  }
};

TEST_F(GridDeletionTest, WhatAnotherProgramChangedSinceTheRowWasChosenStays) {
  chooseSecondRow();
  runStatements(path(), {L"UPDATE [First One] SET a = 21 WHERE a = 20"});
  document().deleteRecord();
  EXPECT_EQ(storedCount(), 3u);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"The record could not be deleted.\n"));
  // What it is now was seen.
  document().deleteRecord();
  EXPECT_EQ(storedCount(), 2u);
  EXPECT_EQ(messages().size(), 1u);
}

TEST_F(GridDeletionTest, ARowThatAnotherProgramDeletedCountsAsDeleted) {
  chooseSecondRow();
  runStatements(path(), {L"DELETE FROM [First One] WHERE a = 20"});
  document().deleteRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(recordCount, 2u);
}

TEST_F(GridDeletionTest, AfterTheRightsWereGivenTheRowIsTheOneThatIsThere) {
  open();
  allow(kNoNewRecordsOrDeletions);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  window().tapRow(2);
  allow(kNewRecordsAndDeletions);
  document().deleteRecord();
  EXPECT_EQ(storedCount(), 2u);
}

}  // namespace
