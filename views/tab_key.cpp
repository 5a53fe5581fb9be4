#include "views/tab_key.h"

namespace {

/// The message loop is not that of a dialog, so the controls of the form pass the focus on themselves.
LRESULT CALLBACK tabKeyProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto former = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_USERDATA));
  const bool leaves = message == WM_CHAR && wParam == L'\t' && GetFocus() == window;
  const LRESULT result = CallWindowProcW(former, window, message, wParam, lParam);
  if (leaves && IsWindow(window)) {
    const HWND next = GetNextDlgTabItem(GetParent(window), window, GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE);
    if (next) SetFocus(next);
  }
  return result;
}

}  // namespace

void moveFocusByTabKey(HWND control) {
  SetWindowLongPtrW(control, GWLP_USERDATA, GetWindowLongPtrW(control, GWLP_WNDPROC));
  SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(tabKeyProcedure));
}
