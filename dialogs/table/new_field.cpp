#include "dialogs/table/new_field.h"

#include <utility>

#include "data/values/field_kinds.h"
#include "dialogs/table/new_field_ids.h"
#include "dialogs/table/table_design.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"

namespace {

constexpr int kShortTextRow = 5;

// The box sorts; its rows stay those of the table because that is in alphabetical order.
void addType(HWND box, const wchar_t* label) {
  SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(label));
}

void selectType(HWND box, int row) {
  SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

/// -1 for none.
int selectedType(HWND box) {
  return static_cast<int>(SendMessageW(box, CB_GETCURSEL, 0, 0));
}

}  // namespace

int NewFieldDialog::run(HWND owner) {
  return runTemplate(IDD_NEW_FIELD, owner);
}

void NewFieldDialog::opened() {
  const HWND types = control(IDC_NEW_FIELD_TYPE);
  for (const FieldKind& kind : offeredFieldKinds()) addType(types, kind.label);
  selectType(types, kShortTextRow);
  panel_.raise(window());
  centreDialog(window(), kPopupRaise);
  SetFocus(control(IDC_NEW_FIELD_NAME));
}

bool NewFieldDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<NewFieldDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &NewFieldDialog::confirm},
      {IDCANCEL, BN_CLICKED, &NewFieldDialog::cancel},
  };
  return answerCommand<NewFieldDialog>(*this, kCommands, id, notification);
}

void NewFieldDialog::confirm() {
  String name = windowText(control(IDC_NEW_FIELD_NAME));
  const int row = selectedType(control(IDC_NEW_FIELD_TYPE));
  if (name.isEmpty()) {
    tell(L"Please enter a field name!");
    SetFocus(control(IDC_NEW_FIELD_NAME));
  } else if (hasForbiddenCharacter(name)) {
    tell(L"Field name cannot use characters:\n` . ! \u2019 [ ] \" * ?");
    SetFocus(control(IDC_NEW_FIELD_NAME));
  } else if (row < 0) {
    tell(L"Please select a type!");
    SetFocus(control(IDC_NEW_FIELD_TYPE));
  } else {
    field = {std::move(name), offeredFieldKinds()[static_cast<std::size_t>(row)].sqlType, false};
    leave(IDOK);
  }
}

void NewFieldDialog::leave(int result) {
  panel_.release(window());
  close(result);
}
