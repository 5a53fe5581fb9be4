#include "dialogs/about.h"

#include <utility>

#include "dialogs/about_ids.h"
#include "dialogs/dialog_place.h"
#include "dialogs/panel_use.h"
#include "platform/pocketshell/handheld_windows.h"
#include "resources/resource_ids.h"

namespace {

constexpr wchar_t kVersion[] = L"1.1";

}  // namespace

INT_PTR AboutDialog::run(HWND owner) {
  return runTemplate(IDD_ABOUT, owner);
}

void AboutDialog::opened() {
  panelWasUp_ = isInputPanelUp();
  fillScreen(window(), SHIDIF_SIPDOWN);
  showIcon();
  SetDlgItemTextW(window(), IDC_ABOUT_VERSION, kVersion);
  SetFocus(control(IDOK));
}

std::span<const AboutDialog::CommandRow> AboutDialog::commandRows() {
  static constexpr CommandRow kRows[] = {
      {IDOK, BN_CLICKED, &AboutDialog::confirm},
      {IDCANCEL, BN_CLICKED, &AboutDialog::cancel},
  };
  return kRows;
}

std::span<const AboutDialog::MessageRow> AboutDialog::messageRows() {
  static const MessageRow kRows[] = {{HandheldZoomMessage(), &AboutDialog::showIcon}};
  return kRows;
}

void AboutDialog::leave(INT_PTR result) {
  if (panelWasUp_) SHSipPreference(window(), SIP_UP);
  close(result);
}

void AboutDialog::showIcon() {
  constexpr int kIconSize = 32;
  UniqueIcon icon(HandheldLoadIcon(GetModuleHandleW(nullptr), IDI_QUIVANE, kIconSize));
  SendMessageW(control(IDC_ABOUT_ICON), STM_SETICON, reinterpret_cast<WPARAM>(icon.get()), 0);
  // The one before belongs to the control no longer.
  icon_ = std::move(icon);
}
