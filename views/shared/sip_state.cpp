#include "views/shared/sip_state.h"

#include "platform/pocketshell/handheld_windows.h"

SipState sipState;

void refreshSipState() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  if (!SHSipInfo(SPI_GETSIPINFO, 0, &info, 0)) return;
  constexpr DWORD kUpAndDocked = SIPF_ON | SIPF_DOCKED;
  if ((info.fdwFlags & kUpAndDocked) == kUpAndDocked) {
    sipState = {static_cast<int>(info.rcSipRect.top),
                static_cast<int>(info.rcSipRect.bottom - info.rcSipRect.top)};
  } else {
    sipState = {};
  }
}
