#include "views/dialog/dialog_colors.h"

#include "platform/pocketshell/system_colors.h"

namespace {

constexpr COLORREF kBackground = RGB(255, 255, 255);
constexpr COLORREF kLabelText = RGB(0, 0, 255);
constexpr COLORREF kOtherText = RGB(0, 0, 0);

/// The system asks in the same way for the texts of a dialog, check boxes among them, and for edits that
/// can't be changed.
bool isEdit(HWND window) {
  wchar_t name[8] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return CompareStringOrdinal(name, -1, L"Edit", -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

HBRUSH dialogBrush(HDC dc, HWND window) {
  if (HandheldWantsSystemColors()) {
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    return GetSysColorBrush(COLOR_WINDOW);
  }
  SetBkColor(dc, kBackground);
  SetTextColor(dc, isEdit(window) ? kOtherText : kLabelText);
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}

LRESULT colorDialog(HWND, UINT, WPARAM wParam, LPARAM lParam) {
  return reinterpret_cast<LRESULT>(
      dialogBrush(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
}
