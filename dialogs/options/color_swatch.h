#pragma once

#include <windows.h>

/// The sample of a colour on a dialog: a rectangle with a black frame of one handheld pixel.

/// Where it is in the dialog's client area, in the monitor's pixels; it lies below a list that grows with the
/// screen.
RECT swatchPlace();

void drawSwatch(HDC dc, COLORREF color);
