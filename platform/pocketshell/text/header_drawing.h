#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws those titles of a list view's columns whose letters the header's font lacks.
class HeaderDrawing : public WindowLayer<HeaderDrawing> {
 public:
  explicit HeaderDrawing(HWND list) : WindowLayer(list) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
};

}  // namespace pocketshell
