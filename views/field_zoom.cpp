#include "views/field_zoom.h"

#include "platform/pocketshell/handheld_windows.h"
#include "views/child_control.h"
#include "views/current_dialog.h"
#include "views/dialog_place.h"
#include "views/popup_ids.h"

bool FieldZoom::run(HWND owner) {
  const INT_PTR result = HandheldDialogBox(GetModuleHandleW(nullptr), IDD_FIELD_ZOOM, owner, dialogProcedure,
                                           reinterpret_cast<LPARAM>(this));
  return result == IDOK;
}

INT_PTR CALLBACK FieldZoom::dialogProcedure(HWND dialog, UINT message, WPARAM wParam,
                                            LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    reinterpret_cast<FieldZoom*>(lParam)->opened(dialog);
    return FALSE;
  }
  if (message == WM_DESTROY) currentDialog = nullptr;
  if (message != WM_COMMAND) return FALSE;
  switch (LOWORD(wParam)) {
    case IDOK:
      reinterpret_cast<FieldZoom*>(GetWindowLongPtrW(dialog, DWLP_USER))->confirmed(dialog);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

void FieldZoom::opened(HWND dialog) {
  currentDialog = dialog;
  centreDialog(dialog, kPopupRaise);
  const HWND edit = GetDlgItem(dialog, IDC_ZOOM_TEXT);
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextW(edit, text_.text());
  if (readOnly_) SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
  SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
  SetWindowTextW(dialog, caption_.text());
  // With all of it selected, as a dialog does by itself, the next key would replace the whole text.
  SetFocus(edit);
  SendMessageW(edit, EM_SETSEL, 0, 0);
}

void FieldZoom::confirmed(HWND dialog) {
  try {
    text_ = windowText(GetDlgItem(dialog, IDC_ZOOM_TEXT));
    EndDialog(dialog, IDOK);
  } catch (...) {
    // Out of memory: the dialog stays open with what was typed.
    MessageBeep(MB_ICONEXCLAMATION);
  }
}
