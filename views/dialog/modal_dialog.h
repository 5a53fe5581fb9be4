#pragma once

#include <windows.h>

#include <span>

/// What the dialogs have in common. A dialog is an object on the stack of who asks; its template lies
/// in the resources of the program. While it is open it is the currentDialog of
/// views/dialog/current_dialog.h. Its ground is white, its texts are blue. An object runs one dialog at a
/// time.
///
/// No exception leaves: what is thrown is told. A dialog that runs out of memory in a command stays open as
/// it is, one that does so at its opening is cancelled.
class ModalDialog {
 public:
  virtual ~ModalDialog() = default;
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

 protected:
  ModalDialog() = default;

  /// Runs the template over `owner`. What close was given; IDCANCEL when the dialog can't be shown or is
  /// ended by its owner's end.
  int runTemplate(WORD templateId, HWND owner);

  /// The object whose dialog `window` is; null for null.
  static ModalDialog* of(HWND window) {
    return reinterpret_cast<ModalDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  }

  /// The dialog's window, null while it does not run.
  HWND window() const { return window_; }
  HWND control(int id) const { return GetDlgItem(window_, id); }
  void close(int result) { EndDialog(window_, result); }
  /// Tells the user something in a message box over the dialog, which stays open.
  void tell(const wchar_t* text, const wchar_t* caption = L"Quivane") const;

  /// The controls stand: fills them and gives one the focus.
  virtual void opened() = 0;
  /// A button was pressed (BN_CLICKED), by Enter (IDOK) or Esc (IDCANCEL) too, or a control reports
  /// something. False for what has no handler.
  virtual bool command(WORD id, WORD notification) = 0;
  /// A control tells something by WM_NOTIFY. False for what has no handler.
  virtual bool notified(NMHDR& /*notification*/) { return false; }
  /// A timer of the dialog's window, of which it has one at most.
  virtual void timerFired() {}
  /// The window is about to be destroyed, and its controls with it.
  virtual void ended() {}
  /// The settings of the system have changed: the input panel went up or down, say.
  virtual void settingsChanged() {}
  /// The dialog has another size; this may be in opened.
  virtual void sized() {}
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
  INT_PTR notificationGiven(WPARAM wParam, LPARAM lParam);
  INT_PTR timeCame(WPARAM wParam, LPARAM lParam);
  INT_PTR colorAsked(WPARAM wParam, LPARAM lParam);
  INT_PTR settingChanged(WPARAM wParam, LPARAM lParam);
  INT_PTR sizeChanged(WPARAM wParam, LPARAM lParam);
  INT_PTR destroyed(WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  HWND dialogBelow_ = nullptr;  // the current dialog over which this one opened
};

/// A row of a dialog's command procedure, which is a table.
template <typename Dialog>
struct DialogCommand {
  WORD id;
  WORD notification;
  void (Dialog::*handler)();
};

/// False when no row has that identifier and notification.
template <typename Dialog>
bool answerCommand(Dialog& dialog, std::span<const DialogCommand<Dialog>> table, WORD id, WORD notification) {
  for (const DialogCommand<Dialog>& row : table) {
    if (row.id != id || row.notification != notification) continue;
    (dialog.*row.handler)();
    return true;
  }
  return false;
}
