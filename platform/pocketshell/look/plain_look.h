#pragma once

#include <windows.h>

/// A theme of the system brings pictures of its own for what is behind a text, and the text has the system's
/// colour all the same: white letters on the theme's white titles when the user has chosen white on black.
/// With such colours controls are drawn without the theme, in the system's colours alone.
namespace pocketshell {

/// Whether the user has high contrast on, or texts that are lighter than what is behind them.
bool needsPlainLook();

/// For a control that has just been made, or a dialog with all that is in it.
void followSystemLook(HWND window);

/// For all windows of this thread, after the system's colours or its theme have changed. Controls are told so
/// that they take the new colours.
void systemLookChanged();

}  // namespace pocketshell
