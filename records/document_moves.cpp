// The record cursor. On the form a move takes the recordset along; in the grid it only chooses another
// row, and the recordset follows when the form is entered.
#include <algorithm>
#include <optional>

#include "records/document.h"

/// Leaves the record, moves, and shows the one that is current then.
template <typename Move>
void Document::moveOnForm(Move move) {
  if (!canLeaveRecord()) return;
  move();
  database_.setNewRecordPending(false);
  loadRecord();
  updateNavigationState();
}

void Document::selectInGrid(std::uint32_t position) {
  currentRecord = position;
  updatePositionText();
  pages_.grid.selectCurrent();
  updateNavigationState();
}

int Document::moveFirstRecord() {
  if (!recordsetOpen_) return 0;
  if (viewMode_ == ViewMode::form) {
    moveOnForm([this] { database_.moveFirst(); });
  } else if (viewMode_ == ViewMode::list) {
    selectInGrid(1);
  }
  return 0;
}

int Document::moveLastRecord() {
  if (!recordsetOpen_) return 0;
  if (viewMode_ == ViewMode::form) {
    moveOnForm([this] { database_.moveLast(); });
  } else if (viewMode_ == ViewMode::list) {
    selectInGrid(database_.recordCount());
  }
  return 0;
}

int Document::moveNextRecord() {
  if (!recordsetOpen_) return 0;
  if (viewMode_ == ViewMode::form) {
    if (currentRecord < database_.recordCount()) moveOnForm([this] { database_.moveNext(); });
  } else if (viewMode_ == ViewMode::list) {
    recordCount = database_.recordCount();
    if (currentRecord < recordCount) selectInGrid(currentRecord + 1);
  }
  return 0;
}

int Document::movePreviousRecord() {
  if (!recordsetOpen_) return 0;
  if (viewMode_ == ViewMode::form) {
    const bool wasNew = database_.newRecordPending();
    const std::uint32_t before = currentRecord;
    moveOnForm([=, this] {
      // The record before a new one is shown already when the new one was refused and discarded.
      if (wasNew && currentRecord < before) return;
      // Not an error at the first record: a new record that is not stored yet is left this way.
      if (currentRecord <= 1) {
        database_.moveFirst();
      } else {
        database_.movePrevious();
      }
    });
  } else if (viewMode_ == ViewMode::list) {
    recordCount = database_.recordCount();
    if (currentRecord > 1) selectInGrid(currentRecord - 1);
  }
  return 0;
}

int Document::goToRecordNumber() {
  if (!recordsetOpen_) return 0;
  if (!showsRecords(viewMode_)) return 0;
  // First: a record that is discarded is none of those that can be gone to.
  if (viewMode_ == ViewMode::form && !settleRecord()) return 0;
  const std::optional<std::uint32_t> number = pages_.prompts.askRecordNumber(database_.recordCount());
  if (!number) return 0;
  if (viewMode_ == ViewMode::form) {
    moveOnForm([&] { database_.moveTo(*number); });
  } else {
    selectInGrid(*number);
  }
  return 0;
}

void Document::rowsUnreadable(const Outcome& failure) {
  if (failure.cause() != Outcome::Cause::structureChanged) {
    tellFailure(L"Records could not be read.", failure.reason());
  } else if (database_.reopenSameFields()) {
    showGridAnew();
  } else if (const Outcome opened = openPendingRecordset(); opened) {
    pages_.grid.resetColumns();
    showGridAnew();
    tellOpenedAnew();
  } else {
    pages_.grid.hide();
    updatePositionText();
    updateCommandBar();
    tellFailure(L"Records could not be read.", opened.reason());
  }
}

/// After the records were opened anew.
void Document::showGridAnew() {
  recordCount = database_.recordCount();
  currentRecord = std::clamp(currentRecord, std::min(1u, recordCount), recordCount);
  pages_.grid.fill();
  updateCommandBar();
  rowChosen();
}

void Document::tellOpenedAnew() {
  refuse(PromptOwner::mainWindow,
         L"Another program has changed the structure of the database.\nThe records were opened anew.");
}

int Document::nextFormPage() {
  if (recordsetOpen_ && viewMode_ == ViewMode::form && pages_.form.showNextPage()) updatePageState();
  return 0;
}

int Document::previousFormPage() {
  if (recordsetOpen_ && viewMode_ == ViewMode::form && pages_.form.showPreviousPage()) updatePageState();
  return 0;
}

void Document::loadRecord() {
  readAndShow();
  if (shown_.isEmpty() || shown_.isReadable()) return;
  if (shown_.outcome().cause() == Outcome::Cause::structureChanged) {
    reopenRecords();
  } else {
    tellFailure(L"The record could not be read.", shown_.outcome().reason());
  }
}

void Document::readAndShow() {
  shown_ = {};
  if (!database_.isOpen()) return;
  recordCount = openRecordCount();
  updatePositionText();
  if (!recordsetOpen_ || recordCount == 0) return;
  shown_ = database_.readRecord();
  pages_.form.showRecord(shown_);
}

/// Where the file has got another structure, only opening the records anew makes them readable again. The
/// form is made anew as well, unless their fields are what they were.
void Document::reopenRecords() {
  const std::uint32_t wanted = currentRecord;
  if (database_.reopenSameFields() && database_.recordCount() != 0) {
    database_.moveTo(std::clamp(wanted, 1u, database_.recordCount()));
    readAndShow();
    if (!shown_.isEmpty() && !shown_.isReadable()) {
      tellFailure(L"The record could not be read.", shown_.outcome().reason());
    }
    return;
  }
  Outcome opened = openPendingRecordset();
  if (opened) {
    pages_.form.build();
    formIsBuilt();
    recordCount = database_.recordCount();
    if (recordCount != 0) {
      database_.moveTo(std::clamp(wanted, 1u, recordCount));
      pages_.form.showEditors();
    }
    readAndShow();
    pages_.form.layOut(true);
    updatePageState();
    tellOpenedAnew();
  } else {
    currentRecord = 0;
    updatePositionText();
    updateNavigationState();
    updatePageState();
    tellFailure(L"The records can no longer be read.", opened.reason());
  }
}
