#include "views/names/tables_list_view.h"

#include <algorithm>

#include "resources/resource_ids.h"

TablesListView::TablesListView(HWND mainWindow)
    : NameListView(mainWindow, kTablesViewBackground, kTablesViewText, {IDI_TABLES_LARGE, IDI_TABLES_SMALL},
                   L"Tables", -1) {}

void TablesListView::rememberSelection(int index) {
  setSelectedIndex(index);
  selectionRemembered_ = true;
}

String TablesListView::itemText(int index) {
  rememberSelection(index);
  return NameListView::itemText(index);
}

void TablesListView::fill(const NameList& names, Positioning positioning, const String& name) {
  if (names.isEmpty()) {
    refill(names);
    return;
  }
  {
    const Unseen unseen(*this);
    refill(names);
    setSelectedIndex(selectionRemembered_ ? positioned(positioning, name) : 0);
    scrollThrough();
  }
  selectItem(selectedIndex());
}

int TablesListView::positioned(Positioning positioning, const String& name) const {
  const int selected = NameListView::selectedIndex();
  switch (positioning) {
    case Positioning::first:
      return 0;
    case Positioning::last:
      return count() - 1;
    case Positioning::previous:
      return std::max(selected - 1, 0);
    case Positioning::next:
      return std::min(selected + 1, count());
    case Positioning::byName: {
      const int found = findItem(name);
      return found < 0 ? selected : found;
    }
  }
  return selected;
}
