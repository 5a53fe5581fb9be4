#pragma once

/// Lays the pages and their bars out for the input panel as it stands now.
void layOutForInputPanel();

/// Replaces images, bars and columns after the zoom has changed.
void layOutForZoom();
