#pragma once

#include <windows.h>

namespace pocketshell {

class MenuBar;

/// Opens the popup of a drop-down button and, as the user walks on, those of its neighbours, until an
/// item is chosen or he leaves. With `byKeyboard` the first item is selected. The bar may be gone
/// afterwards.
void walkMenus(MenuBar& bar, int index, bool byKeyboard);

/// Asks for that by a message to the bar's parent, with the drop-down button's index as its WPARAM. A toolbar
/// that tells of a button goes on with itself afterwards, and what is done while a popup is open may destroy
/// it.
void postWalk(const MenuBar& bar, int index);
UINT walkMessage();

/// Whether a popup of a menu bar is open.
bool isWalkingMenus();

/// What WM_INITMENUPOPUP, WM_UNINITMENUPOPUP and WM_MENUSELECT tell the owner of the popups.
void notePopupOpened();
void notePopupClosed();
void noteMenuSelection(UINT flags);

}  // namespace pocketshell
