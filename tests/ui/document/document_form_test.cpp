// The Document on the Form page: what it shows, the cursor, and what is stored.
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;

namespace {

class DocumentFormTest : public DocumentTest {
 protected:
  void showForm(int table = 0) {
    open();
    document().openTableSelection(table);
    document().setViewMode(ViewMode::form);
  }
  std::vector<std::wstring> storedValues() { return stored(L"Select * from [First One]"); }
  bool inRecordMenu(int command) { return window().bar.inMenu(PopupMenu::record, command); }
  bool onToolbar(int command) { return window().bar.onToolbar(command); }
};

// ---- Entering and leaving

TEST_F(DocumentFormTest, ANewRecordsetReleasesTheEditorsAndBuildsThemAnew) {
  showForm();
  EXPECT_EQ(window().sight(), "form: record 1");
  const int built = window().form.builds;
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::queries);
  EXPECT_TRUE(window().form.fields.empty()) << "those of another table";
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().form.builds, built + 1);
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentFormTest, TheSameRecordsetKeepsTheEditorsAndReadsTheRecordAnew) {
  showForm();
  const int built = window().form.builds;
  document().setViewMode(ViewMode::tables);
  runStatements(path(), {L"UPDATE [First One] SET a = 11 WHERE a = 10"});
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().form.builds, built);
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"11");
}

TEST_F(DocumentFormTest, LeavingHidesTheEditorsAndStoresWhatWasChanged) {
  showForm();
  window().form.fields[0].content = L"15";
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(window().sight(), "tables");
  EXPECT_FALSE(window().form.editorsShown);
  EXPECT_THAT(storedValues(), ElementsAre(L"15", L"20", L"30"));
}

TEST_F(DocumentFormTest, AnEmptyTableBuildsNoForm) {
  showForm(2);
  EXPECT_EQ(window().sight(), "form: no editors");
  EXPECT_TRUE(window().form.fields.empty());
  EXPECT_EQ(window().bar.position, L"No Records");
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(window().sight(), "tables");
}

TEST_F(DocumentFormTest, AQueryThatDoesNotRunShowsNoRecords) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(1);
  document().setViewMode(ViewMode::form);
  EXPECT_FALSE(document().isRecordsetOpen());
  EXPECT_EQ(window().bar.position, L"No Records");
}

TEST_F(DocumentFormTest, TheFirstFormAfterTheListShowsTheRowThatWasChosenThere) {
  open();
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentFormTest, TheRowOfAnotherTableIsForgotten) {
  open();
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentFormTest, TheMenusFollowAlsoWhenTheModeStays) {
  showForm();
  window().bar.isOutdated = true;
  window().bar.facts = {};
  document().setViewMode(ViewMode::form);
  EXPECT_FALSE(window().bar.isOutdated);
  EXPECT_TRUE(onToolbar(ID_RECORD_NEXT));
  EXPECT_EQ(window().sight(), "form: record 1");
}

// ---- Moving

