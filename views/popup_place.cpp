#include "views/popup_place.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"

void placePopup(HWND dialog) {
  constexpr int kRaise = 20;
  const HWND owner = GetParent(dialog);
  RECT area{};
  RECT frame{};
  if (!HandheldGetClientRect(owner, &area) || !GetWindowRect(dialog, &frame)) return;
  const int width = HandheldFromMonitor(frame.right - frame.left);
  const int height = HandheldFromMonitor(frame.bottom - frame.top);
  const int x = std::max(0, (static_cast<int>(area.right) - width) / 2);
  const int y = std::max(0, (static_cast<int>(area.bottom) - height) / 2 - kRaise);
  // The dialog is a window of the monitor, only its place in the owner is the handheld's.
  POINT corner{HandheldToMonitor(x), HandheldToMonitor(y)};
  ClientToScreen(owner, &corner);
  SetWindowPos(dialog, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
