#pragma once

#include <windows.h>

#include "owners/handles.h"

/// The box of one line that says which record is shown: a read-only edit control, empty at first, of the
/// handheld's style and `size` (in its pixels), with its text in the middle of its height. Its parent answers
/// for its colours (WM_CTLCOLORSTATIC). Null when it can't be made.
UniqueWindow makePositionBox(HINSTANCE instance, HWND parent, int identifier, SIZE size);
