// Every rule of availability as a table of facts and the commands that are enabled by them.
#include <initializer_list>
#include <set>

#include "gtest/gtest.h"
#include "records/availability.h"
#include "resources/command_ids.h"

namespace {

using Commands = std::set<int>;

constexpr PopupMenu kToolbar = PopupMenu::none;

Commands available(const Commands& asked, PopupMenu place, const CommandFacts& facts) {
  Commands found;
  for (const int command : asked) {
    if (isAvailable(command, place, facts)) found.insert(command);
  }
  return found;
}

Commands with(Commands commands, std::initializer_list<int> more) {
  commands.insert(more);
  return commands;
}

// ---- The record

const Commands kMoves = {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_FIRST, ID_RECORD_LAST,
                         ID_RECORD_NUMBER};
const Commands kMoveButtons = {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_NUMBER};

CommandFacts atRecord(std::uint32_t position, std::uint32_t count, bool isNew = false) {
  return {.unlocked = true,
          .databaseOpen = true,
          .recordsetOpen = true,
          .viewMode = ViewMode::form,
          .currentRecord = position,
          .recordCount = count,
          .newRecordPending = isNew};
}

TEST(AvailabilityTest, MovesFollowTheCursor) {
  struct Row {
    CommandFacts facts;
    Commands expected;
  };
  const int next = ID_RECORD_NEXT, previous = ID_RECORD_PREVIOUS, first = ID_RECORD_FIRST,
            last = ID_RECORD_LAST, number = ID_RECORD_NUMBER;
  const Row rows[] = {
      {atRecord(0, 0), {}},
      {atRecord(1, 1), {}},
      {atRecord(1, 1, true), {previous}},
      {atRecord(2, 2, true), {previous, number}},
      {atRecord(1, 2), {next, last, number}},
      {atRecord(2, 2), {previous, first, number}},
      {atRecord(2, 3), {next, previous, first, last, number}},
      {atRecord(2, 3, true), {next, previous, last, number}},
      {atRecord(0, 3), {next, first, last, number}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.facts.currentRecord << " of " << row.facts.recordCount
                                    << row.facts.newRecordPending);
    EXPECT_EQ(available(kMoves, PopupMenu::record, row.facts), row.expected);
    Commands buttons;
    for (const int command : row.expected) {
      if (kMoveButtons.contains(command)) buttons.insert(command);
    }
    EXPECT_EQ(available(kMoveButtons, kToolbar, row.facts), buttons);
    CommandFacts locked = row.facts;
    locked.unlocked = false;
    EXPECT_EQ(available(kMoves, PopupMenu::record, locked), Commands{});
    CommandFacts closed = row.facts;
    closed.databaseOpen = false;
    EXPECT_EQ(available(kMoves, PopupMenu::record, closed), Commands{});
  }
}

TEST(AvailabilityTest, TheGridsRecordButtonsStopAtBothEnds) {
  const auto inGrid = [](std::uint32_t position, std::uint32_t count) {
    CommandFacts facts = atRecord(position, count);
    facts.viewMode = ViewMode::list;
    return available({ID_RECORD_NEXT, ID_RECORD_PREVIOUS}, kToolbar, facts);
  };
  EXPECT_EQ(inGrid(0, 0), Commands{});
  EXPECT_EQ(inGrid(1, 3), Commands{ID_RECORD_NEXT});
  EXPECT_EQ(inGrid(2, 3), (Commands{ID_RECORD_NEXT, ID_RECORD_PREVIOUS}));
  EXPECT_EQ(inGrid(3, 3), Commands{ID_RECORD_PREVIOUS});
}

TEST(AvailabilityTest, NewNeedsARecordsetDeletingAndFindingARecord) {
  const auto both = [](bool recordsetOpen, std::uint32_t count) {
    const CommandFacts facts{.recordsetOpen = recordsetOpen, .recordCount = count};
    Commands found = available({ID_RECORD_NEW, ID_RECORD_DELETE}, PopupMenu::record, facts);
    found.merge(available({ID_FIND}, PopupMenu::edit, facts));
    return found;
  };
  EXPECT_EQ(both(false, 5), Commands{});
  EXPECT_EQ(both(true, 0), Commands{ID_RECORD_NEW});
  EXPECT_EQ(both(true, 1), (Commands{ID_RECORD_NEW, ID_RECORD_DELETE, ID_FIND}));
}

// ---- The pages of the form

CommandFacts onFormPage(std::uint32_t page, std::uint32_t count) {
  return {.unlocked = true,
          .databaseOpen = true,
          .recordsetOpen = true,
          .viewMode = ViewMode::form,
          .formPage = page,
          .formPageCount = count};
}

TEST(AvailabilityTest, FormPagesFollowThePage) {
  struct Row {
    CommandFacts facts;
    Commands expected;
  };
  const auto changed = [](auto change) {
    CommandFacts facts = onFormPage(1, 3);
    change(facts);
    return facts;
  };
  const Row rows[] = {
      {onFormPage(0, 0), {}},
      {onFormPage(0, 1), {}},
      {onFormPage(0, 3), {ID_PAGE_NEXT}},
      {onFormPage(1, 3), {ID_PAGE_NEXT, ID_PAGE_PREVIOUS}},
      {onFormPage(2, 3), {ID_PAGE_PREVIOUS}},
      {changed([](CommandFacts& facts) { facts.unlocked = false; }), {}},
      {changed([](CommandFacts& facts) { facts.databaseOpen = false; }), {}},
      {changed([](CommandFacts& facts) { facts.recordsetOpen = false; }), {}},
      {changed([](CommandFacts& facts) { facts.viewMode = ViewMode::list; }), {}},
      {changed([](CommandFacts& facts) { facts.viewMode = ViewMode::none; }), {}},
  };
  const Commands pages = {ID_PAGE_NEXT, ID_PAGE_PREVIOUS};
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.facts.formPage << " of " << row.facts.formPageCount);
    EXPECT_EQ(available(pages, PopupMenu::record, row.facts), row.expected);
    EXPECT_EQ(available(pages, kToolbar, row.facts), row.expected);
  }
}

