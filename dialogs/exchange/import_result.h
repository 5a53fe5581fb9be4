#pragma once

#include <string>
#include <vector>

#include "data/handles/import_file.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// What came of an import that could not take all records.
class ImportResultDialog final : private ModalDialog {
 public:
  /// `text` says what was stored; the records are those that were left out, `all` how many of them there are.
  ImportResultDialog(std::wstring text, std::vector<RejectedRecord> records, std::int64_t all);

  void run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void finish() { close(IDOK); }

  std::wstring text_;
  std::vector<RejectedRecord> records_;
  std::int64_t all_;
  DialogGrowth growth_;
};
