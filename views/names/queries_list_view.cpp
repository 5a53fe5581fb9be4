#include "views/names/queries_list_view.h"

#include "resources/resource_ids.h"

QueriesListView::QueriesListView(HWND mainWindow)
    : NameListView(mainWindow, kQueryViewBackground, kQueryViewText, {IDI_QUERIES_LARGE, IDI_QUERIES_SMALL},
                   L"Queries", 0) {}

void QueriesListView::select(int index) {
  setSelectedIndex(index);
  if (index >= 0) {
    selectItem(index);
  } else {
    selectNone();
  }
}

void QueriesListView::fill(const NameList& names) {
  if (names.isEmpty()) {
    refill(names);
    return;
  }
  const Unseen unseen(*this);
  refill(names);
  selectItem(selectedIndex());
  scrollThrough();
}
