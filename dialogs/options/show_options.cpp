#include "dialogs/options/show_options.h"

#include "dialogs/options/options_sheet.h"
#include "platform/pocketshell/aygshell.h"
#include "views/dialog/input_panel_hold.h"

namespace {

void fillPages(Options& options) {
  options.generalPage().updateRights = options.genUpdateRights();
  options.generalPage().openLastTable = options.openLastTableOnStartup();
  options.securityPage().usePassword = options.usePassword();
  options.securityPage().warningOnDeletion = options.warningOnDeletion();
  options.viewPage().rebarsAtTop = options.rebarsAtTop();
  options.viewPage().tabLabelStyle = options.tabLabelStyle();
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
  runOptionsSheet(owner, options);
  if (panelWasUp) SHSipPreference(owner, SIP_UP);
  takePages(options);
  options.save();
  applyToScreen();
}
