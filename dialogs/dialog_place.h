#pragma once

#include <windows.h>

/// Centres a dialog in the client area of its owner, its corner never beyond that area's.
void centreDialog(HWND dialog);

/// Makes a dialog full screen, with the OK of the title bar. `panel` is SHIDIF_SIPDOWN to put the input
/// panel down as well.
void fillScreen(HWND dialog, DWORD panel = 0);
