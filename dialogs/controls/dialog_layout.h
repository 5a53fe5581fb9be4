#pragma once

#include <windows.h>

/// Gives the controls of a dialog that the system itself has made, the page of a property sheet, the
/// places of its template at the present zoom and the interface font, as HandheldDialogBox does for its
/// dialogs. From then on they follow the zoom. To be called in WM_INITDIALOG; the dialog's own size stays.
void layOutControls(HWND dialog);
