#include "views/form/month_calendar.h"

#include <commctrl.h>

#include <array>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"
#include "views/form/calendar_keys.h"

namespace {

HWND waiting = nullptr;  // between two popups

/// As they are at the moment. Of its own it has the title in the colour of windows on that of captions, which
/// some schemes of high contrast have the same, and the names of the days in the title's ground.
void setColors(HWND calendar) {
  struct Row {
    int part;
    int color;
  };
  constexpr std::array kRows = {
      Row{MCSC_BACKGROUND, COLOR_WINDOW},       Row{MCSC_MONTHBK, COLOR_WINDOW},
      Row{MCSC_TEXT, COLOR_WINDOWTEXT},         Row{MCSC_TITLEBK, COLOR_HIGHLIGHT},
      Row{MCSC_TITLETEXT, COLOR_HIGHLIGHTTEXT}, Row{MCSC_TRAILINGTEXT, COLOR_GRAYTEXT},
  };
  for (const Row& row : kRows) {
    SendMessageW(calendar, MCM_SETCOLOR, static_cast<WPARAM>(row.part),
                 static_cast<LPARAM>(GetSysColor(row.color)));
  }
}

LRESULT CALLBACK followed(HWND calendar, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  if (message == WM_NCDESTROY && waiting == calendar) waiting = nullptr;
  const LRESULT answered = DefSubclassProc(calendar, message, wParam, lParam);
  // They may change while the popup stands.
  if (message == WM_SYSCOLORCHANGE) setColors(calendar);
  return answered;
}

HWND createMonthCalendar(HWND dialog, int id) {
  const HWND calendar = HandheldCreateWindow(
      0, MONTHCAL_CLASSW, L"Calender ctrl", WS_CHILD | WS_VISIBLE | WS_BORDER, 0, 0, 0, 0, dialog,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
  if (!calendar) return nullptr;
  SetWindowSubclass(calendar, followed, 1, 0);
  addCalendarKeys(calendar);
  setColors(calendar);
  return calendar;
}

}  // namespace

HWND takeMonthCalendar(HWND dialog, int id) {
  const HWND calendar = std::exchange(waiting, nullptr);
  if (!calendar) return createMonthCalendar(dialog, id);
  SetParent(calendar, dialog);
  setColors(calendar);
  // As a new one begins.
  SYSTEMTIME today{};
  GetLocalTime(&today);
  SendMessageW(calendar, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&today));
  ShowWindow(calendar, SW_SHOWNOACTIVATE);
  return calendar;
}

void putMonthCalendarBack(HWND calendar, HWND owner) {
  if (!IsWindow(calendar)) return;
  ShowWindow(calendar, SW_HIDE);
  // A window of another thread, or one that is about to go, can't take it: it ends with the dialog then.
  if (SetParent(calendar, owner)) waiting = calendar;
}
