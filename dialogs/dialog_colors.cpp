#include "dialogs/dialog_colors.h"

namespace {

constexpr COLORREF kText = RGB(0, 0, 255);
constexpr COLORREF kBackground = RGB(255, 255, 255);

LRESULT backgroundBrush() {
  return reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
}

}  // namespace

LRESULT colorDialogText(HWND, UINT, WPARAM wParam, LPARAM) {
  auto* const dc = reinterpret_cast<HDC>(wParam);
  SetTextColor(dc, kText);
  SetBkColor(dc, kBackground);
  return backgroundBrush();
}

LRESULT colorDialogBackground(HWND, UINT, WPARAM, LPARAM) {
  return backgroundBrush();
}
