#include "dialogs/database_info.h"

#include "dialogs/database_info_ids.h"
#include "dialogs/dialog_place.h"

INT_PTR DatabaseInfoDialog::run(HWND owner) {
  return runTemplate(IDD_DATABASE_INFO, owner);
}

void DatabaseInfoDialog::opened() {
  centreDialog(window());
  SetDlgItemTextW(window(), IDC_INFO_DATABASE, databasePath.text());
  SetDlgItemTextW(window(), IDC_INFO_TABLE, tableName.text());
  SetDlgItemTextW(window(), IDC_INFO_QUERY, queryName.text());
  SetDlgItemTextW(window(), IDC_INFO_SQL, sqlText.text());
  // In one of the texts the caret would have selected the whole of it.
  SetFocus(control(IDOK));
}

std::span<const DatabaseInfoDialog::CommandRow> DatabaseInfoDialog::commandRows() {
  static constexpr CommandRow kRows[] = {
      {IDOK, BN_CLICKED, &DatabaseInfoDialog::confirm},
      {IDCANCEL, BN_CLICKED, &DatabaseInfoDialog::cancel},
  };
  return kRows;
}

std::span<const DatabaseInfoDialog::MessageRow> DatabaseInfoDialog::messageRows() {
  return {};
}
