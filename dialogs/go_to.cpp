#include "dialogs/go_to.h"

#include <string>

#include "dialogs/go_to_ids.h"
#include "dialogs/refusal.h"
#include "views/popup_place.h"

INT_PTR GoToDialog::run(HWND owner) {
  return runTemplate(IDD_GO_TO, owner);
}

void GoToDialog::opened() {
  placePopup(window());
  panel_.raise(window());
  // More than any number has. A whole book pasted would keep the control busy for a while.
  constexpr WPARAM kLongestText = 20;
  SendMessageW(control(IDC_GO_TO_NUMBER), EM_SETLIMITTEXT, kLongestText, 0);
  SetFocus(control(IDC_GO_TO_NUMBER));
}

std::span<const GoToDialog::CommandRow> GoToDialog::commandRows() {
  static constexpr CommandRow kRows[] = {
      {IDOK, BN_CLICKED, &GoToDialog::confirm},
      {IDCANCEL, BN_CLICKED, &GoToDialog::cancel},
  };
  return kRows;
}

std::span<const GoToDialog::MessageRow> GoToDialog::messageRows() {
  return {};
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
  refuse(window(), (L"Enter number in range 1 to " + std::to_wstring(highest)).c_str(), L"Error");
  // The next key replaces what was refused.
  SendMessageW(control(IDC_GO_TO_NUMBER), EM_SETSEL, 0, -1);
  SetFocus(control(IDC_GO_TO_NUMBER));
}

void GoToDialog::cancel() {
  cancelled = true;
  panel_.release(window());
  close(IDCANCEL);
}
