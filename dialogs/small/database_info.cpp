#include "dialogs/small/database_info.h"

#include "dialogs/small/database_info_ids.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/shown_text.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_INFO_DATABASE, .wider = true},
    {.id = IDC_INFO_SERVER, .wider = true},
    {.id = IDC_INFO_TABLE, .wider = true},
    {.id = IDC_INFO_QUERY, .wider = true},
    {.id = IDC_INFO_SQL, .wider = true, .higher = true},
    {.id = IDOK, .right = true, .down = true},
};

}  // namespace

DatabaseInfoDialog::DatabaseInfoDialog() : growth_(kGrowth) {}

int DatabaseInfoDialog::run(HWND owner) {
  return runTemplate(serverText.isEmpty() ? IDD_DATABASE_INFO : IDD_SERVER_DATABASE_INFO, owner);
}

void DatabaseInfoDialog::opened() {
  growWithScreen(window());
  growth_.begin(window());
  growth_.layOut();
  centreDialog(window());
  SetDlgItemTextW(window(), IDC_INFO_DATABASE, databasePath.text());
  SetDlgItemTextW(window(), IDC_INFO_SERVER, serverText.text());
  SetDlgItemTextW(window(), IDC_INFO_TABLE, tableName.text());
  SetDlgItemTextW(window(), IDC_INFO_QUERY, queryName.text());
  SetDlgItemTextW(window(), IDC_INFO_SQL, textForLines(sqlText.text()).text.c_str());
  // In one of the texts the caret would have selected the whole of it.
  SetFocus(control(IDOK));
}

bool DatabaseInfoDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<DatabaseInfoDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &DatabaseInfoDialog::confirm},
      {IDCANCEL, BN_CLICKED, &DatabaseInfoDialog::cancel},
  };
  return answerCommand<DatabaseInfoDialog>(*this, kCommands, id, notification);
}
