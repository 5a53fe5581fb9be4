#pragma once

#include <windows.h>

/// The month calendar of the popups. Wine's leaves an object of the graphics system behind for each font
/// that it is given, so one calendar serves all popups: between them it waits, hidden, in the main window
/// and ends with that.

/// Puts the calendar into `dialog`, shown, with today selected and the keys of calendar_keys.h; where it
/// lies is left to the caller. Null when there is none and none can be made.
HWND takeMonthCalendar(HWND dialog, int id);

/// Before the dialog that it was taken into is destroyed. `owner` is the main window.
void putMonthCalendarBack(HWND calendar, HWND owner);
