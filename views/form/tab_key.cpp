#include "views/form/tab_key.h"

#include "views/form/control_layer.h"

namespace {

using Layer = ControlLayer<struct TabKeys>;

/// The message loop is not that of a dialog, so the controls of the form pass the focus on themselves.
LRESULT CALLBACK tabKeyProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  const bool leaves = message == WM_CHAR && wParam == L'\t' && GetFocus() == window;
  // A field may tell something first, and who reads it holds no key. The system is not asked at every
  // message.
  const BOOL backwards = leaves && GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE;
  const LRESULT result = Layer::passOn(window, message, wParam, lParam);
  if (leaves && IsWindow(window)) {
    const HWND next = GetNextDlgTabItem(GetParent(window), window, backwards);
    if (next) SetFocus(next);
  }
  return result;
}

}  // namespace

void moveFocusByTabKey(HWND control) {
  Layer::attach(control, tabKeyProcedure);
}
