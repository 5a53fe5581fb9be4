#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/dialog_reading.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/message_box_spy.h"
#include "tests/ui/support/shell_frame.h"
#include "tests/ui/support/window_reading.h"

/// A main window of this process over which dialogs open, at zoom 100 and with the shell's settings as
/// they are when nothing was set. What a DialogScript does in its step happens before the dialog is
/// shown; a button that ends the dialog may be pressed there.
class ModalDialogFixture : public testing::Test {
 protected:
  ModalDialogFixture();
  ~ModalDialogFixture() override;

  HWND owner() const { return frame_->get(); }

  /// Sends the command of a button and waits for what it does.
  static void press(HWND dialog, int id) {
    SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
  }
  /// Presses a key in a control, once the dialog is shown.
  static void postKey(HWND control, WORD key) { PostMessageW(control, WM_KEYDOWN, key, 1); }
  static std::wstring textOf(HWND dialog, int id) { return ::textOf(GetDlgItem(dialog, id)); }

  /// The refusals since the last call. Each was over `dialog` and had one button, no icon and the flag that
  /// brings it to the front.
  struct Refusal {
    std::wstring text;
    std::wstring caption;
    bool operator==(const Refusal&) const = default;
  };
  std::vector<Refusal> refusals(HWND dialog);

  /// Identifiers of the static controls whose text does not fit.
  static std::vector<std::wstring> cutLabels(HWND dialog);
  /// Over the main window, no larger than it, and every control inside.
  static void expectFits(HWND dialog);
  /// Centred in the main window, and raised by so many handheld pixels.
  static void expectCentred(HWND dialog, int raise);
  static void expectFullScreen(HWND dialog);
  /// Blue on white, as the dialog answers for its static texts.
  static void expectColors(HWND dialog);

  /// All windows of this thread, and what the owners of handles hold.
  struct Alive {
    int windows;
    long resources;
    bool operator==(const Alive&) const = default;
  };
  static Alive alive();

 private:
  std::unique_ptr<ShellFrame> frame_;
  MessageBoxSpy boxes_;
};
