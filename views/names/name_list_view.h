#pragma once

#include <windows.h>

#include <vector>

#include "base/name_list.h"
#include "base/settings/app_colors.h"
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

  NameListView(HWND mainWindow, AppColor background, AppColor text, Icons icons, const wchar_t* spokenName,
               int selectedIndex);
  /// Destroys the control, unless its parent did.
  ~NameListView();
  NameListView(const NameListView&) = delete;
  NameListView& operator=(const NameListView&) = delete;

  void show();
  void hide();
  /// Back to the place that it has from the present size of the main window, the input panel and the
  /// user's options.
  void layOut();
  void applyColors();
  /// With the colours as they are now, at once.
  void refreshColors();
  void setStyle(NameStyle style);
  /// The images at the present zoom.
  void loadImages();

  void addItem(int index, const String& name);
  void deleteItem(int index);
  void deleteAllItems();
  int count() const;
  /// Takes the focus, selects the item and scrolls it into view. An index that is no item's selects
  /// nothing.
  void selectItem(int index);
  void selectNone();
  /// The name as it was given, which the control may show only in part; empty for an index that is no item's.
  String itemText(int index) const;
  /// The first item of this name, in whatever case of its letters; -1 when there is none.
  int findItem(const String& name) const;

  int selectedIndex() const { return selectedIndex_; }
  bool hasChoice() const { return selectedIndex_ >= 0 && count() >= 1; }
  void setSelectedIndex(int index) { selectedIndex_ = index; }

 protected:
  /// The list is out of sight as long as this lives, which else draws its whole frame with each scroll bar
  /// that comes or goes. Shown again it has the focus that it had.
  class Unseen {
   public:
    explicit Unseen(NameListView& list);
    ~Unseen();
    Unseen(const Unseen&) = delete;
    Unseen& operator=(const Unseen&) = delete;

   private:
    NameListView& list_;
    bool hadFocus_;
  };

  /// Replaces the items and selects none.
  void refill(const NameList& names);
  /// Moves the view to the last and back to the first item.
  void scrollThrough();

 private:
  HWND window_ = nullptr;
  HWND mainWindow_;
  std::vector<String> names_;  // one for each item
  int selectedIndex_;
  AppColor background_;
  AppColor text_;
  Icons icons_;
};
