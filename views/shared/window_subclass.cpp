#include "views/shared/window_subclass.h"

#include <commctrl.h>

#include <utility>

#include "views/shared/escaped_exception.h"

WindowSubclass::WindowSubclass(Handler handler) : handler_(std::move(handler)) {}

bool WindowSubclass::attach(HWND window) noexcept {
  if (window && window == window_) return true;
  detach();
  const auto self = reinterpret_cast<DWORD_PTR>(this);
  // The object is its own number, so that a window may have several of these.
  if (!SetWindowSubclass(window, procedure, self, self)) return false;
  window_ = window;
  return true;
}

void WindowSubclass::detach() noexcept {
  if (window_) RemoveWindowSubclass(window_, procedure, reinterpret_cast<UINT_PTR>(this));
  window_ = nullptr;
}

LRESULT CALLBACK WindowSubclass::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                           DWORD_PTR object) noexcept {
  auto& subclass = *reinterpret_cast<WindowSubclass*>(object);
  if (message == WM_NCDESTROY) {
    subclass.detach();
    return DefSubclassProc(window, message, wParam, lParam);
  }
  try {
    return subclass.handler_(window, message, wParam, lParam);
  } catch (...) {
    tellEscapedException(window);
    return DefSubclassProc(window, message, wParam, lParam);
  }
}
