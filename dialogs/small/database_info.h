#pragma once

#include "base/string.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// "Database Information": shows what is open. The fields are in: the texts that it shows, each empty
/// where there is none.
class DatabaseInfoDialog final : private ModalDialog {
 public:
  String databasePath;
  String serverText;  ///< has a field of its own for a server's database alone
  String tableName;
  String queryName;
  String sqlText;

  DatabaseInfoDialog();

  /// IDOK or IDCANCEL; nothing has changed in either case.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm() { close(IDOK); }
  void cancel() { close(IDCANCEL); }

  DialogGrowth growth_;
};
