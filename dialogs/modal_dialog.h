#pragma once

#include <windows.h>

#include <span>

/// What the dialogs have in common. A dialog is an object on the stack of who asks; its template lies
/// in the resources of the program. While it is open it is the currentDialog of views/current_dialog.h.
/// Its ground is white, its static texts are blue.
///
/// No exception leaves: a dialog that runs out of memory in a command beeps and stays open as it is, one
/// that does so at its opening is cancelled.
class ModalDialog {
 public:
  virtual ~ModalDialog() = default;
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

 protected:
  ModalDialog() = default;

  /// Runs the template over `owner`. IDOK or IDCANCEL; the latter also when it can't be shown.
  int runTemplate(WORD templateId, HWND owner);

  /// The dialog's window while it runs.
  HWND window() const { return window_; }
  HWND control(int id) const { return GetDlgItem(window_, id); }
  void close(int result) { EndDialog(window_, result); }
  /// Refuses what the user asked for by a message box over the dialog, which stays open.
  void refuse(const wchar_t* reason, const wchar_t* caption = L"Quivane") const;

  /// The controls stand: fills them and gives one the focus.
  virtual void opened() = 0;
  /// A button was pressed, Enter (IDOK) or Esc (IDCANCEL) included, or a control reports something.
  /// False for an identifier without a handler.
  virtual bool command(WORD id) = 0;
  /// The input panel went up or down.
  virtual void panelMoved() {}
  /// The controls have their new places and fonts already.
  virtual void zoomChanged() {}

 private:
  struct MessageRow {
    UINT message;
    INT_PTR (ModalDialog::*handler)(WPARAM wParam, LPARAM lParam);
  };
  static const std::span<const MessageRow> kMessages;

  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  INT_PTR answer(UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR initialised(WPARAM wParam, LPARAM lParam);
  INT_PTR commandGiven(WPARAM wParam, LPARAM lParam);
  INT_PTR groundColored(WPARAM wParam, LPARAM lParam);
  INT_PTR staticColored(WPARAM wParam, LPARAM lParam);
  INT_PTR settingChanged(WPARAM wParam, LPARAM lParam);
  INT_PTR destroyed(WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  HWND dialogBelow_ = nullptr;  // the current dialog over which this one opened
};

/// The command procedure of a dialog as a table.
template <typename Dialog>
struct DialogCommand {
  WORD id;
  void (Dialog::*handler)();
};

/// False when no row has that identifier.
template <typename Dialog>
bool answerCommand(Dialog& dialog, std::span<const DialogCommand<Dialog>> table, WORD id) {
  for (const DialogCommand<Dialog>& row : table) {
    if (row.id != id) continue;
    (dialog.*row.handler)();
    return true;
  }
  return false;
}
