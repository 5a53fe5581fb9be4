#pragma once

#include <windows.h>

#include "platform/pocketshell/handheld_windows.h"

/// A main window as the shell makes it, over which a dialog of the test opens.
class ShellFrame {
 public:
  /// Hidden without WS_VISIBLE in `style`. A null handle when the window can't be created.
  explicit ShellFrame(DWORD style = 0) {
    constexpr wchar_t kClassName[] = L"Frame of a test";
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = kClassName;
    RegisterClassW(&description);  // fails but for the first
    window_ = HandheldCreateWindow(0, kClassName, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                   CW_USEDEFAULT, nullptr, nullptr, description.hInstance, nullptr);
  }
  ~ShellFrame() { DestroyWindow(window_); }
  ShellFrame(const ShellFrame&) = delete;
  ShellFrame& operator=(const ShellFrame&) = delete;

  HWND get() const { return window_; }

 private:
  HWND window_ = nullptr;
};
