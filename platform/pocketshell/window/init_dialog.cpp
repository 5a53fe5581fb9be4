#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/look/plain_look.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/window/covering_dialogs.h"
#include "platform/pocketshell/window/window_places.h"

using namespace pocketshell;

namespace {

/// A dialog's caption has no icon: the frame of dialogs keeps the system from drawing one of its own.
void giveCaption(HWND dialog) {
  const LONG_PTR style = GetWindowLongPtrW(dialog, GWL_STYLE);
  const LONG_PTR extended = GetWindowLongPtrW(dialog, GWL_EXSTYLE);
  constexpr LONG_PTR kCaption = WS_CAPTION | WS_SYSMENU;
  if ((style & kCaption) == kCaption && (extended & WS_EX_DLGMODALFRAME) != 0) return;
  SetWindowLongPtrW(dialog, GWL_STYLE, style | kCaption);
  SetWindowLongPtrW(dialog, GWL_EXSTYLE, extended | WS_EX_DLGMODALFRAME);
  SetWindowPos(dialog, nullptr, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

}  // namespace

BOOL SHInitDialog(SHINITDLGINFO* info) {
  if (!info || (info->dwMask & SHIDIM_FLAGS) == 0 || !IsWindow(info->hDlg)) return FALSE;
  if ((info->dwFlags & SHIDIF_SIPDOWN) != 0) InputPanel::lower();
  followSystemLook(info->hDlg);
  // The page of a property sheet lies in the sheet, which has size and buttons of its own.
  if (isChild(info->hDlg)) return TRUE;
  giveCaption(info->hDlg);
  if ((info->dwFlags & SHIDIF_SIZEDLGFULLSCREEN) != 0) {
    coverFrame(info->hDlg, Cover::all);
  } else if ((info->dwFlags & SHIDIF_SIZEDLG) != 0) {
    coverFrame(info->hDlg, Cover::free);
  }
  if ((info->dwFlags & SHIDIF_DONEBUTTON) != 0) addOk(info->hDlg);
  InputPanel::standOn(info->hDlg);
  return TRUE;
}
