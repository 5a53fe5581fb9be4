#pragma once

#include <windows.h>

/// The arithmetic of the zoom, in per cent. A rectangle is converted by its edges, so that what touches
/// on the handheld touches at every zoom.
namespace pocketshell {

inline constexpr int kNormalZoom = 100;
inline constexpr int kLargestZoom = 400;

/// The handheld's screen, and what caption and menu bar take of it. A frame can be made larger, not smaller.
inline constexpr int kScreenWidth = 240;
inline constexpr int kScreenHeight = 320;
inline constexpr int kCaptionHeight = 26;
inline constexpr int kMenuBarHeight = 26;
inline constexpr int kWorkAreaHeight = kScreenHeight - kCaptionHeight;
inline constexpr SIZE kLeastWorkArea = {kScreenWidth, kWorkAreaHeight};
/// What the row of the menu bar takes of the work area's height; the bar itself covers one pixel more.
inline constexpr int kBelowPagesHeight = 25;

bool isZoom(int percent);

/// Rounds to the nearest, away from zero between two.
int toMonitor(int handheldPixels, int zoom);
int fromMonitor(int monitorPixels, int zoom);
RECT toMonitor(const RECT& handheld, int zoom);
RECT fromMonitor(const RECT& monitor, int zoom);

/// The least figure that is not less than so many of the monitor's pixels; that of exactly these, where one
/// is.
int coveringFigure(int monitorPixels, int zoom);

/// The largest zoom at most that of the monitor's dots per inch, in steps of 25, with which the
/// handheld's work area in a frame of `frame` pixels fits into `workArea`.
int automaticZoom(int dotsPerInch, SIZE workArea, SIZE frame);

/// Where a window was told to be, in handheld pixels.
struct Place {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  RECT rectangle() const { return {x, y, x + width, y + height}; }
  bool operator==(const Place&) const = default;
};

}  // namespace pocketshell
