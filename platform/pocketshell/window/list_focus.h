#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws a dotted frame into a list view that has the keyboard while none of its items shows it: one without
/// items, or one in which nobody has moved yet.
class ListFocus : public WindowLayer<ListFocus> {
 public:
  explicit ListFocus(HWND list) : WindowLayer(list) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  bool isFramed_ = false;

  bool needsFrame() const;
  void draw();
};

/// Lets a control that has just been made show that it has the keyboard, where its class does not by itself.
void showFocusOf(HWND control);

}  // namespace pocketshell
