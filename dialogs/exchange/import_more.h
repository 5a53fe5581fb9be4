#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/string.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// What the user seldom wants otherwise than it was found out.
struct ImportDetails {
  /// A column of the table that may be a part of the key.
  struct KeyColumn {
    std::uint32_t index = 0;  ///< among the file's columns
    String name;              ///< in the table
    bool isKey = false;
  };

  String format;                   ///< as ImportFile has it
  String nullText;                 ///< what stands for no value
  std::vector<KeyColumn> columns;  ///< none for a new table
};

/// In which he chooses it. The dialog changes nothing of the file.
class ImportMoreDialog final : private ModalDialog {
 public:
  /// In: what is chosen. Out, when the result is IDOK: what the user has chosen.
  ImportDetails details;  // NOLINT(misc-non-private-member-variables-in-classes)

  ImportMoreDialog();

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }

  void showKey();
  void confirm();
  void cancel() { close(IDCANCEL); }

  DialogGrowth growth_;
};
