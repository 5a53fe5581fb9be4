// What other programs change shows by itself, and the user's place and what he types stay.
#include <optional>
#include <string>
#include <vector>

#include "records/parts/others_changes.h"
#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DocumentOthersTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    open();
  }
  void TearDown() override {
    EXPECT_THAT(window().prompts.takeTexts(), IsEmpty()) << "nothing is ever told";
    EXPECT_FALSE(window().prompts.isProgressShown);
    DocumentTest::TearDown();
  }
  /// The user looks at record 2 of 10, 20, 30.
  void showForm() {
    document().setViewMode(ViewMode::form);
    document().moveNextRecord();
    ASSERT_EQ(value(), L"20");
  }
  void showList() {
    document().setViewMode(ViewMode::list);
    window().tapRow(2);
  }
  void elsewhere(const wchar_t* statement) { runStatements(path(), {statement}); }
  void look() { document().othersChanges().show(); }
};

// ---- Nothing to be shown

TEST_F(DocumentOthersTest, WithoutADatabaseNothingHappens) {
  document().closeDatabase();
  look();
  EXPECT_EQ(window().sight(), "tables");
  EXPECT_THAT(window().tables->items, IsEmpty());
}

TEST_F(DocumentOthersTest, WithoutChangesNothingIsReadAnew) {
  showForm();
  const int builds = window().form.builds;
  const int fills = window().tables->fills;
  elsewhere(L"INSERT INTO [First One] VALUES (40)");
  look();
  const int shownAnew = window().form.shownAnew;
  look();
  look();
  EXPECT_EQ(window().form.shownAnew, shownAnew);
  EXPECT_EQ(window().form.builds, builds);
  EXPECT_EQ(window().tables->fills, fills);
}

TEST_F(DocumentOthersTest, OurOwnChangesAreNone) {
  showForm();
  window().form.fields[0].content = L"21";
  document().commitCurrentRecord();
  document().loadRecord();
  const int shownAnew = window().form.shownAnew;
  look();
  EXPECT_EQ(window().form.shownAnew, shownAnew);
  EXPECT_EQ(value(), L"21");
}

// ---- The form

TEST_F(DocumentOthersTest, TheCountFollowsAndTheFormIsNotTouched) {
  showForm();
  window().form.focus = 7;
  elsewhere(L"INSERT INTO [First One] VALUES (40)");
  look();
  EXPECT_EQ(window().bar.position, L"    2 / 4");
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_EQ(window().form.shownAnew, 0) << "it holds what it held";
  EXPECT_EQ(window().form.focus, 7u);
  document().moveLastRecord();
  EXPECT_EQ(value(), L"40");
}

TEST_F(DocumentOthersTest, AChangedRecordIsShownInPlace) {
  showForm();
  window().form.focus = 7;
  elsewhere(L"UPDATE [First One] SET a = 22 WHERE a = 20");
  look();
  EXPECT_EQ(value(), L"22");
  EXPECT_EQ(window().form.focus, 7u);
  window().form.fields[0].content = L"23";
  EXPECT_TRUE(document().canLeaveRecord()) << "it is measured against what is shown now";
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"10", L"23", L"30"));
}

TEST_F(DocumentOthersTest, TheRecordStaysWhenOthersBeforeItHaveGone) {
  showForm();
  elsewhere(L"DELETE FROM [First One] WHERE a = 10");
  look();
  EXPECT_EQ(window().bar.position, L"    1 / 2");
  EXPECT_EQ(window().sight(), "form: record 2") << "the editors are as they were";
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_FALSE(window().bar.onToolbar(ID_RECORD_PREVIOUS));
  window().form.fields[0].content = L"21";
  document().moveNextRecord();
  EXPECT_EQ(value(), L"30");
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"21", L"30"));
}

TEST_F(DocumentOthersTest, InThePlaceOfADeletedRecordComesTheNext) {
  showForm();
  elsewhere(L"DELETE FROM [First One] WHERE a = 20");
  look();
  EXPECT_EQ(value(), L"30");
  EXPECT_EQ(window().bar.position, L"    2 / 2");
}

TEST_F(DocumentOthersTest, WhatIsTypedStaysUntilItIsStored) {
  showForm();
  window().form.fields[0].content = L"21";
  elsewhere(L"INSERT INTO [First One] VALUES (40)");
  look();
  EXPECT_EQ(window().form.fields[0].content, L"21");
  EXPECT_EQ(window().bar.position, L"    2 / 3");
  document().moveNextRecord();
  look();
  EXPECT_EQ(window().bar.position, L"    3 / 4") << "it was put off, not forgotten";
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"10", L"21", L"30", L"40"));
}

