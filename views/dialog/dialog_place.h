#pragma once

#include <windows.h>

/// Where a dialog lies over its owner, the main window.

/// By how much the small dialogs stand above the middle, in handheld pixels.
inline constexpr int kPopupRaise = 20;

/// Centres a dialog in the client area of its owner and raises it by so many handheld pixels, its corner
/// never beyond that area's.
void centreDialog(HWND dialog, int raise = 0);

/// Makes a dialog wider and higher by as much as the screen is larger than the handheld's.
void growWithScreen(HWND dialog);

/// Makes a dialog full screen, with the OK of the title bar. `panel` is SHIDIF_SIPDOWN to put the input
/// panel down as well.
void fillScreen(HWND dialog, DWORD panel = 0);
