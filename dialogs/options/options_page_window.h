#pragma once

#include <windows.h>

#include <span>

#include "views/shared/message_table.h"

/// What the windows of the options sheet's pages have in common.
namespace optionspage {

/// How large each page is in the sheet, in handheld pixels: above the tabs, as wide as the screen. 240 x 246
/// at the handheld's size.
SIZE pageSize();

/// To be called first in WM_INITDIALOG, with its lParam: finds the object of the page and lays the page and
/// its controls out.
void open(HWND page, LPARAM lParam);

/// What a page works on (base/settings/options_pages.h), as its description in the sheet names it; from open
/// on.
template <typename Page>
Page& objectOf(HWND page) {
  return *reinterpret_cast<Page*>(GetWindowLongPtrW(page, DWLP_USER));
}

/// The dialog procedure of a page: by the page's own table, and what that has no row for as any page does,
/// which keeps its place and its colours.
INT_PTR answer(std::span<const MessageRow> table, HWND page, UINT message, WPARAM wParam,
               LPARAM lParam) noexcept;

/// For WM_NOTIFY, unless the page's own table has a row for it: nothing keeps the sheet from closing.
LRESULT answerSheet(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

/// Whether a WM_COMMAND with this wParam is a click on the button `id`.
bool isClick(WPARAM wParam, int id);

/// 1 when the check box `id` is checked, else 0.
DWORD checkState(HWND page, int id);

/// Shows a value as a check box does: checked unless it is 0.
void setCheckState(HWND page, int id, DWORD value);

}  // namespace optionspage
