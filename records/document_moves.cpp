// The record cursor. On the form a move takes the recordset along; in the grid it only chooses another
// row, and the recordset follows when the form is entered.
#include <optional>

#include "records/document.h"

/// Stores what was changed, moves, and shows the record that is current then.
template <typename Move>
void Document::moveOnForm(Move move) {
  if (!canLeaveRecord() || !storeRecord()) return;
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
  if (!recordsetOpen_ || !canLeaveRecord()) return 0;
  if (viewMode_ != ViewMode::form && viewMode_ != ViewMode::list) return 0;
  const std::optional<std::uint32_t> number = pages_.prompts.askRecordNumber(database_.recordCount());
  if (!number) return 0;
  if (viewMode_ == ViewMode::form) {
    moveOnForm([&] { database_.moveTo(*number); });
  } else {
    selectInGrid(*number);
  }
  return 0;
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
  if (!database_.isOpen()) return;
  recordCount = openRecordCount();
  updatePositionText();
  shownRecord_ = recordCount != 0 ? currentRecord : 0;
  if (recordCount != 0) pages_.form.loadRecord();
}
