#pragma once

#include <windows.h>

/// The screen that programs are told of, in handheld pixels. The handheld's is 240 x 320; where the user has
/// made a frame larger it is as much larger, so that what a program reckons from the screen fills the frame.
namespace pocketshell {

/// What a screen has below its caption: the inside of the frame that was sized last, or the handheld's
/// 240 x 294 without one.
SIZE presentWorkArea();

/// The whole screen, with the caption's height.
SIZE presentScreen();

void setPresentWorkArea(SIZE area);

/// What the inside of a frame that is so many of the monitor's pixels large counts as: the least figures at
/// this zoom that leave no gap.
SIZE workAreaInside(SIZE monitor, int zoom);

}  // namespace pocketshell
