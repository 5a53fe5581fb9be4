// What other programs have changed in the file shows by itself, as soon as that disturbs nobody.
#include <algorithm>
#include <cwchar>
#include <utility>
#include <vector>

#include "records/document.h"
#include "records/raised.h"

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

void Document::showOthersChanges() {
  if (!database_.isOpen() || isBusy()) return;
  const Raised quiet(isQuiet_);
  if (database_.othersHaveChanged()) areNamesOutdated_ = areRecordsOutdated_ = true;
  if (areNamesOutdated_) areNamesOutdated_ = !showTablesAnew() || !showQueriesAnew();
  if (areRecordsOutdated_) areRecordsOutdated_ = !showRecordsAnew();
}

// Each returns false when there is something left to be shown.

bool Document::showTablesAnew() {
  NameList present;
  Outcome read;
  database_.listTables(present, &read);
  if (!read) return false;
  if (isSame(present, tableNames_)) return true;
  const int selected = std::max(pages_.tables->selectedIndex(), 0);
  const String chosen = pages_.tables->itemText(selected);
  tableNames_.swap(present);
  if (viewMode_ != ViewMode::tables) {
    reselectTable_ = true;
  } else {
    const bool isThere = placeOf(chosen, tableNames_) >= 0;
    pages_.tables->rememberSelection(isThere ? selected : placeLeft(selected, tableNames_));
    fillTables(Positioning::byName, chosen);
    if (!isThere && wanted_.isTable(chosen)) {
      wanted_.chooseNone();
      if (!tableNames_.isEmpty()) openTableSelection(pages_.tables->selectedIndex());
    }
  }
  updateCommandBar();
  return true;
}

/// On other pages they are read when theirs is entered.
bool Document::showQueriesAnew() {
  if (viewMode_ != ViewMode::queries) return true;
  NameList present;
  Outcome read;
  database_.listQueries(present, &read);
  // Without their table there are none.
  if (!read && tableNames_.holds(kQueriesTable)) return false;
  if (isSame(present, queryNames_)) return true;
  const int selected = pages_.queries->selectedIndex();
  const int place = placeOf(pages_.queries->itemText(selected), present);
  queryNames_.swap(present);
  pages_.queries->setSelectedIndex(place >= 0 ? place : placeLeft(selected, queryNames_));
  fillQueries();
  updateCommandBar();
  return true;
}

bool Document::showRecordsAnew() {
  // Those of another choice are opened when their page is entered.
  if (!recordsetOpen_ || sqlPending()) return true;
  const bool isOnForm = viewMode_ == ViewMode::form;
  const bool isOnList = viewMode_ == ViewMode::list;
  if (isOnForm && (database_.newRecordPending() || pages_.form.hasChange())) return false;
  // A search leaves the cursor behind the record that is shown.
  const bool isBehind = isOnForm && !shown_.isEmpty() && currentRecord > shown_.position();
  const bool wasEmpty = openRecordCount() == 0;
  std::vector<std::uint32_t> places = {isBehind ? shown_.position() : currentRecord};
  if (isOnList) places = {pages_.grid.selectedRow() + 1, pages_.grid.topRow() + 1};
  RecordSnapshot present;
  if (const Outcome reopened = database_.reopenInPlace(places, present); !reopened) {
    // What has become something else is told by who reads it next.
    return reopened.cause() != Outcome::Cause::notNow && reopened.cause() != Outcome::Cause::stopped;
  }
  recordCount = database_.recordCount();
  if (isOnForm) {
    showFormAnew(std::move(present), places.front(), wasEmpty, isBehind);
  } else {
    currentRecord = places.front();
    // Their places were those of before.
    shown_ = {};
    chosenRow_ = {};
    if (isOnList) {
      pages_.grid.showAnew(std::max(places.back(), 1u) - 1);
      rowChosen();
    }
  }
  updateCommandBar();
  return true;
}

void Document::showFormAnew(RecordSnapshot present, std::uint32_t place, bool wasEmpty, bool isBehind) {
  if (recordCount == 0) {
    currentRecord = 0;
    pages_.form.clearEditors();
    showNoRecords();
    return;
  }
  standAt(isBehind ? place + 1 : place);
  updatePositionText();
  const bool isKept = !wasEmpty && Database::isSameReading(present, shown_);
  shown_ = std::move(present);
  if (wasEmpty) {
    pages_.form.build();
    formGeneration_ = openGeneration_;
  }
  if (!isKept) pages_.form.showAnew(shown_);
  if (wasEmpty) {
    pages_.form.showEditors();
    pages_.form.layOut(true);
  }
}
