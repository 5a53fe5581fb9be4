#include "base/settings/options_pages.h"
#include "dialogs/options/options_ids.h"
#include "dialogs/options/options_page_procedures.h"
#include "dialogs/options/options_page_window.h"

namespace {

LRESULT opened(HWND page, UINT, WPARAM, LPARAM lParam) {
  optionspage::open(page, lParam);
  const auto& values = optionspage::objectOf<SecurityOptionsPage>(page);
  optionspage::setCheckState(page, IDC_USE_PASSWORD, values.usePassword);
  optionspage::setCheckState(page, IDC_WARNING_ON_DELETION, values.warningOnDeletion);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  auto& values = optionspage::objectOf<SecurityOptionsPage>(page);
  if (optionspage::isClick(wParam, IDC_USE_PASSWORD)) {
    values.usePassword = optionspage::checkState(page, IDC_USE_PASSWORD);
  }
  if (optionspage::isClick(wParam, IDC_WARNING_ON_DELETION)) {
    values.warningOnDeletion = optionspage::checkState(page, IDC_WARNING_ON_DELETION);
  }
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened},
    {WM_COMMAND, commanded},
};

}  // namespace

INT_PTR CALLBACK securityOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return optionspage::answer(kMessages, page, message, wParam, lParam);
}
