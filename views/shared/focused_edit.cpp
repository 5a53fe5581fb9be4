#include "views/shared/focused_edit.h"

#include <windows.h>

namespace {

LRESULT sendToFocus(UINT message) {
  const HWND focus = GetFocus();
  return focus ? SendMessageW(focus, message, 0, 0) : 0;
}

/// Other controls may take the numbers of an edit control's messages for their own.
bool isEditFocused() {
  wchar_t className[16] = L"";
  return GetClassNameW(GetFocus(), className, ARRAYSIZE(className)) != 0 &&
         lstrcmpiW(className, L"Edit") == 0;
}

}  // namespace

namespace focusededit {

void cut() {
  sendToFocus(WM_CUT);
}

void copy() {
  sendToFocus(WM_COPY);
}

void paste() {
  sendToFocus(WM_PASTE);
}

void undo() {
  sendToFocus(EM_UNDO);
}

bool canUndo() {
  return isEditFocused() && sendToFocus(EM_CANUNDO) != 0;
}

}  // namespace focusededit
