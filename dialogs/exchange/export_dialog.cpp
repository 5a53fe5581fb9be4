#include "dialogs/exchange/export_dialog.h"

#include <algorithm>

#include "base/showable_text.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/exchange/export_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_EXPORT_SOURCES, .wider = true, .higher = true},
    {.id = IDC_EXPORT_FORMATS, .wider = true, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

}  // namespace

ExportDialog::ExportDialog(const NameList& sources) : sources_(sources), growth_(kGrowth) {}

int ExportDialog::run(HWND owner) {
  return runTemplate(IDD_EXPORT, owner);
}

void ExportDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  const HWND list = control(IDC_EXPORT_SOURCES);
  for (std::uint32_t i = 0; i < sources_.size(); ++i) {
    listbox::append(list, showableText(sources_[i].text()).c_str());
  }
  listbox::select(list, static_cast<int>(chosen));
  SetFocus(list);
}

bool ExportDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<ExportDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &ExportDialog::confirm},
      {IDCANCEL, BN_CLICKED, &ExportDialog::cancel},
      {IDC_EXPORT_SOURCES, LBN_DBLCLK, &ExportDialog::confirm},
  };
  return answerCommand<ExportDialog>(*this, kCommands, id, notification);
}

void ExportDialog::confirm() {
  chosen = static_cast<std::uint32_t>(std::max(listbox::selectedIndex(control(IDC_EXPORT_SOURCES)), 0));
  close(IDOK);
}
