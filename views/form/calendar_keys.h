#pragma once

#include <windows.h>

#include <optional>

/// Where a key leads from a day: the arrows by a day or a week, Page Up and Page Down by a month (to its last
/// day at most), Home and End to the first and the last day of the month. Nothing for other keys, and for
/// days that the system can't reckon with.
std::optional<SYSTEMTIME> dayAfterKey(const SYSTEMTIME& day, WPARAM key);

/// Gives a month calendar these keys, as far as it does not have them itself.
void addCalendarKeys(HWND calendar);
