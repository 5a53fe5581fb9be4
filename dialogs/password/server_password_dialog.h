#pragma once

#include <windows.h>

#include <optional>

#include "base/string.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// Asks for the password of a server's user. What is typed stands in no other place than the result, and is
/// overwritten in the control.
class ServerPasswordDialog final : private ModalDialog {
 public:
  static constexpr std::size_t kLongestPassword = 255;

  /// `reason` says why it is asked for.
  explicit ServerPasswordDialog(const String& reason) : reason_(reason) {}

  /// What the user typed, maybe nothing; none when he cancelled or the dialog could not be opened.
  std::optional<String> run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(int result);

  String reason_;
  String typed_;
  InputPanelHold panel_;
};