// ---- The menus of the database and of the pages of names

const Commands kViews = {ID_VIEW_LARGE_ICONS, ID_VIEW_SMALL_ICONS, ID_VIEW_LIST};
const Commands kTablesMenu = with(kViews, {ID_TABLE_NEW, ID_TABLE_DELETE});
const Commands kQueriesMenu = with(kViews, {ID_QUERY_NEW, ID_QUERY_EDIT, ID_QUERY_DELETE});
const Commands kEditMenu = {ID_CUT, ID_COPY, ID_PASTE, ID_UNDO};

CommandFacts counted(ViewMode mode, std::uint32_t tables, std::uint32_t queries, std::uint32_t fields) {
  return {.countsAsOpen = true,
          .viewMode = mode,
          .tableCount = tables,
          .queryCount = queries,
          .fieldCount = fields};
}

TEST(AvailabilityTest, WithoutADatabaseAllIsGreyButItsInformation) {
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    CommandFacts facts = counted(mode, 5, 5, 5);
    facts.countsAsOpen = false;
    EXPECT_EQ(available({ID_DATABASE_CLOSE}, PopupMenu::file, facts), Commands{});
    EXPECT_EQ(available(with(kEditMenu, {ID_FIND, ID_DATABASE_INFO}), PopupMenu::edit, facts),
              Commands{ID_DATABASE_INFO});
    EXPECT_EQ(available(kTablesMenu, PopupMenu::tables, facts), Commands{});
    EXPECT_EQ(available(kQueriesMenu, PopupMenu::queries, facts), Commands{});
    EXPECT_EQ(available({ID_RECORD_EDIT, ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS}, PopupMenu::record, facts),
              Commands{});
  }
}

TEST(AvailabilityTest, AnEmptyDatabaseLeavesOnlyClosing) {
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    const CommandFacts facts = counted(mode, 0, 0, 0);
    EXPECT_EQ(available({ID_DATABASE_CLOSE}, PopupMenu::file, facts), Commands{ID_DATABASE_CLOSE});
    EXPECT_EQ(available(kEditMenu, PopupMenu::edit, facts), Commands{});
    EXPECT_EQ(available(kTablesMenu, PopupMenu::tables, facts), Commands{});
    EXPECT_EQ(available(kQueriesMenu, PopupMenu::queries, facts), Commands{});
    EXPECT_EQ(available({ID_RECORD_EDIT}, PopupMenu::record, facts), Commands{});
  }
}

