#pragma once

#include <windows.h>

namespace pocketshell {

/// In whatever case of letters. False for no window.
bool isOfClass(HWND window, const wchar_t* wanted);

}  // namespace pocketshell
