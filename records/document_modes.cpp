// Leaving one page and entering another.
#include <algorithm>
#include <utility>

#include "records/document.h"
#include "records/parts/arranger.h"
#include "records/raised.h"

void Document::setViewMode(ViewMode mode) {
  const Outcome opened = switchMode(mode);
  if (opened.cause() == Outcome::Cause::stopped) return;
  // Where no records are shown nobody misses them.
  if (!opened && (showsRecords(mode) || opened.cause() == Outcome::Cause::notNow)) {
    tellFailure(L"The records could not be opened.", opened.reason());
  }
  if (showsRecords(mode)) arranger_->tellUnfitting();
}

/// Returns what became of the records that are wanted.
Outcome Document::switchMode(ViewMode mode) {
  Outcome opened;
  if (mode != viewMode_) {
    const Raised talks(talksToPages_);
    leaveMode();
    if (database_.isOpen()) {
      const bool triesAgain = showsRecords(mode) && !wanted_.isNone() && !recordsetOpen_;
      const bool opensRecords = sqlPending() || triesAgain;
      if (opensRecords) opened = openPendingRecordset();
      enterMode(mode, opensRecords);
    }
    viewMode_ = mode;
    if (mode == ViewMode::form) pages_.form.layOut(true);
  }
  updateCommandBar();
  return opened;
}

void Document::leaveMode() {
  switch (viewMode_) {
    case ViewMode::tables:
      pages_.tables->hide();
      break;
    case ViewMode::form:
      pages_.form.hide();
      if (recordsetOpen_ && recordCount != 0) {
        pages_.form.hideEditors();
        commitCurrentRecord();
      }
      // Behind a match stands the cursor; the user means the record that he sees.
      if (!shown_.isEmpty()) currentRecord = shown_.position();
      break;
    case ViewMode::list:
      pages_.grid.hide();
      currentRecord = pages_.grid.selectedRow() + 1;
      repositionFromList_ = true;
      break;
    case ViewMode::queries:
      pages_.queries->hide();
      currentRecord = 1;
      repositionFromList_ = false;
      // There was nothing to choose on that page: the last table stays in use, if one was.
      if (queryNames_.isEmpty() && !tableNames_.isEmpty() && wanted_.isTable()) wanted_.chooseAgain();
      break;
    case ViewMode::none:
      break;
  }
}

Outcome Document::openPendingRecordset() {
  pages_.bar.setPositionText(L"");
  forgetRecords();
  Outcome opened = arranger_->openRecords();
  recordsetOpen_ = static_cast<bool>(opened);
  // What is only not to be had now is tried again at the next switch.
  const bool isTried = opened.cause() != Outcome::Cause::notNow;
  openGeneration_ = isTried ? wanted_.generation() : RecordSource::kNeverChosen;
  // Also on a page of names: the grid may be the next to show the records.
  if (opened) currentRecord = 1;
  return opened;
}

void Document::takeOverOpened(RecordSource source, bool hasOtherFields) {
  const bool formFits = !formStale() && !hasOtherFields;
  wanted_ = std::move(source);
  openGeneration_ = wanted_.generation();
  formGeneration_ = formFits ? openGeneration_ : RecordSource::kNeverChosen;
}

void Document::closeRecords() {
  database_.closeRecordset();
  forgetRecords();
}

/// What was made for the recordset that is open goes with it. The wanted one is opened at the next switch.
void Document::forgetRecords() {
  recordsetOpen_ = false;
  openGeneration_ = RecordSource::kNeverChosen;
  formGeneration_ = RecordSource::kNeverChosen;
  recordCount = 0;
  currentRecord = 0;
  shown_ = {};
  chosenRow_ = {};
  pages_.form.tearDown();
}

void Document::enterMode(ViewMode mode, bool opensRecords) {
  switch (mode) {
    case ViewMode::tables:
      enterTables();
      break;
    case ViewMode::form:
      enterForm(opensRecords);
      break;
    case ViewMode::list:
      enterList();
      break;
    case ViewMode::queries:
      enterQueries();
      break;
    case ViewMode::none:
      break;
  }
}

void Document::enterForm(bool opensRecords) {
  pages_.form.show();
  if (recordsetOpen_) recordCount = database_.recordCount();
  if (!recordsetOpen_ || recordCount == 0) {
    if (formStale()) {
      // Of the records that were shown before.
      pages_.form.tearDown();
      currentRecord = 0;
    } else {
      // Of records that were deleted meanwhile.
      pages_.form.clearEditors();
    }
    formIsBuilt();
    updatePositionText();
    return;
  }
  // A form that was entered without records has no editors, and may have got records since.
  const bool builds = formStale() || pages_.form.editors().empty();
  if (builds) pages_.form.build();
  formIsBuilt();
  goToFirstRecordOfForm(opensRecords);
  if (builds) pages_.form.showEditors();
  loadRecord();
  if (!builds) pages_.form.showEditors();
}

/// The record that was chosen in the grid, which means nothing in a recordset that was opened since then.
void Document::goToFirstRecordOfForm(bool opensRecords) {
  const std::uint32_t chosen = currentRecord;
  database_.moveFirst();
  if (!repositionFromList_ || opensRecords) return;
  repositionFromList_ = false;
  // A search may have left the cursor behind the last record.
  if (chosen > 1) database_.moveTo(std::min(chosen, recordCount));
}

void Document::enterList() {
  if (!recordsetOpen_) {
    updatePositionText();
    return;
  }
  recordCount = database_.recordCount();
  pages_.grid.show();
  pages_.grid.fill();
  rowChosen();
}

void Document::enterQueries() {
  readQueries();
  // None was while one could not be read.
  if (pages_.queries->selectedIndex() < 0) pages_.queries->setSelectedIndex(0);
  pages_.queries->show();
  pages_.queries->fill(queryNames_);
}

void Document::enterTables() {
  pages_.tables->show();
  if (reselectTable_) {
    pages_.tables->rememberSelection(std::max(pages_.tables->selectedIndex(), 0));
    pages_.tables->fill(tableNames_, Positioning::byName, wanted_.tableName());
  } else if (freshlyOpened_) {
    pages_.tables->fill(tableNames_, Positioning::first, wanted_.tableName());
  }
  reselectTable_ = false;
  freshlyOpened_ = false;
}

// ---- Lists that are filled while they are shown

void Document::fillTables(Positioning positioning, const String& name) {
  const Raised talks(talksToPages_);
  pages_.tables->fill(tableNames_, positioning, name);
}

void Document::fillQueries() {
  const Raised talks(talksToPages_);
  pages_.queries->fill(queryNames_);
}

// ---- What only the page that is served does

void Document::setNameStyle(NameStyle style) {
  if (viewMode_ == ViewMode::tables) {
    pages_.tables->setStyle(style);
  } else if (viewMode_ == ViewMode::queries) {
    pages_.queries->setStyle(style);
  }
}

void Document::showPreviousColumn() {
  if (viewMode_ != ViewMode::list || !recordsetOpen_) return;
  pages_.grid.showPreviousColumn();
  updateCommands();
}

void Document::showNextColumn() {
  if (viewMode_ != ViewMode::list || !recordsetOpen_) return;
  pages_.grid.showNextColumn();
  updateCommands();
}

void Document::fitColumns() {
  if (viewMode_ == ViewMode::list && recordsetOpen_) pages_.grid.fitColumns();
}
