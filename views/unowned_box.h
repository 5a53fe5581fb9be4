#pragma once

#include <windows.h>

/// Shows a message box without an owner and returns the answer. As long as it is open nothing else of the
/// program can be used, and nothing covers it: without an owner it may be put behind the windows that it
/// disables, where nobody could answer it. Then `next` comes to the front again.
int showUnownedBox(HWND next, const wchar_t* text, const wchar_t* caption, UINT flags);
