#include "dialogs/input_panel_hold.h"

#include "dialogs/panel_use.h"

void InputPanelHold::raise(HWND dialog) {
  wasUp_ = isInputPanelUp();
  SHSipPreference(dialog, SIP_UP);
}

void InputPanelHold::release(HWND dialog) const {
  if (!wasUp_) SHSipPreference(dialog, SIP_DOWN);
}
