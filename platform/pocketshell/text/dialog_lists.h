#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws the entries of a dialog's list and combo boxes whose style leaves that to their owner
/// (LBS_OWNERDRAWFIXED or CBS_OWNERDRAWFIXED, with the texts in the box), as the boxes themselves would, with
/// letters of every script. What is behind a tab begins at two thirds of the width. The heights of the boxes
/// follow the zoom: a drop-down list is as high as other controls.
class DialogLists : public WindowLayer<DialogLists> {
 public:
  explicit DialogLists(HWND dialog) : WindowLayer(dialog) {}

  /// Also for those boxes that are being made before the dialog has this layer. False for what is no such
  /// box.
  static bool measure(MEASUREITEMSTRUCT& item);

  /// Once the controls are laid out, and again at each zoom.
  void fit() const;

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
};

}  // namespace pocketshell
