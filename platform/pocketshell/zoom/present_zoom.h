#pragma once

#include <windows.h>

#include "owners/handles.h"

/// The zoom at present and the font that belongs to it. The first question settles them, by the user's
/// setting or else by the main monitor.
namespace pocketshell {

int presentZoom();
HFONT presentFont();

/// From now on. Gives back the font until now, which windows may still use.
[[nodiscard]] UniqueFont changePresentZoom(int percent);

/// The zoom for a monitor when the user has chosen none.
int zoomOfMonitor(HMONITOR monitor);

/// Height of the interface font at a zoom, in the monitor's pixels.
int fontHeight(int zoom);

extern const wchar_t* const kFontFace;

}  // namespace pocketshell
