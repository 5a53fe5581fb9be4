#include "dialogs/modal_dialog.h"

#include <array>
#include <cwchar>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"
#include "views/current_dialog.h"

namespace {

constexpr COLORREF kStaticText = RGB(0, 0, 255);
constexpr COLORREF kGround = RGB(255, 255, 255);

INT_PTR groundBrush() {
  return reinterpret_cast<INT_PTR>(GetStockObject(WHITE_BRUSH));
}

/// An edit that can't be written to asks for the colours of a static text too.
bool isStatic(HWND control) {
  std::array<wchar_t, 16> name{};
  GetClassNameW(control, name.data(), static_cast<int>(name.size()));
  return _wcsicmp(name.data(), WC_STATICW) == 0;
}

}  // namespace

const std::span<const ModalDialog::MessageRow> ModalDialog::kMessages = [] {
  static constexpr std::array kRows = {
      MessageRow{WM_INITDIALOG, &ModalDialog::initialised},
      MessageRow{WM_COMMAND, &ModalDialog::commandGiven},
      MessageRow{WM_CTLCOLORDLG, &ModalDialog::groundColored},
      MessageRow{WM_CTLCOLORSTATIC, &ModalDialog::staticColored},
      MessageRow{WM_SETTINGCHANGE, &ModalDialog::settingChanged},
      MessageRow{WM_DESTROY, &ModalDialog::destroyed},
  };
  return std::span<const MessageRow>(kRows);
}();

int ModalDialog::runTemplate(WORD templateId, HWND owner) {
  const INT_PTR result = HandheldDialogBox(GetModuleHandleW(nullptr), templateId, owner, procedure,
                                           reinterpret_cast<LPARAM>(this));
  window_ = nullptr;
  return result == IDOK ? IDOK : IDCANCEL;
}

void ModalDialog::refuse(const wchar_t* reason, const wchar_t* caption) const {
  MessageBoxW(window_, reason, caption, MB_SETFOREGROUND);
}

INT_PTR CALLBACK ModalDialog::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    reinterpret_cast<ModalDialog*>(lParam)->window_ = window;
  }
  auto* const dialog = reinterpret_cast<ModalDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!dialog) return FALSE;
  try {
    return dialog->answer(message, wParam, lParam);
  } catch (...) {
    MessageBeep(MB_ICONEXCLAMATION);
    if (message == WM_INITDIALOG) EndDialog(window, IDCANCEL);
    return TRUE;
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
  return FALSE;
}

INT_PTR ModalDialog::commandGiven(WPARAM wParam, LPARAM) {
  return command(LOWORD(wParam));
}

INT_PTR ModalDialog::groundColored(WPARAM, LPARAM) {
  return groundBrush();
}

INT_PTR ModalDialog::staticColored(WPARAM wParam, LPARAM lParam) {
  if (!isStatic(reinterpret_cast<HWND>(lParam))) return FALSE;
  const auto context = reinterpret_cast<HDC>(wParam);
  SetTextColor(context, kStaticText);
  SetBkColor(context, kGround);
  return groundBrush();
}

INT_PTR ModalDialog::settingChanged(WPARAM wParam, LPARAM) {
  if (wParam == SPI_SETSIPINFO) panelMoved();
  return FALSE;
}

INT_PTR ModalDialog::destroyed(WPARAM, LPARAM) {
  currentDialog = dialogBelow_;
  return FALSE;
}
