#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/window/window_places.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

using namespace pocketshell;

namespace {

constexpr int kOkWidth = 50;
constexpr int kOkHeight = 20;
constexpr int kOkMargin = 3;

HWND shellWindowOf(HWND dialog) {
  HWND owner = GetWindow(dialog, GW_OWNER);
  while (owner && !(ShellWindow::of(owner) && ShellWindow::of(owner)->isFrame())) {
    owner = GetWindow(owner, GW_OWNER);
  }
  return owner;
}

/// A dialog's caption has no icon: the frame of dialogs keeps the system from drawing one of its own.
void giveCaption(HWND dialog) {
  const LONG_PTR style = GetWindowLongPtrW(dialog, GWL_STYLE);
  const LONG_PTR extended = GetWindowLongPtrW(dialog, GWL_EXSTYLE);
  constexpr LONG_PTR kCaption = WS_CAPTION | WS_SYSMENU;
  if ((style & kCaption) == kCaption && (extended & WS_EX_DLGMODALFRAME) != 0) return;
  SetWindowLongPtrW(dialog, GWL_STYLE, style | kCaption);
  SetWindowLongPtrW(dialog, GWL_EXSTYLE, extended | WS_EX_DLGMODALFRAME);
  SetWindowPos(dialog, nullptr, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

/// Lays the dialog over the shell window, caption on caption, so that it has the same area inside, or the
/// upper `height` handheld pixels of it.
void cover(HWND dialog, HWND shellWindow, int height) {
  RECT outer{};
  RECT client{};
  POINT origin{};
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  ClientToScreen(dialog, &origin);
  POINT wanted{};
  ClientToScreen(shellWindow, &wanted);
  SetWindowPos(dialog, nullptr, static_cast<int>(wanted.x - (origin.x - outer.left)),
               static_cast<int>(wanted.y - (origin.y - outer.top)),
               HandheldToMonitor(kScreenWidth) + static_cast<int>(outer.right - outer.left - client.right),
               HandheldToMonitor(height) + static_cast<int>(outer.bottom - outer.top - client.bottom),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

/// At the right of the strip that the menu bar has in the window below.
void addOk(HWND dialog) {
  if (GetDlgItem(dialog, IDOK)) return;
  RECT client{};
  HandheldGetClientRect(dialog, &client);
  HandheldCreateWindow(0, WC_BUTTONW, L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                       static_cast<int>(client.right) - kOkMargin - kOkWidth,
                       static_cast<int>(client.bottom) - kOkMargin - kOkHeight, kOkWidth, kOkHeight, dialog,
                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDOK)), nullptr, nullptr);
  SendMessageW(dialog, DM_SETDEFID, IDOK, 0);
}

int freeHeight() {
  const int aboveMenuBar = kWorkAreaHeight - kMenuBarHeight;
  if (!InputPanel::isUp()) return aboveMenuBar;
  return static_cast<int>(InputPanel::placeOnScreen().top) - kCaptionHeight;
}

}  // namespace

BOOL SHInitDialog(SHINITDLGINFO* info) {
  if (!info || (info->dwMask & SHIDIM_FLAGS) == 0 || !IsWindow(info->hDlg)) return FALSE;
  if ((info->dwFlags & SHIDIF_SIPDOWN) != 0) InputPanel::lower();
  // The page of a property sheet lies in the sheet, which has size and buttons of its own.
  if (isChild(info->hDlg)) return TRUE;
  giveCaption(info->hDlg);
  const HWND shellWindow = shellWindowOf(info->hDlg);
  if (shellWindow && (info->dwFlags & SHIDIF_SIZEDLGFULLSCREEN) != 0) {
    cover(info->hDlg, shellWindow, kWorkAreaHeight);
  } else if (shellWindow && (info->dwFlags & SHIDIF_SIZEDLG) != 0) {
    cover(info->hDlg, shellWindow, freeHeight());
  }
  if ((info->dwFlags & SHIDIF_DONEBUTTON) != 0) addOk(info->hDlg);
  InputPanel::standOn(info->hDlg);
  return TRUE;
}
