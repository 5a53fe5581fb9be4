#include "platform/pocketshell/zoom/zoom_figures.h"

#include <algorithm>

namespace pocketshell {

namespace {

constexpr int kStep = 25;
constexpr int kNormalDotsPerInch = 96;

constexpr int kFigureBits = 15;
constexpr int kLargestFigure = (1 << (kFigureBits - 1)) - 1;
constexpr std::uint64_t kFigureMask = (std::uint64_t{1} << kFigureBits) - 1;
constexpr std::uint64_t kPresent = std::uint64_t{1} << 63;

int scaled(int value, int numerator, int denominator) {
  const long long product = static_cast<long long>(value) * numerator * 2;
  const long long half = product < 0 ? -denominator : denominator;
  return static_cast<int>((product + half) / (2LL * denominator));
}

std::uint64_t packed(int figure, int index) {
  const int kept = std::clamp(figure, -kLargestFigure, kLargestFigure);
  return (static_cast<std::uint64_t>(static_cast<std::int64_t>(kept)) & kFigureMask) << (kFigureBits * index);
}

int unpacked(std::uint64_t all, int index) {
  const int bits = static_cast<int>((all >> (kFigureBits * index)) & kFigureMask);
  return bits > kLargestFigure ? bits - (1 << kFigureBits) : bits;
}

}  // namespace

bool isZoom(int percent) {
  return percent >= kNormalZoom && percent <= kLargestZoom;
}

int toMonitor(int handheldPixels, int zoom) {
  return scaled(handheldPixels, zoom, kNormalZoom);
}

int fromMonitor(int monitorPixels, int zoom) {
  return scaled(monitorPixels, kNormalZoom, zoom);
}

RECT toMonitor(const RECT& handheld, int zoom) {
  return {toMonitor(static_cast<int>(handheld.left), zoom), toMonitor(static_cast<int>(handheld.top), zoom),
          toMonitor(static_cast<int>(handheld.right), zoom),
          toMonitor(static_cast<int>(handheld.bottom), zoom)};
}

RECT fromMonitor(const RECT& monitor, int zoom) {
  return {fromMonitor(static_cast<int>(monitor.left), zoom), fromMonitor(static_cast<int>(monitor.top), zoom),
          fromMonitor(static_cast<int>(monitor.right), zoom),
          fromMonitor(static_cast<int>(monitor.bottom), zoom)};
}

int coveringFigure(int monitorPixels, int zoom) {
  int figure = fromMonitor(monitorPixels, zoom);
  while (toMonitor(figure, zoom) < monitorPixels) ++figure;
  while (figure > 0 && toMonitor(figure - 1, zoom) >= monitorPixels) --figure;
  return figure;
}

int automaticZoom(int dotsPerInch, SIZE workArea, SIZE frame) {
  const int wanted = scaled(dotsPerInch, kNormalZoom, kNormalDotsPerInch);
  int zoom = std::clamp(wanted / kStep * kStep, kNormalZoom, kLargestZoom);
  while (zoom > kNormalZoom && (toMonitor(kScreenWidth, zoom) + frame.cx > workArea.cx ||
                                toMonitor(kWorkAreaHeight, zoom) + frame.cy > workArea.cy)) {
    zoom -= kStep;
  }
  return zoom;
}

std::uint64_t packPlace(const Place& place) {
  return kPresent | packed(place.x, 0) | packed(place.y, 1) | packed(place.width, 2) |
         packed(place.height, 3);
}

std::optional<Place> unpackPlace(std::uint64_t all) {
  if (!all) return std::nullopt;
  return Place{unpacked(all, 0), unpacked(all, 1), unpacked(all, 2), unpacked(all, 3)};
}

}  // namespace pocketshell
