#include "views/dialog/input_panel_hold.h"

#include "platform/pocketshell/aygshell.h"

bool isInputPanelUp() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  return SHSipInfo(SPI_GETSIPINFO, 0, &info, 0) != 0 && (info.fdwFlags & SIPF_ON) != 0;
}

void InputPanelHold::hold(HWND dialog, bool up) {
  wasUp_ = isInputPanelUp();
  isUp_ = up;
  SHSipPreference(dialog, up ? SIP_UP : SIP_DOWN);
}

void InputPanelHold::raise(HWND dialog) {
  hold(dialog, true);
}

void InputPanelHold::lower(HWND dialog) {
  hold(dialog, false);
}

void InputPanelHold::release(HWND dialog) const {
  if (wasUp_ != isUp_) SHSipPreference(dialog, wasUp_ ? SIP_UP : SIP_DOWN);
}
