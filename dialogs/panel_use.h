#pragma once

#include <windows.h>

#include "platform/pocketshell/aygshell.h"

/// Whether the input panel is up, docked or not.
inline bool isInputPanelUp() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  return SHSipInfo(SPI_GETSIPINFO, 0, &info, 0) != 0 && (info.fdwFlags & SIPF_ON) != 0;
}
