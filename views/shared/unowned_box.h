#pragma once

#include <windows.h>

/// As MessageBoxW, over the middle of its owner and with the text as showableText makes it: names and reasons
/// come out of files.
int showBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags);

/// Shows a message box without an owner and returns the answer. As long as it is open nothing else of the
/// program can be used, and nothing covers it: without an owner it may be put behind the windows that it
/// disables, where nobody could answer it. It stands over `next`, which then comes to the front again.
int showUnownedBox(HWND next, const wchar_t* text, const wchar_t* caption, UINT flags);
