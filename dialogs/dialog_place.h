#pragma once

#include <windows.h>

/// Centres a dialog in the client area of its owner, its corner never beyond that area's.
void centreInOwner(HWND dialog);
