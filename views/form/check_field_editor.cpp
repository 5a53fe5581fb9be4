#include "views/form/check_field_editor.h"

#include <cwchar>

#include "views/form/tab_key.h"
#include "views/shared/access_marks.h"
#include "views/shared/check_box.h"

bool CheckFieldEditor::create(const ControlCreation& creation) {
  if (!createControl(L"BUTTON", withPlainAmpersands(caption_.text()).c_str(), creation)) return false;
  moveFocusByTabKey(window());
  setChecked(checked_);
  if (isLocked_) lockBox();
  return true;
}

void CheckFieldEditor::setChecked(bool checked) {
  checkbox::check(window(), checked);
  checked_ = checked;
}

bool CheckFieldEditor::isChecked() const {
  return window() ? checkbox::isChecked(window()) : checked_;
}

void CheckFieldEditor::load(const FieldSnapshot& field, bool) {
  setChecked(std::wcscmp(field.text.text(), L"-1") == 0);
  if (isLocked_ == isUnread(field)) return;
  isLocked_ = isUnread(field);
  lockBox();
}

/// A box that does not check itself keeps the focus and its look, and stays as it is.
void CheckFieldEditor::lockBox() const {
  SendMessageW(window(), BM_SETSTYLE, (isLocked_ ? BS_CHECKBOX : BS_AUTOCHECKBOX) | BS_LEFTTEXT, TRUE);
}
