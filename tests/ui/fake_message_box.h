#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

/// Stands in for the system's message boxes as long as it lives: none is shown, each is written down and
/// answered with OK at once.
class FakeMessageBoxes {
 public:
  struct Box {
    HWND owner = nullptr;
    std::wstring text;
    std::wstring caption;
    UINT flags = 0;
    bool operator==(const Box&) const = default;
  };

  FakeMessageBoxes();
  ~FakeMessageBoxes();
  FakeMessageBoxes(const FakeMessageBoxes&) = delete;
  FakeMessageBoxes& operator=(const FakeMessageBoxes&) = delete;

  /// The boxes since the last call, in order.
  std::vector<Box> take() { return std::exchange(seen_, {}); }

 private:
  static int WINAPI answer(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags);

  std::vector<Box> seen_;
};
