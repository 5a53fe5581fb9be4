// Which table or query is in use.
#include <utility>

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
  // One tap may be reported more than once.
  if (talksToPages_ || index < 0 || (unread_ && unread_->index == index)) return;
  SavedQuery query;
  if (Outcome read = readListedQuery(index, query); !read) {
    unread_ = UnreadQuery{index, pages_.queries->itemText(index), std::move(read)};
    // Not from here: the list is still at the choosing.
    tellWhenOver();
    return;
  }
  chooseQuery(pages_.queries->itemText(index), query.sql);
  pages_.queries->setSelectedIndex(index);
  pages_.grid.resetColumns();
}
