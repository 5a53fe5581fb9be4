// The Document on the Form page: the order of its steps, the cursor, and what is stored.
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DocumentFormTest : public DocumentTest {
 protected:
  void showForm(int table = 0) {
    open();
    document().openTableSelection(table);
    document().setViewMode(ViewMode::form);
    window().takeCalls();
  }
  bool inRecordMenu(int command) { return window().bar.inMenu(PopupMenu::record, command); }
  bool onToolbar(int command) { return window().bar.onToolbar(command); }
};

// ---- Entering and leaving

TEST_F(DocumentFormTest, ANewRecordsetReleasesTheEditorsAndBuildsThemAnew) {
  open();
  document().setViewMode(ViewMode::form);
  EXPECT_THAT(window().takeCalls(), ElementsAre("tables.hide", "form.tearDown", "form.show", "form.build",
                                                "form.showEditors", "form.showRecord", "form.layOut forced"));
}

TEST_F(DocumentFormTest, TheSameRecordsetKeepsTheEditors) {
  showForm();
  document().setViewMode(ViewMode::tables);
  window().takeCalls();
  document().setViewMode(ViewMode::form);
  EXPECT_THAT(window().takeCalls(), ElementsAre("tables.hide", "form.show", "form.showRecord",
                                                "form.showEditors", "form.layOut forced"));
}

TEST_F(DocumentFormTest, LeavingHidesTheEditorsAndAsksForChanges) {
  showForm();
  document().setViewMode(ViewMode::tables);
  EXPECT_THAT(window().takeCalls(),
              ElementsAre("form.hide", "form.hideEditors", "form.takeChange", "tables.show"));
}

TEST_F(DocumentFormTest, AnEmptyTableBuildsNoForm) {
  showForm(2);
  EXPECT_EQ(window().bar.position, L"No Records");
  document().setViewMode(ViewMode::tables);
  EXPECT_THAT(window().takeCalls(), ElementsAre("form.hide", "tables.show"));
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
  window().grid.row = 2;
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentFormTest, TheRowOfAnotherTableIsForgotten) {
  open();
  document().setViewMode(ViewMode::list);
  window().grid.row = 2;
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentFormTest, TheMenusFollowAlsoWhenTheModeStays) {
  showForm();
  const int before = window().bar.rebuilt;
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().bar.rebuilt, before + 1);
  EXPECT_THAT(window().takeCalls(), IsEmpty());
}

// ---- Moving

TEST_F(DocumentFormTest, EachMoveAsksForChangesMovesAndLoads) {
  showForm();
  document().moveNextRecord();
  EXPECT_THAT(window().takeCalls(), ElementsAre("form.takeChange", "form.showRecord"));
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
  window().takeCalls();
  document().moveNextRecord();
  EXPECT_THAT(window().takeCalls(), IsEmpty());
  EXPECT_EQ(currentRecord, 3u);
}

TEST_F(DocumentFormTest, PreviousAtTheFirstRecordStaysThere) {
  showForm();
  document().movePreviousRecord();
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentFormTest, AMoveStoresWhatWasChanged) {
  showForm();
  window().form.fields[0].content = L"15";
  document().moveNextRecord();
  EXPECT_THAT(window().takeCalls(), ElementsAre("form.takeChange", "form.showRecord"));
}

TEST_F(DocumentFormTest, MovesOnAnEmptyTableDoNothing) {
  showForm(2);
  for (const auto move : {&Document::moveFirstRecord, &Document::moveLastRecord, &Document::moveNextRecord,
                          &Document::movePreviousRecord}) {
    EXPECT_EQ((document().*move)(), 0);
  }
  EXPECT_EQ(window().bar.position, L"No Records");
  for (const std::string& call : window().takeCalls()) EXPECT_NE(call, "form.takeChange");
}

TEST_F(DocumentFormTest, MovesWithoutADatabaseDoNothing) {
  document().setViewMode(ViewMode::form);
  window().takeCalls();
  const std::uint32_t before = currentRecord;
  for (const auto move :
       {&Document::moveFirstRecord, &Document::moveLastRecord, &Document::moveNextRecord,
        &Document::movePreviousRecord, &Document::nextFormPage, &Document::previousFormPage}) {
    EXPECT_EQ((document().*move)(), 0);
  }
  EXPECT_EQ(currentRecord, before);
  EXPECT_THAT(window().takeCalls(), IsEmpty());
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
  window().form.pages = 3;
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
  currentRecord = 3;
  document().rowChosen();
  EXPECT_EQ(window().bar.position, L"    3 / 3");
  EXPECT_FALSE(onToolbar(ID_RECORD_NEXT));
  EXPECT_TRUE(onToolbar(ID_RECORD_PREVIOUS));
}

TEST_F(DocumentFormTest, ChoosingARowLeavesTheMenuNoMoveThatLeadsNowhere) {
  open();
  document().setViewMode(ViewMode::list);
  EXPECT_FALSE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_LAST));
  currentRecord = 3;
  document().rowChosen();
  EXPECT_TRUE(inRecordMenu(ID_RECORD_FIRST));
  EXPECT_TRUE(inRecordMenu(ID_RECORD_PREVIOUS));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_NEXT));
  EXPECT_FALSE(inRecordMenu(ID_RECORD_LAST));
}

// ---- Closing

TEST_F(DocumentFormTest, ClosingStoresWhatWasChangedFirst) {
  showForm();
  window().form.changed = true;
  EXPECT_EQ(document().closeDatabase(), 0);
  EXPECT_THAT(window().takeCalls(), ElementsAre("form.takeChange", "form.tearDown", "tables.deleteAllItems",
                                                "tables.clearRememberedSelection", "queries.deleteAllItems",
                                                "queries.setSelectedIndex 0"));
}

}  // namespace
