#include "views/dialog_place.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"

namespace {

/// The top of the input panel in the client area of a window that has the handheld's caption above it, in
/// the monitor's pixels; `otherwise` while the panel is down.
int topOfPanel(int otherwise) {
  constexpr int kCaptionHeight = 26;
  SIPINFO panel{};
  panel.cbSize = sizeof(panel);
  if (!SHSipInfo(SPI_GETSIPINFO, 0, &panel, 0) || (panel.fdwFlags & SIPF_ON) == 0) return otherwise;
  return HandheldToMonitor(static_cast<int>(panel.rcSipRect.top) - kCaptionHeight);
}

/// Places a dialog in the middle of its owner's client area; its top is what `topOf` makes of the area's
/// height and the dialog's, at least 0. All in the monitor's pixels, of which the dialog is a window.
template <typename TopOf>
void placeDialog(HWND dialog, TopOf topOf) {
  const HWND owner = GetParent(dialog);
  RECT area{};
  RECT frame{};
  if (!HandheldGetClientRect(owner, &area) || !GetWindowRect(dialog, &frame)) return;
  const int width = static_cast<int>(frame.right - frame.left);
  const int height = static_cast<int>(frame.bottom - frame.top);
  POINT corner{std::max(0, (HandheldToMonitor(static_cast<int>(area.right)) - width) / 2),
               std::max(0, topOf(HandheldToMonitor(static_cast<int>(area.bottom)), height))};
  ClientToScreen(owner, &corner);
  SetWindowPos(dialog, nullptr, static_cast<int>(corner.x), static_cast<int>(corner.y), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void centreDialog(HWND dialog, int raise) {
  placeDialog(dialog, [&](int area, int height) { return (area - height) / 2 - HandheldToMonitor(raise); });
}

void centreAbovePanel(HWND dialog) {
  placeDialog(dialog,
              [](int area, int height) { return std::min((area - height) / 2, topOfPanel(area) - height); });
}

void fillScreen(HWND dialog, DWORD panel) {
  SHINITDLGINFO info{SHIDIM_FLAGS, dialog, SHIDIF_SIZEDLGFULLSCREEN | SHIDIF_DONEBUTTON | panel};
  SHInitDialog(&info);
}
