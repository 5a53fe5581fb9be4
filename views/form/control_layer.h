#pragma once

#include <windows.h>

#include <unordered_map>

/// Procedures that stand before those of controls until these die, one for a control; `Kind` tells one such
/// procedure from others. Others may come over it and go again. For one thread. As SetWindowSubclass, which
/// keeps what it knows with the window: under Wine each message to a control asks another process for that
/// several times, and a record that is shown takes hundreds of messages.
template <typename Kind>
class ControlLayer {
 public:
  /// Once for a control. May throw std::bad_alloc.
  static void attach(HWND control, WNDPROC procedure) {
    WNDPROC& below = belows()[control];
    below = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_WNDPROC));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
  }

  /// To what the control had before. Each message that the procedure gets, WM_NCDESTROY above all, is either
  /// answered by it or passed on.
  static LRESULT passOn(HWND control, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto found = belows().find(control);
    // It died while it was being answered.
    if (found == belows().end()) return DefWindowProcW(control, message, wParam, lParam);
    const WNDPROC below = found->second;
    if (message == WM_NCDESTROY) belows().erase(found);
    return CallWindowProcW(below, control, message, wParam, lParam);
  }

 private:
  using Belows = std::unordered_map<HWND, WNDPROC>;

  static Belows& belows() {
    static Belows all;
    return all;
  }
};
