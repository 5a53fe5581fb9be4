#include "platform/pocketshell/panel/input_panel.h"

#include <optional>
#include <utility>
#include <vector>

#include "owners/handles.h"
#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/module.h"
#include "platform/pocketshell/panel/panel_button.h"
#include "platform/pocketshell/panel/panel_keys.h"
#include "platform/pocketshell/panel/panel_window.h"
#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

/// There is one for all windows of the thread, as there was one on the handheld.
struct Panel {
  bool up = false;
  HWND shellWindow = nullptr;
  HWND owner = nullptr;
};

Panel panel;

bool hasTouchScreen() {
  const int digitizer = GetSystemMetrics(SM_DIGITIZER);
  return (digitizer & NID_READY) != 0 && (digitizer & (NID_INTEGRATED_TOUCH | NID_EXTERNAL_TOUCH)) != 0;
}

bool isFrame(HWND window) {
  const ShellWindow* const shell = ShellWindow::of(window);
  return shell != nullptr && shell->isFrame();
}

/// The frame that a window belongs to or is owned by; else the thread's only one. Null for none.
HWND frameFor(HWND window) {
  for (HWND top = GetAncestor(window, GA_ROOT); top; top = GetWindow(top, GW_OWNER)) {
    if (isFrame(top)) return top;
  }
  HWND found = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND each, LPARAM result) -> BOOL {
        if (!isFrame(each)) return TRUE;
        *reinterpret_cast<HWND*>(result) = each;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

RECT placeOnMonitor(HWND shellWindow) {
  const RECT onScreen = InputPanel::placeOnScreen();
  const RECT inClient = {onScreen.left, onScreen.top - kCaptionHeight, onScreen.right,
                         onScreen.bottom - kCaptionHeight};
  RECT monitor = toMonitor(inClient, presentZoom());
  MapWindowPoints(shellWindow, nullptr, reinterpret_cast<POINT*>(&monitor), 2);
  return monitor;
}

void show() {
  PanelWindow::show(panel.owner, placeOnMonitor(panel.shellWindow),
                    IsWindowVisible(panel.shellWindow) != FALSE);
}

/// Marks a window that the panel may stand on. Others, such as the system's dialogs, it would only cover.
constexpr wchar_t kOwnerMark[] = L"Pocket Shell Panel Owner";

void showOn(HWND owner) {
  panel.owner = owner;
  SetPropW(owner, kOwnerMark, reinterpret_cast<HANDLE>(INT_PTR{1}));
  show();
  PanelWindow::lift();
}

void tellWindows() {
  std::vector<HWND> told;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM list) -> BOOL {
        const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
        if ((style & WS_CAPTION) == WS_CAPTION) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&told));
  for (const HWND window : told) {
    if (IsWindow(window)) SendMessageW(window, WM_SETTINGCHANGE, SPI_SETSIPINFO, 0);
  }
}

void refreshButton() {
  const ShellWindow* const shell = ShellWindow::of(panel.shellWindow);
  if (shell && shell->menuBar()) PanelButton::refresh(shell->menuBar()->window());
}

}  // namespace

bool InputPanel::isWanted() {
  switch (readPanelPolicy()) {
    case PanelPolicy::asHandheld:
      return true;
    case PanelPolicy::never:
      return false;
    case PanelPolicy::automatic:
      break;
  }
  return hasTouchScreen();
}

bool InputPanel::isUp() {
  return panel.up;
}

bool InputPanel::raise(HWND window) {
  const HWND frame = frameFor(window);
  if (!frame) return false;
  const HWND top = GetAncestor(window, GA_ROOT);
  const bool changed = !panel.up;
  panel.up = true;
  panel.shellWindow = frame;
  showOn(top ? top : frame);
  refreshButton();
  if (changed) tellWindows();
  return true;
}

void InputPanel::lower() {
  if (!panel.up) return;
  panel.up = false;
  PanelWindow::hide();
  refreshButton();
  tellWindows();
}

RECT InputPanel::placeOnScreen() {
  const SIZE screen = presentScreen();
  const LONG bottom = screen.cy - kMenuBarHeight;
  return {0, bottom - kPanelHeight, screen.cx, bottom};
}

void InputPanel::standOn(HWND topLevel) {
  if (!panel.up || frameFor(topLevel) != panel.shellWindow) return;
  showOn(topLevel);
}

void InputPanel::follow() {
  if (panel.up) show();
}

void InputPanel::applyZoom() {
  if (panel.up) show();
  PanelWindow::redraw();
}

void InputPanel::restore() {
  if (!panel.up || !IsWindow(panel.shellWindow)) return;
  const HWND active = GetLastActivePopup(panel.shellWindow);
  showOn(active && GetPropW(active, kOwnerMark) ? active : panel.shellWindow);
}

UINT InputPanel::restoreMessage() {
  static const UINT number = RegisterWindowMessageW(L"Pocket Shell Panel Restore");
  return number;
}

void InputPanel::ownerGone() {
  if (panel.up && IsWindow(panel.shellWindow)) PostMessageW(panel.shellWindow, restoreMessage(), 0, 0);
}

void InputPanel::leave(HWND shellWindow) {
  if (panel.shellWindow != shellWindow) return;
  panel = {};
  PanelWindow::hide();
}

}  // namespace pocketshell