TEST_F(DocumentFormTest, EachMoveShowsItsRecord) {
  showForm();
  document().moveNextRecord();
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(window().bar.position, L"    2 / 3");
  document().moveLastRecord();
  EXPECT_EQ(value(), L"30");
  document().movePreviousRecord();
  EXPECT_EQ(value(), L"20");
  document().moveFirstRecord();
  EXPECT_EQ(value(), L"10");
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(DocumentFormTest, NextAtTheLastRecordChangesNothing) {
  showForm();
  document().moveLastRecord();
  window().form.fields[0].content = L"typed";
  document().moveNextRecord();
  EXPECT_EQ(window().form.fields[0].content, L"typed") << "neither stored nor lost";
  EXPECT_EQ(window().sight(), "form: record 3");
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_THAT(storedValues(), ElementsAre(L"10", L"20", L"30"));
}

TEST_F(DocumentFormTest, PreviousAtTheFirstRecordStaysThere) {
  showForm();
  document().movePreviousRecord();
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentFormTest, EachMoveStoresWhatWasChanged) {
  showForm();
  int written = 100;
  for (const auto move : {&Document::moveNextRecord, &Document::moveLastRecord, &Document::movePreviousRecord,
                          &Document::moveFirstRecord}) {
    const std::wstring text = std::to_wstring(++written);
    window().form.fields[0].content = text;
    (document().*move)();
    EXPECT_THAT(storedValues(), testing::Contains(text));
    EXPECT_NE(value(), text) << "another record is shown";
  }
  EXPECT_THAT(storedValues(), ElementsAre(L"101", L"104", L"103"));
}

TEST_F(DocumentFormTest, MovesOnAnEmptyTableDoNothing) {
  showForm(2);
  for (const auto move : {&Document::moveFirstRecord, &Document::moveLastRecord, &Document::moveNextRecord,
                          &Document::movePreviousRecord}) {
    EXPECT_EQ((document().*move)(), 0);
  }
  EXPECT_EQ(window().bar.position, L"No Records");
  EXPECT_EQ(window().sight(), "form: no editors");
}

TEST_F(DocumentFormTest, MovesWithoutADatabaseDoNothing) {
  document().setViewMode(ViewMode::form);
  const std::uint32_t before = currentRecord;
  for (const auto move :
       {&Document::moveFirstRecord, &Document::moveLastRecord, &Document::moveNextRecord,
        &Document::movePreviousRecord, &Document::nextFormPage, &Document::previousFormPage}) {
    EXPECT_EQ((document().*move)(), 0);
  }
  EXPECT_EQ(currentRecord, before);
  EXPECT_EQ(window().sight(), "nothing");
  EXPECT_TRUE(window().prompts.messages.empty());
}

// ---- Menus, buttons and the position

TEST_F(DocumentFormTest, AnEmptyRecordsetHasGreyNavigation) {
  showForm(2);
  for (const int command :
       {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_FIRST, ID_RECORD_LAST, ID_RECORD_NUMBER}) {
    EXPECT_FALSE(inRecordMenu(command)) << command;
  }
  for (const int command : {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_NUMBER}) {
    EXPECT_FALSE(onToolbar(command)) << command;
  }
}

TEST_F(DocumentFormTest, NavigationFollowsTheCursor) {
  showForm();
  EXPECT_TRUE(onToolbar(ID_RECORD_NEXT));
  EXPECT_FALSE(onToolbar(ID_RECORD_PREVIOUS));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_LAST));
  document().moveLastRecord();
  EXPECT_FALSE(onToolbar(ID_RECORD_NEXT));
  EXPECT_TRUE(onToolbar(ID_RECORD_PREVIOUS));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_LAST));
}

TEST_F(DocumentFormTest, PagesOfTheFormAreGreyOnOtherPages) {
  open();
  window().form.pageTotal = 3;
  document().setViewMode(ViewMode::form);
  EXPECT_TRUE(inRecordMenu(ID_PAGE_NEXT));
  EXPECT_FALSE(inRecordMenu(ID_PAGE_PREVIOUS));
  document().setViewMode(ViewMode::list);
  EXPECT_FALSE(inRecordMenu(ID_PAGE_NEXT));
}

TEST_F(DocumentFormTest, CloseIsGreyWithoutADatabase) {
  document().setViewMode(ViewMode::tables);
  EXPECT_FALSE(window().bar.inMenu(PopupMenu::file, ID_DATABASE_CLOSE));
  open();
  EXPECT_TRUE(window().bar.inMenu(PopupMenu::file, ID_DATABASE_CLOSE));
}

TEST_F(DocumentFormTest, ChoosingARowWritesThePositionAndTheGridsButtons) {
  open();
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  EXPECT_EQ(window().bar.position, L"    3 / 3");
  EXPECT_FALSE(onToolbar(ID_RECORD_NEXT));
  EXPECT_TRUE(onToolbar(ID_RECORD_PREVIOUS));
}

TEST_F(DocumentFormTest, ChoosingARowLeavesTheMenuNoMoveThatLeadsNowhere) {
  open();
  document().setViewMode(ViewMode::list);
  EXPECT_FALSE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_LAST));
  window().tapRow(3);
  EXPECT_TRUE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_PREVIOUS));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_NEXT));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_LAST));
}

// ---- Closing

TEST_F(DocumentFormTest, ClosingStoresWhatWasChangedFirst) {
  showForm();
  window().form.fields[0].content = L"15";
  EXPECT_EQ(document().closeDatabase(), 0);
  EXPECT_THAT(storedValues(), ElementsAre(L"15", L"20", L"30"));
  EXPECT_EQ(window().sight(), "form: no editors");
}

}  // namespace
