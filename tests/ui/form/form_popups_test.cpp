#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "gmock/gmock.h"
#include "tests/support/system_colors.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/graphics_objects.h"
#include "tests/ui/support/window_reading.h"
#include "views/dialog/current_dialog.h"
#include "views/form/calendar_keys.h"
#include "views/form/calendar_popup.h"
#include "views/form/date_field_editor.h"
#include "views/form/field_zoom.h"
#include "views/form/text_field_editor.h"

namespace {

constexpr int kZoomText = 1015;
constexpr int kCalendar = 40100;
constexpr int kNoDate = 40101;

/// The script of a test that opens no dialog.
void nothing(HWND) {}

/// A dialog centred over its owner and raised by 20, never beyond the owner's corner.
void expectRaisedCentre(HWND dialog) {
  RECT area{};
  GetClientRect(GetParent(dialog), &area);
  RECT frame{};
  GetWindowRect(dialog, &frame);
  const LONG width = frame.right - frame.left;
  const LONG height = frame.bottom - frame.top;
  MapWindowPoints(nullptr, GetParent(dialog), reinterpret_cast<POINT*>(&frame), 2);
  EXPECT_EQ(frame.left, std::max(0L, (area.right - width) / 2));
  EXPECT_EQ(frame.top, std::max(0L, (area.bottom - height) / 2 - 20));
}

class ZoomTest : public FormFixture {
 protected:
  /// Two texts, the first of two lines.
  void showTwo() {
    showTable(L"CREATE TABLE 'T' (note Text, b Text)",
              {L"INSERT INTO T VALUES ('one' || char(13, 10) || 'two', 'x')"});
  }
};

TEST_F(ZoomTest, TwoTapsOnTheSameEditorOpenIt) {
  showTwo();
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"note");
    EXPECT_EQ(textOf(GetDlgItem(dialog, kZoomText)), L"one\r\ntwo");
    EXPECT_EQ(SendDlgItemMessageW(dialog, kZoomText, EM_GETMODIFY, 0, 0), 0);
    EXPECT_EQ(SendDlgItemMessageW(dialog, kZoomText, EM_GETSEL, 0, 0), 0) << "a key would replace all of it";
    EXPECT_EQ(styleOf(GetDlgItem(dialog, kZoomText)) & ES_READONLY, 0u);
    EXPECT_EQ(GetParent(dialog), host());
    EXPECT_EQ(currentDialog, dialog);
    expectRaisedCentre(dialog);
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(textEditor(0));
  dispatchPosted();
  EXPECT_EQ(script.count(), 0);
  tap(textEditor(0));
  EXPECT_EQ(script.count(), 0) << "the dialog's message is posted";
  dispatchPosted();
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
  EXPECT_TRUE(theTextEditors.find(textEditor(0))->zoomOpened());
  EXPECT_FALSE(view().takeChange());
  tap(textEditor(0));
  dispatchPosted();
  EXPECT_EQ(script.count(), 1) << "the count begins again";
}

TEST_F(ZoomTest, TwoTapsOpenItAlsoWhereTheFocusWasNot) {
  showTwo();
  DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
  tap(textEditor(1));
  tap(textEditor(1), WM_LBUTTONDBLCLK);
  dispatchPosted();
  EXPECT_EQ(script.count(), 1);
}

TEST_F(ZoomTest, ATapOnAnotherEditorInBetweenStartsTheCountAgain) {
  showTwo();
  DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
  tap(textEditor(0));
  tap(textEditor(1));
  tap(textEditor(0));
  dispatchPosted();
  EXPECT_EQ(script.count(), 0);
  tap(textEditor(0));
  dispatchPosted();
  EXPECT_EQ(script.count(), 1);
}

TEST_F(ZoomTest, AConfirmedTextIsShownAndStored) {
  showTwo();
  DialogScript script([](HWND dialog) {
    SetDlgItemTextW(dialog, kZoomText, L"1\r\n2\r\n3");
    DialogScript::close(dialog, IDOK);
  });
  SendMessageW(textEditor(0), WM_USER + 202, 0, 0);
  ASSERT_EQ(script.count(), 1);
  EXPECT_EQ(textOf(textEditor(0)), L"1,2,3");
  EXPECT_STREQ(theTextEditors.find(textEditor(0))->value().text(), L"1\r\n2\r\n3");
  EXPECT_TRUE(theTextEditors.find(textEditor(0))->isChanged());
  commit();
  EXPECT_EQ(storedText(0), L"1,2,3") << "it is written as shown";
}

