#include "dialogs/dialog_layout.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"

namespace {

/// One dialog unit is a fourth of the base width and an eighth of the base height; so many units at once,
/// because a single one is rounded.
constexpr int kManyUnits = 1000;

/// A dialog unit in handheld pixels: those of Tahoma 8 point, whatever font the system took.
constexpr int kHandheldWidth = 6;
constexpr int kHandheldHeight = 13;

constexpr int kCaptionHeight = 26;

/// What the system made of kManyUnits horizontal quarters and vertical eighths.
SIZE systemUnits(HWND dialog) {
  RECT many{0, 0, 4 * kManyUnits, 8 * kManyUnits};
  MapDialogRect(dialog, &many);
  return {std::max<LONG>(many.right, 1), std::max<LONG>(many.bottom, 1)};
}

int handheldX(LONG x, SIZE units) {
  const int dialogUnits = MulDiv(static_cast<int>(x), 4 * kManyUnits, static_cast<int>(units.cx));
  return MulDiv(dialogUnits, kHandheldWidth, 4);
}

int handheldY(LONG y, SIZE units) {
  const int dialogUnits = MulDiv(static_cast<int>(y), 8 * kManyUnits, static_cast<int>(units.cy));
  return MulDiv(dialogUnits, kHandheldHeight, 8);
}

/// The top of the input panel in the client area of a window that has the handheld's caption above it;
/// `otherwise` while the panel is down.
int topOfPanel(int otherwise) {
  SIPINFO panel{};
  panel.cbSize = sizeof(panel);
  if (!SHSipInfo(SPI_GETSIPINFO, 0, &panel, 0) || (panel.fdwFlags & SIPF_ON) == 0) return otherwise;
  return static_cast<int>(panel.rcSipRect.top) - kCaptionHeight;
}

}  // namespace

void layOutControls(HWND dialog) {
  const SIZE units = systemUnits(dialog);
  for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    const int x = handheldX(place.left, units);
    const int y = handheldY(place.top, units);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(HandheldGetFont()), FALSE);
    HandheldMoveWindow(control, x, y, handheldX(place.right - place.left, units),
                       handheldY(place.bottom - place.top, units), FALSE);
  }
}

void centreInOwner(HWND dialog) {
  const HWND owner = GetParent(dialog);
  RECT area{};
  RECT frame{};
  if (!HandheldGetClientRect(owner, &area) || !GetWindowRect(dialog, &frame)) return;
  const int width = HandheldFromMonitor(static_cast<int>(frame.right - frame.left));
  const int height = HandheldFromMonitor(static_cast<int>(frame.bottom - frame.top));
  const int bottom = static_cast<int>(area.bottom);
  const int x = std::max(0, (static_cast<int>(area.right) - width) / 2);
  const int y = std::max(0, std::min((bottom - height) / 2, topOfPanel(bottom) - height));
  // The dialog is a window of the monitor, only its place in the owner is the handheld's.
  POINT corner{HandheldToMonitor(x), HandheldToMonitor(y)};
  ClientToScreen(owner, &corner);
  SetWindowPos(dialog, nullptr, static_cast<int>(corner.x), static_cast<int>(corner.y), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
