#pragma once

#include <windows.h>

#include "platform/pocketshell/handheld_windows.h"

/// A hidden main window as the shell makes it, over which a full-screen dialog of the test opens.
class ShellFrame {
 public:
  /// A null handle when the window can't be created.
  ShellFrame() {
    constexpr wchar_t kClassName[] = L"Frame of a test";
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = kClassName;
    RegisterClassW(&description);  // fails but for the first
    window_ = HandheldCreateWindow(0, kClassName, L"", 0, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                   CW_USEDEFAULT, nullptr, nullptr, description.hInstance, nullptr);
  }
  ~ShellFrame() { DestroyWindow(window_); }
  ShellFrame(const ShellFrame&) = delete;
  ShellFrame& operator=(const ShellFrame&) = delete;

  HWND get() const { return window_; }

 private:
  HWND window_ = nullptr;
};
