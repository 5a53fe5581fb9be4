#include "records/availability.h"

#include <array>

#include "resources/command_ids.h"

namespace {

// ---- Rules

bool databaseCounts(const CommandFacts& facts) {
  return facts.countsAsOpen;
}

bool hasTables(const CommandFacts& facts) {
  return facts.countsAsOpen && facts.tableCount >= 1;
}

bool isOnTables(const CommandFacts& facts) {
  return hasTables(facts) && facts.viewMode == ViewMode::tables;
}

bool isOnQueries(const CommandFacts& facts) {
  return facts.countsAsOpen && facts.queryCount >= 1 && facts.viewMode == ViewMode::queries;
}

bool hasColumns(const CommandFacts& facts) {
  return facts.countsAsOpen && facts.fieldCount >= 1 && facts.viewMode == ViewMode::list;
}

bool isTableChosen(const CommandFacts& facts) {
  return facts.tableChosen;
}

bool isQueryChosen(const CommandFacts& facts) {
  return facts.queryChosen;
}

bool isDatabaseOpen(const CommandFacts& facts) {
  return facts.databaseOpen;
}

bool areRecordsChosen(const CommandFacts& facts) {
  return facts.databaseOpen && facts.recordsChosen;
}

bool hasRecordset(const CommandFacts& facts) {
  return facts.recordsetOpen;
}

bool hasRecords(const CommandFacts& facts) {
  return facts.recordsetOpen && facts.recordCount != 0;
}

bool refersElsewhere(const CommandFacts& facts) {
  return facts.refersElsewhere;
}

bool cameFromElsewhere(const CommandFacts& facts) {
  return facts.databaseOpen && facts.cameFromElsewhere;
}

bool hasUndo(const CommandFacts& facts) {
  return facts.hasUndo;
}

bool hasRedo(const CommandFacts& facts) {
  return facts.hasRedo;
}

bool hasRows(const CommandFacts& facts) {
  return hasRecords(facts) && facts.viewMode == ViewMode::list;
}

bool isGridOpen(const CommandFacts& facts) {
  return facts.recordsetOpen && facts.viewMode == ViewMode::list;
}

bool isArranged(const CommandFacts& facts) {
  return facts.recordsetOpen && facts.isArranged && showsRecords(facts.viewMode);
}

bool isGridArranged(const CommandFacts& facts) {
  return isGridOpen(facts) && facts.isArranged;
}

bool hasManyRecords(const CommandFacts& facts) {
  return facts.unlocked && facts.databaseOpen && facts.recordCount > 1;
}

bool hasNext(const CommandFacts& facts) {
  return hasManyRecords(facts) && facts.currentRecord < facts.recordCount;
}

/// A pending new record stands behind the last one: Previous leaves it.
bool hasPrevious(const CommandFacts& facts) {
  return facts.unlocked && facts.databaseOpen && (facts.currentRecord >= 2 || facts.newRecordPending);
}

bool isBehindFirst(const CommandFacts& facts) {
  return hasManyRecords(facts) && facts.currentRecord != 1 && !facts.newRecordPending;
}

bool isBeforeLast(const CommandFacts& facts) {
  return hasManyRecords(facts) && facts.currentRecord != facts.recordCount;
}

bool isOnForm(const CommandFacts& facts) {
  return facts.unlocked && facts.databaseOpen && facts.recordsetOpen && facts.viewMode == ViewMode::form;
}

bool hasNextPage(const CommandFacts& facts) {
  return isOnForm(facts) && facts.formPage + 1 < facts.formPageCount;
}

bool hasPreviousPage(const CommandFacts& facts) {
  return isOnForm(facts) && facts.formPage != 0;
}

bool hasNextColumn(const CommandFacts& facts) {
  return facts.firstSlidingColumn + facts.columnRoom - 1 < facts.fieldCount;
}

bool hasPreviousColumn(const CommandFacts& facts) {
  return facts.fieldCount > 0 && facts.firstSlidingColumn > 1;
}

// ---- The table

struct Row {
  int command;
  PopupMenu menu;
  bool onToolbar;
  bool (*rule)(const CommandFacts& facts);
};

constexpr bool kOnToolbar = true;
constexpr bool kMenuOnly = false;

constexpr std::array kRows = {
    Row{ID_DATABASE_CLOSE, PopupMenu::file, kMenuOnly, databaseCounts},

    Row{ID_CUT, PopupMenu::edit, kMenuOnly, hasTables},
    Row{ID_COPY, PopupMenu::edit, kMenuOnly, hasTables},
    Row{ID_PASTE, PopupMenu::edit, kMenuOnly, hasTables},
    Row{ID_UNDO, PopupMenu::edit, kMenuOnly, hasTables},
    Row{ID_FIND, PopupMenu::edit, kMenuOnly, hasRecords},

    Row{ID_RECORD_EDIT, PopupMenu::record, kMenuOnly, hasTables},
    Row{ID_RECORD_NEW, PopupMenu::record, kMenuOnly, hasRecordset},
    Row{ID_RECORD_DELETE, PopupMenu::record, kMenuOnly, hasRecords},
    Row{ID_RECORD_NEXT, PopupMenu::record, kOnToolbar, hasNext},
    Row{ID_RECORD_PREVIOUS, PopupMenu::record, kOnToolbar, hasPrevious},
    Row{ID_RECORD_FIRST, PopupMenu::record, kMenuOnly, isBehindFirst},
    Row{ID_RECORD_LAST, PopupMenu::record, kMenuOnly, isBeforeLast},
    Row{ID_RECORD_NUMBER, PopupMenu::record, kOnToolbar, hasManyRecords},
    Row{ID_PAGE_NEXT, PopupMenu::record, kOnToolbar, hasNextPage},
    Row{ID_PAGE_PREVIOUS, PopupMenu::record, kOnToolbar, hasPreviousPage},
    Row{ID_COLUMN_NEXT, PopupMenu::record, kMenuOnly, hasColumns},
    Row{ID_COLUMN_PREVIOUS, PopupMenu::record, kMenuOnly, hasColumns},
    Row{ID_COLUMN_NEXT, PopupMenu::none, kOnToolbar, hasNextColumn},
    Row{ID_COLUMN_PREVIOUS, PopupMenu::none, kOnToolbar, hasPreviousColumn},

    Row{ID_TABLE_NEW, PopupMenu::tables, kMenuOnly, isOnTables},
    Row{ID_TABLE_DELETE, PopupMenu::tables, kMenuOnly, isOnTables},
    Row{ID_VIEW_LARGE_ICONS, PopupMenu::tables, kMenuOnly, isOnTables},
    Row{ID_VIEW_SMALL_ICONS, PopupMenu::tables, kMenuOnly, isOnTables},
    Row{ID_VIEW_LIST, PopupMenu::tables, kMenuOnly, isOnTables},
    Row{ID_TABLE_DELETE, PopupMenu::none, kOnToolbar, isTableChosen},

    Row{ID_QUERY_NEW, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_QUERY_EDIT, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_QUERY_DELETE, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_VIEW_LARGE_ICONS, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_VIEW_SMALL_ICONS, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_VIEW_LIST, PopupMenu::queries, kMenuOnly, isOnQueries},
    Row{ID_QUERY_NEW, PopupMenu::none, kOnToolbar, isDatabaseOpen},
    Row{ID_QUERY_EDIT, PopupMenu::none, kOnToolbar, isQueryChosen},
    Row{ID_QUERY_DELETE, PopupMenu::none, kOnToolbar, isQueryChosen},

    Row{ID_HISTORY_UNDO, PopupMenu::desktop, kMenuOnly, hasUndo},
    Row{ID_HISTORY_REDO, PopupMenu::desktop, kMenuOnly, hasRedo},
    Row{ID_IMPORT, PopupMenu::desktop, kMenuOnly, isDatabaseOpen},
    Row{ID_EXPORT, PopupMenu::desktop, kMenuOnly, areRecordsChosen},
    Row{ID_ROW_COPY, PopupMenu::desktop, kMenuOnly, hasRows},
    Row{ID_TABLE_PASTE, PopupMenu::desktop, kMenuOnly, isDatabaseOpen},
    Row{ID_LOOK_UP, PopupMenu::desktop, kMenuOnly, refersElsewhere},
    Row{ID_GO_TO_LOOKED_UP, PopupMenu::desktop, kMenuOnly, refersElsewhere},
    Row{ID_GO_BACK, PopupMenu::desktop, kMenuOnly, cameFromElsewhere},
    Row{ID_FIND_EVERYWHERE, PopupMenu::desktop, kMenuOnly, isDatabaseOpen},
    Row{ID_ORDER_COLUMN, PopupMenu::desktop, kMenuOnly, isGridOpen},
    Row{ID_FILTER_ALL, PopupMenu::desktop, kMenuOnly, isGridOpen},
    Row{ID_ARRANGEMENT_CLEAR, PopupMenu::desktop, kMenuOnly, isArranged},
    Row{ID_ARRANGEMENT_KEEP, PopupMenu::desktop, kMenuOnly, isGridArranged},
};

}  // namespace

bool isAvailable(int command, PopupMenu menu, const CommandFacts& facts) {
  for (const Row& row : kRows) {
    const bool isHere = menu == PopupMenu::none ? row.onToolbar : row.menu == menu;
    if (row.command == command && isHere) return row.rule(facts);
  }
  return true;
}
