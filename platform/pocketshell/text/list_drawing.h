#pragma once

#include <windows.h>

#include <commctrl.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Draws those cells and labels of a window's list views whose letters the list's font lacks; the lists
/// themselves draw all others.
class ListDrawing : public WindowLayer<ListDrawing> {
 public:
  /// `parent` is the window that the lists report to.
  explicit ListDrawing(HWND parent) : WindowLayer(parent) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  /// From before a label is drawn by the list, 0 at other times.
  int beforeLabel_ = 0;

  LRESULT answerToList(const NMLVCUSTOMDRAW& state);
  void beginLabel(const NMLVCUSTOMDRAW& state);
  void endLabel(const NMLVCUSTOMDRAW& state);
};

/// Cells, labels and the titles of the columns of a list view that has just been made.
void drawLettersOf(HWND list);

}  // namespace pocketshell
