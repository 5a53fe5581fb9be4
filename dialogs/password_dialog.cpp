#include "dialogs/password_dialog.h"

#include <utility>

#include "dialogs/dialog_procedure.h"
#include "dialogs/password_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/current_dialog.h"
#include "views/dialog_colors.h"
#include "views/dialog_place.h"
#include "views/input_panel_hold.h"
#include "views/message_table.h"

namespace {

constexpr int kEnterEdits[] = {IDC_PASSWORD};
constexpr int kChangeEdits[] = {IDC_OLD_PASSWORD, IDC_NEW_PASSWORD, IDC_CONFIRM_PASSWORD};

String passwordIn(HWND dialog, int editId) {
  wchar_t text[PasswordDialog::kLongestPassword + 1] = L"";
  GetDlgItemTextW(dialog, editId, text, ARRAYSIZE(text));
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
  const bool panelWasUp = isInputPanelUp();
  const INT_PTR result = HandheldDialogBox(GetModuleHandleW(nullptr), templateId_, owner, dialogProcedure,
                                           reinterpret_cast<LPARAM>(this));
  if (!panelWasUp) SHSipPreference(owner, SIP_DOWN);
  return result == IDOK;
}

INT_PTR CALLBACK PasswordDialog::dialogProcedure(HWND dialog, UINT message, WPARAM wParam,
                                                 LPARAM lParam) noexcept {
  static constexpr MessageRow kMessages[] = {
      {WM_INITDIALOG, opened},
      {WM_COMMAND, commanded},
      {WM_CTLCOLORSTATIC, colorDialogText},
      {WM_CTLCOLORDLG, colorDialogBackground},
      {WM_DESTROY, closed},
  };
  return answerFromTable(kMessages, dialog, message, wParam, lParam, leaveToSystem);
}

LRESULT PasswordDialog::opened(HWND dialog, UINT, WPARAM, LPARAM lParam) {
  SetWindowLongPtrW(dialog, DWLP_USER, lParam);
  currentDialog = dialog;
  SHSipPreference(dialog, SIP_UP);
  centreAbovePanel(dialog);
  for (const int id : reinterpret_cast<const PasswordDialog*>(lParam)->editIds_) {
    SendDlgItemMessageW(dialog, id, EM_SETLIMITTEXT, kLongestPassword, 0);
  }
  return TRUE;
}

LRESULT PasswordDialog::commanded(HWND dialog, UINT, WPARAM wParam, LPARAM) {
  const int command = LOWORD(wParam);
  if (command != IDOK && command != IDCANCEL) return FALSE;
  if (command == IDOK) {
    reinterpret_cast<PasswordDialog*>(GetWindowLongPtrW(dialog, DWLP_USER))->takeTexts(dialog);
  }
  EndDialog(dialog, command);
  return TRUE;
}

LRESULT PasswordDialog::closed(HWND, UINT, WPARAM, LPARAM) {
  currentDialog = nullptr;
  return FALSE;
}

void PasswordDialog::takeTexts(HWND dialog) {
  std::array<String, kMostEdits> typed;
  for (std::size_t i = 0; i < editIds_.size(); ++i) typed[i] = passwordIn(dialog, editIds_[i]);
  texts_ = std::move(typed);
}
