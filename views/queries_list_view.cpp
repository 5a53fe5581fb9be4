#include "views/queries_list_view.h"

#include "base/app_settings.h"
#include "resources/resource_ids.h"

QueriesListView::QueriesListView(HWND mainWindow, CommandBar& bar)
    : NameListView(mainWindow, kQueryViewBackground, kQueryViewText, {IDI_QUERIES_LARGE, IDI_QUERIES_SMALL},
                   0),
      bar_(bar) {}

void QueriesListView::addItem(int index, const String& name) {
  NameListView::addItem(index, name);
  updateCommandButtons();
}

void QueriesListView::deleteItem(int index) {
  NameListView::deleteItem(index);
  updateCommandButtons();
}

void QueriesListView::deleteAllItems() {
  NameListView::deleteAllItems();
  updateCommandButtons();
}

void QueriesListView::fill(const NameList& names) {
  refill(names);
  if (!names.isEmpty()) {
    selectItem(selectedIndex());
    scrollThrough();
  }
  updateCommandButtons();
}

void QueriesListView::updateCommandButtons() {
  bar_.apply(queryStates(facts(), theAppSettings && theAppSettings->databaseOpen != 0));
}
