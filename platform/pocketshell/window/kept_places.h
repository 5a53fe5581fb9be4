#pragma once

#include <optional>

#include "platform/pocketshell/window/frame_place.h"

/// Where the user has left the frame, kept in the shell's settings for each arrangement of monitors that he
/// has used, and for the four latest of them only.
namespace pocketshell {

/// A number for the monitors that there are now, never 0: where they lie and how large they are.
DWORD presentArrangement();

/// Nothing for an arrangement that no place is known of.
std::optional<FramePlace> readKeptPlace(DWORD arrangement);

/// Nothing is written when it is what is kept already.
void writeKeptPlace(DWORD arrangement, const FramePlace& place);

}  // namespace pocketshell
