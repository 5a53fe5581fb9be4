#include "platform/pocketshell/window/frame_place.h"

#include <algorithm>

#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr SIZE kComfortableInside = {400, 480};

constexpr DWORD kMaximisedBit = 0x80000000;
constexpr DWORD kLengthMask = 0x7FFF;

/// The largest figure that is not more than so many of the monitor's pixels.
LONG figureWithin(LONG monitorPixels, int zoom) {
  const int covering = coveringFigure(static_cast<int>(monitorPixels), zoom);
  return toMonitor(covering, zoom) > monitorPixels ? covering - 1 : covering;
}

LONG packedLength(LONG length) {
  return std::clamp<LONG>(length, 0, kLengthMask);
}

WORD packedCoordinate(LONG coordinate) {
  return static_cast<WORD>(std::clamp<LONG>(coordinate, SHRT_MIN, SHRT_MAX));
}

}  // namespace

SIZE comfortableInside(SIZE free, SIZE border, int zoom) {
  const auto fitted = [zoom](LONG wanted, LONG monitorPixels, LONG least) {
    return std::max(least, std::min(wanted, figureWithin(std::max<LONG>(monitorPixels, 0), zoom)));
  };
  return {fitted(kComfortableInside.cx, free.cx - border.cx, kLeastWorkArea.cx),
          fitted(kComfortableInside.cy, free.cy - border.cy, kLeastWorkArea.cy)};
}

RECT keptWithin(POINT corner, SIZE size, const RECT& free, SIZE least) {
  const auto fitted = [](LONG wanted, LONG most, LONG atLeast) {
    return std::max(atLeast, std::min(wanted, most));
  };
  const LONG width = fitted(size.cx, free.right - free.left, least.cx);
  const LONG height = fitted(size.cy, free.bottom - free.top, least.cy);
  const LONG left = std::max(free.left, std::min(corner.x, free.right - width));
  const LONG top = std::max(free.top, std::min(corner.y, free.bottom - height));
  return {left, top, left + width, top + height};
}

PackedPlace packFramePlace(const FramePlace& place) {
  const auto inside =
      static_cast<DWORD>(packedLength(place.inside.cx) | (packedLength(place.inside.cy) << 16));
  return {static_cast<DWORD>(MAKELONG(packedCoordinate(place.corner.x), packedCoordinate(place.corner.y))),
          inside | (place.maximised ? kMaximisedBit : 0)};
}

std::optional<FramePlace> unpackFramePlace(PackedPlace packed) {
  FramePlace place;
  place.corner = {static_cast<SHORT>(LOWORD(packed.corner)), static_cast<SHORT>(HIWORD(packed.corner))};
  place.inside = {static_cast<LONG>(packed.inside & kLengthMask),
                  static_cast<LONG>((packed.inside >> 16) & kLengthMask)};
  place.maximised = (packed.inside & kMaximisedBit) != 0;
  if (place.inside.cx < kLeastWorkArea.cx || place.inside.cy < kLeastWorkArea.cy) return std::nullopt;
  return place;
}

}  // namespace pocketshell
