#include "dialogs/controls/dialog_layout.h"

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"

namespace {

/// One dialog unit is a fourth of the base width and an eighth of the base height; so many units at once,
/// because a single one is rounded.
constexpr int kManyUnits = 1000;

/// A dialog unit in handheld pixels: those of Tahoma 8 point, whatever font the system took.
constexpr int kHandheldWidth = 6;
constexpr int kHandheldHeight = 13;

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
