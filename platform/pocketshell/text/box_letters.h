#pragma once

#include <windows.h>

namespace pocketshell {

/// Lets the texts of a message box that has just been made show letters that its font lacks. Where they need
/// more lines than the system has left for them, the box grows by as much.
void showLettersOfBox(HWND box);

}  // namespace pocketshell
