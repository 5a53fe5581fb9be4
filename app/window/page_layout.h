#pragma once

/// Lays the pages and their bars out for the input panel as it stands now.
void layOutForInputPanel();

/// Shows the options as they are now: the labels of the tabs, the place of the bars and of the pages
/// beside them, the colours.
void applyOptions();

/// Shows the colours as they are now.
void showColors();

/// Replaces images, bars and columns after the zoom has changed.
void layOutForZoom();
