#pragma once

/// The clipboard and undo commands of the Edit menu. Each acts on the control that has the focus, and does
/// nothing when none has.
namespace focusededit {

void cut();
void copy();
void paste();
void undo();
/// Only an edit control can.
bool canUndo();

}  // namespace focusededit
