#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

#include "app/bars/bar_facts.h"
#include "owners/handles.h"
#include "records/availability.h"
#include "records/command_bar.h"

/// Which menu bar belongs to a state of the program.
struct MenuBarLayout {
  WORD resource;    ///< of the menu and of its description
  WORD bitmap;      ///< images of the buttons beside the drop-down buttons, 0 for none
  int buttonCount;  ///< how many of new record, delete record and find there are, in this order

  bool operator==(const MenuBarLayout&) const = default;
};

MenuBarLayout menuBarLayout(const BarFacts& facts);

/// The menu bar at the bottom of the main window. One exists at a time.
class MenuBar {
 public:
  /// Makes the bar that belongs to the facts, in the place of another; one of the same layout stays. False
  /// when that fails: there is no bar then.
  bool create(HINSTANCE instance, HWND mainWindow, const BarFacts& facts);
  void destroy();

  /// Null when there is none.
  HWND window() const { return window_.get(); }
  /// The popup menu of a drop-down button, null when the present bar has no such button. It belongs to
  /// the bar.
  HMENU popup(PopupMenu menu) const { return popups_[static_cast<std::size_t>(menu)]; }
  /// Enables or greys each item of the popup menus.
  void showCommands(const CommandFacts& facts) const;

 private:
  static constexpr std::size_t kPopupCount = static_cast<std::size_t>(PopupMenu::queries) + 1;

  void addButtons(int count) const;
  void fetchPopups();

  UniqueWindow window_;
  MenuBarLayout layout_{};  // that of the window
  std::array<HMENU, kPopupCount> popups_{};
};
