#include "base/settings/options_pages.h"
#include "dialogs/controls/radio_choice.h"
#include "dialogs/options/options_ids.h"
#include "dialogs/options/options_page_procedures.h"
#include "dialogs/options/options_page_window.h"

namespace {

constexpr RadioChoice kRights = {IDC_RIGHTS_NONE, IDC_RIGHTS_NEW_AND_DELETE};

LRESULT opened(HWND page, UINT, WPARAM, LPARAM lParam) {
  optionspage::open(page, lParam);
  auto& values = optionspage::objectOf<GeneralOptionsPage>(page);
  values.window = page;
  checkRadioChoice(page, kRights, values.updateRights);
  optionspage::setCheckState(page, IDC_OPEN_LAST_TABLE, values.openLastTable);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  auto& values = optionspage::objectOf<GeneralOptionsPage>(page);
  values.updateRights = checkedRadioChoice(page, kRights).value_or(values.updateRights);
  if (optionspage::isClick(wParam, IDC_OPEN_LAST_TABLE)) {
    values.openLastTable = optionspage::checkState(page, IDC_OPEN_LAST_TABLE);
  }
  return FALSE;
}

LRESULT closed(HWND page, UINT, WPARAM, LPARAM) {
  optionspage::objectOf<GeneralOptionsPage>(page).window = nullptr;
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened},
    {WM_COMMAND, commanded},
    {WM_DESTROY, closed},
};

}  // namespace

INT_PTR CALLBACK generalOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return optionspage::answer(kMessages, page, message, wParam, lParam);
}
