#pragma once

#include <windows.h>

#include <cstdint>

/// What the user sees and can do during a step of the search that takes longer: how far it is, in a line
/// under the dialog, and Esc, which stops it. The windows are painted meanwhile; all other keys are dropped,
/// and whatever else the user does waits for the end.
class SearchProgress {
 public:
  SearchProgress() = default;
  ~SearchProgress() { end(); }
  SearchProgress(const SearchProgress&) = delete;
  SearchProgress& operator=(const SearchProgress&) = delete;

  /// To be called often during a step, the first time at its beginning: `tested` of `all` records were
  /// looked at. The line lies over `owner`, under it. False once Esc was pressed.
  bool goesOn(HWND owner, std::uint32_t tested, std::uint32_t all);
  /// The step is over.
  void end();

 private:
  void show(HWND owner, std::uint32_t tested, std::uint32_t all);
  static bool isStopAsked();
  static void paintWindows();

  ULONGLONG begin_ = 0;  // of the step; 0 before it
  ULONGLONG shown_ = 0;  // when the line was written last
  HWND line_ = nullptr;
};
