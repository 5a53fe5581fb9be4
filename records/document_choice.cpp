// Which table or query is in use.
#include "records/document.h"
#include "records/parts/arranger.h"

void Document::chooseTable(const String& name) {
  wanted_.chooseTable(name);
  arranger_->recall();
}

void Document::chooseQuery(const String& name, const String& sql, const String& table) {
  wanted_.chooseQuery(name, sql, table);
  arranger_->recall();
}

void Document::openTableSelection(int index) {
  if (talksToPages_) return;
  const String name = pages_.tables->itemText(index);
  if (name.isEmpty() || wanted_.isTable(name)) return;
  chooseTable(name);
  pages_.grid.resetColumns();
}

void Document::openQuerySelection(int index) {
  if (talksToPages_ || index < 0) return;
  SavedQuery query;
  if (!readListedQuery(index, query)) return;
  chooseQuery(pages_.queries->itemText(index), query.sql);
  pages_.queries->setSelectedIndex(index);
  pages_.grid.resetColumns();
}
