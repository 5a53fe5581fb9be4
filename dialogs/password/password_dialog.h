#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <span>

#include "base/string.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// The dialogs with password edits, centred over the window that opens them: "Enter Password" with one
/// and "Change Password" with three. The input panel is up while one is open, as far as the user's setting
/// allows.
class PasswordDialog final : private ModalDialog {
 public:
  static constexpr std::size_t kLongestPassword = 49;

  static PasswordDialog enter();
  static PasswordDialog change();

  /// True when the user confirmed: the texts are then what he typed, each cut to its first
  /// kLongestPassword characters. False when he cancelled or the dialog could not be opened.
  bool run(HWND owner);

  /// Of "Enter Password": the password at 0.
  /// Of "Change Password": the old password at 0, the new one at 1, its confirmation at 2.
  const String& text(std::size_t index) const { return texts_[index]; }

 private:
  static constexpr std::size_t kMostEdits = 3;

  PasswordDialog(WORD templateId, std::span<const int> editIds)
      : templateId_(templateId), editIds_(editIds) {}

  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(int result);

  WORD templateId_;
  std::span<const int> editIds_;
  std::array<String, kMostEdits> texts_;
  InputPanelHold panel_;
};
