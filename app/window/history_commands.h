#pragma once

#include <windows.h>

/// Takes back, or does again, what the command with this number stands for, and shows the record concerned.
void takeHistoryStep(WORD id);

/// What that would be, as a menu says it.
const wchar_t* historyText(UINT id);

/// Ctrl+Z takes the newest change of a record back where no editor has anything of its own to undo, and
/// Ctrl+Y does it again. True when the message was that key in the main window and is used up.
bool takeHistoryStepByKey(const MSG& message);
