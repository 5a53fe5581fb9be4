#include "base/options_pages.h"
#include "dialogs/options_ids.h"
#include "dialogs/options_page_procedures.h"
#include "dialogs/options_page_window.h"
#include "dialogs/radio_choice.h"
#include "views/message_table.h"

namespace {

constexpr RadioChoice kRights = {IDC_RIGHTS_NONE, IDC_RIGHTS_NEW_AND_DELETE};

LRESULT opened(HWND page, UINT, WPARAM, LPARAM) {
  theGeneralOptionsPage->window = page;
  optionspage::open(page);
  checkRadioChoice(page, kRights, theGeneralOptionsPage->updateRights);
  optionspage::setCheckState(page, IDC_OPEN_LAST_TABLE, theGeneralOptionsPage->openLastTable);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  GeneralOptionsPage& values = *theGeneralOptionsPage;
  values.updateRights = checkedRadioChoice(page, kRights).value_or(values.updateRights);
  if (optionspage::isClick(wParam, IDC_OPEN_LAST_TABLE)) {
    values.openLastTable = optionspage::checkState(page, IDC_OPEN_LAST_TABLE);
  }
  return FALSE;
}

LRESULT closed(HWND, UINT, WPARAM, LPARAM) {
  theGeneralOptionsPage->window = nullptr;
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened},
    {WM_COMMAND, commanded},
    {WM_DESTROY, closed},
};

}  // namespace

INT_PTR CALLBACK generalOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, page, message, wParam, lParam, optionspage::answerAsAnyPage);
}
