#pragma once

#include <windows.h>

#include <string>

/// What the user has typed into the form and the dialogs that are open and what is stored nowhere yet, for
/// him to read: the file, the table and the number of the record, and each text under its name. Empty when
/// there is nothing. Passwords are left out. May throw std::bad_alloc. For the thread of the windows.
std::wstring typedText();

/// Gives typedText() to the watch over faults; what was given before stays when there is no memory for it.
/// For the message loop, after each message that may have changed it, and for what happens in other loops
/// (views/shared/typed_watch.h). A hook of messages would do for all, but under Wine it makes each message of
/// the thread four questions to another process dearer.
void keepTypedText() noexcept;

/// False for the messages of moving the mouse, painting and time, which are most.
bool mayChangeTypedText(UINT message) noexcept;
