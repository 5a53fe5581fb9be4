#pragma once

#include <windows.h>

/// The button "\u2261" at the right end of a menu bar, which opens the desktop menu. What it opens is the
/// menu bar's business.
namespace pocketshell::MenuButton {

/// Null when it can't be made. It is called "Menu" for those who can't see it.
HWND create(HWND menuBar);
/// Null when the bar has none.
HWND of(HWND menuBar);
/// Puts the bar's button, if it has one, to the left of `right`.
void layOut(HWND menuBar, int right);
/// Shows it as the one whose menu is open, or that a key would open.
void mark(HWND menuBar, bool marked);

}  // namespace pocketshell::MenuButton
