#include "views/form/tab_key.h"

#include "owners/window_layer.h"

namespace {

/// The message loop is not that of a dialog, so the controls of the form pass the focus on themselves.
class TabKeyLayer final : public WindowLayer<TabKeyLayer> {
 public:
  explicit TabKeyLayer(HWND control) : WindowLayer(control) {}
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
};

LRESULT TabKeyLayer::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool leaves = message == WM_CHAR && wParam == L'\t' && GetFocus() == window();
  // A field may tell something first, and who reads it holds no key. The system is not asked at every
  // message.
  const BOOL backwards = leaves && GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE;
  const LRESULT result = passOn(message, wParam, lParam);
  if (leaves && IsWindow(window())) {
    const HWND next = GetNextDlgTabItem(GetParent(window()), window(), backwards);
    if (next) SetFocus(next);
  }
  return result;
}

}  // namespace

void moveFocusByTabKey(HWND control) {
  TabKeyLayer::attach(control);
}
