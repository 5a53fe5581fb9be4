#include "base/options_pages.h"
#include "dialogs/options_ids.h"
#include "dialogs/options_page_procedures.h"
#include "dialogs/options_page_window.h"
#include "views/message_table.h"

namespace {

LRESULT opened(HWND page, UINT, WPARAM, LPARAM) {
  optionspage::open(page);
  optionspage::setCheckState(page, IDC_USE_PASSWORD, theSecurityOptionsPage->usePassword);
  optionspage::setCheckState(page, IDC_WARNING_ON_DELETION, theSecurityOptionsPage->warningOnDeletion);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  if (optionspage::isClick(wParam, IDC_USE_PASSWORD)) {
    theSecurityOptionsPage->usePassword = optionspage::checkState(page, IDC_USE_PASSWORD);
  }
  if (optionspage::isClick(wParam, IDC_WARNING_ON_DELETION)) {
    theSecurityOptionsPage->warningOnDeletion = optionspage::checkState(page, IDC_WARNING_ON_DELETION);
  }
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened},
    {WM_COMMAND, commanded},
};

}  // namespace

INT_PTR CALLBACK securityOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, page, message, wParam, lParam, optionspage::answerAsAnyPage);
}
