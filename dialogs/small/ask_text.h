#pragma once

#include <string>

#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// Asks for a text of one line that is not empty.
class AskTextDialog final : private ModalDialog {
 public:
  // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  std::wstring title;
  std::wstring label;
  std::wstring text;  ///< in: what stands there at first; out: what was entered, when the result is IDOK
  // NOLINTEND(misc-non-private-member-variables-in-classes)

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel();

  InputPanelHold panel_;
};
