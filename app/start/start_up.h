#pragma once

#include <windows.h>

/// The whole run of the program, from the check for another copy to the end. Returns the exit code:
/// that of the final quit message, or one of those below.
///
/// `commandLine` is what follows the program's name, one path to a database or nothing.
int runProgram(HINSTANCE instance, const wchar_t* commandLine, int showCommand);

/// The main window's class could not be registered.
inline constexpr int kExitCannotStart = 1;

/// Another copy runs, or the main window could not be created.
inline constexpr int kExitNoWindow = 16;
