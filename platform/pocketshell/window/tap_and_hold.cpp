#include "platform/pocketshell/window/tap_and_hold.h"

#include <commctrl.h>
#include <windowsx.h>

#include <array>
#include <cstdlib>

#include "platform/pocketshell/aygshell.h"

namespace pocketshell {

namespace {

constexpr UINT kSelection = LVIS_SELECTED | LVIS_FOCUSED;

POINT pointOf(LPARAM lParam) {
  return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

POINT onScreen(HWND window, POINT client) {
  ClientToScreen(window, &client);
  return client;
}

bool isDrag(POINT from, POINT to) {
  return std::abs(from.x - to.x) > GetSystemMetrics(SM_CXDRAG) ||
         std::abs(from.y - to.y) > GetSystemMetrics(SM_CYDRAG);
}

}  // namespace

void TapAndHold::endPress(State next) {
  state_ = next;
  KillTimer(window(), kTimer);
  if (GetCapture() == window()) ReleaseCapture();
}

int TapAndHold::selectAt(POINT client) {
  LVHITTESTINFO test{};
  test.pt = client;
  const auto item = static_cast<int>(SendMessageW(window(), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&test)));
  SetFocus(window());
  if (item < 0) return item;
  LVITEMW selected{};
  selected.state = kSelection;
  selected.stateMask = kSelection;
  SendMessageW(window(), LVM_SETITEMSTATE, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&selected));
  return item;
}

void TapAndHold::report(POINT screen, int item) {
  NMRGINFO info{};
  info.hdr.hwndFrom = window();
  info.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(window()));
  info.hdr.code = GN_CONTEXTMENU;
  info.ptAction = screen;
  info.dwItemSpec = static_cast<DWORD_PTR>(item);
  SendMessageW(GetParent(window()), WM_NOTIFY, info.hdr.idFrom, reinterpret_cast<LPARAM>(&info));
}

LRESULT TapAndHold::pressed(UINT, WPARAM wParam, LPARAM lParam) {
  state_ = State::pressed;
  keys_ = wParam;
  place_ = lParam;
  SetCapture(window());
  SetTimer(window(), kTimer, kHoldTime, nullptr);
  return 0;
}

LRESULT TapAndHold::moved(UINT message, WPARAM wParam, LPARAM lParam) {
  if (state_ == State::held) return 0;
  if (state_ == State::pressed) {
    if (!isDrag(pointOf(place_), pointOf(lParam))) return 0;
    endPress(State::idle);
    passOn(WM_LBUTTONDOWN, keys_, place_);
  }
  return passOn(message, wParam, lParam);
}

LRESULT TapAndHold::released(UINT message, WPARAM wParam, LPARAM lParam) {
  if (state_ == State::idle) return passOn(message, wParam, lParam);
  const bool held = state_ == State::held;
  endPress(State::idle);
  if (held) return 0;
  // A list may wait for the release inside its answer to the press: it has to be in the queue by then.
  PostMessageW(window(), WM_LBUTTONUP, wParam, lParam);
  return passOn(WM_LBUTTONDOWN, keys_, place_);
}

LRESULT TapAndHold::timePassed(UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam != kTimer) return passOn(message, wParam, lParam);
  if (state_ != State::pressed) return 0;
  KillTimer(window(), kTimer);
  state_ = State::held;
  const POINT place = pointOf(place_);
  report(onScreen(window(), place), selectAt(place));
  return 0;
}

LRESULT TapAndHold::captureLost(UINT message, WPARAM wParam, LPARAM lParam) {
  if (state_ == State::pressed) endPress(State::idle);
  return passOn(message, wParam, lParam);
}

LRESULT TapAndHold::rightPressed(UINT, WPARAM, LPARAM lParam) {
  selectAt(pointOf(lParam));
  return 0;
}

LRESULT TapAndHold::rightReleased(UINT, WPARAM, LPARAM lParam) {
  const POINT place = pointOf(lParam);
  LVHITTESTINFO test{};
  test.pt = place;
  const auto item = static_cast<int>(SendMessageW(window(), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&test)));
  report(onScreen(window(), place), item);
  return 0;
}

LRESULT TapAndHold::menuAsked(UINT, WPARAM, LPARAM lParam) {
  if (lParam != -1) {
    report(pointOf(lParam), -1);
    return 0;
  }
  const auto item = static_cast<int>(
      SendMessageW(window(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
  RECT label = {LVIR_LABEL, 0, 0, 0};
  if (item < 0) {
    label = {};
  } else {
    SendMessageW(window(), LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&label));
  }
  report(onScreen(window(), {(label.left + label.right) / 2, (label.top + label.bottom) / 2}), item);
  return 0;
}

LRESULT TapAndHold::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  struct Row {
    UINT message;
    LRESULT (TapAndHold::*handler)(UINT, WPARAM, LPARAM);
  };
  static constexpr std::array kRows = {
      Row{WM_LBUTTONDOWN, &TapAndHold::pressed},        Row{WM_MOUSEMOVE, &TapAndHold::moved},
      Row{WM_LBUTTONUP, &TapAndHold::released},         Row{WM_TIMER, &TapAndHold::timePassed},
      Row{WM_CAPTURECHANGED, &TapAndHold::captureLost}, Row{WM_RBUTTONDOWN, &TapAndHold::rightPressed},
      Row{WM_RBUTTONUP, &TapAndHold::rightReleased},    Row{WM_CONTEXTMENU, &TapAndHold::menuAsked},
  };
  for (const Row& row : kRows) {
    if (row.message == message) return (this->*row.handler)(message, wParam, lParam);
  }
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell
