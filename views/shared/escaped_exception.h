#pragma once

#include <windows.h>

/// To be called where an exception has reached the procedure of `window` and can't go on to the system: tells
/// the user what kept his command from being done. What fails while he reads that is not told again, as the
/// box takes the focus and has the windows below it painted. Only in a catch block.
void tellEscapedException(HWND window) noexcept;
