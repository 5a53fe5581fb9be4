#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/handheld_windows.h"

/// A message that the test's window got.
struct Got {
  UINT message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
};

/// A shell window at zoom 100 that notes what it gets, and the shell's settings as they are when nothing
/// was set, but for the window's size: that is the handheld's, unless the test is one of other sizes.
class ShellTest : public testing::Test {
 protected:
  explicit ShellTest(bool handheldSize = true);
  ~ShellTest() override;

  HWND top() const { return top_; }
  /// Ends the window and makes another, as the next start of a program does.
  void makeTopAnew();
  const std::vector<Got>& got() const { return got_; }
  /// How often a message came.
  int countOf(UINT message, WPARAM wParam) const;
  void forget() { got_.clear(); }

  /// What the window does with messages before it notes them.
  void onMessage(std::function<void(const Got&)> handler) { handler_ = std::move(handler); }

  SHMENUBARINFO barInfo(UINT id) const;
  /// The bar of IDR_BAR, null when it could not be made.
  HWND makeBar();
  /// Dispatches what is in the queue.
  static void pump();
  /// Dispatches until the condition holds; false when that takes too long.
  static bool pumpUntil(const std::function<bool()>& condition);

  static RECT clientRect(HWND window);
  static RECT placeInParent(HWND window);

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND top_ = nullptr;
  std::vector<Got> got_;
  std::function<void(const Got&)> handler_;
};

// In the namespace of RECT, where GoogleTest looks for them.
inline bool operator==(const RECT& left, const RECT& right) {
  return EqualRect(&left, &right) != FALSE;
}

inline void PrintTo(const RECT& rectangle, std::ostream* out) {
  *out << "{" << rectangle.left << ", " << rectangle.top << ", " << rectangle.right << ", "
       << rectangle.bottom << "}";
}
