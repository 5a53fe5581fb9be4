#include "dialogs/copies/copy_table_dialog.h"

#include <algorithm>

#include "base/showable_text.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/copies/go_back_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_COPY_TABLES, .wider = true, .higher = true},
    {.id = IDOK, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

}  // namespace

CopyTableDialog::CopyTableDialog(const NameList& tables) : tables_(tables), growth_(kGrowth) {}

int CopyTableDialog::run(HWND owner) {
  return runTemplate(IDD_COPY_TABLE, owner);
}

void CopyTableDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  const HWND list = control(IDC_COPY_TABLES);
  for (std::uint32_t i = 0; i < tables_.size(); ++i) {
    listbox::append(list, showableText(tables_[i].text()).c_str());
  }
  listbox::select(list, 0);
  SetFocus(list);
}

bool CopyTableDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<CopyTableDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &CopyTableDialog::confirm},
      {IDCANCEL, BN_CLICKED, &CopyTableDialog::cancel},
      {IDC_COPY_TABLES, LBN_DBLCLK, &CopyTableDialog::confirm},
  };
  return answerCommand<CopyTableDialog>(*this, kCommands, id, notification);
}

void CopyTableDialog::confirm() {
  chosen = static_cast<std::uint32_t>(std::max(listbox::selectedIndex(control(IDC_COPY_TABLES)), 0));
  close(IDOK);
}
