#pragma once

#include <windows.h>

#include "owners/handles.h"

/// While it lives, the message boxes and the system's own dialogs that this thread opens stand over the
/// middle of their owner, or of `window` where they have none, and not of the monitor; as far as they fit on
/// that. Over a minimised window they stand where the system puts them.
class BoxesOverWindow {
 public:
  /// `window` is a top-level window, or null for the system's own places.
  explicit BoxesOverWindow(HWND window);
  ~BoxesOverWindow();
  BoxesOverWindow(const BoxesOverWindow&) = delete;
  BoxesOverWindow& operator=(const BoxesOverWindow&) = delete;

 private:
  HWND former_;
  UniqueHook hook_;
};

/// Where a box of `size` stands that has the middle of `window`, moved until it lies within `free`; one that
/// is larger begins at its upper left corner.
POINT placeOver(const RECT& window, SIZE size, const RECT& free);
