// The search through all tables, and the way from what it has found to the record on the form.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/wait_cursor.h"
#include "data/database/table_search.h"
#include "records/document.h"
#include "records/search_step.h"

bool Document::findEverywhere(const String& text, const FoundListener& found) {
  if (isBusy() || !database_.isOpen() || text.isEmpty()) return false;
  const WaitCursor wait;
  const SearchStep step(*this);
  searchStopped_ = false;
  // It may be filled anew while the windows are painted.
  NameList tables;
  for (std::uint32_t i = 0; i < tableNames_.size(); ++i) tables.append(tableNames_[i]);
  for (std::uint32_t i = 0; i < tables.size() && !searchStopped_; ++i) {
    findInTable(tables[i], text, found);
    // Thousands of tables without a record take their time, too.
    const bool isLast = i + 1 == tables.size();
    if (!isLast && !searchGoesOn({Progress::What::searchingTables, i + 1, tables.size()})) {
      searchStopped_ = true;
    }
  }
  return !searchStopped_;
}

void Document::findInTable(const String& table, const String& text, const FoundListener& found) {
  TableSearch search;
  Outcome searched = database_.beginTableSearch(table, text, search);
  std::vector<TableSearch::Match> matches;
  while (searched && !search.isOver() && !searchStopped_) {
    matches.clear();
    searched = search.step(sliceOfSearch(), matches);
    for (TableSearch::Match& match : matches) {
      if (!found({table, match.record, match.field, std::move(match.excerpt)})) searchStopped_ = true;
    }
    if (!searchGoesOn({Progress::What::searching, search.testedCount(), search.recordCount()}))
      searchStopped_ = true;
  }
  // A statement that was stopped by the user fails, too.
  if (!searched && !searchStopped_) found({table, 0, String(), searched.reason().text()});
}

/// All records of the table, in the order in which they were looked through: what is kept as its order and
/// filter comes back when it is chosen again.
bool Document::chooseFound(const FoundPlace& place) {
  if (isBusy() || !database_.isOpen() || !canLeaveRecord()) return false;
  setViewMode(ViewMode::none);
  wanted_.chooseTable(place.table);
  pages_.grid.resetColumns();
  reselectTable_ = true;
  repositionFromList_ = false;
  return true;
}

void Document::showFound(const FoundPlace& place, const String& text) {
  if (viewMode_ != ViewMode::form || !recordsetOpen_) return;
  standAgainAt(place.record);
  std::optional<std::uint32_t> field;
  const bool isThere =
      place.record <= openRecordCount() && database_.searchRecord(true, false, 0, text, field) && field;
  if (!isThere) {
    refuse(PromptOwner::mainWindow, L"The text is no longer there: another program has changed the records.");
    return;
  }
  const std::uint32_t wanted = database_.fieldIndexByName(place.field);
  pages_.form.focusField(wanted < database_.fieldCount() ? wanted : *field);
}
