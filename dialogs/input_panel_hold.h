#pragma once

#include <windows.h>

/// Raises the input panel for a dialog in which one writes, and puts it down again at the dialog's end
/// unless it was up before.
class InputPanelHold {
 public:
  void raise(HWND dialog);
  void release(HWND dialog) const;

 private:
  bool wasUp_ = true;
};
