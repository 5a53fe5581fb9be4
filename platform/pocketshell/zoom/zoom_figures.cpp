#include "platform/pocketshell/zoom/zoom_figures.h"

#include <algorithm>

namespace pocketshell {

namespace {

constexpr int kStep = 25;
constexpr int kNormalDotsPerInch = 96;

int scaled(int value, int numerator, int denominator) {
  const long long product = static_cast<long long>(value) * numerator * 2;
  const long long half = product < 0 ? -denominator : denominator;
  return static_cast<int>((product + half) / (2LL * denominator));
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

}  // namespace pocketshell
