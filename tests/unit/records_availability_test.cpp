// Every rule of availability as a table of facts and the commands that are enabled by them.
#include <algorithm>
#include <set>
#include <span>

#include "gtest/gtest.h"
#include "records/availability.h"
#include "resources/command_ids.h"

namespace {

using Commands = std::set<int>;

Commands enabled(std::span<const CommandState> states, PopupMenu menu) {
  Commands commands;
  for (const CommandState& state : states) {
    if (state.enabled && state.menu == menu) commands.insert(state.command);
  }
  return commands;
}

Commands all(std::span<const CommandState> states, bool CommandState::*property) {
  Commands commands;
  for (const CommandState& state : states) {
    if (state.*property) commands.insert(state.command);
  }
  return commands;
}

TEST(NavigationStates, FollowTheCursor) {
  struct Row {
    NavigationFacts facts;
    Commands expected;
  };
  const int next = ID_RECORD_NEXT, previous = ID_RECORD_PREVIOUS, first = ID_RECORD_FIRST,
            last = ID_RECORD_LAST, number = ID_RECORD_NUMBER;
  const Row rows[] = {
      {{true, true, 0, 0, false}, {}},
      {{true, true, 1, 1, false}, {}},
      {{true, true, 1, 1, true}, {previous}},
      {{true, true, 2, 2, true}, {previous, number}},
      {{true, true, 1, 2, false}, {next, last, number}},
      {{true, true, 2, 2, false}, {previous, first, number}},
      {{true, true, 2, 3, false}, {next, previous, first, last, number}},
      {{true, true, 2, 3, true}, {next, previous, last, number}},
      {{true, true, 0, 3, false}, {next, first, last, number}},
      {{false, true, 2, 3, false}, {}},
      {{true, false, 2, 3, true}, {}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(all(navigationStates(row.facts), &CommandState::enabled), row.expected)
        << row.facts.currentRecord << " of " << row.facts.recordCount << row.facts.newRecordPending;
  }
}

TEST(NavigationStates, FirstAndLastAreInTheMenuOnly) {
  const auto states = navigationStates({});
  EXPECT_EQ(all(states, &CommandState::onToolbar),
            (Commands{ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_NUMBER}));
  for (const CommandState& state : states) EXPECT_EQ(state.menu, PopupMenu::record);
}

TEST(FormPageStates, FollowThePage) {
  struct Row {
    FormPageFacts facts;
    Commands expected;
  };
  const Row rows[] = {
      {{true, true, true, ViewMode::form, 0, 0}, {}},
      {{true, true, true, ViewMode::form, 0, 1}, {}},
      {{true, true, true, ViewMode::form, 0, 3}, {ID_PAGE_NEXT}},
      {{true, true, true, ViewMode::form, 1, 3}, {ID_PAGE_NEXT, ID_PAGE_PREVIOUS}},
      {{true, true, true, ViewMode::form, 2, 3}, {ID_PAGE_PREVIOUS}},
      {{false, true, true, ViewMode::form, 1, 3}, {}},
      {{true, false, true, ViewMode::form, 1, 3}, {}},
      {{true, true, false, ViewMode::form, 1, 3}, {}},
      {{true, true, true, ViewMode::list, 1, 3}, {}},
      {{true, true, true, ViewMode::none, 1, 3}, {}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(all(formPageStates(row.facts), &CommandState::enabled), row.expected)
        << row.facts.pageIndex << " of " << row.facts.pageCount;
  }
}

const Commands kViews = {ID_VIEW_LARGE_ICONS, ID_VIEW_SMALL_ICONS, ID_VIEW_LIST};

Commands with(Commands commands, std::initializer_list<int> more) {
  commands.insert(more);
  return commands;
}

TEST(DatabaseStates, AreAllGreyWithoutADatabaseButItsInformation) {
  const auto states = databaseStates({false, ViewMode::tables, 5, 5, 5});
  EXPECT_EQ(all(states, &CommandState::enabled), Commands{ID_DATABASE_INFO});
  EXPECT_EQ(all(states, &CommandState::onToolbar), Commands{});
}

TEST(DatabaseStates, OfAnEmptyDatabaseLeaveOnlyClosing) {
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    const auto states = databaseStates({true, mode, 0, 0, 0});
    EXPECT_EQ(all(states, &CommandState::enabled), (Commands{ID_DATABASE_INFO, ID_DATABASE_CLOSE}));
  }
}

TEST(DatabaseStates, OfTheTablesMenuNeedTheTablesPage) {
  const Commands items = with(kViews, {ID_TABLE_NEW, ID_TABLE_DELETE});
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::tables, 1, 0, 0}), PopupMenu::tables), items);
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::queries, 1, 1, 0}), PopupMenu::tables), Commands{});
}

