#pragma once

#include <windows.h>

#include <string>

#include "views/shared/window_subclass.h"

/// Letters that are typed over a list view choose the item that begins with them, of every alphabet. The
/// system's own search knows only those of English under some systems; what is typed of these alone is left
/// to it.
class TypedLetters {
 public:
  TypedLetters() = default;
  TypedLetters(const TypedLetters&) = delete;
  TypedLetters& operator=(const TypedLetters&) = delete;

  /// For one list at a time, on the thread of the list. It ends with the list or with this object.
  void attach(HWND list) noexcept { subclass_.attach(list); }

 private:
  void add(wchar_t letter, DWORD time);
  bool isTheSystems() const;
  void choose(HWND list) const;

  std::wstring text_;  // typed without a pause
  DWORD lastTime_ = 0;
  WindowSubclass subclass_{[this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return answer(window, message, wParam, lParam);
  }};

  LRESULT answer(HWND list, UINT message, WPARAM wParam, LPARAM lParam);
};
