#include "views/form/date_field_editor.h"

#include <cwchar>

#include "data/values/date_value.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/form/calendar_popup.h"
#include "views/form/date_editor_subclass.h"
#include "views/form/tab_key.h"
#include "views/shared/shown_text.h"

namespace {

SYSTEMTIME today() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  return now;
}

/// As the user's country writes it. Empty when the system can't.
String shortDate(const SYSTEMTIME& date) {
  wchar_t text[50] = L"";
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &date, nullptr, text, ARRAYSIZE(text));
  return text;
}

bool isNoDate(const String& text) {
  return std::wcscmp(text.text(), kNoDateText) == 0;
}

SYSTEMTIME calendarStart(const String& text) {
  if (isNoDate(text)) return today();
  const std::optional<double> date = dateFromText(text);
  return (date ? calendarFromDate(*date) : std::nullopt).value_or(SYSTEMTIME{});
}

}  // namespace

DateFieldEditor::DateFieldEditor() : shownText_(kNoDateText), givenText_(kNoDateText) {}

DateFieldEditor::~DateFieldEditor() {
  detachDateEditor(*this);
}

bool DateFieldEditor::create(const ControlCreation& creation) {
  place_ = creation.place;
  if (!createControl(L"STATIC", givenText_.text(), creation)) return false;
  HandheldNameControl(window(), 0, fieldName_.text());
  attachDateEditor(*this);
  moveFocusByTabKey(window());
  return true;
}

void DateFieldEditor::position(const ControlPlace& place, UINT flags) {
  if (moveControl(place, flags)) place_ = place;
}

void DateFieldEditor::setText(const String& text) {
  shownText_ = text;
  // A text that is no date may be anything.
  givenText_ = textForLine(shownText_.text()).text.c_str();
  SetWindowTextW(window(), givenText_.text());
}

void DateFieldEditor::showToday() {
  setText(shortDate(today()));
}

String DateFieldEditor::text() const {
  if (!window()) return shownText_;
  String shown = windowText(window());
  return std::wcscmp(shown.text(), givenText_.text()) == 0 ? shownText_ : shown;
}

bool DateFieldEditor::isChanged() const {
  return std::wcscmp(text().text(), shownText_.text()) != 0;
}

void DateFieldEditor::load(const FieldSnapshot& field, bool isNewRecord) {
  isLocked_ = isUnread(field);
  if (isNewRecord) {
    showToday();
  } else {
    setText(field.text);
  }
}

bool DateFieldEditor::isEdited() const {
  if (isLocked_ || !isChanged()) return false;
  const std::optional<double> chosen = date();
  return !chosen || chosen != dateFromText(shownText_);
}

std::optional<double> DateFieldEditor::date() const {
  const String shown = text();
  return isNoDate(shown) ? std::nullopt : dateFromText(shown);
}

void DateFieldEditor::openCalendar() {
  if (isLocked_) return;
  const HWND control = window();
  CalendarPopup popup(fieldName_, calendarStart(shownText_));
  const CalendarPopup::Choice choice = popup.run(GetAncestor(control, GA_ROOT));
  // While the popup was open, the form may have been taken down.
  if (theDateEditors.find(control) != this) return;
  if (choice != CalendarPopup::Choice::none) beginEdit();
  if (choice == CalendarPopup::Choice::date) {
    SetWindowTextW(control, shortDate(popup.selectedDate()).text());
  } else if (choice == CalendarPopup::Choice::noDate) {
    SetWindowTextW(control, kNoDateText);
  }
}
