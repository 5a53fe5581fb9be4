#include "dialogs/password/server_password_dialog.h"

#include <string>
#include <utility>

#include "dialogs/password/password_ids.h"
#include "views/dialog/dialog_place.h"

std::optional<String> ServerPasswordDialog::run(HWND owner) {
  if (runTemplate(IDD_SERVER_PASSWORD, owner) != IDOK) return std::nullopt;
  return std::exchange(typed_, String());
}

void ServerPasswordDialog::opened() {
  panel_.raise(window());
  centreDialog(window());
  SetWindowTextW(control(IDC_PASSWORD_REASON), reason_.text());
  SendMessageW(control(IDC_PASSWORD), EM_SETLIMITTEXT, kLongestPassword, 0);
  SetFocus(control(IDC_PASSWORD));
}

bool ServerPasswordDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<ServerPasswordDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &ServerPasswordDialog::confirm},
      {IDCANCEL, BN_CLICKED, &ServerPasswordDialog::cancel},
  };
  return answerCommand<ServerPasswordDialog>(*this, kCommands, id, notification);
}

void ServerPasswordDialog::confirm() {
  wchar_t text[kLongestPassword + 1] = L"";
  GetWindowTextW(control(IDC_PASSWORD), text, ARRAYSIZE(text));
  typed_ = text;
  SecureZeroMemory(text, sizeof text);
  leave(IDOK);
}

void ServerPasswordDialog::leave(int result) {
  // As long as it was, so that it takes the same place.
  const auto length = static_cast<std::size_t>(GetWindowTextLengthW(control(IDC_PASSWORD)));
  SetWindowTextW(control(IDC_PASSWORD), std::wstring(length, L'*').c_str());
  panel_.release(window());
  close(result);
}
