#pragma once

#include <cstdint>

#include "dialogs/input_panel_hold.h"
#include "dialogs/table_dialog.h"

/// "Move to Record...": asks for the number of a record.
class GoToDialog final : private TableDialog<GoToDialog> {
 public:
  std::uint32_t highest = 0;  ///< in: the largest number that is allowed, the count of records
  std::uint32_t chosen = 0;   ///< out: from 1 to `highest`, when the result is IDOK
  bool cancelled = false;     ///< out: whether the user cancelled

  /// IDOK or IDCANCEL, -1 when it can't be made.
  INT_PTR run(HWND owner);

 private:
  friend TableDialog<GoToDialog>;
  static std::span<const CommandRow> commandRows();
  static std::span<const MessageRow> messageRows();

  void opened();
  void confirm();
  void cancel();

  InputPanelHold panel_;
};
