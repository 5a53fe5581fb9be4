#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws a static text while its font lacks letters of it, or it is longer than the one line that it has room
/// for: then it ends with an ellipsis.
class LabelDrawing : public WindowLayer<LabelDrawing> {
 public:
  explicit LabelDrawing(HWND label) : WindowLayer(label) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void drawInto(HDC dc);
  bool draw(HDC given);
};

}  // namespace pocketshell