TEST(AvailabilityTest, TheTablesMenuNeedsTheTablesPage) {
  EXPECT_EQ(available(kTablesMenu, PopupMenu::tables, counted(ViewMode::tables, 1, 0, 0)), kTablesMenu);
  EXPECT_EQ(available(kTablesMenu, PopupMenu::tables, counted(ViewMode::queries, 1, 1, 0)), Commands{});
}

TEST(AvailabilityTest, TheQueriesMenuNeedsTheQueriesPageAndAQuery) {
  EXPECT_EQ(available(kQueriesMenu, PopupMenu::queries, counted(ViewMode::queries, 0, 1, 0)), kQueriesMenu);
  EXPECT_EQ(available(kQueriesMenu, PopupMenu::queries, counted(ViewMode::queries, 1, 0, 0)), Commands{});
  EXPECT_EQ(available(kQueriesMenu, PopupMenu::queries, counted(ViewMode::tables, 1, 1, 0)), Commands{});
}

TEST(AvailabilityTest, EditingDependsOnTablesNotOnRecords) {
  const CommandFacts facts = counted(ViewMode::form, 1, 0, 0);
  EXPECT_EQ(available({ID_RECORD_EDIT}, PopupMenu::record, facts), Commands{ID_RECORD_EDIT});
  EXPECT_EQ(available(kEditMenu, PopupMenu::edit, facts), kEditMenu);
}

TEST(AvailabilityTest, TheColumnsMenuNeedsTheListPageAndFields) {
  const Commands columns = {ID_COLUMN_PREVIOUS, ID_COLUMN_NEXT};
  EXPECT_EQ(available(columns, PopupMenu::record, counted(ViewMode::list, 0, 0, 1)), columns);
  EXPECT_EQ(available(columns, PopupMenu::record, counted(ViewMode::list, 0, 0, 0)), Commands{});
  EXPECT_EQ(available(columns, PopupMenu::record, counted(ViewMode::form, 0, 0, 1)), Commands{});
}

// ---- Buttons whose rule is not their menu item's

TEST(AvailabilityTest, TheColumnButtonsFollowTheSlidingColumns) {
  const auto buttons = [](std::uint32_t fields, std::uint32_t first) {
    return available({ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS}, kToolbar,
                     {.fieldCount = fields, .firstSlidingColumn = first});
  };
  EXPECT_EQ(buttons(0, 1), Commands{});
  EXPECT_EQ(buttons(0, 2), Commands{});
  EXPECT_EQ(buttons(3, 1), Commands{});
  EXPECT_EQ(buttons(5, 1), Commands{ID_COLUMN_NEXT});
  EXPECT_EQ(buttons(5, 2), (Commands{ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS}));
  EXPECT_EQ(buttons(5, 3), Commands{ID_COLUMN_PREVIOUS});
}

TEST(AvailabilityTest, WhereMoreColumnsHaveRoomTheNextOneEndsEarlier) {
  const auto hasNext = [](std::uint32_t fields, std::uint32_t first, std::uint32_t room) {
    return isAvailable(ID_COLUMN_NEXT, kToolbar,
                       {.fieldCount = fields, .firstSlidingColumn = first, .columnRoom = room});
  };
  EXPECT_FALSE(hasNext(5, 1, 5));
  EXPECT_TRUE(hasNext(6, 1, 5));
  EXPECT_FALSE(hasNext(6, 2, 5));
  EXPECT_FALSE(hasNext(2, 1, 17));
}

TEST(AvailabilityTest, TheButtonsOfNamesNeedAChoice) {
  const auto buttons = [](const CommandFacts& facts) {
    return available({ID_TABLE_DELETE, ID_QUERY_NEW, ID_QUERY_EDIT, ID_QUERY_DELETE}, kToolbar, facts);
  };
  EXPECT_EQ(buttons({}), Commands{});
  EXPECT_EQ(buttons({.tableChosen = true}), Commands{ID_TABLE_DELETE});
  EXPECT_EQ(buttons({.databaseOpen = true}), Commands{ID_QUERY_NEW});
  EXPECT_EQ(buttons({.queryChosen = true}), (Commands{ID_QUERY_EDIT, ID_QUERY_DELETE}));
}

