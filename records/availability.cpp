#include "records/availability.h"

#include "resources/command_ids.h"

namespace {

constexpr bool kOnToolbar = true;
constexpr bool kMenuOnly = false;

}  // namespace

std::array<CommandState, 5> navigationStates(const NavigationFacts& facts) {
  const bool usable = facts.unlocked && facts.databaseOpen;
  const bool many = usable && facts.recordCount > 1;
  const bool isFirst = facts.currentRecord == 1;
  const bool isLast = facts.currentRecord == facts.recordCount;
  // A pending new record stands behind the last one: Previous leaves it.
  const bool hasPrevious = usable && (facts.currentRecord >= 2 || facts.newRecordPending);
  return {{
      {ID_RECORD_NEXT, PopupMenu::record, kOnToolbar, many && facts.currentRecord < facts.recordCount},
      {ID_RECORD_PREVIOUS, PopupMenu::record, kOnToolbar, hasPrevious},
      {ID_RECORD_FIRST, PopupMenu::record, kMenuOnly, many && !isFirst && !facts.newRecordPending},
      {ID_RECORD_LAST, PopupMenu::record, kMenuOnly, many && !isLast},
      {ID_RECORD_NUMBER, PopupMenu::record, kOnToolbar, many},
  }};
}

std::array<CommandState, 2> formPageStates(const FormPageFacts& facts) {
  const bool usable =
      facts.unlocked && facts.databaseOpen && facts.recordsetOpen && facts.viewMode == ViewMode::form;
  return {{
      {ID_PAGE_NEXT, PopupMenu::record, kOnToolbar, usable && facts.pageIndex + 1 < facts.pageCount},
      {ID_PAGE_PREVIOUS, PopupMenu::record, kOnToolbar, usable && facts.pageIndex != 0},
  }};
}

std::array<CommandState, 24> databaseStates(const DatabaseFacts& facts) {
  const bool hasTables = facts.open && facts.tableCount >= 1;
  const bool onTables = hasTables && facts.viewMode == ViewMode::tables;
  const bool onQueries = facts.open && facts.queryCount >= 1 && facts.viewMode == ViewMode::queries;
  const bool hasColumns = facts.open && facts.fieldCount >= 1 && facts.viewMode == ViewMode::list;
  return {{
      {ID_DATABASE_CLOSE, PopupMenu::file, kMenuOnly, facts.open},
      {ID_DATABASE_INFO, PopupMenu::edit, kMenuOnly, true},
      {ID_TABLE_NEW, PopupMenu::tables, kMenuOnly, onTables},
      {ID_TABLE_DELETE, PopupMenu::tables, kMenuOnly, onTables},
      {ID_VIEW_LARGE_ICONS, PopupMenu::tables, kMenuOnly, onTables},
      {ID_VIEW_SMALL_ICONS, PopupMenu::tables, kMenuOnly, onTables},
      {ID_VIEW_LIST, PopupMenu::tables, kMenuOnly, onTables},
      {ID_RECORD_NUMBER, PopupMenu::record, kMenuOnly, hasTables},
      {ID_RECORD_NEW, PopupMenu::record, kMenuOnly, hasTables},
      {ID_RECORD_DELETE, PopupMenu::record, kMenuOnly, hasTables},
      {ID_RECORD_EDIT, PopupMenu::record, kMenuOnly, hasTables},
      {ID_CUT, PopupMenu::edit, kMenuOnly, hasTables},
      {ID_COPY, PopupMenu::edit, kMenuOnly, hasTables},
      {ID_PASTE, PopupMenu::edit, kMenuOnly, hasTables},
      {ID_UNDO, PopupMenu::edit, kMenuOnly, hasTables},
      {ID_FIND, PopupMenu::edit, kMenuOnly, hasTables},
      {ID_COLUMN_PREVIOUS, PopupMenu::record, kMenuOnly, hasColumns},
      {ID_COLUMN_NEXT, PopupMenu::record, kMenuOnly, hasColumns},
      {ID_QUERY_NEW, PopupMenu::queries, kMenuOnly, onQueries},
      {ID_QUERY_EDIT, PopupMenu::queries, kMenuOnly, onQueries},
      {ID_QUERY_DELETE, PopupMenu::queries, kMenuOnly, onQueries},
      {ID_VIEW_LARGE_ICONS, PopupMenu::queries, kMenuOnly, onQueries},
      {ID_VIEW_SMALL_ICONS, PopupMenu::queries, kMenuOnly, onQueries},
      {ID_VIEW_LIST, PopupMenu::queries, kMenuOnly, onQueries},
  }};
}

std::array<CommandState, 3> recordStates(const RecordFacts& facts) {
  const bool hasRecords = facts.recordsetOpen && facts.recordCount != 0;
  return {{
      {ID_RECORD_NEW, PopupMenu::record, kMenuOnly, facts.recordsetOpen},
      {ID_RECORD_DELETE, PopupMenu::record, kMenuOnly, hasRecords},
      {ID_FIND, PopupMenu::edit, kMenuOnly, hasRecords},
  }};
}

std::array<CommandState, 2> gridRecordStates(const GridFacts& facts) {
  return {{
      {ID_RECORD_NEXT, PopupMenu::none, kOnToolbar, facts.position < facts.recordCount},
      {ID_RECORD_PREVIOUS, PopupMenu::none, kOnToolbar, facts.position >= 2},
  }};
}

std::array<CommandState, 2> columnStates(const ColumnFacts& facts) {
  return {{
      {ID_COLUMN_NEXT, PopupMenu::none, kOnToolbar, facts.firstSlidingColumn < facts.fieldCount - 2},
      {ID_COLUMN_PREVIOUS, PopupMenu::none, kOnToolbar, facts.fieldCount > 0 && facts.firstSlidingColumn > 1},
  }};
}

std::array<CommandState, 1> tableStates(const NamesFacts& facts) {
  const bool chosen = facts.selectedIndex >= 0 && facts.itemCount >= 1;
  return {{{ID_TABLE_DELETE, PopupMenu::none, kOnToolbar, chosen}}};
}

std::array<CommandState, 3> queryStates(const NamesFacts& facts, bool databaseOpen) {
  const bool chosen = facts.selectedIndex >= 0 && facts.itemCount >= 1;
  return {{
      {ID_QUERY_NEW, PopupMenu::none, kOnToolbar, databaseOpen},
      {ID_QUERY_DELETE, PopupMenu::none, kOnToolbar, chosen},
      {ID_QUERY_EDIT, PopupMenu::none, kOnToolbar, chosen},
  }};
}
