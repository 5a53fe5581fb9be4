#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws the text of a check box over what the control has drawn there, while its font lacks letters of it.
class CheckBoxDrawing : public WindowLayer<CheckBoxDrawing> {
 public:
  explicit CheckBoxDrawing(HWND box) : WindowLayer(box) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void drawText(HDC dc);
};

}  // namespace pocketshell
