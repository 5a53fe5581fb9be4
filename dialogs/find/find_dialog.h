#pragma once

#include <windows.h>

#include <cstdint>

#include "base/name_list.h"
#include "records/find_state.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// The dialog that says what is searched for in the records. It is modal and stays open between the steps
/// of a search, each of which it asks its owner for; it searches nothing itself. Its check boxes and the
/// recent texts are kept in the registry.
class FindDialog final : private ModalDialog {
 public:
  /// Posted to the owner for each step of the search, both parameters 0. The owner searches by the state
  /// and then calls refill.
  static constexpr UINT kFindNextMessage = WM_USER + 201;

  /// `state` outlives the dialog. `fieldNames` are those of the records that are searched, in their order.
  FindDialog(FindState& state, NameList fieldNames);

  /// Runs the dialog over `owner`, in whose client area it is centred: IDOK or IDCANCEL, the latter
  /// also when it can't be made.
  int run(HWND owner);

  /// The dialog's window, null while it is not open: confirming it starts a last search, which runs when the
  /// dialog is already closed.
  using ModalDialog::window;

  /// While it is open: shows the recent texts, the newest of them to be searched for, and the check boxes as
  /// they are in the registry.
  void refill();

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void storeAllFields();
  void next();
  void confirm();
  void cancel();

  void enableField() const;
  void storeCheckBoxes();
  void leave(int result);

  /// While the dialog is open: under Wine each look for a control is a question to another process.
  struct Controls {
    HWND text;
    HWND fieldLabel;
    HWND field;
    HWND allFields;
    HWND matchCase;
  };

  FindState& state_;
  NameList fieldNames_;
  HWND owner_ = nullptr;
  Controls controls_{};
  InputPanelHold panel_;
};
