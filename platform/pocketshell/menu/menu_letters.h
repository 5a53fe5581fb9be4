#pragma once

#include <windows.h>

#include <string>
#include <unordered_map>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws an item that its owner draws; `text` is with the marks of access keys.
void drawMenuItem(const DRAWITEMSTRUCT& item, const std::wstring& text);

/// Draws, for the owner of a popup menu, those items whose letters the menus' font lacks, and finds them by
/// the keys that the system looks for in the texts of all others.
class MenuLetters : public WindowLayer<MenuLetters> {
 public:
  explicit MenuLetters(HWND owner) : WindowLayer(owner) {}

  /// As HandheldChooseFromMenu.
  UINT choose(HMENU menu, POINT where);

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  HMENU menu_ = nullptr;
  /// By the place in the menu, with the marks of the access keys.
  std::unordered_map<UINT, std::wstring> texts_;

  void takeOver(HMENU menu);
  const std::wstring* textAt(ULONG_PTR itemData) const;
  bool measure(MEASUREITEMSTRUCT& item) const;
  /// The item that a key stands for, or of several the next one, in the way WM_MENUCHAR is answered; 0 for
  /// none. The system asks for a key that no item has a mark for.
  LRESULT itemOfKey(wchar_t key) const;
};

}  // namespace pocketshell
