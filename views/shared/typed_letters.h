#pragma once

#include <windows.h>

#include <string>

#include "owners/window_layer.h"

/// Letters that are typed over a list view choose the item that begins with them, of every alphabet. The
/// system's own search knows only those of English under some systems; what is typed of these alone is left
/// to it.
class TypedLetters final : public WindowLayer<TypedLetters> {
 public:
  /// On the thread of the list, until this ends. Without memory for it the system's search is left.
  static void watch(HWND list) noexcept;

  explicit TypedLetters(HWND list) : WindowLayer(list) {}
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept;

 private:
  /// Whether the letter was taken.
  bool take(wchar_t letter);
  void add(wchar_t letter, DWORD time);
  bool isTheSystems() const;
  void choose() const;

  std::wstring text_;  // typed without a pause
  DWORD lastTime_ = 0;
};
