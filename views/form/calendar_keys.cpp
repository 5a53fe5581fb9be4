#include "views/form/calendar_keys.h"

#include <commctrl.h>

#include <chrono>

namespace {

using Date = std::chrono::year_month_day;

Date dateOf(const SYSTEMTIME& day) {
  return std::chrono::year(day.wYear) / day.wMonth / day.wDay;
}

/// `day` with another date; nothing when the system can't reckon with that.
std::optional<SYSTEMTIME> withDate(SYSTEMTIME day, const Date& date) {
  day.wYear = static_cast<WORD>(static_cast<int>(date.year()));
  day.wMonth = static_cast<WORD>(static_cast<unsigned>(date.month()));
  day.wDay = static_cast<WORD>(static_cast<unsigned>(date.day()));
  day.wDayOfWeek = static_cast<WORD>(std::chrono::weekday(date).c_encoding());
  FILETIME time{};
  if (!SystemTimeToFileTime(&day, &time)) return std::nullopt;
  return day;
}

std::optional<SYSTEMTIME> daysLater(const SYSTEMTIME& day, int days) {
  return withDate(day, std::chrono::sys_days(dateOf(day)) + std::chrono::days(days));
}

std::optional<SYSTEMTIME> monthsLater(const SYSTEMTIME& day, int months) {
  const Date date = dateOf(day) + std::chrono::months(months);
  return withDate(day, date.ok() ? date : Date(date.year() / date.month() / std::chrono::last));
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
  const Date date = dateOf(day);
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
      return withDate(day, date.year() / date.month() / 1);
    case VK_END:
      return withDate(day, date.year() / date.month() / std::chrono::last);
    default:
      return std::nullopt;
  }
}

void addCalendarKeys(HWND calendar) {
  SetWindowSubclass(calendar, calendarProcedure, 0, 0);
}
