#pragma once

#include <windows.h>

#include "base/app_colors.h"
#include "base/name_list.h"
#include "base/string.h"
#include "records/pages.h"

/// The list control of a page of names: one item for each name, one icon for all of them. The control
/// is a child of the main window, above the tab control.
class NameListView {
 public:
  /// Identifier of both lists, by which the main window knows their notifications.
  static constexpr int kControlId = 61206;

  /// Resource numbers of an icon in its two sizes.
  struct Icons {
    WORD large;  ///< 32 x 32
    WORD small;  ///< 16 x 16
  };

  NameListView(HWND mainWindow, AppColor background, AppColor text, Icons icons, int selectedIndex);
  /// Destroys the control, unless its parent did.
  ~NameListView();
  NameListView(const NameListView&) = delete;
  NameListView& operator=(const NameListView&) = delete;

  void show();
  void hide();
  void applyColors();
  void setStyle(NameStyle style);

  void addItem(int index, const String& name);
  void deleteAllItems();
  int count() const;
  /// Takes the focus, selects the item and scrolls it into view. An index that is no item's selects
  /// nothing.
  void selectItem(int index);
  /// At most 99 characters; empty for an index that is no item's.
  String itemText(int index) const;
  int findItem(const String& name) const;

  int selectedIndex() const { return selectedIndex_; }
  void setSelectedIndex(int index) { selectedIndex_ = index; }

 protected:
  /// Replaces the items and selects none.
  void refill(const NameList& names);
  /// Moves the view to the last and back to the first item, unseen.
  void scrollThrough();

 private:
  void loadImages();

  HWND window_ = nullptr;
  int selectedIndex_;
  AppColor background_;
  AppColor text_;
  Icons icons_;
};
