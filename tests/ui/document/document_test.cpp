// Opening and closing a database, what is chosen on the pages of names, and moves.
#include <functional>

#include "base/settings/options.h"
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- Opening and closing

TEST_F(DocumentTest, OpeningShowsTheTablesAndChoosesTheFirst) {
  ASSERT_TRUE(document().openDatabase(path().c_str()));
  EXPECT_EQ(window().sight(), "tables");
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty"));
  EXPECT_EQ(window().tables->chosen(), L"First One");
  EXPECT_EQ(document().viewMode(), ViewMode::tables);
  EXPECT_TRUE(document().isDatabaseOpen());
  EXPECT_EQ(theAppSettings->databaseOpen, 1u);
  EXPECT_STREQ(document().databasePath().text(), path().c_str());
  EXPECT_STREQ(document().tableName().text(), L"First One");
  EXPECT_STREQ(document().sqlText().text(), L"Select * from [First One]");
  EXPECT_FALSE(document().isRecordsetOpen());
}

TEST_F(DocumentTest, AFileThatIsNotThereChangesNothing) {
  EXPECT_FALSE(document().openDatabase(file("missing.cdb").c_str()));
  EXPECT_EQ(window().sight(), "nothing");
  EXPECT_FALSE(document().isDatabaseOpen());
  EXPECT_EQ(theAppSettings->databaseOpen, 0u);
  EXPECT_STREQ(document().databasePath().text(), L"");
  EXPECT_EQ(document().closeDatabase(), -1);
}

TEST_F(DocumentTest, ClosingForgetsEverything) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  window().queries->selected = 1;
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(document().closeDatabase(), 0);
  EXPECT_EQ(window().sight(), "form: no editors");
  EXPECT_THAT(window().form.fields, IsEmpty());
  EXPECT_THAT(window().tables->items, IsEmpty());
  EXPECT_THAT(window().queries->items, IsEmpty());
  EXPECT_EQ(window().queries->selected, 0);
  EXPECT_FALSE(document().isDatabaseOpen());
  EXPECT_FALSE(document().isRecordsetOpen());
  EXPECT_EQ(theAppSettings->databaseOpen, 0u);
  EXPECT_TRUE(document().databasePath().isEmpty());
  EXPECT_TRUE(document().tableName().isEmpty());
  EXPECT_TRUE(document().sqlText().isEmpty());
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(recordCount, 0u);
  EXPECT_EQ(document().closeDatabase(), -1);
}

TEST_F(DocumentTest, ClosingOnTheListPageClearsTheGridAndGoesToTheTables) {
  open();
  document().setViewMode(ViewMode::list);
  ASSERT_EQ(window().sight(), "grid: row 1 of 3");
  EXPECT_EQ(document().closeDatabase(), 0);
  EXPECT_EQ(window().grid.rowCount, 0u);
  EXPECT_EQ(window().sight(), "tables");
  EXPECT_EQ(document().viewMode(), ViewMode::tables);
  EXPECT_EQ(currentRecord, 0u);
}

TEST_F(DocumentTest, ADatabaseOpensAgainAfterClosing) {
  open();
  document().setViewMode(ViewMode::list);
  window().tables->selected = 2;
  ASSERT_EQ(document().closeDatabase(), 0);
  ASSERT_TRUE(document().openDatabase(path().c_str()));
  EXPECT_EQ(window().tables->chosen(), L"First One") << "not what was chosen in the former one";
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
}

TEST_F(DocumentTest, OpeningAndMakingLeaveThePageOfTheClosedDatabaseAndEmptyBothLists) {
  addQueries();
  const auto openOther = [this] { return document().openDatabaseCommand(); };
  const auto makeOther = [this] { return document().newDatabaseCommand(); };
  const auto closeAndOpen = [this] {
    document().closeDatabase();
    EXPECT_THAT(window().tables->items, IsEmpty());
    EXPECT_THAT(window().queries->items, IsEmpty());
    return document().openDatabaseCommand();
  };
  makeDatabase(file("other.cdb"), {});
  for (const std::function<CommandResult()>& command :
       {std::function<CommandResult()>(openOther), std::function<CommandResult()>(makeOther),
        std::function<CommandResult()>(closeAndOpen)}) {
    for (const ViewMode mode :
         {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries, ViewMode::none}) {
      ASSERT_NO_FATAL_FAILURE(open());
      document().setViewMode(ViewMode::queries);
      document().setViewMode(ViewMode::tables);
      document().setViewMode(mode);
      window().prompts.file = String(file("other.cdb").c_str());
      EXPECT_EQ(command(), CommandResult::done);
      EXPECT_EQ(window().sight(), "tables");
      EXPECT_EQ(document().viewMode(), ViewMode::tables);
      EXPECT_THAT(window().tables->items, IsEmpty());
      EXPECT_THAT(window().queries->items, IsEmpty());
      document().closeDatabase();
    }
  }
}

