#include "views/shared/boxes_over_window.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/pocketshell/handheld_windows.h"

namespace {

/// Belongs to the user interface's thread, as everything here.
HWND windowBelow = nullptr;

bool isDialog(HWND window) {
  constexpr std::wstring_view kDialogClass = L"#32770";
  wchar_t name[16];
  const int length = GetClassNameW(window, name, static_cast<int>(std::size(name)));
  return std::wstring_view(name, static_cast<std::size_t>(length)) == kDialogClass &&
         (GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) == 0;
}

void standOver(HWND box, HWND below) {
  RECT window{};
  RECT outer{};
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  if (IsIconic(below) || !GetWindowRect(below, &window) || !GetWindowRect(box, &outer)) return;
  if (!GetMonitorInfoW(MonitorFromWindow(below, MONITOR_DEFAULTTONEAREST), &monitor)) return;
  const POINT place = placeOver(window, {outer.right - outer.left, outer.bottom - outer.top}, monitor.rcWork);
  SetWindowPos(box, nullptr, static_cast<int>(place.x), static_cast<int>(place.y), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// After its WM_INITDIALOG a box has its size and has not been seen yet.
LRESULT CALLBACK messageAnswered(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HC_ACTION) {
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (message.message == WM_INITDIALOG && isDialog(message.hwnd)) {
      const HWND owner = GetWindow(message.hwnd, GW_OWNER);
      HandheldEquipBox(message.hwnd);
      standOver(message.hwnd, owner ? owner : windowBelow);
    }
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

BoxesOverWindow::BoxesOverWindow(HWND window)
    : former_(windowBelow),
      hook_(window ? SetWindowsHookExW(WH_CALLWNDPROCRET, messageAnswered, nullptr, GetCurrentThreadId())
                   : nullptr) {
  windowBelow = window;
}

BoxesOverWindow::~BoxesOverWindow() {
  windowBelow = former_;
}

POINT placeOver(const RECT& window, SIZE size, const RECT& free) {
  const auto placed = [](LONG first, LONG last, LONG length, LONG least, LONG most) {
    return std::max(least, std::min(first + (last - first - length) / 2, most - length));
  };
  return {placed(window.left, window.right, size.cx, free.left, free.right),
          placed(window.top, window.bottom, size.cy, free.top, free.bottom)};
}
