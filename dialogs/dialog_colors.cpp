#include "dialogs/dialog_colors.h"

namespace {

constexpr COLORREF kBackground = RGB(255, 255, 255);
constexpr COLORREF kLabelText = RGB(0, 0, 255);
constexpr COLORREF kOtherText = RGB(0, 0, 0);

/// The system asks in the same way for check boxes and for edits that can't be changed.
bool isLabel(HWND window) {
  wchar_t name[8] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return CompareStringOrdinal(name, -1, L"Static", -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

HBRUSH dialogBrush(HDC dc, HWND window) {
  SetBkColor(dc, kBackground);
  SetTextColor(dc, isLabel(window) ? kLabelText : kOtherText);
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}

LRESULT colorDialogText(HWND, UINT, WPARAM wParam, LPARAM lParam) {
  return reinterpret_cast<LRESULT>(
      dialogBrush(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
}

LRESULT colorDialogBackground(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  return colorDialogText(dialog, message, wParam, lParam);
}
