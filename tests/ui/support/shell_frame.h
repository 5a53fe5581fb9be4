#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"

/// A main window as the shell makes it, over which a dialog of the test opens.
class ShellFrame {
 public:
  using Handler = std::function<void(UINT message, WPARAM wParam, LPARAM lParam)>;

  /// Hidden without WS_VISIBLE in `style`. A null handle when the window can't be created.
  explicit ShellFrame(DWORD style = 0) {
    constexpr wchar_t kClassName[] = L"Frame of a test";
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = kClassName;
    RegisterClassW(&description);  // fails but for the first
    window_ = HandheldCreateWindow(0, kClassName, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                   CW_USEDEFAULT, nullptr, nullptr, description.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~ShellFrame() { DestroyWindow(window_); }
  ShellFrame(const ShellFrame&) = delete;
  ShellFrame& operator=(const ShellFrame&) = delete;

  HWND get() const { return window_; }

  /// `handler` is called with each message from now on.
  void onMessage(Handler handler) { handler_ = std::move(handler); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const frame = reinterpret_cast<ShellFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (frame && frame->handler_) frame->handler_(message, wParam, lParam);
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_ = nullptr;
  Handler handler_;
};
