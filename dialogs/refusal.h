#pragma once

#include <windows.h>

/// Refuses what the user asked for by a message box without an icon over the dialog, which stays
/// open.
inline void refuse(HWND dialog, const wchar_t* reason, const wchar_t* caption = L"Quivane") {
  MessageBoxW(dialog, reason, caption, MB_SETFOREGROUND);
}
