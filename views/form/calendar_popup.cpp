#include "views/form/calendar_popup.h"

#include <commctrl.h>

#include <algorithm>

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/form/month_calendar.h"
#include "views/form/popup_ids.h"

namespace {

constexpr int kButtonWidth = 50;
constexpr int kButtonHeight = 18;
constexpr int kButtonPitch = 54;
constexpr int kButtonsAboveBottom = 21;
constexpr int kCalendarTop = 1;

HWND createChild(HWND dialog, const wchar_t* className, const wchar_t* text, DWORD style, RECT place,
                 int id) {
  return HandheldCreateWindow(0, className, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                              place.right - place.left, place.bottom - place.top, dialog,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                              nullptr);
}

void createButton(HWND dialog, const wchar_t* text, int x, int y, int id) {
  createChild(dialog, L"BUTTON", text, BS_CENTER | WS_TABSTOP, {x, y, x + kButtonWidth, y + kButtonHeight},
              id);
}

/// The smallest size of a calendar that shows a whole month.
SIZE calendarSize(HWND calendar) {
  RECT least{};
  SendMessageW(calendar, MCM_GETMINREQRECT, 0, reinterpret_cast<LPARAM>(&least));
  return {HandheldFromMonitor(least.right - least.left), HandheldFromMonitor(least.bottom - least.top)};
}

/// How large a calendar is depends on the user's font and language. A box that is too small for it and
/// the buttons below grows.
void growFor(HWND dialog, SIZE calendar) {
  RECT client{};
  RECT frame{};
  HandheldGetClientRect(dialog, &client);
  GetWindowRect(dialog, &frame);
  const int buttonsWidth = 2 * kButtonPitch + kButtonWidth;
  const int missingWidth = std::max<int>(calendar.cx, buttonsWidth) - client.right;
  const int missingHeight = kCalendarTop + calendar.cy + 1 + kButtonsAboveBottom - client.bottom;
  if (missingWidth <= 0 && missingHeight <= 0) return;
  SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + HandheldToMonitor(std::max(missingWidth, 0)),
               frame.bottom - frame.top + HandheldToMonitor(std::max(missingHeight, 0)),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

CalendarPopup::Choice CalendarPopup::run(HWND owner) {
  selected_ = false;
  const int result = runTemplate(IDD_CALENDAR, owner);
  if (result == IDC_NO_DATE) return Choice::noDate;
  return result == IDOK && selected_ ? Choice::date : Choice::none;
}

void CalendarPopup::opened() {
  SetWindowTextW(window(), showableText(caption_.text()).c_str());
  createControls();
  HandheldNameControl(calendar_, 0, showableText(caption_.text()).c_str());
  centreDialog(window(), kPopupRaise);
  SetFocus(calendar_);
}

void CalendarPopup::ended() {
  putMonthCalendarBack(calendar_, GetWindow(window(), GW_OWNER));
}

bool CalendarPopup::command(WORD id, WORD notification) {
  static constexpr DialogCommand<CalendarPopup> kCommands[] = {
      {IDOK, BN_CLICKED, &CalendarPopup::confirm},
      {IDC_NO_DATE, BN_CLICKED, &CalendarPopup::takeNoDate},
      {IDCANCEL, BN_CLICKED, &CalendarPopup::cancel},
  };
  return answerCommand<CalendarPopup>(*this, kCommands, id, notification);
}

void CalendarPopup::confirm() {
  selected_ = SendMessageW(calendar_, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&selectedDate_)) != 0;
  close(IDOK);
}

void CalendarPopup::takeNoDate() {
  close(IDC_NO_DATE);
}

void CalendarPopup::createControls() {
  const HWND dialog = window();
  calendar_ = takeMonthCalendar(dialog, IDC_CALENDAR);
  SendMessageW(calendar_, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&initialDate_));
  const SIZE size = calendarSize(calendar_);
  growFor(dialog, size);

  RECT client{};
  HandheldGetClientRect(dialog, &client);
  const int x = client.left + (client.right - client.left - size.cx) / 2;
  HandheldSetWindowPos(calendar_, nullptr, x, client.top + kCalendarTop, size.cx, size.cy,
                       SWP_NOZORDER | SWP_SHOWWINDOW);
  const int y = client.bottom - kButtonsAboveBottom;
  createButton(dialog, L"None", x, y, IDC_NO_DATE);
  createButton(dialog, L"OK", x + kButtonPitch, y, IDOK);
  createButton(dialog, L"Cancel", x + 2 * kButtonPitch, y, IDCANCEL);
}
