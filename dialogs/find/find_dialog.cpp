#include "dialogs/find/find_dialog.h"

#include <utility>

#include "base/settings/recent_finds.h"
#include "base/settings/settings_store.h"
#include "dialogs/controls/combo_box.h"
#include "dialogs/find/find_dialog_ids.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"

namespace {

/// 0 when it is missing.
std::uint32_t readFlag(Setting setting) {
  std::uint32_t value = 0;
  SettingsStore::read(setting, value);
  return value != 0 ? 1 : 0;
}

}  // namespace

FindDialog::FindDialog(FindState& state, NameList fieldNames)
    : state_(state), fieldNames_(std::move(fieldNames)) {}

int FindDialog::run(HWND owner) {
  owner_ = owner;
  return runTemplate(IDD_FIND, owner);
}

bool FindDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<FindDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &FindDialog::confirm},
      {IDCANCEL, BN_CLICKED, &FindDialog::cancel},
      {IDC_FIND_NEXT, BN_CLICKED, &FindDialog::next},
      {IDC_FIND_ALL_FIELDS, BN_CLICKED, &FindDialog::storeAllFields},
  };
  return answerCommand<FindDialog>(*this, kCommands, id, notification);
}

void FindDialog::opened() {
  centreDialog(window());
  panel_.raise(window());
  state_.newSearch = true;
  combobox::removeTextLimit(control(IDC_FIND_TEXT));
  SetFocus(control(IDC_FIND_TEXT));
  combobox::fill(control(IDC_FIND_FIELD), fieldNames_);
  refill();
}

void FindDialog::refill() {
  if (!window()) return;
  NameList finds;
  RecentFinds::list(finds);
  combobox::fill(control(IDC_FIND_TEXT), finds);
  state_.checkAllFields = readFlag(Setting::checkAllFields);
  state_.matchCase = readFlag(Setting::matchCase);
  CheckDlgButton(window(), IDC_FIND_ALL_FIELDS, state_.checkAllFields);
  CheckDlgButton(window(), IDC_FIND_MATCH_CASE, state_.matchCase);
  enableField();
}

void FindDialog::enableField() const {
  const BOOL enabled = state_.checkAllFields == 0 ? TRUE : FALSE;
  EnableWindow(control(IDC_FIND_FIELD), enabled);
  EnableWindow(control(IDC_FIND_FIELD_LABEL), enabled);
}

void FindDialog::storeAllFields() {
  state_.checkAllFields = IsDlgButtonChecked(window(), IDC_FIND_ALL_FIELDS);
  SettingsStore::write(Setting::checkAllFields, state_.checkAllFields);
  enableField();
}

void FindDialog::storeCheckBoxes() {
  storeAllFields();
  state_.matchCase = IsDlgButtonChecked(window(), IDC_FIND_MATCH_CASE);
  SettingsStore::write(Setting::matchCase, state_.matchCase);
}

void FindDialog::next() {
  // Nothing of the state is changed before both texts are there.
  String text = windowText(control(IDC_FIND_TEXT));
  const int field = combobox::selection(control(IDC_FIND_FIELD));
  // Not the text of the entry, which shows what the control can show of the name.
  String fieldName =
      field == combobox::kNoSelection ? String() : fieldNames_[static_cast<std::uint32_t>(field)];
  storeCheckBoxes();
  state_.text = std::move(text);
  state_.fieldName = std::move(fieldName);
  panel_.release(window());
  state_.fieldPosition = static_cast<std::uint32_t>(field + 1);
  RecentFinds::remember(state_.text);
  PostMessageW(owner_, kFindNextMessage, 0, 0);
}

void FindDialog::confirm() {
  PostMessageW(owner_, kFindNextMessage, 0, 0);
  leave(IDOK);
}

void FindDialog::cancel() {
  leave(IDCANCEL);
}

void FindDialog::leave(int result) {
  storeCheckBoxes();
  panel_.release(window());
  close(result);
}
