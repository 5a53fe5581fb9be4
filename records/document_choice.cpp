// Which table or query is in use.
#include <cwchar>
#include <string>
#include <utility>

#include "records/document.h"

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

void Document::selectFirstTable() {
  // The filled list may have reported this choice already, and entering the page has taken it for
  // served: it is made anew.
  tableName_.clear();
  openTableSelection(0);
}

void Document::buildTableSql() {
  // The brackets are always written, so that names with blanks work.
  sqlText_ = (std::wstring(L"Select * from [") + tableName_.text() + L"]").c_str();
}
