#pragma once

namespace pocketshell {

/// Lays out all windows of this thread anew at a zoom: those made or moved in handheld pixels by the
/// figures they were last given, with the new font. Then each shell window is sent HandheldZoomMessage.
void changeZoom(int percent);

}  // namespace pocketshell
