#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

#include "owners/handles.h"
#include "views/bytes/picture_head.h"

/// Decodes the picture that `bytes` begin to be, by the system's own decoder of its format, and shrinks it to
/// fit into `room`; a smaller one keeps its size. Where it lets something through there is white. Holds
/// nothing for a picture that is damaged or may not be decoded (mayBeDecoded), and where the system has no
/// decoder. COM is initialised. The memory it takes for a moment is four bytes for each point.
UniqueBitmap decodePicture(std::span<const std::uint8_t> bytes, const PictureHead& head, SIZE room);

/// A bitmap of this size that is white around `picture`, which has three bytes for each point, fits into it,
/// and stands in its middle. Holds nothing when there is no memory.
UniqueBitmap centredOnWhite(const UniqueBitmap& picture, SIZE size);
