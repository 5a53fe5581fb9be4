#pragma once

#include "views/names/name_list_view.h"

/// The Queries page: the queries that are saved in the open database.
class QueriesListView final : public QueriesPage, private NameListView {
 public:
  explicit QueriesListView(HWND mainWindow);

  void show() override { NameListView::show(); }
  void hide() override { NameListView::hide(); }
  void layOut() override { NameListView::layOut(); }
  void refreshColors() override { NameListView::refreshColors(); }
  void loadImages() override { NameListView::loadImages(); }
  void addItem(int index, const String& name) override { NameListView::addItem(index, name); }
  void deleteItem(int index) override { NameListView::deleteItem(index); }
  void deleteAllItems() override { NameListView::deleteAllItems(); }
  String itemText(int index) override { return NameListView::itemText(index); }
  void setStyle(NameStyle style) override { NameListView::setStyle(style); }
  int selectedIndex() const override { return NameListView::selectedIndex(); }
  void fill(const NameList& names) override;
  void setSelectedIndex(int index) override { NameListView::setSelectedIndex(index); }
  void select(int index) override;
  bool hasChoice() const override { return NameListView::hasChoice(); }
};
