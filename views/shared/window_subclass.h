#pragma once

#include <windows.h>

#include <functional>

/// Answers the messages of a window of somebody else's class, with the object that it belongs to, before what
/// was there: the window's own procedure and all that was laid over it earlier. It ends with the window or
/// with this object, whichever goes first. For one window at a time, on the thread of the window.
class WindowSubclass {
 public:
  /// Passes on what it does not answer itself with DefSubclassProc. What it throws is told, and
  /// the message passed on.
  using Handler = std::function<LRESULT(HWND window, UINT message, WPARAM wParam, LPARAM lParam)>;

  explicit WindowSubclass(Handler handler);
  ~WindowSubclass() { detach(); }
  WindowSubclass(const WindowSubclass&) = delete;
  WindowSubclass& operator=(const WindowSubclass&) = delete;

  /// Leaves another window that it was attached to; over the same one it stays where it is. False when the
  /// system refuses.
  bool attach(HWND window) noexcept;
  void detach() noexcept;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR object) noexcept;

  Handler handler_;
  HWND window_ = nullptr;
};
