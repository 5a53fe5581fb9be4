#pragma once

#include <windows.h>

/// Lets the Tab key move the focus from this control to the next one of its parent that has WS_TABSTOP
/// and is shown, with Shift to the one before. The control itself sees the key first. Once for a window,
/// and after every other subclassing of it.
void moveFocusByTabKey(HWND control);
