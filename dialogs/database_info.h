#pragma once

#include "base/string.h"
#include "dialogs/table_dialog.h"

/// "Database Information": shows what is open. The fields are in: the texts that it shows, each empty
/// where there is none.
class DatabaseInfoDialog final : private TableDialog<DatabaseInfoDialog> {
 public:
  String databasePath;
  String tableName;
  String queryName;
  String sqlText;

  /// IDOK or IDCANCEL; nothing has changed in either case.
  INT_PTR run(HWND owner);

 private:
  friend TableDialog<DatabaseInfoDialog>;
  static std::span<const CommandRow> commandRows();
  static std::span<const MessageRow> messageRows();

  void opened();
  void confirm() { close(IDOK); }
  void cancel() { close(IDCANCEL); }
};
