#pragma once

#include <windows.h>

/// Rows for the message tables of dialogs (views/message_table.h): the texts of dialogs are blue on white,
/// and so white lies around them too.

/// For WM_CTLCOLORSTATIC.
LRESULT colorDialogText(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
/// For WM_CTLCOLORDLG.
LRESULT colorDialogBackground(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
