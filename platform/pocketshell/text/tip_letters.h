#pragma once

#include <windows.h>

#include <string>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws a tooltip while its font lacks letters of what it says, and gives it the size of these letters.
class TipLetters : public WindowLayer<TipLetters> {
 public:
  explicit TipLetters(HWND tip) : WindowLayer(tip) {}

  /// That of the present zoom, for the tip's next showing.
  void takeFont();

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  bool needsDrawing(const std::wstring& text) const;
  void fit(WINDOWPOS& place) const;
  void drawInto(HDC dc, const std::wstring& text) const;
};

}  // namespace pocketshell
