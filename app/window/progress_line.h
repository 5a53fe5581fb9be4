#pragma once

#include <windows.h>

#include <string>

/// What the user sees and can do while something takes longer: what it is, in a line under the window or
/// dialog, and Esc, which stops it. The windows are painted meanwhile; all other keys are dropped, and
/// whatever else the user does waits for the end.
class ProgressLine {
 public:
  ProgressLine() = default;
  ~ProgressLine() { end(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// To be called often. Nothing is shown or heard before it has lasted for `quietMilliseconds`. The line
  /// then says `text`, owned by `window` or the dialog of it that was active last, and lies under that. It
  /// has lasted for `lastedMilliseconds`, or if these are 0 since the first of the calls that came soon after
  /// each other. False once Esc was pressed.
  bool goesOn(HWND window, const std::wstring& text, ULONGLONG quietMilliseconds,
              ULONGLONG lastedMilliseconds = 0);
  /// It is over, to be called before anything else takes keys. What was pressed while the line stood was
  /// meant for it, also when it came too late to stop anything: it is dropped.
  void end();

 private:
  void show(HWND owner, const std::wstring& text);
  static bool takeKey(MSG* message);
  static bool isStopAsked();
  static void paintWindows();

  ULONGLONG begin_ = 0;
  ULONGLONG asked_ = 0;  // when it was called last; 0 before it
  ULONGLONG shown_ = 0;  // when the line was written last
  HWND line_ = nullptr;
};
