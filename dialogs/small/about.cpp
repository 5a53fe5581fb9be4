#include "dialogs/small/about.h"

#include <utility>

#include "dialogs/small/about_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "resources/resource_ids.h"
#include "views/dialog/dialog_place.h"

namespace {

constexpr wchar_t kVersion[] = L"1.1";

}  // namespace

int AboutDialog::run(HWND owner) {
  return runTemplate(IDD_ABOUT, owner);
}

void AboutDialog::opened() {
  panel_.lower(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  showIcon();
  SetDlgItemTextW(window(), IDC_ABOUT_VERSION, kVersion);
  SetFocus(control(IDOK));
}

bool AboutDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<AboutDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &AboutDialog::confirm},
      {IDCANCEL, BN_CLICKED, &AboutDialog::cancel},
  };
  return answerCommand<AboutDialog>(*this, kCommands, id, notification);
}

void AboutDialog::leave(int result) {
  panel_.release(window());
  close(result);
}

void AboutDialog::showIcon() {
  constexpr int kIconSize = 32;
  UniqueIcon icon(HandheldLoadIcon(GetModuleHandleW(nullptr), IDI_QUIVANE, kIconSize));
  SendMessageW(control(IDC_ABOUT_ICON), STM_SETICON, reinterpret_cast<WPARAM>(icon.get()), 0);
  // The one before belongs to the control no longer.
  icon_ = std::move(icon);
}
