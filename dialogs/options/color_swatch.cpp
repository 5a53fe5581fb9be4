#include "dialogs/options/color_swatch.h"

#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_growth.h"

namespace {

constexpr RECT kFrame = {130, 208, 192, 230};
constexpr RECT kInside = {131, 209, 191, 229};

RECT onMonitor(const RECT& handheld) {
  const LONG lower = screenExcess().cy;
  return {HandheldToMonitor(static_cast<int>(handheld.left)),
          HandheldToMonitor(static_cast<int>(handheld.top + lower)),
          HandheldToMonitor(static_cast<int>(handheld.right)),
          HandheldToMonitor(static_cast<int>(handheld.bottom + lower))};
}

}  // namespace

RECT swatchPlace() {
  return onMonitor(kFrame);
}

void drawSwatch(HDC dc, COLORREF color) {
  const RECT frame = onMonitor(kFrame);
  const RECT inside = onMonitor(kInside);
  FillRect(dc, &frame, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  const UniqueBrush brush(CreateSolidBrush(color));
  FillRect(dc, &inside, brush.get());
}
