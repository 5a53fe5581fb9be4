#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>

#include "owners/handles.h"
#include "views/shared/window_subclass.h"

/// Tooltips of the cells of a list in its report view. Their texts are asked for when they are to be shown.
class CellTips {
 public:
  /// The text for a cell, from 0; with an empty one nothing is shown.
  using TextOf = std::function<std::wstring(int row, int column)>;

  explicit CellTips(TextOf textOf);

  /// For this list, which lives longer. Nothing is shown where the system has no tooltips; there is no window
  /// for them until the mouse moves over the list.
  void attach(HWND list);

 private:
  void create(HWND list);
  LRESULT answer(HWND list, UINT message, WPARAM wParam, LPARAM lParam);
  void tellOfMouse(HWND list, UINT message, WPARAM wParam, LPARAM lParam);
  void moveTo(HWND list, POINT place);

  TextOf textOf_;
  UniqueWindow window_;
  WindowSubclass subclass_;
  int row_ = -1;
  int column_ = -1;
  std::wstring text_;  // that is shown
};