TEST(AvailabilityTest, WhatHasNoRuleInAPlaceIsAlwaysAvailable) {
  for (const int command :
       {ID_DATABASE_INFO, ID_TABLE_NEW, ID_VIEW_LARGE_ICONS, ID_VIEW_SMALL_ICONS, ID_VIEW_LIST}) {
    EXPECT_TRUE(isAvailable(command, kToolbar, {})) << command;
  }
  for (const int command : {ID_DATABASE_NEW, ID_DATABASE_OPEN, ID_DATABASE_DELETE, ID_EXIT}) {
    EXPECT_TRUE(isAvailable(command, PopupMenu::file, {})) << command;
  }
  for (const int command : {ID_OPTIONS, ID_PASSWORD_CHANGE, ID_DATABASE_INFO, ID_ABOUT}) {
    EXPECT_TRUE(isAvailable(command, PopupMenu::edit, {})) << command;
  }
}

// ---- The desktop menu

TEST(AvailabilityTest, ARowIsCopiedOnTheListPageWithRecords) {
  const Commands asked = {ID_ROW_COPY};
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    CommandFacts facts = atRecord(1, 1);
    facts.viewMode = mode;
    EXPECT_EQ(available(asked, PopupMenu::desktop, facts), mode == ViewMode::list ? asked : Commands{});
  }
  CommandFacts empty = atRecord(0, 0);
  empty.viewMode = ViewMode::list;
  EXPECT_EQ(available(asked, PopupMenu::desktop, empty), Commands{});
}

TEST(AvailabilityTest, ImportNeedsADatabaseAndExportATableOrQueryBesides) {
  const Commands both = {ID_IMPORT, ID_EXPORT};
  const int import = ID_IMPORT;
  EXPECT_EQ(available(both, PopupMenu::desktop, {}), Commands{});
  EXPECT_EQ(available(both, PopupMenu::desktop, {.recordsChosen = true}), Commands{});
  EXPECT_EQ(available(both, PopupMenu::desktop, {.databaseOpen = true}), Commands{import});
  EXPECT_EQ(available(both, PopupMenu::desktop, {.databaseOpen = true, .recordsChosen = true}), both);
}

TEST(AvailabilityTest, OrderAndFilterAreOfTheGridAndCanBeLeftOnTheForm) {
  const Commands asked = {ID_ORDER_COLUMN, ID_FILTER_ALL, ID_ARRANGEMENT_CLEAR, ID_ARRANGEMENT_KEEP};
  const Commands plain = {ID_ORDER_COLUMN, ID_FILTER_ALL};
  CommandFacts facts = {.recordsetOpen = true, .viewMode = ViewMode::list};
  EXPECT_EQ(available(asked, PopupMenu::desktop, facts), plain) << "also without records";
  facts.isArranged = true;
  EXPECT_EQ(available(asked, PopupMenu::desktop, facts), asked);
  facts.viewMode = ViewMode::form;
  EXPECT_EQ(available(asked, PopupMenu::desktop, facts), Commands{ID_ARRANGEMENT_CLEAR});
  facts.viewMode = ViewMode::tables;
  EXPECT_EQ(available(asked, PopupMenu::desktop, facts), Commands{});
  facts = {.viewMode = ViewMode::list, .isArranged = true};
  EXPECT_EQ(available(asked, PopupMenu::desktop, facts), Commands{}) << "the records could not be opened";
}

TEST(AvailabilityTest, AllTablesAreSearchedFromEveryPageOfAnOpenDatabase) {
  const Commands asked = {ID_FIND_EVERYWHERE};
  for (const ViewMode mode : {ViewMode::tables, ViewMode::form, ViewMode::list, ViewMode::queries}) {
    EXPECT_EQ(available(asked, PopupMenu::desktop, {.databaseOpen = true, .viewMode = mode}), asked);
  }
  EXPECT_EQ(available(asked, PopupMenu::desktop, {}), Commands{});
}

}  // namespace
