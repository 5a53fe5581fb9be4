#pragma once

#include <windows.h>

#include <cstdint>

#include "base/name_list.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// In which the user chooses which records are written into a file.
class ExportDialog final : private ModalDialog {
 public:
  /// The names as he reads them, which outlive the dialog; there is one at least.
  explicit ExportDialog(const NameList& sources);

  /// In: the place of the one that is chosen first. Out, when the result is IDOK: of the one that he has
  /// chosen.
  std::uint32_t chosen = 0;  // NOLINT(misc-non-private-member-variables-in-classes)

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void confirm();
  void cancel() { close(IDCANCEL); }

  const NameList& sources_;
  DialogGrowth growth_;
};
