#include "views/dialog/dialog_growth.h"

#include <cstddef>

#include "platform/pocketshell/handheld_windows.h"

SIZE screenExcess() {
  constexpr int kHandheldWidth = 240;
  constexpr int kHandheldHeight = 320;
  return {HandheldGetSystemMetrics(SM_CXSCREEN) - kHandheldWidth,
          HandheldGetSystemMetrics(SM_CYSCREEN) - kHandheldHeight};
}

namespace {

/// A combo box takes the height that it is given for that of the box and its open list together.
int givenHeight(HWND control, const RECT& place) {
  const auto height = static_cast<int>(place.bottom - place.top);
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof(parts);
  RECT list{};
  if (!GetComboBoxInfo(control, &parts) || !GetWindowRect(parts.hwndList, &list)) return height;
  return height + HandheldFromMonitor(static_cast<int>(list.bottom - list.top));
}

}  // namespace

void DialogGrowth::begin(HWND dialog) {
  dialog_ = dialog;
  places_.clear();
  for (const ControlGrowth& control : controls_) {
    RECT place{};
    const HWND window = GetDlgItem(dialog, control.id);
    HandheldGetWindowRect(window, &place);
    place.bottom = place.top + givenHeight(window, place);
    places_.push_back(place);
  }
}

void DialogGrowth::layOut() const {
  if (!dialog_) return;
  const SIZE excess = screenExcess();
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const ControlGrowth& growth = controls_[i];
    const RECT& place = places_[i];
    const LONG half = excess.cy / 2;
    const LONG upper = growth.down ? excess.cy : growth.halfDown ? half : 0;
    const LONG lower = growth.down || growth.higher           ? excess.cy
                       : growth.halfDown || growth.halfHigher ? half
                                                              : 0;
    HandheldMoveWindow(GetDlgItem(dialog_, growth.id),
                       static_cast<int>(place.left + (growth.right ? excess.cx : 0)),
                       static_cast<int>(place.top + upper),
                       static_cast<int>(place.right - place.left + (growth.wider ? excess.cx : 0)),
                       static_cast<int>(place.bottom - place.top + lower - upper), TRUE);
  }
}
