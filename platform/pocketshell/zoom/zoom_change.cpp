#include "platform/pocketshell/zoom/zoom_change.h"

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/text/tip_letters.h"
#include "platform/pocketshell/window/covering_dialogs.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/window/window_class.h"
#include "platform/pocketshell/window/window_places.h"
#include "platform/pocketshell/zoom/present_zoom.h"

namespace pocketshell {

namespace {

BOOL CALLBACK collect(HWND window, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

std::vector<HWND> topLevelWindows() {
  std::vector<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

/// Parents before their children.
std::vector<HWND> placedDescendants(HWND top) {
  std::vector<HWND> all;
  EnumChildWindows(top, collect, reinterpret_cast<LPARAM>(&all));
  std::erase_if(all, [](HWND window) { return !placeOf(window); });
  return all;
}

/// A dialog keeps what it had inside.
void scaleDialog(HWND dialog, int from, int to) {
  RECT outer{};
  RECT client{};
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  const auto scaled = [&](LONG length) { return toMonitor(fromMonitor(static_cast<int>(length), from), to); };
  SetWindowPos(dialog, nullptr, 0, 0,
               static_cast<int>(outer.right - outer.left - client.right) + scaled(client.right),
               static_cast<int>(outer.bottom - outer.top - client.bottom) + scaled(client.bottom),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// As wide as the user has made them. The program's own pages look after theirs.
void scaleColumns(const std::vector<HWND>& placed, int from, int to) {
  for (const HWND list : placed) {
    if (!isOfClass(list, WC_LISTVIEWW)) continue;
    const auto titles = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    const LRESULT count = titles ? SendMessageW(titles, HDM_GETITEMCOUNT, 0, 0) : 0;
    for (LRESULT column = 0; column < count; ++column) {
      const auto index = static_cast<WPARAM>(column);
      const auto width = static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, index, 0));
      SendMessageW(list, LVM_SETCOLUMNWIDTH, index, MAKELPARAM(toMonitor(fromMonitor(width, from), to), 0));
    }
  }
}

void layOutDescendants(const std::vector<HWND>& placed) {
  for (const HWND window : placed) {
    if (const auto place = placeOf(window)) {
      applyPlace(window, nullptr, *place, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
      SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
    }
  }
}

void layOutWindow(HWND window, int from, int to) {
  const std::vector<HWND> placed = placedDescendants(window);
  ShellWindow* const shell = ShellWindow::of(window);
  if (shell && shell->isFrame()) {
    shell->fitToZoom();
  } else if (!placed.empty()) {
    // Before it is told of its new size, by which it may choose other widths.
    scaleColumns(placed, from, to);
    scaleDialog(window, from, to);
  }
  layOutDescendants(placed);
  if (TipLetters* const tip = TipLetters::of(window)) tip->takeFont();
  if (shell && shell->menuBar()) shell->menuBar()->applyZoom();
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

}  // namespace

void changeZoom(int percent) {
  const int before = presentZoom();
  if (percent == before) return;
  // The font until now lives until every window has the new one.
  const UniqueFont replaced = changePresentZoom(percent);
  const std::vector<HWND> windows = topLevelWindows();
  for (const HWND window : windows) layOutWindow(window, before, percent);
  // A dialog that covers a frame goes by the frame's size, which need not have changed with the zoom.
  for (const HWND window : windows) {
    const ShellWindow* const shell = ShellWindow::of(window);
    if (shell && shell->isFrame()) coverAgain(window);
  }
  InputPanel::applyZoom();
  for (const HWND window : windows) {
    if (IsWindow(window)) SendMessageW(window, HandheldZoomMessage(), 0, 0);
  }
}

}  // namespace pocketshell

using namespace pocketshell;

int HandheldGetZoom() {
  return presentZoom();
}

BOOL HandheldSetZoom(int percent) {
  if (percent != 0 && !isZoom(percent)) return FALSE;
  writeZoomSetting(percent);
  changeZoom(percent != 0 ? percent : automaticZoomOfWindows());
  return TRUE;
}

UINT HandheldZoomMessage() {
  static const UINT number = RegisterWindowMessageW(L"Pocket Shell Zoom");
  return number;
}
