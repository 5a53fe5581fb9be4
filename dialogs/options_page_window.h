#pragma once

#include <windows.h>

/// What the windows of the options sheet's pages have in common.
namespace optionspage {

/// Where each page lies in the sheet, in handheld pixels: above the tabs, as wide as the screen.
inline constexpr int kWidth = 240;
inline constexpr int kHeight = 246;

/// To be called first in WM_INITDIALOG: lays the page and its controls out.
void open(HWND page);

/// For the messages that a page's own table has no row for: the page keeps its place and its colours.
LRESULT answerAsAnyPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// For WM_NOTIFY, of which answerAsAnyPage is one caller: nothing keeps the sheet from closing.
LRESULT answerSheet(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

/// Whether a WM_COMMAND with this wParam is a click on the button `id`.
bool isClick(WPARAM wParam, int id);

/// 1 when the check box `id` is checked, else 0.
DWORD checkState(HWND page, int id);

/// Shows a value as a check box does: checked unless it is 0.
void setCheckState(HWND page, int id, DWORD value);

}  // namespace optionspage