// ---- Choosing

TEST_F(DocumentTest, WhatAListReportsWhileItIsFilledIsNobodysChoice) {
  addQueries();
  open();
  window().queries->report = [this] { document().openQuerySelection(0); };
  document().setViewMode(ViewMode::queries);
  EXPECT_STREQ(document().tableName().text(), L"First One");
  EXPECT_TRUE(document().queryName().isEmpty());
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentTest, AfterANewQueryATapOnTheSelectedTableTakesTheTable) {
  open();
  document().setViewMode(ViewMode::queries);
  ASSERT_TRUE(document().addQuery({L"big", L"Select * from [First One] where a > 10"}));
  window().tables->report = [this] { document().openTableSelection(0); };
  document().setViewMode(ViewMode::tables);
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty", L"QuivaneQueries"));
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 2u) << "the new query is in use until a table is tapped";
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 3u);
  EXPECT_TRUE(document().queryName().isEmpty());
}

TEST_F(DocumentTest, AChoiceThatIsNotServedYetOutlastsEverySwitch) {
  open();
  document().setViewMode(ViewMode::list);
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  String reason;
  document().returnsRecords(L"Select nothing", reason);
  document().setViewMode(ViewMode::queries);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(recordCount, 1u);
  EXPECT_STREQ(document().fieldName(0).text(), L"b");
}

TEST_F(DocumentTest, TheRecordsFollowAtTheNextSwitch) {
  open();
  document().openTableSelection(1);
  EXPECT_FALSE(document().isRecordsetOpen());
  document().setViewMode(ViewMode::list);
  EXPECT_TRUE(document().isRecordsetOpen());
  EXPECT_EQ(recordCount, 1u);
  EXPECT_STREQ(document().fieldName(0).text(), L"b");
}

TEST_F(DocumentTest, TheSameTableAgainIsNotReopened) {
  open();
  document().setViewMode(ViewMode::list);
  ASSERT_EQ(recordCount, 3u);
  runStatements(path(), {L"INSERT INTO [First One] VALUES (40)"});
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentTest, AnotherTableAndBackIsReopened) {
  open();
  document().setViewMode(ViewMode::list);
  runStatements(path(), {L"INSERT INTO [First One] VALUES (40)"});
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 4u);
}

TEST_F(DocumentTest, AnIndexWithoutAnItemChoosesNothing) {
  open();
  for (const int index : {-1, 3, 1000}) document().openTableSelection(index);
  EXPECT_STREQ(document().tableName().text(), L"First One");
}

TEST_F(DocumentTest, TheColumnsOfAnotherTableBeginAtItsSecondField) {
  addQueries();
  open();
  document().setViewMode(ViewMode::list);
  window().grid.slidingColumn = 3;
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().grid.slidingColumn, 3u) << "it is the same";
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().grid.slidingColumn, 1u);
  window().grid.slidingColumn = 3;
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().grid.slidingColumn, 1u);
}

TEST_F(DocumentTest, AQueryTakesThePlaceOfTheTable) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  EXPECT_STREQ(document().queryName().text(), L"big");
  EXPECT_TRUE(document().tableName().isEmpty());
  EXPECT_TRUE(document().openedFromQuery());
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 2u);
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  EXPECT_TRUE(document().queryName().isEmpty());
  EXPECT_FALSE(document().openedFromQuery());
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentTest, AnIndexWithoutAQueryChoosesNothing) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  for (const int index : {-1, 2, 1000}) document().openQuerySelection(index);
  EXPECT_TRUE(document().queryName().isEmpty());
  EXPECT_STREQ(document().tableName().text(), L"First One");
}

TEST_F(DocumentTest, AQueryThatDoesNotRunLeavesNoRecordset) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(1);
  document().setViewMode(ViewMode::list);
  EXPECT_FALSE(document().isRecordsetOpen());
  EXPECT_EQ(window().sight(), "nothing");
  document().setViewMode(ViewMode::form);
  EXPECT_FALSE(document().isRecordsetOpen());
  EXPECT_EQ(window().sight(), "form: no editors");
}

