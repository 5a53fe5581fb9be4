#include "dialogs/exchange/import_more.h"

#include "base/showable_text.h"
#include "dialogs/controls/choices.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/exchange/import_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_IMPORT_NULL, .wider = true},
    {.id = IDC_IMPORT_KEY, .wider = true, .higher = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

constexpr Choice kFormats[] = {
    {L"CSV", L"csv"},
    {L"JSON", L"json"},
};

}  // namespace

ImportMoreDialog::ImportMoreDialog() : growth_(kGrowth) {}

int ImportMoreDialog::run(HWND owner) {
  return runTemplate(IDD_IMPORT_MORE, owner);
}

bool ImportMoreDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<ImportMoreDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &ImportMoreDialog::confirm},
      {IDCANCEL, BN_CLICKED, &ImportMoreDialog::cancel},
  };
  return answerCommand<ImportMoreDialog>(*this, kCommands, id, notification);
}

void ImportMoreDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  fillChoices(control(IDC_IMPORT_FORMAT), kFormats);
  selectChoice(control(IDC_IMPORT_FORMAT), kFormats, details.format);
  SetWindowTextW(control(IDC_IMPORT_NULL), details.nullText.text());
  showKey();
  SetFocus(control(IDC_IMPORT_FORMAT));
}

void ImportMoreDialog::showKey() {
  const HWND list = control(IDC_IMPORT_KEY);
  for (std::size_t place = 0; place < details.columns.size(); ++place) {
    listbox::append(list, showableText(details.columns[place].name.text()).c_str());
    listbox::mark(list, static_cast<int>(place), details.columns[place].isKey);
  }
  EnableWindow(list, !details.columns.empty());
}

void ImportMoreDialog::confirm() {
  details.format = chosenValue(control(IDC_IMPORT_FORMAT), kFormats);
  details.nullText = windowText(control(IDC_IMPORT_NULL));
  for (std::size_t place = 0; place < details.columns.size(); ++place) {
    details.columns[place].isKey = listbox::isMarked(control(IDC_IMPORT_KEY), static_cast<int>(place));
  }
  close(IDOK);
}
