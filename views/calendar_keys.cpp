#include "views/calendar_keys.h"

#include <commctrl.h>

#include <algorithm>

namespace {

int daysInMonth(const SYSTEMTIME& day) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = day.wYear % 4 == 0 && (day.wYear % 100 != 0 || day.wYear % 400 == 0);
  return day.wMonth == 2 && isLeapYear ? 29 : kDays[day.wMonth - 1];
}

std::optional<SYSTEMTIME> daysLater(const SYSTEMTIME& day, int days) {
  constexpr LONGLONG kTicksPerDay = 864'000'000'000;
  FILETIME time{};
  if (!SystemTimeToFileTime(&day, &time)) return std::nullopt;
  ULARGE_INTEGER ticks{};
  ticks.LowPart = time.dwLowDateTime;
  ticks.HighPart = time.dwHighDateTime;
  ticks.QuadPart += static_cast<ULONGLONG>(days * kTicksPerDay);
  time = {ticks.LowPart, ticks.HighPart};
  SYSTEMTIME result{};
  if (!FileTimeToSystemTime(&time, &result)) return std::nullopt;
  return result;
}

std::optional<SYSTEMTIME> monthsLater(SYSTEMTIME day, int months) {
  const int month = day.wYear * 12 + day.wMonth - 1 + months;
  day.wYear = static_cast<WORD>(month / 12);
  day.wMonth = static_cast<WORD>(month % 12 + 1);
  day.wDay = static_cast<WORD>(std::min<int>(day.wDay, daysInMonth(day)));
  return day;
}

std::optional<SYSTEMTIME> selectedDay(HWND calendar) {
  SYSTEMTIME day{};
  if (SendMessageW(calendar, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&day)) == 0) return std::nullopt;
  return day;
}

bool isSameDay(const SYSTEMTIME& one, const SYSTEMTIME& other) {
  return one.wYear == other.wYear && one.wMonth == other.wMonth && one.wDay == other.wDay;
}

LRESULT CALLBACK calendarProcedure(HWND calendar, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                   DWORD_PTR) {
  const auto before = message == WM_KEYDOWN ? selectedDay(calendar) : std::nullopt;
  const LRESULT result = DefSubclassProc(calendar, message, wParam, lParam);
  if (!before) return result;
  const auto after = selectedDay(calendar);
  const auto next = dayAfterKey(*before, wParam);
  if (after && next && isSameDay(*before, *after)) {
    SendMessageW(calendar, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&*next));
  }
  return result;
}

}  // namespace

std::optional<SYSTEMTIME> dayAfterKey(const SYSTEMTIME& day, WPARAM key) {
  constexpr int kWeek = 7;
  switch (key) {
    case VK_LEFT:
      return daysLater(day, -1);
    case VK_RIGHT:
      return daysLater(day, 1);
    case VK_UP:
      return daysLater(day, -kWeek);
    case VK_DOWN:
      return daysLater(day, kWeek);
    case VK_PRIOR:
      return monthsLater(day, -1);
    case VK_NEXT:
      return monthsLater(day, 1);
    case VK_HOME:
      return daysLater(day, 1 - day.wDay);
    case VK_END:
      return daysLater(day, daysInMonth(day) - day.wDay);
    default:
      return std::nullopt;
  }
}

void addCalendarKeys(HWND calendar) {
  SetWindowSubclass(calendar, calendarProcedure, 0, 0);
}
