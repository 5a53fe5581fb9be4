#include "platform/pocketshell/panel/panel_button.h"

#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/module.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr wchar_t kClassName[] = L"Pocket Shell Panel Button";
constexpr int kWidth = 28;

void fill(HDC dc, RECT handheld, int color) {
  const RECT place = toMonitor(handheld, presentZoom());
  FillRect(dc, &place, GetSysColorBrush(color));
}

/// A keyboard with three rows of keys.
void drawKeyboard(HDC dc) {
  fill(dc, {5, 7, 23, 19}, COLOR_BTNTEXT);
  fill(dc, {6, 8, 22, 18}, COLOR_WINDOW);
  for (LONG row = 0; row < 2; ++row) {
    for (LONG column = 0; column < 5; ++column) {
      const LONG x = 7 + column * 3;
      const LONG y = 9 + row * 3;
      fill(dc, {x, y, x + 2, y + 2}, COLOR_BTNTEXT);
    }
  }
  fill(dc, {9, 15, 19, 17}, COLOR_BTNTEXT);
}

void paint(HWND window) {
  PAINTSTRUCT paintStruct;
  const HDC dc = BeginPaint(window, &paintStruct);
  if (!dc) return;
  RECT client{};
  GetClientRect(window, &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  DrawEdge(dc, &client, InputPanel::isUp() ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
  drawKeyboard(dc);
  EndPaint(window, &paintStruct);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_PAINT) {
    paint(window);
    return 0;
  }
  if (message == WM_LBUTTONDOWN) {
    if (InputPanel::isUp()) {
      InputPanel::lower();
    } else {
      InputPanel::raise(window);
    }
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

HWND buttonOf(HWND menuBar) {
  const MenuBar* const bar = MenuBar::of(menuBar);
  return bar ? bar->panelButton() : nullptr;
}

}  // namespace

HWND PanelButton::create(HWND menuBar) {
  if (!InputPanel::isWanted()) return nullptr;
  WNDCLASSW description{};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = procedure;
  description.hInstance = thisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  return CreateWindowExW(0, kClassName, L"Input panel", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, menuBar, nullptr,
                         thisModule(), nullptr);
}

int PanelButton::layOut(HWND menuBar) {
  RECT bar{};
  GetClientRect(menuBar, &bar);
  const int right = static_cast<int>(bar.right);
  const HWND button = buttonOf(menuBar);
  if (!button) return right;
  const int width = toMonitor(kWidth, presentZoom());
  SetWindowPos(button, nullptr, right - width, 0, width, static_cast<int>(bar.bottom),
               SWP_NOZORDER | SWP_NOACTIVATE);
  return right - width;
}

void PanelButton::refresh(HWND menuBar) {
  if (const HWND button = buttonOf(menuBar)) InvalidateRect(button, nullptr, FALSE);
}

}  // namespace pocketshell
