#include "dialogs/options/options_sheet.h"

#include <commctrl.h>
#include <prsht.h>

#include <array>

#include "dialogs/options/options_ids.h"
#include "dialogs/options/options_page_procedures.h"
#include "dialogs/options/options_page_window.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/current_dialog.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/edit_guard.h"

namespace {

/// In handheld pixels: the tabs hang below the page, and the OK is where that of other full-screen dialogs
/// is.
constexpr int kTabHeight = 20;
constexpr int kLeastTabWidth = 54;
constexpr RECT kOkPlace = {187, 271, 237, 291};

constexpr UINT_PTR kSubclassId = 1;

HWND tabsOf(HWND sheet) {
  return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
}

void setFont(HWND control) {
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(HandheldGetFont()), FALSE);
}

void setTabSize(HWND sheet) {
  const HWND tabs = tabsOf(sheet);
  SendMessageW(tabs, TCM_SETITEMSIZE, 0, MAKELPARAM(0, HandheldToMonitor(kTabHeight)));
  SendMessageW(tabs, TCM_SETMINTABWIDTH, 0, HandheldToMonitor(kLeastTabWidth));
  // Some systems' reckon the widths of the tabs that are there when they get a font alone.
  setFont(tabs);
}

void layOutTabs(HWND sheet) {
  const HWND tabs = tabsOf(sheet);
  const LONG_PTR style = GetWindowLongPtrW(tabs, GWL_STYLE);
  SetWindowLongPtrW(tabs, GWL_STYLE, (style & ~LONG_PTR{TCS_MULTILINE}) | TCS_BOTTOM);
  setTabSize(sheet);
}

/// Of the tabs, the page below them and the OK, for the screen as it is now.
void placeParts(HWND sheet) {
  const SIZE page = optionspage::pageSize();
  const SIZE excess = screenExcess();
  HandheldMoveWindow(tabsOf(sheet), 0, 0, static_cast<int>(page.cx),
                     static_cast<int>(page.cy) + kTabHeight + 2, TRUE);
  HandheldMoveWindow(GetDlgItem(sheet, IDOK), static_cast<int>(kOkPlace.left + excess.cx),
                     static_cast<int>(kOkPlace.top + excess.cy),
                     static_cast<int>(kOkPlace.right - kOkPlace.left),
                     static_cast<int>(kOkPlace.bottom - kOkPlace.top), TRUE);
  for (HWND child = GetWindow(sheet, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (SendMessageW(sheet, PSM_HWNDTOINDEX, reinterpret_cast<WPARAM>(child), 0) < 0) continue;
    HandheldMoveWindow(child, 0, 0, static_cast<int>(page.cx), static_cast<int>(page.cy), TRUE);
  }
}

void layOutOk(HWND sheet) {
  const HWND ok = GetDlgItem(sheet, IDOK);
  SetWindowTextW(ok, L"OK");
  setFont(ok);
  ShowWindow(GetDlgItem(sheet, IDCANCEL), SW_HIDE);
}

LRESULT CALLBACK sheetProcedure(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR) noexcept {
  // The shell lays out what has a place; the size of a tab is the tab control's own.
  if (message == HandheldZoomMessage()) setTabSize(sheet);
  if (message == WM_SIZE) placeParts(sheet);
  if (message == WM_NCDESTROY) {
    currentDialog = nullptr;
    RemoveWindowSubclass(sheet, sheetProcedure, kSubclassId);
  }
  return DefSubclassProc(sheet, message, wParam, lParam);
}

void layOutSheet(HWND sheet) {
  currentDialog = sheet;
  SetWindowSubclass(sheet, sheetProcedure, kSubclassId, 0);
  fillScreen(sheet, SHIDIF_SIPDOWN);
  layOutTabs(sheet);
  layOutOk(sheet);
  placeParts(sheet);
}

int CALLBACK sheetCallback(HWND sheet, UINT message, LPARAM) noexcept {
  if (message == PSCB_INITIALIZED) layOutSheet(sheet);
  return 0;
}

/// A page that works on `object`.
template <typename Page>
PROPSHEETPAGEW descriptionOf(WORD templateId, DLGPROC procedure, Page& object) {
  PROPSHEETPAGEW description{};
  description.dwSize = sizeof(description);
  description.hInstance = GetModuleHandleW(nullptr);
  description.pszTemplate = MAKEINTRESOURCEW(templateId);
  description.pfnDlgProc = procedure;
  description.lParam = reinterpret_cast<LPARAM>(&object);
  return description;
}

}  // namespace

bool runOptionsSheet(HWND owner, Options& options) {
  guardEditControls();
  const std::array pages = {
      descriptionOf(IDD_OPTIONS_GENERAL, generalOptionsProcedure, options.generalPage()),
      descriptionOf(IDD_OPTIONS_SECURITY, securityOptionsProcedure, options.securityPage()),
      descriptionOf(IDD_OPTIONS_VIEW, viewOptionsProcedure, options.viewPage()),
      descriptionOf(IDD_OPTIONS_COLOR, colorOptionsProcedure, options.colorPage()),
  };
  PROPSHEETHEADERW sheet{};
  sheet.dwSize = sizeof(sheet);
  // The handheld's flag for a maximised sheet is the desktop's for an assistant: the layout does it.
  sheet.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP | PSH_USECALLBACK;
  sheet.hwndParent = owner;
  sheet.hInstance = GetModuleHandleW(nullptr);
  sheet.pszCaption = L"Options";
  sheet.nPages = static_cast<UINT>(pages.size());
  sheet.ppsp = pages.data();
  sheet.pfnCallback = sheetCallback;
  return PropertySheetW(&sheet) >= 0;
}
