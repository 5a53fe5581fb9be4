#pragma once

#include <windows.h>

/// The main window: class "Quivane", an ordinary top-level window of fixed size whose client area is
/// the page area.

inline constexpr wchar_t kMainWindowClass[] = L"Quivane";
inline constexpr wchar_t kMainWindowTitle[] = L"Quivane";

/// False when the class can't be registered.
bool registerMainWindowClass();

/// Creates and shows the window. Leaves mainWindow null when that fails.
void createMainWindow(int showCommand);
