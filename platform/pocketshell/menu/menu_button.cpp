#include "platform/pocketshell/menu/menu_button.h"

#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/menu/menu_keys.h"
#include "platform/pocketshell/menu/menu_walk.h"
#include "platform/pocketshell/module.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr wchar_t kClassName[] = L"Pocket Shell Menu Button";
constexpr int kWidth = 24;
/// Beside the panel's button, where the widest of the program's bars leaves no more.
constexpr int kNarrowWidth = 16;
constexpr int kLineLength = 10;

void fill(HDC dc, const RECT& handheld, int color) {
  const RECT place = toMonitor(handheld, presentZoom());
  FillRect(dc, &place, GetSysColorBrush(color));
}

void paint(HWND window) {
  PAINTSTRUCT paintStruct;
  const HDC dc = BeginPaint(window, &paintStruct);
  if (!dc) return;
  RECT client{};
  GetClientRect(window, &client);
  const bool marked = GetWindowLongPtrW(window, GWLP_USERDATA) != 0;
  FillRect(dc, &client, GetSysColorBrush(marked ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
  DrawEdge(dc, &client, BDR_RAISEDINNER, BF_TOP);
  const int width = fromMonitor(static_cast<int>(client.right), presentZoom());
  const LONG left = (width - kLineLength) / 2;
  for (LONG line = 0; line < 3; ++line) {
    const LONG top = 8 + line * 4;
    fill(dc, {left, top, left + kLineLength, top + 2}, marked ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT);
  }
  EndPaint(window, &paintStruct);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_PAINT) {
    paint(window);
    return 0;
  }
  if (message == WM_LBUTTONDOWN) {
    MenuBar* const bar = MenuBar::of(GetParent(window));
    MenuKeys::leave();
    // A command may replace the bar, and this window with it.
    if (bar) walkMenus(*bar, bar->buttonCount() - 1, false);
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND MenuButton::create(HWND menuBar) {
  WNDCLASSW description{};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = procedure;
  description.hInstance = thisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  return CreateWindowExW(0, kClassName, L"Menu", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, menuBar, nullptr,
                         thisModule(), nullptr);
}

HWND MenuButton::of(HWND menuBar) {
  const MenuBar* const bar = MenuBar::of(menuBar);
  return bar ? bar->menuButton() : nullptr;
}

void MenuButton::layOut(HWND menuBar, int right) {
  const HWND button = of(menuBar);
  if (!button) return;
  RECT bar{};
  GetClientRect(menuBar, &bar);
  const bool isAlone = right == bar.right;
  const int width = toMonitor(isAlone ? kWidth : kNarrowWidth, presentZoom());
  SetWindowPos(button, nullptr, right - width, 0, width, static_cast<int>(bar.bottom),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MenuButton::mark(HWND menuBar, bool marked) {
  const HWND button = of(menuBar);
  if (!button) return;
  SetWindowLongPtrW(button, GWLP_USERDATA, marked ? 1 : 0);
  InvalidateRect(button, nullptr, FALSE);
  UpdateWindow(button);
}

}  // namespace pocketshell
