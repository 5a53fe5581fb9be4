#pragma once

#include <cstdint>

#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// "Move to Record...": asks for the number of a record.
class GoToDialog final : private ModalDialog {
 public:
  std::uint32_t highest = 0;  ///< in: the largest number that is allowed, the count of records
  std::uint32_t chosen = 0;   ///< out: from 1 to `highest`, when the result is IDOK
  bool cancelled = false;     ///< out: whether the user cancelled

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel();

  InputPanelHold panel_;
};
