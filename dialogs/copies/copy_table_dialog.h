#pragma once

#include <windows.h>

#include <cstdint>

#include "base/name_list.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// In which the user chooses the table of a copy that is to come back.
class CopyTableDialog final : private ModalDialog {
 public:
  /// The names outlive the dialog; there is one at least.
  explicit CopyTableDialog(const NameList& tables);

  /// Out, when the result is IDOK: the place of the one that the user has chosen.
  std::uint32_t chosen = 0;  // NOLINT(misc-non-private-member-variables-in-classes)

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void confirm();
  void cancel() { close(IDCANCEL); }

  const NameList& tables_;
  DialogGrowth growth_;
};
