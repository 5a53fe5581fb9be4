#include "views/dialog/modal_dialog.h"

#include <array>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/current_dialog.h"
#include "views/dialog/dialog_colors.h"
#include "views/shared/edit_guard.h"
#include "views/shared/escaped_exception.h"
#include "views/shared/typed_watch.h"
#include "views/shared/unowned_box.h"

const std::span<const ModalDialog::MessageRow> ModalDialog::kMessages = [] {
  static constexpr std::array kRows = {
      MessageRow{WM_INITDIALOG, &ModalDialog::initialised},
      MessageRow{WM_COMMAND, &ModalDialog::commandGiven},
      MessageRow{WM_NOTIFY, &ModalDialog::notificationGiven},
      MessageRow{WM_TIMER, &ModalDialog::timeCame},
      MessageRow{WM_CTLCOLORDLG, &ModalDialog::colorAsked},
      MessageRow{WM_CTLCOLORSTATIC, &ModalDialog::colorAsked},
      MessageRow{WM_SETTINGCHANGE, &ModalDialog::settingChanged},
      MessageRow{WM_SIZE, &ModalDialog::sizeChanged},
      MessageRow{WM_DESTROY, &ModalDialog::destroyed},
  };
  return std::span<const MessageRow>(kRows);
}();

int ModalDialog::runTemplate(WORD templateId, HWND owner) {
  guardEditControls();
  const INT_PTR result = HandheldDialogBox(GetModuleHandleW(nullptr), templateId, owner, procedure,
                                           reinterpret_cast<LPARAM>(this));
  window_ = nullptr;
  return result > 0 ? static_cast<int>(result) : IDCANCEL;
}

void ModalDialog::tell(const wchar_t* text, const wchar_t* caption) const {
  showBox(window_, text, caption, MB_SETFOREGROUND);
}

INT_PTR CALLBACK ModalDialog::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    reinterpret_cast<ModalDialog*>(lParam)->window_ = window;
  }
  ModalDialog* const dialog = of(window);
  if (!dialog) return FALSE;
  try {
    return dialog->answer(message, wParam, lParam);
  } catch (...) {
    tellEscapedException(window);
    if (message != WM_INITDIALOG) return TRUE;
    EndDialog(window, IDCANCEL);
    return FALSE;
  }
}

INT_PTR ModalDialog::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  for (const MessageRow& row : kMessages) {
    if (row.message == message) return (this->*row.handler)(wParam, lParam);
  }
  // A number that the system gives out at run time has no place in the table.
  if (message == HandheldZoomMessage()) zoomChanged();
  return FALSE;
}

INT_PTR ModalDialog::initialised(WPARAM, LPARAM) {
  dialogBelow_ = std::exchange(currentDialog, window_);
  opened();
  // What stood on the form may have been stored before.
  tellTypedWatch();
  return FALSE;
}

INT_PTR ModalDialog::commandGiven(WPARAM wParam, LPARAM) {
  const WORD notification = HIWORD(wParam);
  if (notification == EN_CHANGE || notification == CBN_EDITCHANGE) tellTypedWatch();
  return command(LOWORD(wParam), notification) ? TRUE : FALSE;
}

INT_PTR ModalDialog::notificationGiven(WPARAM, LPARAM lParam) {
  return notified(*reinterpret_cast<NMHDR*>(lParam)) ? TRUE : FALSE;
}

INT_PTR ModalDialog::timeCame(WPARAM, LPARAM) {
  timerFired();
  return TRUE;
}

INT_PTR ModalDialog::colorAsked(WPARAM wParam, LPARAM lParam) {
  return reinterpret_cast<INT_PTR>(
      dialogBrush(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
}

INT_PTR ModalDialog::settingChanged(WPARAM, LPARAM) {
  settingsChanged();
  return FALSE;
}

INT_PTR ModalDialog::sizeChanged(WPARAM, LPARAM) {
  sized();
  return FALSE;
}

INT_PTR ModalDialog::destroyed(WPARAM, LPARAM) {
  currentDialog = dialogBelow_;
  ended();
  tellTypedWatch();
  return FALSE;
}
