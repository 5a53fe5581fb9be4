#pragma once

#include "views/name_list_view.h"

/// The Queries page: the queries that are saved in the open database.
class QueriesListView final : public QueriesPage, private NameListView {
 public:
  explicit QueriesListView(HWND mainWindow);

  void show() override { NameListView::show(); }
  void hide() override { NameListView::hide(); }
  void deleteAllItems() override { NameListView::deleteAllItems(); }
  String itemText(int index) override { return NameListView::itemText(index); }
  void setStyle(NameStyle style) override { NameListView::setStyle(style); }
  void fill(const NameList& names) override;
  void setSelectedIndex(int index) override { NameListView::setSelectedIndex(index); }
};
