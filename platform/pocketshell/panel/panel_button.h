#pragma once

#include <windows.h>

/// The button at the right end of a menu bar that raises the input panel and puts it down.
namespace pocketshell::PanelButton {

/// Makes one, if the user wants the panel at all. Null otherwise, and when it can't be made.
HWND create(HWND menuBar);
/// Puts the bar's button, if it has one, in its place. Where what is left of the bar ends.
int layOut(HWND menuBar);
/// Shows whether the panel is up.
void refresh(HWND menuBar);

}  // namespace pocketshell::PanelButton
