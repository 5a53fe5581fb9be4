#pragma once

#include <windows.h>

/// Where the pages lie. The command bands take a strip above or below them, as the user's option says.

/// Height, in pixels, that the pages leave free for the band and the tabs.
inline constexpr int kBandAndTabsHeight = 50;

/// Top of a page within the page area: 28 with the bands at the top, else 0.
int pageOffset();

/// Top of the first row of a form page: 30 with the bands at the top and before the options are loaded,
/// else 2.
int formTopMargin();
