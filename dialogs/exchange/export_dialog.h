#pragma once

#include "dialogs/controls/name_choice_dialog.h"

/// In which the user chooses which records are written into a file.
class ExportDialog final : public NameChoiceDialog {
 public:
  /// The names as he reads them, which outlive the dialog; there is one at least.
  explicit ExportDialog(const NameList& sources);
};