TEST_F(DocumentOthersTest, AFormThatWasEnteredWithoutRecordsShowsOneThatHasComeSince) {
  document().openTableSelection(2);
  document().setViewMode(ViewMode::form);
  ASSERT_EQ(window().sight(), "form: no editors");
  document().setViewMode(ViewMode::list);
  elsewhere(L"INSERT INTO Empty VALUES (5)");
  look();
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"5");
}

TEST_F(DocumentOthersTest, ANewRecordStays) {
  showForm();
  theAppSettings->options().setGenUpdateRights(kNewRecords);
  document().newRecord();
  elsewhere(L"INSERT INTO [First One] VALUES (40)");
  look();
  EXPECT_TRUE(document().isNewRecordPending());
  EXPECT_EQ(window().bar.position, L"    4 / 4");
  window().form.fields[0].content = L"50";
  document().moveFirstRecord();
  look();
  EXPECT_EQ(window().bar.position, L"    1 / 5");
}

TEST_F(DocumentOthersTest, TheFormGoesWithTheLastRecordAndComesWithTheFirst) {
  showForm();
  elsewhere(L"DELETE FROM [First One]");
  look();
  EXPECT_EQ(window().sight(), "form: no editors");
  EXPECT_EQ(window().bar.position, L"No Records");
  elsewhere(L"INSERT INTO [First One] VALUES (7)");
  look();
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"7");
  EXPECT_EQ(window().bar.position, L"    1 / 1");
}

TEST_F(DocumentOthersTest, ATableThatWasEmptyFromTheBeginningGetsAForm) {
  document().openTableSelection(2);
  document().setViewMode(ViewMode::form);
  ASSERT_EQ(window().sight(), "form: no editors");
  elsewhere(L"INSERT INTO Empty VALUES (5)");
  look();
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"5");
}

TEST_F(DocumentOthersTest, BehindAMatchTheCursorStaysBehindIt) {
  showForm();
  window().prompts.setFind = [](FindState& state) {
    state.text = L"20";
    state.checkAllFields = 1;
  };
  document().moveFirstRecord();
  document().openFind();
  document().findNext();
  window().prompts.takeTexts();
  ASSERT_EQ(value(), L"20");
  ASSERT_EQ(currentRecord, 3u);
  elsewhere(L"DELETE FROM [First One] WHERE a = 10");
  look();
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"20");
}

// ---- The grid

TEST_F(DocumentOthersTest, TheGridKeepsTheChosenRowAndTheFirstInView) {
  showList();
  window().grid.top = 1;
  const int fills = window().grid.fills;
  elsewhere(L"DELETE FROM [First One] WHERE a = 10");
  elsewhere(L"INSERT INTO [First One] VALUES (40)");
  look();
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
  EXPECT_EQ(window().grid.top, 0u);
  EXPECT_EQ(window().grid.fills, fills) << "its columns stay";
  EXPECT_EQ(window().bar.position, L"    1 / 3");
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"20");
}

TEST_F(DocumentOthersTest, TheRowThatIsDeletedAfterwardsIsTheOneThatIsShown) {
  showList();
  theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  theAppSettings->options().setWarningOnDeletion(0);
  elsewhere(L"DELETE FROM [First One] WHERE a = 10");
  elsewhere(L"UPDATE [First One] SET a = 21 WHERE a = 20");
  look();
  document().deleteRecord();
  EXPECT_THAT(stored(L"Select * from [First One]"), ElementsAre(L"30"));
}

TEST_F(DocumentOthersTest, AnEmptyGridIsFilled) {
  document().openTableSelection(2);
  document().setViewMode(ViewMode::list);
  ASSERT_EQ(window().sight(), "grid: no rows");
  elsewhere(L"INSERT INTO Empty VALUES (5)");
  look();
  EXPECT_EQ(window().sight(), "grid: row 1 of 1");
  elsewhere(L"DELETE FROM Empty");
  look();
  EXPECT_EQ(window().sight(), "grid: no rows");
}

// ---- The lists of names

TEST_F(DocumentOthersTest, TheTablesFollowAndTheChosenOneStays) {
  document().openTableSelection(1);
  window().tables->rememberSelection(1);
  elsewhere(L"CREATE TABLE 'Third' (d Integer)");
  look();
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty", L"Third"));
  EXPECT_EQ(window().tables->chosen(), L"Second");
  elsewhere(L"DROP TABLE [First One]");
  look();
  EXPECT_THAT(window().tables->items, ElementsAre(L"Second", L"Empty", L"Third"));
  EXPECT_EQ(window().tables->chosen(), L"Second");
  EXPECT_STREQ(document().tableName().text(), L"Second");
}

