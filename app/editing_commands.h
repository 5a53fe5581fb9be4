#pragma once

/// The editing commands of the Edit menu. They act on the window that has the focus; without one nothing
/// happens.

void copyInFocus();
void cutInFocus();
void pasteInFocus();
/// Only in an edit control that has something to take back.
void undoInFocus();
