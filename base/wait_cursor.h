#pragma once

#include <windows.h>

/// Shows the wait cursor as long as it lives, and the arrow afterwards.
class WaitCursor {
 public:
  WaitCursor() { SetCursor(wait()); }
  ~WaitCursor() { SetCursor(arrow()); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  // The system's own stay the same. Loaded each time they would cost more than being shown.
  static HCURSOR wait() {
    static const HCURSOR cursor = LoadCursorW(nullptr, IDC_WAIT);
    return cursor;
  }
  static HCURSOR arrow() {
    static const HCURSOR cursor = LoadCursorW(nullptr, IDC_ARROW);
    return cursor;
  }
};
