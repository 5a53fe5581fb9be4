#include "dialogs/table/new_table.h"

#include <algorithm>
#include <string>
#include <utility>

#include "dialogs/table/new_field.h"
#include "dialogs/table/new_table_ids.h"
#include "dialogs/table/table_design.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_NEW_TABLE_NAME, .wider = true},
    {.id = IDC_NEW_TABLE_FIELDS, .wider = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

/// How much of the dialog the input panel leaves, the strip with the OK button not counted.
int freeHeight(HWND dialog) {
  constexpr int kOkStrip = 26;
  RECT client{};
  HandheldGetClientRect(dialog, &client);
  const int aboveOk = static_cast<int>(client.bottom) - kOkStrip;
  SIPINFO info{};
  info.cbSize = sizeof(info);
  if (!SHSipInfo(SPI_GETSIPINFO, 0, &info, 0)) return aboveOk;
  return std::min(aboveOk, static_cast<int>(info.rcVisibleDesktop.bottom - info.rcVisibleDesktop.top));
}

}  // namespace

NewTableDialog::NewTableDialog(const NameList& tables) : tables_(tables), growth_(kGrowth) {}

int NewTableDialog::run(HWND owner) {
  return runTemplate(IDD_NEW_TABLE, owner);
}

void NewTableDialog::opened() {
  list_.attach(control(IDC_NEW_TABLE_FIELDS));
  HandheldNameControl(control(IDC_NEW_TABLE_FIELDS), 0, L"Fields");
  HandheldNameControl(control(IDC_NEW_TABLE_ADD), 0, L"Add field");
  HandheldNameControl(control(IDC_NEW_TABLE_REMOVE), 0, L"Remove field");
  SetDlgItemTextW(window(), IDC_NEW_TABLE_NAME, name.text());
  for (const NewField& field : fields) list_.append(field);
  panel_.raise(window());
  growth_.begin(window());
  fillScreen(window());
  layOut();
  SetFocus(control(IDC_NEW_TABLE_NAME));
}

bool NewTableDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<NewTableDialog> kCommands[] = {
      {IDC_NEW_TABLE_ADD, BN_CLICKED, &NewTableDialog::addField},
      {IDC_NEW_TABLE_REMOVE, BN_CLICKED, &NewTableDialog::removeField},
      {IDC_NEW_TABLE_UP, BN_CLICKED, &NewTableDialog::moveFieldUp},
      {IDC_NEW_TABLE_DOWN, BN_CLICKED, &NewTableDialog::moveFieldDown},
      {IDOK, BN_CLICKED, &NewTableDialog::confirm},
      {IDCANCEL, BN_CLICKED, &NewTableDialog::cancel},
  };
  return answerCommand<NewTableDialog>(*this, kCommands, id, notification);
}

void NewTableDialog::addField() {
  NewFieldDialog dialog;
  if (dialog.run(window()) == IDOK) list_.append(dialog.field);
  SetFocus(control(IDC_NEW_TABLE_ADD));
}

void NewTableDialog::confirm() {
  String typed = windowText(control(IDC_NEW_TABLE_NAME));
  std::vector<NewField> designed = list_.fields();
  String definition = columnDefinition(designed);
  if (typed.isEmpty()) {
    refuseName(L"Please enter a table name!");
  } else if (hasForbiddenCharacter(typed)) {
    refuseName(L"Table name cannot use characters:\n` . ! \u2019 [ ] \" * ?");
  } else if (isNameTaken(typed, tables_)) {
    refuseName(
        (std::wstring(L"Table ") + typed.text() + L" already exists!\nChoose a different name").c_str());
  } else if (designed.empty()) {
    tell(L"Please define fields!");
  } else {
    name = std::move(typed);
    fields = std::move(designed);
    columns = std::move(definition);
    leave(IDOK);
  }
}

void NewTableDialog::leave(int result) {
  list_.removeAll();
  panel_.release(window());
  close(result);
}

void NewTableDialog::refuseName(const wchar_t* reason) const {
  tell(reason);
  SetFocus(control(IDC_NEW_TABLE_NAME));
}

/// The list takes what the input panel leaves, with the buttons under it.
void NewTableDialog::layOut() const {
  constexpr int kGap = 5;
  growth_.layOut();
  const int free = freeHeight(window());
  RECT list{};
  RECT button{};
  HandheldGetWindowRect(control(IDC_NEW_TABLE_FIELDS), &list);
  HandheldGetWindowRect(control(IDC_NEW_TABLE_ADD), &button);
  const int buttonTop = free - kGap - static_cast<int>(button.bottom - button.top);
  HandheldSetWindowPos(control(IDC_NEW_TABLE_FIELDS), nullptr, 0, 0, static_cast<int>(list.right - list.left),
                       buttonTop - kGap - static_cast<int>(list.top), SWP_NOMOVE | SWP_NOZORDER);
  for (const int id : {IDC_NEW_TABLE_ADD, IDC_NEW_TABLE_REMOVE, IDC_NEW_TABLE_UP, IDC_NEW_TABLE_DOWN}) {
    RECT place{};
    HandheldGetWindowRect(control(id), &place);
    HandheldSetWindowPos(control(id), nullptr, static_cast<int>(place.left), buttonTop, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER);
  }
}
