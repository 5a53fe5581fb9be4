#pragma once

#include "records/command_bar.h"
#include "views/name_list_view.h"

/// The Queries page: the queries that are saved in the open database.
class QueriesListView final : public QueriesPage, private NameListView {
 public:
  /// `bar` outlives the list; its buttons for queries follow the selection.
  QueriesListView(HWND mainWindow, CommandBar& bar);

  void show() override { NameListView::show(); }
  void hide() override { NameListView::hide(); }
  void layOut() override { NameListView::layOut(); }
  void refreshColors() override { NameListView::refreshColors(); }
  void loadImages() override { NameListView::loadImages(); }
  void addItem(int index, const String& name) override;
  void deleteItem(int index) override;
  void deleteAllItems() override;
  String itemText(int index) override { return NameListView::itemText(index); }
  void setStyle(NameStyle style) override { NameListView::setStyle(style); }
  int selectedIndex() const override { return NameListView::selectedIndex(); }
  void fill(const NameList& names) override;
  void setSelectedIndex(int index) override { NameListView::setSelectedIndex(index); }
  void updateCommandButtons() override;

 private:
  CommandBar& bar_;
};
