#include "dialogs/password/password_dialog.h"

#include <utility>

#include "dialogs/password/password_ids.h"
#include "views/dialog/dialog_place.h"

namespace {

constexpr int kEnterEdits[] = {IDC_PASSWORD};
constexpr int kChangeEdits[] = {IDC_OLD_PASSWORD, IDC_NEW_PASSWORD, IDC_CONFIRM_PASSWORD};

String passwordIn(HWND edit) {
  wchar_t text[PasswordDialog::kLongestPassword + 1] = L"";
  GetWindowTextW(edit, text, ARRAYSIZE(text));
  return text;
}

}  // namespace

PasswordDialog PasswordDialog::enter() {
  return {IDD_ENTER_PASSWORD, kEnterEdits};
}

PasswordDialog PasswordDialog::change() {
  return {IDD_CHANGE_PASSWORD, kChangeEdits};
}

bool PasswordDialog::run(HWND owner) {
  return runTemplate(templateId_, owner) == IDOK;
}

void PasswordDialog::opened() {
  panel_.raise(window());
  centreDialog(window());
  for (const int id : editIds_) SendMessageW(control(id), EM_SETLIMITTEXT, kLongestPassword, 0);
  SetFocus(control(editIds_.front()));
}

bool PasswordDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<PasswordDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &PasswordDialog::confirm},
      {IDCANCEL, BN_CLICKED, &PasswordDialog::cancel},
  };
  return answerCommand<PasswordDialog>(*this, kCommands, id, notification);
}

void PasswordDialog::confirm() {
  std::array<String, kMostEdits> typed;
  for (std::size_t i = 0; i < editIds_.size(); ++i) typed[i] = passwordIn(control(editIds_[i]));
  texts_ = std::move(typed);
  leave(IDOK);
}

void PasswordDialog::leave(int result) {
  panel_.release(window());
  close(result);
}