TEST_F(DocumentOthersTest, InThePlaceOfADroppedTableComesTheNext) {
  elsewhere(L"DROP TABLE [First One]");
  look();
  EXPECT_EQ(window().tables->chosen(), L"Second");
  EXPECT_STREQ(document().tableName().text(), L"Second");
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentOthersTest, WithoutTablesNoneIsChosen) {
  for (const wchar_t* drop : {L"DROP TABLE [First One]", L"DROP TABLE Second", L"DROP TABLE Empty"})
    elsewhere(drop);
  look();
  EXPECT_THAT(window().tables->items, IsEmpty());
  EXPECT_STREQ(document().tableName().text(), L"");
  EXPECT_FALSE(document().isOffered(ID_EXPORT));
}

TEST_F(DocumentOthersTest, OnOtherPagesTheTablesAreListedWhenTheirsIsEntered) {
  showForm();
  elsewhere(L"CREATE TABLE 'Third' (d Integer)");
  look();
  EXPECT_EQ(document().tableNames().size(), 4u);
  EXPECT_EQ(value(), L"20");
  document().setViewMode(ViewMode::tables);
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty", L"Third"));
  EXPECT_EQ(window().tables->chosen(), L"First One");
}

TEST_F(DocumentOthersTest, TheQueriesFollowAndTheChosenOneStays) {
  addQueries();
  look();
  document().setViewMode(ViewMode::queries);
  window().queries->setSelectedIndex(1);
  elsewhere(L"INSERT INTO QuivaneQueries VALUES ('all', 'Select * from Second')");
  look();
  EXPECT_THAT(window().queries->items, ElementsAre(L"all", L"big", L"wrong"));
  EXPECT_EQ(window().queries->chosen(), L"wrong");
  window().queries->setSelectedIndex(-1);
  elsewhere(L"DELETE FROM QuivaneQueries WHERE QueryName = 'wrong'");
  look();
  EXPECT_THAT(window().queries->items, ElementsAre(L"all", L"big"));
  EXPECT_EQ(window().queries->chosen(), L"") << "none was";
  window().queries->setSelectedIndex(1);
  elsewhere(L"DELETE FROM QuivaneQueries WHERE QueryName <> 'all'");
  look();
  EXPECT_THAT(window().queries->items, ElementsAre(L"all"));
  EXPECT_EQ(window().queries->chosen(), L"all");
  elsewhere(L"DROP TABLE QuivaneQueries");
  look();
  EXPECT_THAT(window().queries->items, IsEmpty());
}

// ---- What is not to be had now, and what has become something else

TEST_F(DocumentOthersTest, WhatIsLockedIsShownLaterAndNobodyWaits) {
  showForm();
  elsewhere(L"UPDATE [First One] SET a = 22 WHERE a = 20");
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  window().prompts.goesOnBusy = [](Progress::What) {
    ADD_FAILURE() << "the user is told";
    return true;
  };
  look();
  EXPECT_EQ(value(), L"20");
  lock.reset();
  look();
  EXPECT_EQ(value(), L"22");
}

TEST_F(DocumentOthersTest, ItGivesWayToAKey) {
  // In an order that takes its time.
  runStatements(path(),
                {L"CREATE TABLE 'Long' (n Integer)",
                 L"WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s LIMIT 300000) "
                 L"INSERT INTO Long SELECT i FROM s",
                 L"CREATE TABLE 'QuivaneQueries' (QueryName Text, SQL Text)",
                 L"INSERT INTO QuivaneQueries VALUES ('sorted', 'Select * from Long order by n % 7, n')"});
  look();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::form);
  document().busyOver();
  ASSERT_EQ(value(), L"7");
  elsewhere(L"DELETE FROM Long WHERE n = 8");
  window().prompts.isTyping = true;
  look();
  EXPECT_EQ(window().bar.position, L"1 / 300000");
  window().prompts.isTyping = false;
  look();
  EXPECT_EQ(window().bar.position, L"1 / 299999");
  EXPECT_EQ(value(), L"7");
}

TEST_F(DocumentOthersTest, OfAnotherStructureNothingIsSaidBeforeItIsRead) {
  showForm();
  elsewhere(L"ALTER TABLE [First One] ADD COLUMN b Text");
  look();
  EXPECT_EQ(value(), L"20");
  look();
  document().moveNextRecord();
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"Another program has changed the structure of the database.\nThe records were "
                          L"opened anew."));
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentOthersTest, AFileThatHasLostItsNameIsReadOn) {
  showForm();
  std::error_code failure;
  std::filesystem::rename(path(), file("away.cdb"), failure);
  look();
  EXPECT_EQ(value(), L"20");
  if (!failure) std::filesystem::rename(file("away.cdb"), path());
}

}  // namespace
