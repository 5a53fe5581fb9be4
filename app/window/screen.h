#pragma once

/// The handheld's figures, in its pixels, beside those of the page area, which the shell supplies.
namespace screen {

/// What the main window has below the form: the row of tabs, and the menu bar over its last pixels.
inline constexpr int kBelowFormHeight = 49;

/// Where the window of the record grid lies in the tab control.
inline constexpr int kGridLeft = 2;
inline constexpr int kGridTop = 24;
/// By how much it is less high than the tab control's client area.
inline constexpr int kGridHeightLess = 52;

}  // namespace screen
