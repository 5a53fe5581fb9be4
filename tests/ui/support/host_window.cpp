#include "tests/ui/support/host_window.h"

#include <commctrl.h>

namespace {

constexpr wchar_t kClassName[] = L"Page Host";

}  // namespace

HostWindow::HostWindow() {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_TAB_CLASSES};
  InitCommonControlsEx(&controls);
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  window_ = CreateWindowExW(0, kClassName, L"", WS_POPUP, 0, 0, 240, 269, nullptr, nullptr,
                            GetModuleHandleW(nullptr), this);
}

HostWindow::~HostWindow() {
  DestroyWindow(window_);
}

LRESULT CALLBACK HostWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation.lpCreateParams));
  }
  auto* const host = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_NOTIFY && host != nullptr && host->handler_) {
    host->handler_(*reinterpret_cast<NMHDR*>(lParam));
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
