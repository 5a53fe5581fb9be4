#pragma once

#include <windows.h>

#include <optional>

namespace pocketshell {

/// Adds the choice of the zoom to a window's system menu, which owns it from then on. Null when it fails.
HMENU addZoomMenu(HWND window);

/// Marks the entry of the user's setting, 0 for the monitor's own zoom.
void markZoom(HMENU menu, int setting);

/// What Ctrl with + or - (the next step from the zoom `zoom`) or 0 (the monitor's own) stands for; nothing
/// for other keys and behind the last step.
std::optional<UINT> zoomCommandOfKey(WPARAM key, int zoom);

/// The setting that a system command stands for; nothing for other commands.
std::optional<int> zoomOfCommand(UINT command);

}  // namespace pocketshell
