#pragma once

#include <windows.h>

/// The program's own window messages, all to the main window.

/// From a second copy to the first: wParam is the address of the path of its command line, in the
/// second copy's memory. The main window has no handler for it: the running copy only comes to the
/// front, and keeps its database.
inline constexpr UINT kPathFromSecondCopyMessage = WM_USER + 205;

/// dwData of WM_COPYDATA from a second copy: the full path of its command line, ended by a zero. Taken
/// only while a file is being chosen: the database is opened when the dialog has ended.
inline constexpr ULONG_PTR kPathForLater = 1;

/// Posted once, before the message loop begins: start-up is over.
inline constexpr UINT kStartedMessage = WM_USER + 206;

/// Posted when the window has come to the front: another program may have taken the open file away. With
/// wParam 1 it was not the front window of this program before.
/// (WM_USER + 207 is the colour swatch's, dialogs/options/options_page_procedures.h.)
inline constexpr UINT kCameToFrontMessage = WM_USER + 209;

/// Posted when start-up is over and the first page is shown: what an end by a fault has left is offered.
inline constexpr UINT kOfferRecoveredMessage = WM_USER + 210;

/// Posted when the first field of an open file is being changed.
inline constexpr UINT kEditBegunMessage = WM_USER + 211;

/// Posted when the database begins to take its time: what the user did is over when it arrives.
inline constexpr UINT kBusyOverMessage = WM_USER + 208;
