#pragma once

#include <windows.h>

/// What the windows of the options sheet's pages have in common: rows of their message tables, and calls
/// from their own rows.
namespace optionspage {

/// Where each page lies in the sheet, in handheld pixels: above the tabs, as wide as the screen.
inline constexpr int kWidth = 240;
inline constexpr int kHeight = 246;

/// To be called first in WM_INITDIALOG: lays the page and its controls out.
void open(HWND page);

/// For WM_WINDOWPOSCHANGING: the system puts a page where a sheet of its own size would have it; it stays
/// in its place.
LRESULT keepPlace(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

/// For WM_NOTIFY: nothing keeps the sheet from closing.
LRESULT answerSheet(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

/// Whether a WM_COMMAND with this wParam is a click on the button `id`.
bool isClick(WPARAM wParam, int id);

/// 1 when the check box `id` is checked, else 0.
DWORD checkState(HWND page, int id);

/// Shows a value as a check box does: checked unless it is 0.
void setCheckState(HWND page, int id, DWORD value);

}  // namespace optionspage
