#pragma once

#include <windows.h>

/// Runs the command with the number `id`: of a menu item, a toolbar button or an accelerator. Returns
/// what its handler returns, 0 for a command without one.
LRESULT runCommand(HWND window, WORD id, LPARAM lParam, WORD notification);
