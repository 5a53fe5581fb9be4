#include "dialogs/controls/name_choice_dialog.h"

#include <algorithm>

#include "base/showable_text.h"
#include "dialogs/controls/list_box.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"

NameChoiceDialog::NameChoiceDialog(const Template& parts, const NameList& names)
    : parts_(parts), names_(names), growth_(parts.growth) {}

int NameChoiceDialog::run(HWND owner) {
  return runTemplate(parts_.dialog, owner);
}

void NameChoiceDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  const HWND list = control(parts_.list);
  for (std::uint32_t i = 0; i < names_.size(); ++i) {
    listbox::append(list, showableText(names_[i].text()).c_str());
  }
  listbox::select(list, static_cast<int>(chosen));
  SetFocus(list);
}

bool NameChoiceDialog::command(WORD id, WORD notification) {
  const DialogCommand<NameChoiceDialog> commands[] = {
      {IDOK, BN_CLICKED, &NameChoiceDialog::confirm},
      {IDCANCEL, BN_CLICKED, &NameChoiceDialog::cancel},
      {parts_.list, LBN_DBLCLK, &NameChoiceDialog::confirm},
  };
  return answerCommand<NameChoiceDialog>(*this, commands, id, notification);
}

void NameChoiceDialog::confirm() {
  chosen = static_cast<std::uint32_t>(std::max(listbox::selectedIndex(control(parts_.list)), 0));
  close(IDOK);
}
