// Leaving one page and entering another.
#include "records/document.h"

void Document::setViewMode(ViewMode mode) {
  if (mode != viewMode_) {
    leaveMode();
    if (database_.isOpen()) {
      // Why it did not open is not told: the page says that there are no records.
      if (sqlPending_) static_cast<void>(openPendingRecordset());
      enterMode(mode);
      sqlPending_ = false;
    }
    viewMode_ = mode;
    if (mode == ViewMode::form) pages_.form.layOut(true);
  }
  updateCommandBar();
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
      if (queryNames_.isEmpty() && !tableNames_.isEmpty() && !tableName_.isEmpty()) {
        sqlPending_ = true;
        buildTableSql();
      }
      break;
    case ViewMode::none:
      break;
  }
}

Outcome Document::openPendingRecordset() {
  pages_.bar.setPositionText(L"");
  pages_.form.tearDown();
  shown_ = {};
  Outcome opened = database_.openRecordset(sqlText_);
  recordsetOpen_ = static_cast<bool>(opened);
  if (!recordsetOpen_) recordCount = 0;
  formStale_ = true;
  return opened;
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
  // What was chosen in the grid means nothing in another recordset.
  const bool reposition = repositionFromList_ && !sqlPending_;
  repositionFromList_ = false;
  const std::uint32_t wanted = reposition ? currentRecord : 1;
  pages_.form.show();
  if (!recordsetOpen_) {
    updatePositionText();
    return;
  }
  if (sqlPending_ || formStale_) {
    buildForm(wanted);
    return;
  }
  if (recordCount == 0) {
    updatePositionText();
    return;
  }
  if (reposition) {
    database_.moveTo(wanted);
  } else {
    database_.moveFirst();
  }
  loadRecord();
  pages_.form.showEditors();
}

void Document::buildForm(std::uint32_t wantedRecord) {
  formStale_ = false;
  currentRecord = 0;
  recordCount = database_.recordCount();
  if (recordCount == 0) {
    updatePositionText();
    return;
  }
  pages_.form.build();
  database_.moveFirst();
  recordCount = database_.recordCount();
  if (wantedRecord > 1) database_.moveTo(wantedRecord);
  pages_.form.showEditors();
  loadRecord();
}

void Document::enterList() {
  if (!recordsetOpen_) {
    updatePositionText();
    return;
  }
  // The position in the former recordset means nothing in the one that was opened just now.
  if (sqlPending_) currentRecord = 1;
  recordCount = database_.recordCount();
  pages_.grid.show();
  pages_.grid.fill();
  rowChosen();
}

void Document::enterQueries() {
  database_.listQueries(queryNames_);
  pages_.queries->show();
  pages_.queries->fill(queryNames_);
}

void Document::enterTables() {
  pages_.tables->show();
  if (reselectTable_) {
    // Copies: selecting an item makes it the current table.
    const String table = tableName_;
    const String query = queryName_;
    const String sql = sqlText_;
    const bool usesQuery = openedFromQuery_;
    pages_.tables->rememberSelection(0);
    pages_.tables->fill(tableNames_, Positioning::byName, table);
    if (usesQuery) {
      // The user has not chosen that table: the query whose records are shown stays in use.
      tableName_ = table;
      queryName_ = query;
      sqlText_ = sql;
      openedFromQuery_ = true;
    }
    reselectTable_ = false;
    freshlyOpened_ = false;
  } else if (freshlyOpened_) {
    pages_.tables->fill(tableNames_, Positioning::first, tableName_);
    freshlyOpened_ = false;
  }
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
