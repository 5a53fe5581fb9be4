// Switching between the pages.
#include <functional>

#include "base/settings/options.h"
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(DocumentTest, TheModeThatIsServedIsNotEnteredAgain) {
  open();
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    document().setViewMode(mode);
    const std::string sight = window().sight();
    const int filled = window().tables->fills + window().grid.fills + window().queries->fills;
    document().setViewMode(mode);
    EXPECT_EQ(window().sight(), sight);
    EXPECT_EQ(window().tables->fills + window().grid.fills + window().queries->fills, filled) << sight;
  }
}

TEST_F(DocumentTest, WithoutADatabaseOldPagesAreLeftAndNoneIsEntered) {
  for (const auto& [page, mode] :
       {std::pair("tables", ViewMode::tables), std::pair("form", ViewMode::form),
        std::pair("grid", ViewMode::list), std::pair("queries", ViewMode::queries)}) {
    document().setViewMode(mode);
    EXPECT_EQ(window().sight(), "nothing");
    window().pages.show(page);
    document().setViewMode(ViewMode::none);
    EXPECT_EQ(window().sight(), "nothing") << page;
  }
}

TEST_F(DocumentTest, EachPageIsLeftBeforeTheNextIsEntered) {
  addQueries();
  open();
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: record 1");
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
  document().setViewMode(ViewMode::queries);
  EXPECT_EQ(window().sight(), "queries");
  EXPECT_THAT(window().queries->items, ElementsAre(L"big", L"wrong"));
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(window().sight(), "tables");
}

TEST_F(DocumentTest, TheTablesAreFilledInOnceForEachDatabase) {
  open();
  const int filled = window().tables->fills;
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(window().tables->fills, filled);
}

TEST_F(DocumentTest, TheFormStartsAtTheFirstRecord) {
  open();
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentTest, TheFormOfAnEmptyTableHasNoRecord) {
  open();
  document().openTableSelection(2);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(recordCount, 0u);
}

TEST_F(DocumentTest, TheFormGoesToTheRecordChosenInTheGrid) {
  open();
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: record 3");
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
}

TEST_F(DocumentTest, AFormThatIsEnteredFromElsewhereGoesToTheFirstRecord) {
  open();
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentTest, OnlyTheFormThatGoesToTheChosenRowForgetsIt) {
  runStatements(path(), {L"INSERT INTO Second VALUES (2)"});
  open();
  document().setViewMode(ViewMode::list);
  window().tapRow(3);
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u) << "a row of another table";
  document().moveNextRecord();
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 2u);
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(DocumentTest, EnteringTheFormAgainWithoutRecordsClearsTheEditors) {
  theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  theAppSettings->options().setWarningOnDeletion(0);
  open();
  document().openTableSelection(1);
  document().setViewMode(ViewMode::form);
  document().deleteRecord();
  ASSERT_EQ(recordCount, 0u);
  ASSERT_EQ(value(), L"1") << "hidden";
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: no editors");
  EXPECT_EQ(value(), L"");
}

TEST_F(DocumentTest, LayingTheFormOutAnewUpdatesItsPageCommands) {
  open();
  document().setViewMode(ViewMode::form);
  EXPECT_FALSE(window().bar.onToolbar(ID_PAGE_NEXT));
  window().form.pageTotal = 2;
  document().layOutForm(false);
  EXPECT_TRUE(window().bar.onToolbar(ID_PAGE_NEXT));
  EXPECT_TRUE(window().bar.inMenu(PopupMenu::record, ID_PAGE_NEXT));
}

TEST_F(DocumentTest, TheGridIsFilledAtTheCurrentRecord) {
  open();
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
  window().tapRow(2);
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 2 of 3");
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 1 of 1");
}

TEST_F(DocumentTest, WithoutQueriesTheirPageReopensTheLastTable) {
  open();
  document().setViewMode(ViewMode::list);
  runStatements(path(), {L"INSERT INTO [First One] VALUES (40)"});
  document().setViewMode(ViewMode::queries);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 4u);
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(DocumentTest, WhenTheLastQueryIsGoneItsRecordsStay) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  ASSERT_EQ(recordCount, 2u);
  runStatements(path(), {L"DELETE FROM QuivaneQueries"});
  document().setViewMode(ViewMode::queries);
  document().setViewMode(ViewMode::list);
  EXPECT_TRUE(document().isRecordsetOpen());
  EXPECT_EQ(recordCount, 2u);
}

}  // namespace
