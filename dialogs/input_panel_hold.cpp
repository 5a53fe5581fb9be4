#include "dialogs/input_panel_hold.h"

#include "platform/pocketshell/aygshell.h"

bool isInputPanelUp() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  return SHSipInfo(SPI_GETSIPINFO, 0, &info, 0) && (info.fdwFlags & SIPF_ON) != 0;
}

void InputPanelHold::raise(HWND dialog) {
  wasUp_ = isInputPanelUp();
  SHSipPreference(dialog, SIP_UP);
}

void InputPanelHold::release(HWND dialog) const {
  if (!wasUp_) SHSipPreference(dialog, SIP_DOWN);
}