TEST_F(ZoomTest, AConfirmedTextThatIsTheSameChangesNothing) {
  showTwo();
  DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDOK); });
  SendMessageW(textEditor(0), WM_USER + 202, 0, 0);
  EXPECT_EQ(script.count(), 1);
  EXPECT_FALSE(view().takeChange());
}

TEST_F(ZoomTest, WhatWasTypedAndCancelledIsForgotten) {
  showTwo();
  DialogScript script([](HWND dialog) {
    SetDlgItemTextW(dialog, kZoomText, L"typed");
    DialogScript::close(dialog, IDCANCEL);
  });
  SendMessageW(textEditor(0), WM_USER + 202, 0, 0);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(textOf(textEditor(0)), L"one,two");
  EXPECT_FALSE(view().takeChange());
}

TEST_F(ZoomTest, AReadOnlyFieldShowsItsTextAndCantBeEdited) {
  const HostWindow owner;
  FieldZoom zoom(L"name", L"text", true);
  DialogScript script([](HWND dialog) {
    EXPECT_EQ(styleOf(GetDlgItem(dialog, kZoomText)) & ES_READONLY, static_cast<DWORD>(ES_READONLY));
    EXPECT_EQ(textOf(GetDlgItem(dialog, kZoomText)), L"text");
    SendDlgItemMessageW(dialog, kZoomText, WM_CHAR, L'x', 1);
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_TRUE(zoom.run(owner.get()));
  EXPECT_EQ(script.count(), 1);
  EXPECT_STREQ(zoom.text().text(), L"text");
}

TEST_F(ZoomTest, ALongTextGoesThroughWhole) {
  const HostWindow owner;
  std::wstring text;
  while (text.size() < 70000) text += L"A line like those that people write, of sixty characters.\r\n";
  FieldZoom zoom(L"name", text.c_str(), false);
  DialogScript script([](HWND dialog) {
    SendDlgItemMessageW(dialog, kZoomText, EM_SETSEL, 0, 0);
    SendDlgItemMessageW(dialog, kZoomText, WM_CHAR, L'x', 1);
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_TRUE(zoom.run(owner.get()));
  EXPECT_EQ(std::wstring(zoom.text().text()), L"x" + text);
}

TEST_F(ZoomTest, EscapeCancels) {
  showTwo();
  DialogScript script(
      [](HWND dialog) { PostMessageW(GetDlgItem(dialog, kZoomText), WM_KEYDOWN, VK_ESCAPE, 1); });
  SendMessageW(textEditor(0), WM_USER + 202, 0, 0);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(ZoomTest, AnEditorWithoutAValueOpensNothing) {
  showTable(L"CREATE TABLE 'T' (a Text)");
  const DialogScript script(nothing);
  SendMessageW(textEditor(), WM_USER + 202, 0, 0);
  EXPECT_EQ(script.count(), 0);
  EXPECT_TRUE(theTextEditors.find(textEditor())->zoomOpened());
}

TEST_F(ZoomTest, AFormThatIsTakenDownUnderTheDialogTakesNothing) {
  showTwo();
  DialogScript script([&](HWND dialog) {
    view().tearDown();
    SetDlgItemTextW(dialog, kZoomText, L"late");
    DialogScript::close(dialog, IDOK);
  });
  SendMessageW(textEditor(0), WM_USER + 202, 0, 0);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(textEditor(0), nullptr);
}

// ---- The calendar

class CalendarTest : public FormFixture {
 protected:
  void showDate(const wchar_t* sqlValue) {
    showTable(L"CREATE TABLE 'T' (born Datetime, b Text)",
              {(std::wstring(L"INSERT INTO T VALUES (") + sqlValue + L", '')").c_str()});
  }
  static SYSTEMTIME chosenDate(HWND dialog) {
    SYSTEMTIME date{};
    SendDlgItemMessageW(dialog, kCalendar, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&date));
    return date;
  }
};

TEST_F(CalendarTest, ATapOpensItAtTheFieldsDate) {
  showDate(L"'2001-03-09 14:05:07'");
  DialogScript script([&](HWND dialog) {
    const SYSTEMTIME date = chosenDate(dialog);
    EXPECT_EQ(date.wYear, 2001);
    EXPECT_EQ(date.wMonth, 3);
    EXPECT_EQ(date.wDay, 9);
    EXPECT_EQ(GetParent(dialog), host());
    EXPECT_EQ(currentDialog, dialog);
    expectRaisedCentre(dialog);
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(dateEditor());
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
  EXPECT_EQ(textOf(dateEditor()), L"3/9/2001 2:05:07 PM");
  EXPECT_FALSE(view().takeChange());
}

TEST_F(CalendarTest, ItsTitleIsReadableInEveryColorsOfTheSystem) {
  showDate(L"NULL");
  const auto expectColors = [&](COLORREF ground, COLORREF title, COLORREF titleText) {
    DialogScript script([&](HWND dialog) {
      const auto colorOf = [&](int part) {
        return static_cast<COLORREF>(SendDlgItemMessageW(dialog, kCalendar, MCM_GETCOLOR, part, 0));
      };
      EXPECT_EQ(colorOf(MCSC_MONTHBK), ground);
      EXPECT_EQ(colorOf(MCSC_TITLEBK), title) << "the names of the days have it too, on the ground";
      EXPECT_EQ(colorOf(MCSC_TITLETEXT), titleText);
      DialogScript::close(dialog, IDCANCEL);
    });
    tap(dateEditor());
    EXPECT_EQ(script.count(), 1);
  };
  expectColors(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT));
  // The calendar of a popup is that of the one before.
  const SystemColors colors({{COLOR_WINDOW, RGB(0, 0, 1)},
                             {COLOR_WINDOWTEXT, RGB(255, 255, 255)},
                             {COLOR_ACTIVECAPTION, RGB(0, 0, 1)},
                             {COLOR_HIGHLIGHT, RGB(0, 255, 255)},
                             {COLOR_HIGHLIGHTTEXT, RGB(1, 0, 0)}});
  expectColors(RGB(0, 0, 1), RGB(0, 255, 255), RGB(1, 0, 0));
}

TEST_F(CalendarTest, ItFollowsTheColorsOfTheSystemWhileItStands) {
  showDate(L"NULL");
  DialogScript script([&](HWND dialog) {
    const HWND calendar = GetDlgItem(dialog, kCalendar);
    const SystemColors colors({{COLOR_WINDOW, RGB(0, 0, 1)}, {COLOR_WINDOWTEXT, RGB(255, 255, 254)}});
    SendMessageW(calendar, WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_EQ(static_cast<COLORREF>(SendMessageW(calendar, MCM_GETCOLOR, MCSC_MONTHBK, 0)), RGB(0, 0, 1));
    EXPECT_EQ(static_cast<COLORREF>(SendMessageW(calendar, MCM_GETCOLOR, MCSC_TEXT, 0)), RGB(255, 255, 254));
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(dateEditor());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(CalendarTest, ItsControlsHaveTheirPlaces) {
  showDate(L"NULL");
  DialogScript script([](HWND dialog) {
    const HWND calendar = GetDlgItem(dialog, kCalendar);
    ASSERT_EQ(classOf(calendar), L"SysMonthCal32");
    RECT client{};
    GetClientRect(dialog, &client);
    RECT least{};
    SendMessageW(calendar, MCM_GETMINREQRECT, 0, reinterpret_cast<LPARAM>(&least));
    const int width = static_cast<int>(least.right - least.left);
    const int x = (static_cast<int>(client.right) - width) / 2;
    EXPECT_EQ(placeOf(calendar), (ControlPlace{x, 1, width, static_cast<int>(least.bottom - least.top)}));
    const int y = static_cast<int>(client.bottom) - 21;
    EXPECT_EQ(placeOf(GetDlgItem(dialog, kNoDate)), (ControlPlace{x, y, 50, 18}));
    EXPECT_EQ(placeOf(GetDlgItem(dialog, IDOK)), (ControlPlace{x + 54, y, 50, 18}));
    EXPECT_EQ(placeOf(GetDlgItem(dialog, IDCANCEL)), (ControlPlace{x + 108, y, 50, 18}));
    EXPECT_EQ(textOf(GetDlgItem(dialog, kNoDate)), L"None");
    EXPECT_EQ(textOf(GetDlgItem(dialog, IDOK)), L"OK");
    EXPECT_EQ(textOf(GetDlgItem(dialog, IDCANCEL)), L"Cancel");
    EXPECT_GE(x, 0) << "the calendar is cut";
    EXPECT_LE(least.bottom - least.top + 1, y) << "the buttons cover the calendar";
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(dateEditor());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(CalendarTest, ManyOfThemLeaveNothingOfTheGraphicsSystemBehind) {
  showDate(L"'2001-03-09'");
  const auto showOnce = [this] {
    DialogScript script([](HWND dialog) {
      UpdateWindow(GetDlgItem(dialog, kCalendar));
      DialogScript::close(dialog, IDCANCEL);
    });
    tap(dateEditor());
    EXPECT_EQ(script.count(), 1);
  };
  // What is made once for all.
  for (int i = 0; i < 2; ++i) showOnce();
  const int before = graphicsObjectCount();
  ASSERT_GT(before, 0);
  for (int i = 0; i < 8; ++i) showOnce();
  EXPECT_EQ(graphicsObjectCount(), before);
}

TEST_F(CalendarTest, AfterAnotherDateATextThatIsNoDateBeginsWithToday) {
  showTable(L"CREATE TABLE 'T' (born Datetime, died Datetime)",
            {L"INSERT INTO T VALUES ('2001-03-09', 'someday')"});
  SYSTEMTIME seen{};
  DialogScript script([&](HWND dialog) {
    seen = chosenDate(dialog);
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(dateEditor(0));
  EXPECT_EQ(seen.wYear, 2001);
  ASSERT_EQ(textOf(dateEditor(1)), L"someday");
  tap(dateEditor(1));
  SYSTEMTIME today{};
  GetLocalTime(&today);
  EXPECT_EQ(seen.wYear, today.wYear);
  EXPECT_EQ(script.count(), 2);
}

TEST_F(CalendarTest, AChosenDateIsShownAndStored) {
  showDate(L"'2001-03-09'");
  DialogScript script([](HWND dialog) {
    SYSTEMTIME date{};
    date.wYear = 1999;
    date.wMonth = 12;
    date.wDay = 31;
    SendDlgItemMessageW(dialog, kCalendar, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&date));
    DialogScript::close(dialog, IDOK);
  });
  tap(dateEditor());
  EXPECT_EQ(textOf(dateEditor()), L"12/31/1999");
  EXPECT_STREQ(theDateEditors.find(dateEditor())->shownText().text(), L"3/9/2001");
  EXPECT_TRUE(view().takeChange());
  commit();
  EXPECT_EQ(storedText(0), L"12/31/1999");
}

TEST_F(CalendarTest, NoneShowsNoneAndClearsTheField) {
  showDate(L"'2001-03-09'");
  DialogScript script([](HWND dialog) { DialogScript::close(dialog, kNoDate); });
  tap(dateEditor());
  EXPECT_EQ(textOf(dateEditor()), L"None");
  EXPECT_EQ(theDateEditors.find(dateEditor())->date(), std::nullopt);
  commit();
  EXPECT_EQ(storedText(0), L"None");
}

TEST_F(CalendarTest, WithoutADateItBeginsWithToday) {
  showDate(L"NULL");
  ASSERT_EQ(textOf(dateEditor()), L"None");
  SYSTEMTIME before{};
  GetSystemTime(&before);
  SYSTEMTIME shown{};
  DialogScript script([&](HWND dialog) {
    shown = chosenDate(dialog);
    DialogScript::close(dialog, IDCANCEL);
  });
  tap(dateEditor());
  SYSTEMTIME after{};
  GetSystemTime(&after);
  EXPECT_THAT(shown.wDay, testing::AnyOf(before.wDay, after.wDay));
  EXPECT_THAT(shown.wMonth, testing::AnyOf(before.wMonth, after.wMonth));
  EXPECT_EQ(textOf(dateEditor()), L"None");
}

TEST_F(CalendarTest, TheSpaceKeyOpensItAndEnterAndEscapeClose) {
  showDate(L"'2001-03-09'");
  WORD key = VK_ESCAPE;
  DialogScript script([&](HWND dialog) {
    PostMessageW(GetDlgItem(dialog, kCalendar), WM_KEYDOWN, key, 1);
    if (key == VK_RETURN) SetWindowTextW(dateEditor(), L"None");
  });
  type(dateEditor(), L" ");
  ASSERT_EQ(script.count(), 1);
  EXPECT_EQ(textOf(dateEditor()), L"3/9/2001");
  key = VK_RETURN;
  type(dateEditor(), L" ");
  EXPECT_EQ(script.count(), 2);
  EXPECT_EQ(textOf(dateEditor()), L"3/9/2001") << "Enter takes the date of the calendar";
}

TEST_F(CalendarTest, TheArrowsMoveInIt) {
  showDate(L"'2001-03-09'");
  DialogScript script([&](HWND dialog) {
    const HWND calendar = GetDlgItem(dialog, kCalendar);
    for (const WPARAM key : {VK_RIGHT, VK_DOWN, VK_RETURN}) PostMessageW(calendar, WM_KEYDOWN, key, 1);
  });
  type(dateEditor(), L" ");
  ASSERT_EQ(script.count(), 1);
  EXPECT_EQ(textOf(dateEditor()), L"3/17/2001");
}

struct KeyCase {
  WORD year, month, day;
  WPARAM key;
  WORD nextYear, nextMonth, nextDay;
};

TEST(CalendarKeysTest, LeadByDaysWeeksAndMonths) {
  constexpr KeyCase kCases[] = {
      {2001, 3, 1, VK_LEFT, 2001, 2, 28},    {2000, 2, 28, VK_RIGHT, 2000, 2, 29},
      {2001, 1, 3, VK_UP, 2000, 12, 27},     {2001, 12, 30, VK_DOWN, 2002, 1, 6},
      {2001, 3, 31, VK_PRIOR, 2001, 2, 28},  {2004, 3, 31, VK_PRIOR, 2004, 2, 29},
      {2001, 1, 15, VK_PRIOR, 2000, 12, 15}, {2001, 12, 31, VK_NEXT, 2002, 1, 31},
      {1900, 1, 31, VK_NEXT, 1900, 2, 28},   {2001, 3, 9, VK_HOME, 2001, 3, 1},
      {2001, 4, 9, VK_END, 2001, 4, 30},
  };
  for (const KeyCase& each : kCases) {
    SYSTEMTIME day{};
    day.wYear = each.year;
    day.wMonth = each.month;
    day.wDay = each.day;
    const auto next = dayAfterKey(day, each.key);
    ASSERT_TRUE(next.has_value());
    EXPECT_EQ((std::array{next->wYear, next->wMonth, next->wDay}),
              (std::array{each.nextYear, each.nextMonth, each.nextDay}))
        << each.year << '-' << each.month << '-' << each.day;
  }
  SYSTEMTIME day{};
  day.wYear = 2001;
  day.wMonth = day.wDay = 1;
  EXPECT_FALSE(dayAfterKey(day, VK_SPACE).has_value());
}

TEST_F(CalendarTest, AFormThatIsTakenDownUnderItTakesNothing) {
  showDate(L"'2001-03-09'");
  DialogScript script([&](HWND dialog) {
    view().tearDown();
    DialogScript::close(dialog, IDOK);
  });
  tap(dateEditor());
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(dateEditor(), nullptr);
}

TEST_F(CalendarTest, ADateEditorThatIsNotRegisteredOpensNothing) {
  showFields(51, L"Datetime");
  const DialogScript script(nothing);
  tap(dateEditor(50));
  EXPECT_EQ(script.count(), 0);
}

}  // namespace
