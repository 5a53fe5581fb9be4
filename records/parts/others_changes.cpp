#include "records/parts/others_changes.h"

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <utility>
#include <vector>

namespace {

bool isSame(const NameList& one, const NameList& other) {
  if (one.size() != other.size()) return false;
  for (std::uint32_t i = 0; i < one.size(); ++i) {
    if (std::wcscmp(one[i].text(), other[i].text()) != 0) return false;
  }
  return true;
}

/// Where a name stands; -1 when it is not there.
int placeOf(const String& name, const NameList& names) {
  for (std::uint32_t i = 0; i < names.size(); ++i) {
    if (std::wcscmp(names[i].text(), name.text()) == 0) return static_cast<int>(i);
  }
  return -1;
}

/// Of an item that has gone: the one that has taken its place.
int placeLeft(int index, const NameList& names) {
  return std::clamp(index, 0, std::max(static_cast<int>(names.size()) - 1, 0));
}

}  // namespace

void OthersChanges::show() {
  if (!database().isOpen() || document().isBusy()) return;
  const Unasked unasked(*this, std::chrono::milliseconds::zero());
  if (database().othersHaveChanged()) areNamesOutdated_ = areRecordsOutdated_ = true;
  if (areNamesOutdated_) areNamesOutdated_ = !showTables() || !showQueries();
  if (areRecordsOutdated_) areRecordsOutdated_ = !showRecords();
}

// Each returns false when there is something left to be shown.

bool OthersChanges::showTables() const {
  NameList present;
  Outcome read;
  database().listTables(present, &read);
  if (!read) return false;
  if (isSame(present, tableNames())) return true;
  const int selected = std::max(pages().tables->selectedIndex(), 0);
  const String chosen = pages().tables->itemText(selected);
  tableNames().swap(present);
  if (document().viewMode() != ViewMode::tables) {
    reselectTable();
  } else {
    const bool isThere = placeOf(chosen, tableNames()) >= 0;
    pages().tables->rememberSelection(isThere ? selected : placeLeft(selected, tableNames()));
    fillTables(Positioning::byName, chosen);
    if (!isThere && wanted().isTable(chosen)) {
      wanted().chooseNone();
      if (!tableNames().isEmpty()) document().openTableSelection(pages().tables->selectedIndex());
    }
  }
  document().updateCommandBar();
  return true;
}

/// On other pages they are read when theirs is entered.
bool OthersChanges::showQueries() const {
  if (document().viewMode() != ViewMode::queries) return true;
  NameList present;
  Outcome read;
  database().listQueries(present, &read);
  // Without their table there are none.
  if (!read && tableNames().holds(kQueriesTable)) return false;
  if (isSame(present, queryNames())) return true;
  const int selected = pages().queries->selectedIndex();
  const int place = placeOf(pages().queries->itemText(selected), present);
  queryNames().swap(present);
  const bool stays = place >= 0 || selected < 0;
  pages().queries->setSelectedIndex(stays ? place : placeLeft(selected, queryNames()));
  fillQueries();
  document().updateCommandBar();
  return true;
}

bool OthersChanges::showRecords() const {
  // Those of another choice are opened when their page is entered.
  if (!document().isRecordsetOpen() || sqlPending()) return true;
  const bool isOnForm = document().viewMode() == ViewMode::form;
  const bool isOnList = document().viewMode() == ViewMode::list;
  if (isOnForm && (database().newRecordPending() || pages().form.hasChange())) return false;
  // A search leaves the cursor behind the record that is shown.
  const bool isBehind = isOnForm && !shown().isEmpty() && currentRecord > shown().position();
  const bool wasEmpty = openRecordCount() == 0;
  std::vector<std::uint32_t> places = {isBehind ? shown().position() : currentRecord};
  if (isOnList) places = {pages().grid.selectedRow() + 1, pages().grid.topRow() + 1};
  RecordSnapshot present;
  if (const Outcome reopened = database().reopenInPlace(places, present); !reopened) {
    // What has become something else is told by who reads it next.
    return reopened.cause() != Outcome::Cause::notNow && reopened.cause() != Outcome::Cause::stopped;
  }
  recordCount = database().recordCount();
  if (isOnForm) {
    showForm(std::move(present), places.front(), wasEmpty, isBehind);
  } else {
    currentRecord = places.front();
    // Their places were those of before.
    shown() = {};
    chosenRow() = {};
    if (isOnList) {
      pages().grid.showAnew(std::max(places.back(), 1u) - 1);
      document().rowChosen();
    }
  }
  document().updateCommandBar();
  return true;
}

void OthersChanges::showForm(RecordSnapshot present, std::uint32_t place, bool wasEmpty,
                             bool isBehind) const {
  if (recordCount == 0) {
    currentRecord = 0;
    pages().form.clearEditors();
    showNoRecords();
    return;
  }
  standAt(isBehind ? place + 1 : place);
  document().updatePositionText();
  const bool isKept = !wasEmpty && Database::isSameReading(present, shown());
  shown() = std::move(present);
  if (wasEmpty) {
    pages().form.build();
    formIsBuilt();
  }
  if (!isKept) pages().form.showAnew(shown());
  if (wasEmpty) {
    pages().form.showEditors();
    pages().form.layOut(true);
  }
}
