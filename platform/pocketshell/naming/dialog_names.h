#pragma once

#include <windows.h>

namespace pocketshell {

/// Names the edits and lists of a dialog to assistive technology by the labels before them. Some systems do
/// so by themselves, others for edits only.
void nameByLabels(HWND dialog);

}  // namespace pocketshell
