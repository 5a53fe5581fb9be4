#pragma once

#include <windows.h>

/// Shows the wait cursor as long as it lives, and the arrow afterwards.
class WaitCursor {
 public:
  WaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_WAIT)); }
  ~WaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_ARROW)); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};
