#pragma once

#include <windows.h>

/// The answer of a dialog to WM_CTLCOLORDLG and WM_CTLCOLORSTATIC: labels are blue on white, and the
/// dialog is white below all else; in the system's colours where the shell wants these, for what is greyed is
/// in the system's always. `window` is the control, or the dialog itself. The brush is the system's own.
HBRUSH dialogBrush(HDC dc, HWND window);

/// The same as a row for message tables (views/shared/message_table.h), for both messages.
LRESULT colorDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
