#pragma once

/// The handheld's figures, in its pixels. The screen is 240 wide; under the caption and above the menu
/// bar it leaves an area of this size to the pages.
namespace screen {

inline constexpr int kPageAreaWidth = 240;
inline constexpr int kPageAreaHeight = 269;

/// What the main window has below the form: the row of tabs, and the menu bar over its last pixels.
inline constexpr int kBelowFormHeight = 49;

/// Where the window of the record grid lies in the tab control.
inline constexpr int kGridLeft = 2;
inline constexpr int kGridTop = 24;
/// By how much it is less high than the tab control's client area.
inline constexpr int kGridHeightLess = 52;

}  // namespace screen
