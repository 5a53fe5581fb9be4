#include "records/document.h"

#include <windows.h>

#include <cwchar>
#include <string>
#include <utility>

#include "base/app_settings.h"

namespace {

/// Shows the wait cursor as long as it lives.
class WaitCursor {
 public:
  WaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_WAIT)); }
  ~WaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_ARROW)); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

void markDatabaseOpen(bool isOpen) {
  if (theAppSettings) theAppSettings->databaseOpen = isOpen ? 1 : 0;
}

}  // namespace

Document::Document(DocumentPages pages) : pages_(std::move(pages)) {}

Document::~Document() {
  closeDatabase();
}

bool Document::openDatabase(const String& path) {
  {
    const WaitCursor wait;
    if (!database_.open(path)) return false;
    database_.listTables(tableNames_);
    freshlyOpened_ = true;
    pages_.form.hide();
  }
  markDatabaseOpen(true);
  databasePath_ = path;
  repositionFromList_ = false;
  viewMode_ = ViewMode::none;
  setViewMode(ViewMode::tables);
  if (!tableNames_.isEmpty()) {
    // The filled list may have reported this choice already, and entering the page has taken it for
    // served: it is made anew, as the first choice in this database.
    tableName_.clear();
    openTableSelection(0);
  }
  databaseOpen_ = true;
  return true;
}

int Document::closeDatabase() {
  if (!database_.isOpen()) return -1;
  database_.closeRecordset();
  recordsetOpen_ = false;
  if (viewMode_ == ViewMode::list) {
    pages_.grid.clear();
    setViewMode(ViewMode::tables);
  }
  pages_.tables->deleteAllItems();
  pages_.tables->clearRememberedSelection();
  pages_.queries->setSelectedIndex(0);
  tableNames_.clear();
  queryNames_.clear();
  markDatabaseOpen(false);

  databaseOpen_ = false;
  sqlPending_ = false;
  openedFromQuery_ = false;
  formStale_ = false;
  tableName_.clear();
  queryName_.clear();
  sqlText_.clear();
  databasePath_.clear();
  const bool closed = database_.close();
  currentRecord = 0;
  recordCount = 0;
  return closed ? 0 : -1;
}

void Document::openTableSelection(int index) {
  String name = pages_.tables->itemText(index);
  if (name.isEmpty()) return;
  openedFromQuery_ = false;
  if (std::wcscmp(name.text(), tableName_.text()) == 0) return;
  tableName_ = std::move(name);
  queryName_.clear();
  buildTableSql();
  sqlPending_ = true;
  pages_.grid.resetColumns();
}

void Document::openQuerySelection(int index) {
  if (index < 0) return;
  SavedQuery query;
  if (!database_.getQuery(static_cast<std::uint32_t>(index), query)) return;
  queryName_ = pages_.queries->itemText(index);
  sqlText_ = std::move(query.sql);
  pages_.queries->setSelectedIndex(index);
  sqlPending_ = true;
  tableName_.clear();
  openedFromQuery_ = true;
  pages_.grid.resetColumns();
}

void Document::buildTableSql() {
  // The brackets are always written, so that names with blanks work.
  sqlText_ = (std::wstring(L"Select * from [") + tableName_.text() + L"]").c_str();
}
