#include "base/settings/options_pages.h"
#include "dialogs/controls/radio_choice.h"
#include "dialogs/options/options_ids.h"
#include "dialogs/options/options_page_procedures.h"
#include "dialogs/options/options_page_window.h"

namespace {

constexpr RadioChoice kTabLabels = {IDC_TAB_TEXT_ONLY, IDC_TAB_TEXT_AND_ICON};

LRESULT opened(HWND page, UINT, WPARAM, LPARAM lParam) {
  optionspage::open(page, lParam);
  const auto& values = optionspage::objectOf<ViewOptionsPage>(page);
  checkRadioChoice(page, kTabLabels, values.tabLabelStyle);
  optionspage::setCheckState(page, IDC_REBARS_AT_TOP, values.rebarsAtTop);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  auto& values = optionspage::objectOf<ViewOptionsPage>(page);
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
  return optionspage::answer(kMessages, page, message, wParam, lParam);
}
