#pragma once

#include <windows.h>

/// The keyboard on the screen: a window without activation over the lower part of a shell window. It is
/// owned by the window in which is typed, a dialog perhaps, so that it is above it and not disabled with
/// the shell window. What is tapped goes to the window of this thread that has the keyboard.
namespace pocketshell::InputPanel {

/// Whether the user's setting and his machine let programs show it.
bool isWanted();
bool isUp();

/// Raises it for `window`, or puts it down; then tells the top-level windows. True when it now is as asked
/// for, false without a shell window to stand on.
bool raise(HWND window);
void lower();

/// Where it is or would be on the handheld's screen.
RECT placeOnScreen();

/// Lets it stand above another top-level window, if it is up. Windows for which this or raise was called
/// are those that restore takes.
void standOn(HWND topLevel);
/// After its shell window was moved, shown or hidden.
void follow();
void applyZoom();
/// When the window that it stood on was destroyed and it with that: asks for restore.
void ownerGone();
void restore();
/// The message that asks a shell window to call restore.
UINT restoreMessage();
/// Before a shell window is destroyed.
void leave(HWND shellWindow);

}  // namespace pocketshell::InputPanel
