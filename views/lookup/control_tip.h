#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "owners/handles.h"

/// A tooltip of a control, whose text is asked for each time that it is to be shown: the control gets
/// WM_NOTIFY with TTN_GETDISPINFO.
class ControlTip {
 public:
  /// Nothing is shown where the system has none.
  void create(HWND control);

  /// Answers the message; with an empty text nothing is shown. The text is kept until the next one.
  void answer(NMTTDISPINFOW& question, std::wstring text);

 private:
  UniqueWindow window_;
  std::wstring text_;
};
