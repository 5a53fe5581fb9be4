#include <windows.h>

#include "records/document.h"

void Document::setViewMode(ViewMode mode) {
  if (mode == viewMode_) return;
  leaveMode();
  if (database_.isOpen()) {
    if (sqlPending_) openPendingRecordset();
    enterMode(mode);
    sqlPending_ = false;
  }
  viewMode_ = mode;
}

void Document::leaveMode() {
  switch (viewMode_) {
    case ViewMode::tables:
      pages_.tables->hide();
      break;
    case ViewMode::form:
      pages_.form.hide();
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
      // There was nothing to choose on that page: the last table stays in use.
      if (queryNames_.isEmpty() && !tableNames_.isEmpty()) {
        sqlPending_ = true;
        buildTableSql();
      }
      break;
    case ViewMode::none:
      break;
  }
}

void Document::openPendingRecordset() {
  OutputDebugStringW(sqlText_.text());
  recordsetOpen_ = database_.openRecordset(sqlText_);
  formStale_ = true;
}

void Document::enterMode(ViewMode mode) {
  switch (mode) {
    case ViewMode::tables:
      enterTables();
      break;
    case ViewMode::form:
      enterForm();
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

void Document::enterForm() {
  pages_.form.show();
  if (!recordsetOpen_) return;
  if (!sqlPending_ && !formStale_) {
    if (recordCount == 0) return;
    if (repositionFromList_) {
      repositionFromList_ = false;
      database_.moveTo(currentRecord);
    } else {
      database_.moveFirst();
    }
    return;
  }
  currentRecord = 0;
  recordCount = database_.recordCount();
  if (recordCount != 0) {
    database_.moveFirst();
    recordCount = database_.recordCount();
  }
  formStale_ = false;
}

void Document::enterList() {
  if (!recordsetOpen_) return;
  // The position in the former recordset means nothing in the one that was opened just now.
  if (sqlPending_) currentRecord = 1;
  pages_.grid.show();
  pages_.grid.fill();
}

void Document::enterQueries() {
  database_.listQueries(queryNames_);
  pages_.queries->show();
  pages_.queries->fill(queryNames_);
}

void Document::enterTables() {
  pages_.tables->show();
  if (!freshlyOpened_) return;
  pages_.tables->fill(tableNames_, Positioning::first, tableName_);
  freshlyOpened_ = false;
}

void Document::setNameStyle(NameStyle style) {
  if (viewMode_ == ViewMode::tables) {
    pages_.tables->setStyle(style);
  } else if (viewMode_ == ViewMode::queries) {
    pages_.queries->setStyle(style);
  }
}

void Document::showPreviousColumn() {
  if (viewMode_ == ViewMode::list) pages_.grid.showPreviousColumn();
}

void Document::showNextColumn() {
  if (viewMode_ == ViewMode::list) pages_.grid.showNextColumn();
}

void Document::fitColumns() {
  if (viewMode_ == ViewMode::list) pages_.grid.fitColumns();
}
