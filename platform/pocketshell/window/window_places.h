#pragma once

#include <windows.h>

#include <optional>

#include "platform/pocketshell/zoom/zoom_figures.h"

/// What child windows were told last of their place, in handheld pixels. Belongs to the windows' thread.
namespace pocketshell {

void rememberPlace(HWND child, const Place& place);
/// Nothing for a window that was not made or moved in handheld pixels.
std::optional<Place> placeOf(HWND child);

/// The remembered place, or else the present one taken back from the monitor's pixels.
Place presentPlace(HWND child);

/// Puts a window where its place says, at the present zoom. `flags` are SetWindowPos's.
bool applyPlace(HWND child, HWND after, const Place& place, UINT flags);

bool isChild(HWND window);

}  // namespace pocketshell
