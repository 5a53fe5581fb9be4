#include "dialogs/small/ask_text.h"

#include "dialogs/small/ask_text_ids.h"
#include "views/dialog/dialog_place.h"

namespace {

/// More than any value that is looked for has. A whole book pasted would keep the control busy for a while.
constexpr WPARAM kLongestText = 500;

}  // namespace

int AskTextDialog::run(HWND owner) {
  return runTemplate(IDD_ASK_TEXT, owner);
}

void AskTextDialog::opened() {
  centreDialog(window(), kPopupRaise);
  panel_.raise(window());
  SetWindowTextW(window(), title.c_str());
  SetWindowTextW(control(IDC_ASKED_LABEL), label.c_str());
  const HWND edit = control(IDC_ASKED_TEXT);
  SendMessageW(edit, EM_SETLIMITTEXT, kLongestText, 0);
  SetWindowTextW(edit, text.c_str());
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SetFocus(edit);
}

bool AskTextDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<AskTextDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &AskTextDialog::confirm},
      {IDCANCEL, BN_CLICKED, &AskTextDialog::cancel},
  };
  return answerCommand<AskTextDialog>(*this, kCommands, id, notification);
}

void AskTextDialog::confirm() {
  std::wstring entered(kLongestText + 1, L'\0');
  const UINT count =
      GetDlgItemTextW(window(), IDC_ASKED_TEXT, entered.data(), static_cast<int>(entered.size()));
  if (count == 0) {
    tell(L"Please enter a text!");
    SetFocus(control(IDC_ASKED_TEXT));
    return;
  }
  entered.resize(count);
  text = entered;
  panel_.release(window());
  close(IDOK);
}

void AskTextDialog::cancel() {
  panel_.release(window());
  close(IDCANCEL);
}
