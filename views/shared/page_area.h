#pragma once

#include <windows.h>

/// Where the pages lie. The command bands take a strip above or below them, as the user's option says.

/// Height, in pixels, that the pages leave free for the band and the tabs.
inline constexpr int kBandAndTabsHeight = 50;

/// Height, in pixels, of the menu bar, which lies over the end of the main window's client area.
inline constexpr int kMenuBarHeight = 26;

/// Whether the user wants the command bands above the pages. They are below them until the settings are
/// read.
bool bandsAtTop();

/// Top of a page within the page area: 28 with the bands at the top, else 0.
int pageOffset();

/// Top of the first row of every page of the form, within the form's window: 30 with the bands at the
/// top, else 2. Until the settings are read it is 30.
int formTopMargin();
