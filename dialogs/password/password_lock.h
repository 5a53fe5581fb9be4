#pragma once

#include <windows.h>

/// The user's own lock on the program. The password is kept in the registry (base/settings/settings_store.h)
/// in upper case, since upper and lower case are the same in it. Both run over the main window `owner`, and
/// throw std::bad_alloc.

/// Asks for the password and sets appUnlocked (base/settings/app_settings.h) by the outcome: true when the
/// right one was given, or none was ever set; false when the user cancelled. A wrong one is told and asked
/// for again. For the start, when the options say so.
void checkPassword(HWND owner);

/// Lets the user change the password, until it is done or cancelled. Returns 0.
LRESULT changePassword(HWND owner);
