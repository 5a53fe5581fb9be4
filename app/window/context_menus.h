#pragma once

#include <windows.h>

/// The menus of a tap that is held. `where` is in the monitor's screen coordinates. Each returns when
/// the menu is closed again; the chosen item arrives in `owner` as an ordinary command.

/// On a list of names: that of the page. Nothing happens on a page without one.
void showNamesContextMenu(HINSTANCE instance, HWND owner, int page, POINT where);

/// On the record grid.
void showGridContextMenu(HINSTANCE instance, HWND owner, POINT where);
