#pragma once

#include <windows.h>

#include <optional>
#include <string>

/// Reads and works the dialogs and menus of a running Quivane from another process.
namespace remote {

/// The dialog, message box or sheet of the main window's process that can be used now, else the main
/// window itself.
HWND frontWindow(HWND main);

/// Waits for a dialog in front with this title. False when it takes too long.
bool waitForDialog(HWND main, const std::wstring& title);
/// Waits until no dialog stands before the main window. False when it takes too long.
bool waitForMain(HWND main);

/// Clicks the drop-down button of the menu bar that has this command and waits for its menu. False when
/// there is no such button or no menu opens.
bool openMenu(HWND main, int command);
/// Opens the submenu with this access key in the menu that is open. False when none opens.
bool openSubmenu(HWND main, wchar_t accessKey);
/// Presses the right button on an item of a list, or with a negative item in the middle of the window, and
/// waits for the menu.
bool openContextMenu(HWND main, HWND window, int item);
/// Leaves all menus.
bool closeMenus(HWND main);

/// Clicks the tab of a page of the property sheet in front and waits for the page.
bool turnSheet(HWND sheet, int page);

/// Taps the menu bar's button of the input panel and waits for the panel. False when it stays down.
bool raisePanel(HWND main);

/// The rectangle around everything that the process of the main window shows, once all of it is painted;
/// none when that takes too long.
std::optional<RECT> shownArea(HWND main);

}  // namespace remote
