#pragma once

#include "views/names/name_list_view.h"

/// The Tables page: the tables of the open database.
class TablesListView final : public TablesPage, private NameListView {
 public:
  explicit TablesListView(HWND mainWindow);

  void show() override { NameListView::show(); }
  void hide() override { NameListView::hide(); }
  void layOut() override { NameListView::layOut(); }
  void refreshColors() override { NameListView::refreshColors(); }
  void loadImages() override { NameListView::loadImages(); }
  void addItem(int index, const String& name) override { NameListView::addItem(index, name); }
  void deleteItem(int index) override { NameListView::deleteItem(index); }
  void deleteAllItems() override { NameListView::deleteAllItems(); }
  /// Remembers the index as the selected one besides.
  String itemText(int index) override;
  void setStyle(NameStyle style) override { NameListView::setStyle(style); }
  int selectedIndex() const override { return NameListView::selectedIndex(); }
  void fill(const NameList& names, Positioning positioning, const String& name) override;
  void clearRememberedSelection() override { selectionRemembered_ = false; }
  void rememberSelection(int index) override;
  bool hasChoice() const override { return NameListView::hasChoice(); }

 private:
  int positioned(Positioning positioning, const String& name) const;

  bool selectionRemembered_ = false;
};
