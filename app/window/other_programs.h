#pragma once

#include <windows.h>

/// When it is looked for what other programs have changed in the open file: each second as long as the window
/// can be seen and its user leaves it alone, and when he comes back to it.

/// From now on, by a timer of the main window.
void beginLookingForChanges(HWND window);

/// A message that the main window's thread has taken: the user may be at work.
void noteMessage(const MSG& message);

/// Looks now, unless that would come in between something that the user does.
void lookForChanges(HWND window);

/// WM_TIMER to the main window.
LRESULT timeToLook(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
