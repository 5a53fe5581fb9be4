#pragma once

/// Lets the form's window reach down to the tabs, above the input panel: its last row and the bands both
/// need the room.
void extendForm();
