#pragma once

#include <windows.h>

/// The dialog that is open over the main window, null while there is none. A dialog's procedure sets it
/// when the dialog opens and clears it at the end.
extern HWND currentDialog;
