#include "platform/pocketshell/window/covering_dialogs.h"

#include <vector>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr int kOkWidth = 50;
constexpr int kOkHeight = 20;
constexpr int kOkMargin = 3;

/// What a dialog covers, and that its OK is the shell's, in properties of the dialog.
constexpr wchar_t kCoverProperty[] = L"Pocket Shell Cover";
constexpr wchar_t kOkProperty[] = L"Pocket Shell OK";

HWND frameOf(HWND dialog) {
  HWND owner = GetWindow(dialog, GW_OWNER);
  while (owner && !(ShellWindow::of(owner) && ShellWindow::of(owner)->isFrame())) {
    owner = GetWindow(owner, GW_OWNER);
  }
  return owner;
}

/// Of the client area, from its top, in handheld pixels.
int freeHeight() {
  const int aboveMenuBar = static_cast<int>(presentWorkArea().cy) - kMenuBarHeight;
  if (!InputPanel::isUp()) return aboveMenuBar;
  return static_cast<int>(InputPanel::placeOnScreen().top) - kCaptionHeight;
}

/// The whole of it to the monitor's pixel. A minimised frame has none: the one that it had then.
SIZE coveredSize(HWND frame, Cover cover) {
  RECT client{};
  GetClientRect(frame, &client);
  const SIZE inside = presentWorkArea();
  if (client.right <= 0) {
    client = {0, 0, HandheldToMonitor(static_cast<int>(inside.cx)),
              HandheldToMonitor(static_cast<int>(inside.cy))};
  }
  return {client.right, cover == Cover::all ? client.bottom : HandheldToMonitor(freeHeight())};
}

void lay(HWND dialog, HWND frame, Cover cover) {
  RECT outer{};
  RECT client{};
  POINT origin{};
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  ClientToScreen(dialog, &origin);
  POINT wanted{};
  ClientToScreen(frame, &wanted);
  const SIZE inside = coveredSize(frame, cover);
  SetWindowPos(dialog, nullptr, static_cast<int>(wanted.x - (origin.x - outer.left)),
               static_cast<int>(wanted.y - (origin.y - outer.top)),
               static_cast<int>(inside.cx + outer.right - outer.left - client.right),
               static_cast<int>(inside.cy + outer.bottom - outer.top - client.bottom),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

/// At the right of the strip that the menu bar has in the window below.
RECT okPlace(HWND dialog) {
  RECT client{};
  HandheldGetClientRect(dialog, &client);
  return {client.right - kOkMargin - kOkWidth, client.bottom - kOkMargin - kOkHeight,
          client.right - kOkMargin, client.bottom - kOkMargin};
}

void placeOk(HWND dialog) {
  if (!GetPropW(dialog, kOkProperty)) return;
  const RECT place = okPlace(dialog);
  HandheldMoveWindow(GetDlgItem(dialog, IDOK), static_cast<int>(place.left), static_cast<int>(place.top),
                     kOkWidth, kOkHeight, TRUE);
}

}  // namespace

void coverFrame(HWND dialog, Cover cover) {
  const HWND frame = frameOf(dialog);
  if (!frame) return;
  SetPropW(dialog, kCoverProperty, reinterpret_cast<HANDLE>(cover));
  lay(dialog, frame, cover);
}

void addOk(HWND dialog) {
  if (GetDlgItem(dialog, IDOK)) return;
  const RECT place = okPlace(dialog);
  HandheldCreateWindow(0, WC_BUTTONW, L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                       static_cast<int>(place.left), static_cast<int>(place.top), kOkWidth, kOkHeight, dialog,
                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDOK)), nullptr, nullptr);
  SetPropW(dialog, kOkProperty, reinterpret_cast<HANDLE>(INT_PTR{1}));
  SendMessageW(dialog, DM_SETDEFID, IDOK, 0);
}

void coverAgain(HWND frame) {
  std::vector<HWND> windows;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM list) -> BOOL {
        if (GetPropW(window, kCoverProperty)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&windows));
  for (const HWND dialog : windows) {
    if (!IsWindow(dialog) || frameOf(dialog) != frame || IsIconic(frame)) continue;
    lay(dialog, frame, static_cast<Cover>(reinterpret_cast<INT_PTR>(GetPropW(dialog, kCoverProperty))));
    placeOk(dialog);
  }
}

}  // namespace pocketshell
