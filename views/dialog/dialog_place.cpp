#include "views/dialog/dialog_place.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_growth.h"

void centreDialog(HWND dialog, int raise) {
  const HWND owner = GetParent(dialog);
  RECT area{};
  RECT frame{};
  if (!HandheldGetClientRect(owner, &area) || !GetWindowRect(dialog, &frame)) return;
  const int width = static_cast<int>(frame.right - frame.left);
  const int height = static_cast<int>(frame.bottom - frame.top);
  // The dialog is a window of the monitor, and measured in its pixels.
  const int left = (HandheldToMonitor(static_cast<int>(area.right)) - width) / 2;
  const int top = (HandheldToMonitor(static_cast<int>(area.bottom)) - height) / 2 - HandheldToMonitor(raise);
  POINT corner{std::max(0, left), std::max(0, top)};
  ClientToScreen(owner, &corner);
  SetWindowPos(dialog, nullptr, static_cast<int>(corner.x), static_cast<int>(corner.y), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void growWithScreen(HWND dialog) {
  const SIZE excess = screenExcess();
  RECT frame{};
  GetWindowRect(dialog, &frame);
  SetWindowPos(dialog, nullptr, 0, 0,
               static_cast<int>(frame.right - frame.left) + HandheldToMonitor(static_cast<int>(excess.cx)),
               static_cast<int>(frame.bottom - frame.top) + HandheldToMonitor(static_cast<int>(excess.cy)),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void fillScreen(HWND dialog, DWORD panel) {
  SHINITDLGINFO info{SHIDIM_FLAGS, dialog, SHIDIF_SIZEDLGFULLSCREEN | SHIDIF_DONEBUTTON | panel};
  SHInitDialog(&info);
}
