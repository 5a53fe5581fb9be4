#pragma once

#include <windows.h>

#include <optional>

/// Where a frame stands that the user can size, as pure functions. Rectangles of frames and monitors are in
/// the monitor's pixels, their insides (work areas) in handheld pixels.
namespace pocketshell {

/// Where the user has left a frame.
struct FramePlace {
  POINT corner{};
  SIZE inside{};  ///< when it is not maximised
  bool maximised = false;

  bool operator==(const FramePlace& other) const {
    return corner.x == other.corner.x && corner.y == other.corner.y && inside.cx == other.inside.cx &&
           inside.cy == other.inside.cy && maximised == other.maximised;
  }
};

/// What a frame has inside at the very first start: room for sixteen fields of a form and five columns of
/// records, or as much as fits with a border of `border` into a monitor with `free` pixels; never less than
/// the handheld had.
SIZE comfortableInside(SIZE free, SIZE border, int zoom);

/// A frame of `size` pixels at `corner`, moved and made smaller until it lies within `free`, but never
/// smaller than `least`; one that is larger than that begins at its upper left corner.
RECT keptWithin(POINT corner, SIZE size, const RECT& free, SIZE least);

/// A place in two numbers, as settings hold it; what a setting may hold besides counts as no place.
struct PackedPlace {
  DWORD corner = 0;
  DWORD inside = 0;
};
PackedPlace packFramePlace(const FramePlace& place);
/// Nothing for an inside that is smaller than the handheld's.
std::optional<FramePlace> unpackFramePlace(PackedPlace packed);

}  // namespace pocketshell
