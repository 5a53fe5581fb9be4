#include "views/focused_edit.h"

#include <windows.h>

namespace {

LRESULT sendToFocus(UINT message) {
  const HWND focus = GetFocus();
  return focus ? SendMessageW(focus, message, 0, 0) : 0;
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
  return sendToFocus(EM_CANUNDO) != 0;
}

}  // namespace focusededit
