#pragma once

/// Lays the pages and their bars out for the input panel as it stands now.
void layOutForInputPanel();

/// Lets the form's window reach down to the tabs, above the panel: its last row and the bands both need
/// the room.
void extendForm();

/// Replaces images, bars and columns after the zoom has changed.
void layOutForZoom();
