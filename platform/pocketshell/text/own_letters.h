#pragma once

#include <windows.h>

namespace pocketshell {

/// Lets a control that has just been made show letters that its font lacks: list views with their titles,
/// static texts, check boxes. Edit controls do it by themselves; others are left as they are.
void drawOwnLetters(HWND control);

}  // namespace pocketshell
