#pragma once

#include <windows.h>

/// Ctrl+Tab shows the next page, with Shift the one before, round the ends. True when the message was
/// that key in the main window and is used up.
bool turnPageByKey(const MSG& message);

/// What a key does in the list of a page: what a button or the desktop menu does. 0 for nothing.
int commandOfListKey(int page, WORD key);
