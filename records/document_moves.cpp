// In the grid a move only chooses another row: the recordset follows when the form is entered.
#include "records/document.h"

int Document::moveFirstRecord() {
  if (viewMode_ == ViewMode::list) {
    currentRecord = 1;
    refreshGrid();
  }
  return 0;
}

int Document::moveLastRecord() {
  if (viewMode_ == ViewMode::list) {
    currentRecord = database_.recordCount();
    refreshGrid();
  }
  return 0;
}

int Document::moveNextRecord() {
  if (viewMode_ == ViewMode::list) {
    recordCount = database_.recordCount();
    if (currentRecord < recordCount) {
      ++currentRecord;
      refreshGrid();
    }
  }
  return 0;
}

int Document::movePreviousRecord() {
  if (viewMode_ == ViewMode::list) {
    recordCount = database_.recordCount();
    if (currentRecord > 1) {
      --currentRecord;
      refreshGrid();
    }
  }
  return 0;
}

void Document::refreshGrid() {
  pages_.grid.selectCurrent();
}
