#pragma once

#include <windows.h>

/// The program's entries of the desktop menu (platform/pocketshell/desktop_entries.h): what a desktop has and
/// the handheld had not.

/// Gives them to the main window.
void offerDesktopCommands();

/// Runs a command of the desktop menu; nothing happens for any other, and for one that is not available.
void runDesktopCommand(WORD id);
