#include "views/check_field_editor.h"

#include <cwchar>

#include "views/tab_key.h"

bool CheckFieldEditor::create(const wchar_t* text, const ControlCreation& creation) {
  if (!createControl(L"BUTTON", text, creation)) return false;
  moveFocusByTabKey(window());
  return true;
}

void CheckFieldEditor::setChecked(bool checked) {
  SendMessageW(window(), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
  checked_ = checked;
}

bool CheckFieldEditor::isChecked() const {
  return SendMessageW(window(), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void CheckFieldEditor::load(const String& valueText, bool) {
  setChecked(std::wcscmp(valueText.text(), L"-1") == 0);
}
