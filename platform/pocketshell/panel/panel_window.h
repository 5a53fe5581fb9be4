#pragma once

#include <windows.h>

/// The window of the input panel: it draws the keys and types them. There is at most one.
namespace pocketshell::PanelWindow {

/// Puts it at a place of the monitor above its owner, in which is typed; made when it is not there or was
/// made for another owner.
void show(HWND owner, const RECT& place, bool visible);
/// Brings it up again. It is above its owner anyway, but another system may manage the windows of the
/// screen, which only a change makes put it there.
void lift();
/// Destroys it.
void hide();
void redraw();

}  // namespace pocketshell::PanelWindow
