#include "dialogs/find/find_dialog.h"

#include <array>
#include <utility>

#include "base/settings/recent_finds.h"
#include "base/settings/settings_store.h"
#include "dialogs/controls/combo_box.h"
#include "dialogs/find/find_dialog_ids.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"

namespace {

static_assert(static_cast<int>(Setting::matchCase) == static_cast<int>(Setting::checkAllFields) + 1);

std::uint32_t isChecked(HWND box) {
  return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
}

void check(HWND box, std::uint32_t checked) {
  SendMessageW(box, BM_SETCHECK, checked != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
}

/// Where it is so already the system is not asked.
void enable(HWND control, bool enabled) {
  if ((IsWindowEnabled(control) != FALSE) != enabled) EnableWindow(control, enabled ? TRUE : FALSE);
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
  controls_ = {control(IDC_FIND_TEXT), control(IDC_FIND_FIELD_LABEL), control(IDC_FIND_FIELD),
               control(IDC_FIND_ALL_FIELDS), control(IDC_FIND_MATCH_CASE)};
  centreDialog(window());
  panel_.raise(window());
  state_.newSearch = true;
  combobox::removeTextLimit(controls_.text);
  SetFocus(controls_.text);
  combobox::fill(controls_.field, fieldNames_);
  refill();
}

void FindDialog::refill() {
  if (!window()) return;
  NameList finds;
  RecentFinds::list(finds);
  combobox::fill(controls_.text, finds);
  std::array<std::uint32_t, 2> boxes{};
  SettingsStore::readAll(Setting::checkAllFields, boxes);
  state_.checkAllFields = boxes[0] != 0 ? 1 : 0;
  state_.matchCase = boxes[1] != 0 ? 1 : 0;
  check(controls_.allFields, state_.checkAllFields);
  check(controls_.matchCase, state_.matchCase);
  enableField();
}

void FindDialog::enableField() const {
  const bool enabled = state_.checkAllFields == 0;
  enable(controls_.field, enabled);
  enable(controls_.fieldLabel, enabled);
}

void FindDialog::storeAllFields() {
  state_.checkAllFields = isChecked(controls_.allFields);
  SettingsStore::write(Setting::checkAllFields, state_.checkAllFields);
  enableField();
}

void FindDialog::storeCheckBoxes() {
  state_.checkAllFields = isChecked(controls_.allFields);
  state_.matchCase = isChecked(controls_.matchCase);
  SettingsStore::writeAll(Setting::checkAllFields, std::array{state_.checkAllFields, state_.matchCase});
  enableField();
}

void FindDialog::next() {
  // Nothing of the state is changed before both texts are there.
  String text = windowText(controls_.text);
  const int field = combobox::selection(controls_.field);
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
