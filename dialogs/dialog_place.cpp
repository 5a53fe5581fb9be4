#include "dialogs/dialog_place.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"

void centreInOwner(HWND dialog) {
  const HWND owner = GetParent(dialog);
  RECT area{};
  RECT frame{};
  if (!HandheldGetClientRect(owner, &area) || !GetWindowRect(dialog, &frame)) return;
  // The frame is the monitor's, so its size is what it is at every zoom.
  const LONG width = frame.right - frame.left;
  const LONG height = frame.bottom - frame.top;
  POINT corner{std::max(0L, (HandheldToMonitor(static_cast<int>(area.right)) - width) / 2),
               std::max(0L, (HandheldToMonitor(static_cast<int>(area.bottom)) - height) / 2)};
  ClientToScreen(owner, &corner);
  SetWindowPos(dialog, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
