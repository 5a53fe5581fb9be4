#include "views/field_zoom.h"

#include "views/child_control.h"
#include "views/dialog_place.h"
#include "views/popup_ids.h"

bool FieldZoom::run(HWND owner) {
  return runTemplate(IDD_FIELD_ZOOM, owner) == IDOK;
}

void FieldZoom::opened() {
  centreDialog(window(), kPopupRaise);
  const HWND edit = control(IDC_ZOOM_TEXT);
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextW(edit, text_.text());
  if (readOnly_) SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
  SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
  SetWindowTextW(window(), caption_.text());
  // With all of it selected, as a dialog does by itself, the next key would replace the whole text.
  SetFocus(edit);
  SendMessageW(edit, EM_SETSEL, 0, 0);
}

bool FieldZoom::command(WORD id, WORD notification) {
  static constexpr DialogCommand<FieldZoom> kCommands[] = {
      {IDOK, BN_CLICKED, &FieldZoom::confirm},
      {IDCANCEL, BN_CLICKED, &FieldZoom::cancel},
  };
  return answerCommand<FieldZoom>(*this, kCommands, id, notification);
}

void FieldZoom::confirm() {
  text_ = windowText(control(IDC_ZOOM_TEXT));
  close(IDOK);
}
