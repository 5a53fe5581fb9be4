#include "records/parts/look_ups.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <utility>

#include "base/wait_cursor.h"

namespace {

constexpr std::chrono::milliseconds kMostWaitingForName{100};

}  // namespace

String LookUps::nameOf(std::uint32_t field, const String& key) const {
  // A tooltip is asked for at any moment, and nobody waits for it.
  if (document().isBusy() || !document().isRecordsetOpen()) return {};
  const Unasked unasked(*this, kMostWaitingForName);
  return database().lookUpName(field, key);
}

std::unique_ptr<LookUpRecords> LookUps::open(std::uint32_t field) const {
  if (document().isBusy() || !isLookUp(field)) return nullptr;
  const WaitCursor wait;
  std::unique_ptr<LookUpRecords> records;
  if (const Outcome opened = database().openLookUp(field, records); !opened) {
    const String& table = database().lookUpTarget(field).table;
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

bool LookUps::refersElsewhere() const {
  if (document().viewMode() != ViewMode::form || !document().isRecordsetOpen() || shown().isEmpty())
    return false;
  // Who has the keyboard is a question to the system, after each step through the records.
  if (!database().hasLookUps()) return false;
  const std::optional<std::uint32_t> field = pages().form.focusedField();
  return field && isLookUp(*field);
}

/// Opens the records that are wanted anew, on the form.
void LookUps::openOnForm() const {
  document().setViewMode(ViewMode::none);
  document().setViewMode(ViewMode::form);
}

void LookUps::showRecord(std::uint32_t position) const {
  const std::uint32_t count = openRecordCount();
  if (count == 0 || position <= 1 || !database().moveTo(std::min(position, count))) return;
  document().loadRecord();
  document().updateNavigationState();
}

void LookUps::goThere() {
  if (!refersElsewhere()) return;
  const std::uint32_t field = *pages().form.focusedField();
  const LookUpTarget target = database().lookUpTarget(field);
  const String key = pages().form.editors()[field]->text();
  if (key.isEmpty()) {
    refuse(L"This field refers to no record.");
    return;
  }
  // Behind a match stands the cursor; the user means the record that he sees.
  CameFrom from{wanted(), shown().position(), {}, field};
  if (!settleRecord()) return;
  from.mark = database().markRecord(from.position);
  const std::uint32_t table = tableNames().find(target.table);
  if (table == tableNames().size()) {
    tellFailure(std::wstring(L"The records of table '") + target.table.text() + L"' could not be opened.",
                kGoneElsewhere);
    return;
  }
  // Without the filter that the table may have: the record need not fit.
  wanted().chooseTable(tableNames()[table]);
  reselectTable();
  pages().grid.resetColumns();
  openOnForm();
  cameFrom_.push_back(std::move(from));
  if (cameFrom_.size() > kMostCameFrom) cameFrom_.erase(cameFrom_.begin());
  if (!document().isRecordsetOpen()) return;
  const std::uint32_t keyField = database().fieldIndexByName(target.field);
  std::optional<std::uint32_t> row;
  const Outcome searched = keyField < database().fieldCount() ? findRowOfKey(keyField, key, row) : Outcome();
  if (row && database().moveTo(*row + 1)) {
    document().loadRecord();
    document().updateNavigationState();
  } else if (!searched && searched.cause() != Outcome::Cause::stopped) {
    tellFailure(L"The search could not go on.", searched.reason());
  } else if (searched && !wasSearchStopped()) {
    refuse(
        (std::wstring(L"There is no record '") + key.text() + L"' in table '" + target.table.text() + L"'.")
            .c_str());
  }
}

void LookUps::goBack() {
  if (cameFrom_.empty() || !database().isOpen() || !document().canLeaveRecord()) return;
  const CameFrom from = std::move(cameFrom_.back());
  cameFrom_.pop_back();
  if (from.source.isTable()) {
    chooseTable(from.source.tableName());
  } else {
    chooseQuery(from.source.queryName(), from.source.plainSql());
  }
  reselectTable();
  pages().grid.resetColumns();
  openOnForm();
  if (!document().isRecordsetOpen()) return;
  const std::uint32_t place = database().placeOf(from.mark, from.position);
  showRecord(place != 0 ? place : from.position);
  if (document().viewMode() == ViewMode::form) pages().form.focusField(from.field);
}
