#include "platform/pocketshell/handheld_windows.h"

namespace {

constexpr int kScreenWidth = 240;
constexpr int kScreenHeight = 320;

}  // namespace

HWND HandheldCreateWindow(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style,
                          int x, int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                          void* parameter) {
  const HWND window = CreateWindowExW(extendedStyle, className, title, style, x, y, width, height, parent,
                                      menu, instance, parameter);
  if (window) SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(HandheldGetFont()), FALSE);
  return window;
}

BOOL HandheldMoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
  return MoveWindow(window, x, y, width, height, repaint);
}

BOOL HandheldSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  return SetWindowPos(window, after, x, y, width, height, flags);
}

BOOL HandheldGetClientRect(HWND window, RECT* rectangle) {
  return GetClientRect(window, rectangle);
}

int HandheldGetSystemMetrics(int index) {
  if (index == SM_CXSCREEN) return kScreenWidth;
  if (index == SM_CYSCREEN) return kScreenHeight;
  return GetSystemMetrics(index);
}

int HandheldToMonitor(int handheldPixels) {
  return handheldPixels;
}

int HandheldFromMonitor(int monitorPixels) {
  return monitorPixels;
}

HFONT HandheldGetFont() {
  return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

INT_PTR HandheldDialogBox(HINSTANCE instance, WORD dialogId, HWND parent, DLGPROC procedure,
                          LPARAM parameter) {
  return DialogBoxParamW(instance, MAKEINTRESOURCEW(dialogId), parent, procedure, parameter);
}

HICON HandheldLoadIcon(HINSTANCE instance, WORD iconId, int size) {
  return static_cast<HICON>(
      LoadImageW(instance, MAKEINTRESOURCEW(iconId), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
}

BOOL SHSipInfo(UINT action, UINT, void* info, UINT) {
  auto* const state = static_cast<SIPINFO*>(info);
  if (action != SPI_GETSIPINFO || state->cbSize != sizeof(SIPINFO)) return FALSE;
  state->fdwFlags = SIPF_OFF;
  return TRUE;
}
