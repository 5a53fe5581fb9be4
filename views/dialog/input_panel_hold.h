#pragma once

#include <windows.h>

/// Whether the input panel is up, docked or not. False when the shell does not answer.
bool isInputPanelUp();

/// Has the input panel up or down as long as a dialog is open, and as it was before at the dialog's end.
class InputPanelHold {
 public:
  void raise(HWND dialog);
  void lower(HWND dialog);
  /// Nothing happens unless the panel was raised or lowered. May be called more than once.
  void release(HWND dialog) const;

 private:
  void hold(HWND dialog, bool up);

  bool wasUp_ = false;
  bool isUp_ = false;
};
