#pragma once

#include <windows.h>

#include <optional>

namespace pocketshell {

/// Adds the choice of the zoom to a menu, as a submenu. False when it fails.
bool appendZoomMenu(HMENU menu);

/// What Ctrl with + or - (the next step from the zoom `zoom`) or 0 (the monitor's own) stands for; nothing
/// for other keys and behind the last step.
std::optional<UINT> zoomCommandOfKey(WPARAM key, int zoom);

/// The setting that a command of that menu stands for, 0 for the monitor's own zoom; nothing for other
/// commands.
std::optional<int> zoomOfCommand(UINT command);

}  // namespace pocketshell
