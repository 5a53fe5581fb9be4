#pragma once

#include <windows.h>

/// Centres a dialog in the client area of its owner and raises it a little above the middle, its corner
/// never beyond that area's.
void placePopup(HWND dialog);
