#pragma once

#include <windows.h>

#include <span>

#include "platform/pocketshell/handheld_windows.h"
#include "views/current_dialog.h"
#include "views/dialog_colors.h"

/// Base of the modal dialogs, whose procedures are tables. `Derived` has, accessible from here,
///   void opened()                                     what happens when the dialog opens
///   static std::span<const CommandRow> commandRows()   what its controls do
///   static std::span<const MessageRow> messageRows()   what it does with other messages
/// No exception leaves a handler: one that runs out of memory ends with a beep and the dialog stays as it
/// is, unless it could not even open. An object runs one dialog at a time.
template <typename Derived>
class TableDialog {
 public:
  TableDialog(const TableDialog&) = delete;
  TableDialog& operator=(const TableDialog&) = delete;

 protected:
  /// A command of a control, by its identifier and notification code.
  struct CommandRow {
    int id;
    int notification;
    void (Derived::*handler)();
  };
  struct MessageRow {
    UINT message;
    void (Derived::*handler)();
  };

  static constexpr INT_PTR kNotMade = -1;

  TableDialog() noexcept = default;
  ~TableDialog() = default;

  /// Runs the dialog of resource `id` over `owner`; the result is that of close, kNotMade when the dialog
  /// can't be made.
  INT_PTR runTemplate(WORD id, HWND owner) {
    return HandheldDialogBox(GetModuleHandleW(nullptr), id, owner, procedure, reinterpret_cast<LPARAM>(this));
  }

  /// The object whose dialog `dialog` is; null for null.
  static Derived* of(HWND dialog) {
    return static_cast<Derived*>(reinterpret_cast<TableDialog*>(GetWindowLongPtrW(dialog, DWLP_USER)));
  }

  /// Null while it does not run.
  HWND window() const { return window_; }
  HWND control(int id) const { return GetDlgItem(window_, id); }
  void close(INT_PTR result) const { EndDialog(window_, result); }

 private:
  static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    Derived* const self = of(dialog);
    if (!self) return FALSE;
    try {
      return self->answer(dialog, message, wParam, lParam);
    } catch (...) {
      MessageBeep(MB_ICONEXCLAMATION);
      if (message == WM_INITDIALOG) EndDialog(dialog, kNotMade);
      return message != WM_INITDIALOG;
    }
  }

  INT_PTR answer(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto& derived = static_cast<Derived&>(*this);
    switch (message) {
      case WM_INITDIALOG:
        window_ = dialog;
        currentDialog = dialog;
        derived.opened();
        // The dialog has set the focus itself.
        return FALSE;
      case WM_DESTROY:
        window_ = nullptr;
        currentDialog = nullptr;
        return FALSE;
      case WM_CTLCOLORDLG:
      case WM_CTLCOLORSTATIC:
        return reinterpret_cast<INT_PTR>(
            dialogBrush(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
      case WM_COMMAND:
        return answerCommand(derived, LOWORD(wParam), HIWORD(wParam));
      default:
        break;
    }
    for (const auto& row : Derived::messageRows()) {
      if (row.message != message) continue;
      (derived.*row.handler)();
      return TRUE;
    }
    return FALSE;
  }

  static INT_PTR answerCommand(Derived& derived, int id, int notification) {
    for (const auto& row : Derived::commandRows()) {
      if (row.id != id || row.notification != notification) continue;
      (derived.*row.handler)();
      return TRUE;
    }
    return FALSE;
  }

  HWND window_ = nullptr;
};
