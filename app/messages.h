#pragma once

#include <windows.h>

/// The program's own window messages, all to the main window.

/// From a second copy to the first: wParam is the address of the path of its command line, in the
/// second copy's memory. The main window has no handler for it: the running copy only comes to the
/// front, and keeps its database.
inline constexpr UINT kPathFromSecondCopyMessage = WM_USER + 205;

/// Posted once, before the message loop begins: start-up is over.
inline constexpr UINT kStartedMessage = WM_USER + 206;
