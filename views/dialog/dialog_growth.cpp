#include "views/dialog/dialog_growth.h"

#include <cstddef>

#include "platform/pocketshell/handheld_windows.h"

SIZE screenExcess() {
  constexpr int kHandheldWidth = 240;
  constexpr int kHandheldHeight = 320;
  return {HandheldGetSystemMetrics(SM_CXSCREEN) - kHandheldWidth,
          HandheldGetSystemMetrics(SM_CYSCREEN) - kHandheldHeight};
}

void DialogGrowth::begin(HWND dialog) {
  dialog_ = dialog;
  places_.clear();
  for (const ControlGrowth& control : controls_) {
    RECT place{};
    HandheldGetWindowRect(GetDlgItem(dialog, control.id), &place);
    places_.push_back(place);
  }
}

void DialogGrowth::layOut() const {
  if (!dialog_) return;
  const SIZE excess = screenExcess();
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const ControlGrowth& growth = controls_[i];
    const RECT& place = places_[i];
    HandheldMoveWindow(GetDlgItem(dialog_, growth.id),
                       static_cast<int>(place.left + (growth.right ? excess.cx : 0)),
                       static_cast<int>(place.top + (growth.down ? excess.cy : 0)),
                       static_cast<int>(place.right - place.left + (growth.wider ? excess.cx : 0)),
                       static_cast<int>(place.bottom - place.top + (growth.higher ? excess.cy : 0)), TRUE);
  }
}
