#pragma once

#include "data/schema.h"
#include "dialogs/input_panel_hold.h"
#include "dialogs/table_dialog.h"

/// "New Field": asks for the name and the type of one field of a new table.
class NewFieldDialog final : private TableDialog<NewFieldDialog> {
 public:
  /// Out, when the result is IDOK: a name without a forbidden character, and the SQL type.
  NewField field;

  /// IDOK or IDCANCEL, -1 when it can't be made.
  INT_PTR run(HWND owner);

 private:
  friend TableDialog<NewFieldDialog>;
  static std::span<const CommandRow> commandRows();
  static std::span<const MessageRow> messageRows();

  void opened();
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(INT_PTR result);

  InputPanelHold panel_;
};
