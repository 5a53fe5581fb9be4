#include "dialogs/small/go_to.h"

#include <string>

#include "dialogs/small/go_to_ids.h"
#include "views/dialog/dialog_place.h"

int GoToDialog::run(HWND owner) {
  return runTemplate(IDD_GO_TO, owner);
}

void GoToDialog::opened() {
  centreDialog(window(), kPopupRaise);
  panel_.raise(window());
  // More than any number has. A whole book pasted would keep the control busy for a while.
  constexpr WPARAM kLongestText = 20;
  SendMessageW(control(IDC_GO_TO_NUMBER), EM_SETLIMITTEXT, kLongestText, 0);
  SetFocus(control(IDC_GO_TO_NUMBER));
}

bool GoToDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<GoToDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &GoToDialog::confirm},
      {IDCANCEL, BN_CLICKED, &GoToDialog::cancel},
  };
  return answerCommand<GoToDialog>(*this, kCommands, id, notification);
}

void GoToDialog::confirm() {
  BOOL isNumber = FALSE;
  const UINT number = GetDlgItemInt(window(), IDC_GO_TO_NUMBER, &isNumber, FALSE);
  if (isNumber && number >= 1 && number <= highest) {
    chosen = number;
    panel_.release(window());
    close(IDOK);
    return;
  }
  tell((L"Enter number in range 1 to " + std::to_wstring(highest)).c_str(), L"Error");
  // The next key replaces what was refused.
  SendMessageW(control(IDC_GO_TO_NUMBER), EM_SETSEL, 0, -1);
  SetFocus(control(IDC_GO_TO_NUMBER));
}

void GoToDialog::cancel() {
  cancelled = true;
  panel_.release(window());
  close(IDCANCEL);
}
