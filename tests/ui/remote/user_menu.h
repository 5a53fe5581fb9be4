#pragma once

#include <windows.h>

#include <vector>

/// One step of the way to a command in the program's menus: a button of the menu bar, or an item of the
/// popup that the step before opens.
struct MenuStep {
  wchar_t letter = L'\0';  ///< the access key
  int index = 0;           ///< in its menu, separators counted
  int separatorsAbove = 0;
  int itemCount = 0;       ///< of the whole popup, without its separators
  int separatorCount = 0;  ///< of the whole popup
};

/// The way to a command, the button first, as the menus in the program's file say. Empty when the menu
/// bar does not have the command.
std::vector<MenuStep> menuWay(WORD menuBar, UINT command);

/// The same for a command of the desktop menu, from the menu's own items on.
std::vector<MenuStep> desktopWay(UINT command);

/// The middle of an item on the screen; `popup` is the window of the open popup.
POINT itemMiddle(HWND popup, const MenuStep& item);
