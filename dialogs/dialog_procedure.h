#pragma once

#include <windows.h>

/// What a dialog procedure answers to a message that it has no row for.
inline LRESULT leaveToSystem(HWND, UINT, WPARAM, LPARAM) noexcept {
  return FALSE;
}
