#include "dialogs/show_options.h"

#include "dialogs/options_sheet.h"
#include "platform/pocketshell/aygshell.h"
#include "views/input_panel_hold.h"

namespace {

void fillPages(Options& options) {
  options.generalPage().updateRights = options.GenUpdateRights();
  options.generalPage().openLastTable = options.OpenLastTableOnStartup();
  options.securityPage().usePassword = options.UsePassword();
  options.securityPage().warningOnDeletion = options.WarningOnDeletion();
  options.viewPage().rebarsAtTop = options.RebarsAtTop();
  options.viewPage().tabLabelStyle = options.TabLabelStyle();
}

void takePages(Options& options) {
  options.setGenUpdateRights(options.generalPage().updateRights);
  options.setOpenLastTableOnStartup(options.generalPage().openLastTable);
  options.setUsePassword(options.securityPage().usePassword);
  options.setWarningOnDeletion(options.securityPage().warningOnDeletion);
  options.setRebarsAtTop(options.viewPage().rebarsAtTop);
  options.setTabLabelStyle(options.viewPage().tabLabelStyle);
}

}  // namespace

void showOptions(HWND owner, Options& options, const std::function<void()>& applyToScreen) {
  fillPages(options);
  const bool panelWasUp = isInputPanelUp();
  SHSipPreference(owner, SIP_FORCEDOWN);
  runOptionsSheet(owner);
  if (panelWasUp) SHSipPreference(owner, SIP_UP);
  takePages(options);
  options.Save();
  applyToScreen();
}