TEST(DatabaseStates, OfTheQueriesMenuNeedTheQueriesPageAndAQuery) {
  const Commands items = with(kViews, {ID_QUERY_NEW, ID_QUERY_EDIT, ID_QUERY_DELETE});
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::queries, 0, 1, 0}), PopupMenu::queries), items);
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::queries, 1, 0, 0}), PopupMenu::queries), Commands{});
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::tables, 1, 1, 0}), PopupMenu::queries), Commands{});
}

TEST(DatabaseStates, OfRecordsDependOnTablesNotOnRecords) {
  const Commands record = {ID_RECORD_NUMBER, ID_RECORD_NEW, ID_RECORD_DELETE, ID_RECORD_EDIT};
  const Commands edit = {ID_CUT, ID_COPY, ID_PASTE, ID_UNDO, ID_FIND, ID_DATABASE_INFO};
  const auto states = databaseStates({true, ViewMode::form, 1, 0, 0});
  EXPECT_EQ(enabled(states, PopupMenu::record), record);
  EXPECT_EQ(enabled(states, PopupMenu::edit), edit);
}

TEST(DatabaseStates, OfColumnsNeedTheListPageAndFields) {
  const Commands columns = {ID_COLUMN_PREVIOUS, ID_COLUMN_NEXT};
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::list, 0, 0, 1}), PopupMenu::record), columns);
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::list, 0, 0, 0}), PopupMenu::record), Commands{});
  EXPECT_EQ(enabled(databaseStates({true, ViewMode::form, 0, 0, 1}), PopupMenu::record), Commands{});
}

TEST(RecordStates, NeedARecordsetAndForDeletingARecord) {
  EXPECT_EQ(all(recordStates({false, 5}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(recordStates({true, 0}), &CommandState::enabled), Commands{ID_RECORD_NEW});
  EXPECT_EQ(all(recordStates({true, 1}), &CommandState::enabled),
            (Commands{ID_RECORD_NEW, ID_RECORD_DELETE, ID_FIND}));
}

TEST(GridRecordStates, StopAtBothEnds) {
  EXPECT_EQ(all(gridRecordStates({0, 0}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(gridRecordStates({1, 3}), &CommandState::enabled), Commands{ID_RECORD_NEXT});
  EXPECT_EQ(all(gridRecordStates({2, 3}), &CommandState::enabled),
            (Commands{ID_RECORD_NEXT, ID_RECORD_PREVIOUS}));
  EXPECT_EQ(all(gridRecordStates({3, 3}), &CommandState::enabled), Commands{ID_RECORD_PREVIOUS});
}

TEST(ColumnStates, FollowTheSlidingColumns) {
  EXPECT_EQ(all(columnStates({0, 1}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(columnStates({0, 2}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(columnStates({3, 1}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(columnStates({5, 1}), &CommandState::enabled), Commands{ID_COLUMN_NEXT});
  EXPECT_EQ(all(columnStates({5, 2}), &CommandState::enabled),
            (Commands{ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS}));
  EXPECT_EQ(all(columnStates({5, 3}), &CommandState::enabled), Commands{ID_COLUMN_PREVIOUS});
}

TEST(NamesStates, NeedAnItemAndASelection) {
  EXPECT_EQ(all(tableStates({-1, 3}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(tableStates({0, 0}), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(tableStates({0, 1}), &CommandState::enabled), Commands{ID_TABLE_DELETE});
  EXPECT_EQ(all(queryStates({0, 0}, false), &CommandState::enabled), Commands{});
  EXPECT_EQ(all(queryStates({0, 0}, true), &CommandState::enabled), Commands{ID_QUERY_NEW});
  EXPECT_EQ(all(queryStates({-1, 2}, true), &CommandState::enabled), Commands{ID_QUERY_NEW});
  EXPECT_EQ(all(queryStates({1, 2}, true), &CommandState::enabled),
            (Commands{ID_QUERY_NEW, ID_QUERY_EDIT, ID_QUERY_DELETE}));
}

}  // namespace
