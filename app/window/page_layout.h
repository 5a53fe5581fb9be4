#pragma once

/// Lays the pages and their bars out for the input panel as it stands now.
void layOutForInputPanel();

/// The pages were made for the page area as it is now.
void notePageArea();

/// Lays them out for the window's size, where that leaves another page area than before, and draws them at
/// once.
void layOutForSize();

/// Shows the options as they are now: the labels of the tabs, the place of the bars and of the pages
/// beside them, the colours.
void applyOptions();

/// Shows the colours as they are now.
void showColors();

/// Replaces images, bars and columns after the zoom has changed.
void layOutForZoom();
