#include "app/editing_commands.h"

#include <windows.h>

#include <commctrl.h>

namespace {

void sendToFocus(UINT message) {
  if (const HWND focus = GetFocus()) SendMessageW(focus, message, 0, 0);
}

bool isEdit(HWND window) {
  wchar_t className[16] = L"";
  return GetClassNameW(window, className, ARRAYSIZE(className)) != 0 && lstrcmpiW(className, WC_EDITW) == 0;
}

}  // namespace

void copyInFocus() {
  sendToFocus(WM_COPY);
}

void cutInFocus() {
  sendToFocus(WM_CUT);
}

void pasteInFocus() {
  sendToFocus(WM_PASTE);
}

void undoInFocus() {
  const HWND focus = GetFocus();
  if (!focus || !isEdit(focus)) return;
  if (SendMessageW(focus, EM_CANUNDO, 0, 0) != 0) SendMessageW(focus, EM_UNDO, 0, 0);
}