// ---- Moves and what the grid is told

TEST_F(DocumentTest, MovesInTheListStopAtBothEnds) {
  open();
  document().setViewMode(ViewMode::list);
  const int filled = window().grid.fills;
  const auto expectRow = [this](std::uint32_t row) {
    EXPECT_EQ(currentRecord, row);
    EXPECT_EQ(window().sight(), "grid: row " + std::to_string(row) + " of 3");
  };
  EXPECT_EQ(document().movePreviousRecord(), 0);
  expectRow(1);
  EXPECT_EQ(document().moveNextRecord(), 0);
  expectRow(2);
  EXPECT_EQ(document().moveLastRecord(), 0);
  expectRow(3);
  EXPECT_EQ(document().moveNextRecord(), 0);
  expectRow(3);
  EXPECT_EQ(document().movePreviousRecord(), 0);
  expectRow(2);
  EXPECT_EQ(document().moveFirstRecord(), 0);
  expectRow(1);
  EXPECT_EQ(window().grid.fills, filled) << "its rows are what they were";
}

TEST_F(DocumentTest, MovesOnThePagesOfNamesDoNothing) {
  open();
  document().setViewMode(ViewMode::list);
  document().moveNextRecord();
  for (const ViewMode mode : {ViewMode::tables, ViewMode::none}) {
    document().setViewMode(mode);
    const std::string sight = window().sight();
    for (const auto move : {&Document::moveFirstRecord, &Document::moveLastRecord, &Document::moveNextRecord,
                            &Document::movePreviousRecord}) {
      EXPECT_EQ((document().*move)(), 0);
    }
    EXPECT_EQ(currentRecord, 2u);
    EXPECT_EQ(window().grid.selected, 2u);
    EXPECT_EQ(window().sight(), sight);
  }
}

TEST_F(DocumentTest, CommandsReachThePageThatIsServed) {
  open();
  const auto expectStyles = [this](std::optional<NameStyle> tables, std::optional<NameStyle> queries) {
    EXPECT_EQ(window().tables->style, tables);
    EXPECT_EQ(window().queries->style, queries);
  };
  const auto tryColumns = [this] {
    document().showNextColumn();
    document().fitColumns();
  };
  document().setNameStyle(NameStyle::list);
  tryColumns();
  expectStyles(NameStyle::list, std::nullopt);
  document().setViewMode(ViewMode::queries);
  document().setNameStyle(NameStyle::smallIcons);
  tryColumns();
  expectStyles(NameStyle::list, NameStyle::smallIcons);
  EXPECT_EQ(window().grid.slidingColumn, 1u);
  document().setViewMode(ViewMode::list);
  EXPECT_FALSE(window().grid.isFitted);
  document().setNameStyle(NameStyle::report);
  expectStyles(NameStyle::list, NameStyle::smallIcons);
  tryColumns();
  EXPECT_EQ(window().grid.slidingColumn, 2u);
  EXPECT_TRUE(window().grid.isFitted);
  document().showPreviousColumn();
  EXPECT_EQ(window().grid.slidingColumn, 1u);
}

// ---- Records that don't open

TEST_F(DocumentTest, RecordsThatDontOpenAreToldAndTriedAgain) {
  open();
  document().openTableSelection(1);
  runStatements(path(), {L"ALTER TABLE Second RENAME TO Hidden"});
  document().setViewMode(ViewMode::form);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::AllOf(testing::StartsWith(L"The records could not be opened.\n"),
                                                 testing::HasSubstr(L"Second")));
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(messages().size(), 1u) << "nobody misses them there";
  runStatements(path(), {L"ALTER TABLE Hidden RENAME TO Second"});
  document().setViewMode(ViewMode::list);
  EXPECT_TRUE(document().isRecordsetOpen());
  EXPECT_EQ(recordCount, 1u);
  EXPECT_EQ(messages().size(), 1u);
}

TEST_F(DocumentTest, RowsOfATableWithOtherFieldsAreReadAnew) {
  open();
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  runStatements(path(), {L"ALTER TABLE [First One] RENAME COLUMN a TO z"});
  String text;
  const Outcome read = document().readRow(1, 0, text);
  ASSERT_FALSE(read);
  document().rowsUnreadable(read);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::HasSubstr(L"The records were opened anew."));
  EXPECT_STREQ(document().fieldName(0).text(), L"z");
  EXPECT_TRUE(document().readRow(1, 0, text));
  EXPECT_STREQ(text.text(), L"20");
}

}  // namespace
