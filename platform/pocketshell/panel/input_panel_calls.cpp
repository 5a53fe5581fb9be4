#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

using namespace pocketshell;

namespace {

SIPINFO presentState() {
  SIPINFO state{};
  state.cbSize = sizeof(state);
  state.fdwFlags = SIPF_DOCKED | (InputPanel::isUp() ? SIPF_ON : SIPF_OFF);
  state.rcSipRect = InputPanel::placeOnScreen();
  const SIZE screen = presentScreen();
  state.rcVisibleDesktop = {0, kCaptionHeight, screen.cx,
                            InputPanel::isUp() ? state.rcSipRect.top : screen.cy};
  return state;
}

}  // namespace

BOOL SHSipPreference(HWND window, SIPSTATE state) {
  switch (state) {
    case SIP_UP:
    case SIP_INPUTDIALOG:
      return !InputPanel::isWanted() || InputPanel::raise(window) ? TRUE : FALSE;
    case SIP_DOWN:
    case SIP_FORCEDOWN:
      InputPanel::lower();
      return TRUE;
    case SIP_UNCHANGED:
      return TRUE;
  }
  return FALSE;
}

BOOL SHSipInfo(UINT action, UINT, void* info, UINT) {
  auto* const state = static_cast<SIPINFO*>(info);
  if (!state || state->cbSize != sizeof(SIPINFO)) return FALSE;
  if (action == SPI_GETSIPINFO) {
    *state = presentState();
    return TRUE;
  }
  if (action != SPI_SETSIPINFO) return FALSE;
  return SHSipPreference(nullptr, (state->fdwFlags & SIPF_ON) != 0 ? SIP_UP : SIP_DOWN);
}
