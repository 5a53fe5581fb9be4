#pragma once

#include <windows.h>

#include "platform/pocketshell/aygshell.h"

/// The desktop menu: what a desktop has and the handheld had not. It opens by the button "\u2261" at the
/// right end of the menu bar, by Alt+M, by a right click on the menu bar, and is the last part of the
/// window's system menu. The program's entries come first; behind them the shell puts its own, the choice of
/// the zoom.

/// How an entry stands at the moment.
enum HandheldEntryState {
  HANDHELD_ENTRY_GREY = 0,       ///< it can't be chosen
  HANDHELD_ENTRY_AVAILABLE = 1,  ///< it can
  HANDHELD_ENTRY_CHOSEN = 2,     ///< it can, and has a mark: it is what holds already
};

/// The commands of the desktop menu are numbers of their own: HANDHELD_FIRST_ENTRY and those that follow in
/// steps of HANDHELD_ENTRY_STEP, up to HANDHELD_LAST_ENTRY. The system menu leaves the bits between to the
/// system.
#define HANDHELD_FIRST_ENTRY 0xD000
#define HANDHELD_LAST_ENTRY 0xDFF0
#define HANDHELD_ENTRY_STEP 0x10

/// One entry.
struct HandheldMenuEntry {
  UINT command;          ///< of the numbers above; what it is in a separator does not matter
  const wchar_t* group;  ///< the submenu that it stands in, null for the menu itself
  const wchar_t* text;   ///< with its access key; null for a separator
  /// Asked whenever a menu that shows the entry opens, and once more before its command is given. Null for
  /// an entry that is always available.
  HandheldEntryState (*state)(UINT command);
  /// Asked whenever a menu that shows the entry opens, for a text that says more than `text` does; it holds
  /// until the next question. Null for an entry that always has the same.
  const wchar_t* (*presentText)(UINT command) = nullptr;
};

/// Gives a window made by HandheldCreateWindow with a size of CW_USEDEFAULT these entries in the place of
/// those that it had; none with a count of 0. They are copied, texts included. A group stands where its first
/// entry would.
///
/// A chosen entry arrives as WM_COMMAND with the command as wParam and 0 as lParam, as from any menu; not
/// while the window is disabled, under a dialog, and not when the entry is grey by then.
///
/// False, and nothing has changed, for another window, for a command that is none of those numbers, and when
/// a menu can't be made.
AYGSHELL_API BOOL HandheldSetDesktopMenu(HWND window, const HandheldMenuEntry* entries, UINT count);
