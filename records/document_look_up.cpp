// Fields that refer to records of another table.
#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "base/wait_cursor.h"
#include "records/document.h"

String Document::lookUpName(std::uint32_t field, const String& key) {
  // A tooltip is asked for at any moment.
  return isBusy() || !recordsetOpen_ ? String() : database_.lookUpName(field, key);
}

std::unique_ptr<LookUpRecords> Document::openLookUp(std::uint32_t field) {
  if (isBusy() || !isLookUp(field)) return nullptr;
  const WaitCursor wait;
  std::unique_ptr<LookUpRecords> records;
  if (const Outcome opened = database_.openLookUp(field, records); !opened) {
    const String& table = database_.lookUpTarget(field).table;
    tellFailure(std::wstring(L"The records of table '") + table.text() + L"' could not be opened.",
                opened.reason());
  }
  return records;
}

// ---- There and back

namespace {

/// More than anybody remembers.
constexpr std::size_t kMostCameFrom = 50;

}  // namespace

/// Whether the field with the keyboard does, on the form of a record.
bool Document::refersElsewhere() const {
  if (viewMode_ != ViewMode::form || !recordsetOpen_ || shown_.isEmpty()) return false;
  const std::optional<std::uint32_t> field = pages_.form.focusedField();
  return field && isLookUp(*field);
}

/// Opens the records that are wanted anew, on the form.
void Document::showFormOf(std::uint32_t position) {
  setViewMode(ViewMode::none);
  setViewMode(ViewMode::form);
  const std::uint32_t count = openRecordCount();
  if (count == 0 || position <= 1 || !database_.moveTo(std::min(position, count))) return;
  loadRecord();
  updateNavigationState();
}

void Document::goToLookedUp() {
  if (!refersElsewhere()) return;
  const std::uint32_t field = *pages_.form.focusedField();
  const LookUpTarget target = database_.lookUpTarget(field);
  const String key = pages_.form.editors()[field]->text();
  if (key.isEmpty()) {
    refuse(PromptOwner::mainWindow, L"This field refers to no record.");
    return;
  }
  // Behind a match stands the cursor; the user means the record that he sees.
  CameFrom from{wanted_, shown_.position(), field};
  if (!settleRecord()) return;
  // The file may spell it otherwise than who refers to it.
  const auto isTarget = [&](std::uint32_t i) {
    return CompareStringOrdinal(tableNames_[i].text(), -1, target.table.text(), -1, TRUE) == CSTR_EQUAL;
  };
  std::uint32_t table = 0;
  while (table < tableNames_.size() && !isTarget(table)) ++table;
  if (table == tableNames_.size()) {
    tellFailure(std::wstring(L"The records of table '") + target.table.text() + L"' could not be opened.",
                kGoneElsewhere);
    return;
  }
  // Without the filter that the table may have: the record need not fit.
  wanted_.chooseTable(tableNames_[table]);
  reselectTable_ = true;
  pages_.grid.resetColumns();
  showFormOf(1);
  cameFrom_.push_back(std::move(from));
  if (cameFrom_.size() > kMostCameFrom) cameFrom_.erase(cameFrom_.begin());
  if (!recordsetOpen_) return;
  const std::uint32_t keyField = database_.fieldIndexByName(target.field);
  const std::optional<std::uint32_t> row =
      keyField < database_.fieldCount() ? findRowOfKey(keyField, key) : std::nullopt;
  if (row && database_.moveTo(*row + 1)) {
    loadRecord();
    updateNavigationState();
  } else if (!searchStopped_) {
    refuse(PromptOwner::mainWindow, (std::wstring(L"There is no record '") + key.text() + L"' in table '" +
                                     target.table.text() + L"'.")
                                        .c_str());
  }
}

void Document::goBack() {
  if (cameFrom_.empty() || !database_.isOpen() || !canLeaveRecord()) return;
  const CameFrom from = std::move(cameFrom_.back());
  cameFrom_.pop_back();
  if (from.source.isTable()) {
    chooseTable(from.source.tableName());
  } else {
    chooseQuery(from.source.queryName(), from.source.plainSql());
  }
  reselectTable_ = true;
  pages_.grid.resetColumns();
  showFormOf(from.position);
  if (recordsetOpen_ && viewMode_ == ViewMode::form) pages_.form.focusField(from.field);
}
