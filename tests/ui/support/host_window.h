#pragma once

#include <windows.h>

#include <functional>
#include <utility>

/// A hidden window, 240 x 269 inside, in whose place a page stands that is tested in this process. What
/// its controls report is handed on.
class HostWindow {
 public:
  /// A null handle when the window can't be created.
  HostWindow();
  ~HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  HWND get() const { return window_; }

  /// `handler` is called for each notification of a child control from now on.
  void onNotification(std::function<void(NMHDR&)> handler) { handler_ = std::move(handler); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  std::function<void(NMHDR&)> handler_;
};
