#pragma once

#include "data/values/schema.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// "New Field": asks for the name and the type of one field of a new table.
class NewFieldDialog final : private ModalDialog {
 public:
  /// Out, when the result is IDOK: a name without a forbidden character, and the SQL type.
  NewField field;

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(int result);

  InputPanelHold panel_;
};
