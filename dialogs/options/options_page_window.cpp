#include "dialogs/options/options_page_window.h"

#include <prsht.h>

#include "dialogs/controls/dialog_layout.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_colors.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/dialog_place.h"

namespace {

/// The system puts a page where a sheet of its own size would have it.
LRESULT keepPlace(HWND, UINT, WPARAM, LPARAM lParam) {
  auto& place = *reinterpret_cast<WINDOWPOS*>(lParam);
  place.x = 0;
  place.y = 0;
  const SIZE size = optionspage::pageSize();
  place.cx = HandheldToMonitor(static_cast<int>(size.cx));
  place.cy = HandheldToMonitor(static_cast<int>(size.cy));
  return TRUE;
}

/// With a theme some systems draw the ground of its tabs over that of a page.
LRESULT eraseGround(HWND page, UINT, WPARAM wParam, LPARAM) {
  const auto dc = reinterpret_cast<HDC>(wParam);
  RECT client{};
  GetClientRect(page, &client);
  FillRect(dc, &client, dialogBrush(dc, page));
  return TRUE;
}

LRESULT leaveToSystem(HWND, UINT, WPARAM, LPARAM) noexcept {
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_NOTIFY, optionspage::answerSheet}, {WM_WINDOWPOSCHANGING, keepPlace},
    {WM_CTLCOLORSTATIC, colorDialog},      {WM_CTLCOLORDLG, colorDialog},
    {WM_ERASEBKGND, eraseGround},
};

LRESULT answerAsAnyPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, page, message, wParam, lParam, leaveToSystem);
}

}  // namespace

SIZE optionspage::pageSize() {
  constexpr SIZE kAtHandheldSize = {240, 246};
  const SIZE excess = screenExcess();
  return {kAtHandheldSize.cx + excess.cx, kAtHandheldSize.cy + excess.cy};
}

void optionspage::open(HWND page, LPARAM lParam) {
  SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam);
  fillScreen(page, SHIDIF_SIPDOWN);
  layOutControls(page);
  const SIZE size = pageSize();
  HandheldMoveWindow(page, 0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy), FALSE);
}

INT_PTR optionspage::answer(std::span<const MessageRow> table, HWND page, UINT message, WPARAM wParam,
                            LPARAM lParam) noexcept {
  // What comes before the page has its object is nothing of its own.
  const bool isOpen = message == WM_INITDIALOG || GetWindowLongPtrW(page, DWLP_USER) != 0;
  return answerFromTable(isOpen ? table : std::span<const MessageRow>(), page, message, wParam, lParam,
                         answerAsAnyPage);
}

LRESULT optionspage::answerSheet(HWND page, UINT, WPARAM, LPARAM lParam) {
  if (reinterpret_cast<const NMHDR*>(lParam)->code != PSN_APPLY) return FALSE;
  SetWindowLongPtrW(page, DWLP_MSGRESULT, PSNRET_NOERROR);
  return TRUE;
}

bool optionspage::isClick(WPARAM wParam, int id) {
  return LOWORD(wParam) == id && HIWORD(wParam) == BN_CLICKED;
}

DWORD optionspage::checkState(HWND page, int id) {
  return IsDlgButtonChecked(page, id) == BST_CHECKED ? 1 : 0;
}

void optionspage::setCheckState(HWND page, int id, DWORD value) {
  CheckDlgButton(page, id, value != 0 ? BST_CHECKED : BST_UNCHECKED);
}
