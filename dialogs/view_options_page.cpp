#include "base/options_pages.h"
#include "dialogs/options_ids.h"
#include "dialogs/options_page_procedures.h"
#include "dialogs/options_page_window.h"
#include "dialogs/radio_choice.h"
#include "views/message_table.h"

namespace {

constexpr RadioChoice kTabLabels = {IDC_TAB_TEXT_ONLY, IDC_TAB_TEXT_AND_ICON};

LRESULT opened(HWND page, UINT, WPARAM, LPARAM) {
  optionspage::open(page);
  checkRadioChoice(page, kTabLabels, theViewOptionsPage->tabLabelStyle);
  optionspage::setCheckState(page, IDC_REBARS_AT_TOP, theViewOptionsPage->rebarsAtTop);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  ViewOptionsPage& values = *theViewOptionsPage;
  values.tabLabelStyle = checkedRadioChoice(page, kTabLabels).value_or(values.tabLabelStyle);
  if (optionspage::isClick(wParam, IDC_REBARS_AT_TOP)) {
    values.rebarsAtTop = optionspage::checkState(page, IDC_REBARS_AT_TOP);
  }
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened},
    {WM_COMMAND, commanded},
};

}  // namespace

INT_PTR CALLBACK viewOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, page, message, wParam, lParam, optionspage::answerAsAnyPage);
}
