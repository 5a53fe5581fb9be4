#pragma once

#include "dialogs/controls/name_choice_dialog.h"

/// In which the user chooses the table of a copy that is to come back.
class CopyTableDialog final : public NameChoiceDialog {
 public:
  /// The names outlive the dialog; there is one at least.
  explicit CopyTableDialog(const NameList& tables);
};
