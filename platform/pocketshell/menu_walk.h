#pragma once

#include <windows.h>

namespace pocketshell {

class MenuBar;

/// Opens the popup of a drop-down button and, as the user walks on, those of its neighbours, until an
/// item is chosen or he leaves. With `byKeyboard` the first item is selected. The bar may be gone
/// afterwards.
void walkMenus(MenuBar& bar, int index, bool byKeyboard);

/// What WM_MENUSELECT tells the owner of the popups while they are walked.
void noteMenuSelection(HMENU menu, UINT flags);

}  // namespace pocketshell
