#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "owners/control_handles.h"
#include "owners/handles.h"
#include "owners/window_layer.h"
#include "platform/pocketshell/aygshell.h"

namespace pocketshell {

/// A drop-down button of a menu bar and what it opens.
struct DropDown {
  int command = 0;
  std::wstring label;
  HMENU popup = nullptr;  ///< the bar's menu owns it
};

/// What a menu bar is made of, loaded from resources.
struct MenuBarParts {
  UniqueMenu menu;
  std::vector<DropDown> dropDowns;
  UniqueImageList images;
  HINSTANCE instance = nullptr;
  WORD bitmap = 0;  ///< 0 for none
};

/// The toolbar at the bottom edge of a shell window.
class MenuBar : public WindowLayer<MenuBar> {
 public:
  MenuBar(HWND toolbar, HWND parent, MenuBarParts parts);
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;

  HWND parent() const { return parent_; }
  const std::vector<DropDown>& dropDowns() const { return parts_.dropDowns; }
  /// Gives it the button that opens the desktop menu of its parent, a frame. To be laid out after that.
  void addMenuButton();
  /// Gives it the button of the input panel, if the user wants that at all. To be laid out after that.
  void addPanelButton();
  /// Null when it has none.
  HWND menuButton() const { return menuButton_; }
  HWND panelButton() const { return panelButton_; }
  /// Puts that and the input panel's, where they are, to the right end of the bar.
  void layOutButtons() const;
  /// How many buttons open menus: the drop-down buttons and, as the last, that of the desktop menu.
  int buttonCount() const;
  bool isMenuButton(int index) const { return index == static_cast<int>(parts_.dropDowns.size()); }
  /// What the button opens; null when there is nothing.
  HMENU popupOf(int index) const;
  /// Index of the drop-down button with the command, -1 for none.
  int indexOfCommand(int command) const;
  /// Index of the button at a point of the screen, -1 for none.
  int indexAt(POINT screen) const;
  /// Index of the button that Alt and `character` open, -1 for none.
  int indexOfMnemonic(wchar_t character) const;
  bool isEnabled(int index) const;
  RECT buttonOnScreen(int index) const;
  void press(int index, bool pressed);
  /// Shows the button as the one that a key would open, -1 for none.
  void highlight(int index);

  /// Puts the bar at the bottom edge of its parent's client area, above its siblings. `flags` are more of
  /// SetWindowPos's.
  void layOut(UINT flags = 0);
  /// Takes font, images and sizes of the present zoom, and is laid out.
  void applyZoom(UINT flags = 0);

  /// The answer to the toolbar's NM_CUSTOMDRAW. A toolbar by itself leaves room for an image beside each
  /// label, and does not centre images beside labels.
  LRESULT draw(const NMTBCUSTOMDRAW& state) const;

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void setButtonWidths();
  void drawLabel(const NMTBCUSTOMDRAW& state, const DropDown& dropDown) const;
  void drawImage(const NMTBCUSTOMDRAW& state) const;
  LRESULT eraseBackground(HDC dc);

  HWND parent_;
  MenuBarParts parts_;
  HWND menuButton_ = nullptr;
  HWND panelButton_ = nullptr;
};

}  // namespace pocketshell
