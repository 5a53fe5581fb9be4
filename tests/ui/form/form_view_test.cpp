#include "views/form/form_view.h"

#include "base/settings/app_settings.h"
#include "data/database/database.h"
#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "records/parts/record_history.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/date_field_editor.h"
#include "views/form/text_field_editor.h"

namespace {

using FormViewTest = FormFixture;

constexpr wchar_t kOfEachKind[] =
    L"CREATE TABLE 'T' (abc Text, n Integer, flag Bit, born Datetime, x Float, u UInt16)";
constexpr wchar_t kOneOfEach[] = L"INSERT INTO T VALUES ('one', -2, 1, '2001-03-09', 1.5, 7)";

int labelCount(HWND form) {
  int count = 0;
  for (HWND child = GetWindow(form, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetDlgCtrlID(child) == 10) ++count;
  }
  return count;
}

TEST_F(FormViewTest, EveryFieldGetsItsKindOfEditorAndIdentifier) {
  showTable(kOfEachKind, {kOneOfEach});
  EXPECT_EQ(classOf(textEditor(0)), L"Edit");
  EXPECT_EQ(textOf(textEditor(0)), L"one");
  EXPECT_EQ(textOf(textEditor(1)), L"-2");
  EXPECT_EQ(textOf(textEditor(2)), L"1.500000");
  EXPECT_EQ(textOf(textEditor(3)), L"7");
  EXPECT_EQ(textEditor(4), nullptr);
  EXPECT_EQ(classOf(checkBox()), L"Button");
  EXPECT_EQ(textOf(checkBox()), L"flag:");
  EXPECT_EQ(SendMessageW(checkBox(), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(checkBox(1), nullptr);
  EXPECT_EQ(classOf(dateEditor()), L"Static");
  EXPECT_EQ(textOf(dateEditor()), L"3/9/2001");
  EXPECT_EQ(dateEditor(1), nullptr);
}

TEST_F(FormViewTest, TheControlsHaveTheStylesOfTheirKind) {
  showTable(kOfEachKind, {kOneOfEach});
  // Some systems' edit controls draw the border themselves and take its style away.
  EXPECT_EQ(styleOf(textEditor()) & ~DWORD{WS_VISIBLE | WS_BORDER},
            static_cast<DWORD>(WS_CHILD | WS_TABSTOP | ES_AUTOHSCROLL));
  EXPECT_EQ(styleOf(checkBox()) & ~DWORD{WS_VISIBLE},
            static_cast<DWORD>(WS_CHILD | WS_TABSTOP | BS_AUTOCHECKBOX | BS_LEFTTEXT));
  EXPECT_EQ(styleOf(label(L"abc:")) & ~DWORD{WS_VISIBLE}, static_cast<DWORD>(WS_CHILD));
  EXPECT_NE(styleOf(dateEditor()) & SS_NOTIFY, 0u) << "it could not be tapped";
}

TEST_F(FormViewTest, TheRowsHaveTheirPlaces) {
  showTable(kOfEachKind, {kOneOfEach});
  EXPECT_EQ(placeOf(label(L"abc:")), (ControlPlace{3, 30, 35, 18}));
  EXPECT_EQ(placeOf(textEditor(0)), (ControlPlace{48, 30, 188, 18}));
  EXPECT_EQ(placeOf(textEditor(1)), (ControlPlace{48, 53, 188, 18}));
  EXPECT_EQ(placeOf(dateEditor()), (ControlPlace{48, 99, 80, 18}));
}

TEST_F(FormViewTest, ABooleanIsACheckBoxAtTheLeftAndItsRowHasNoLabel) {
  showTable(kOfEachKind, {kOneOfEach});
  EXPECT_EQ(placeOf(checkBox()), (ControlPlace{3, 76, 170, 18}));
  EXPECT_EQ(label(L"flag:"), nullptr);
  EXPECT_EQ(labelCount(form()), 5);
}

TEST_F(FormViewTest, AnAmpersandInANameIsNoMarkOfAKey) {
  showTable(L"CREATE TABLE 'T' ([R&D] Text, plain Text, [Q&A] Bit)", {L"INSERT INTO T VALUES ('a', 'b', 1)"});
  ASSERT_NE(label(L"R&D:"), nullptr);
  EXPECT_NE(styleOf(label(L"R&D:")) & SS_NOPREFIX, 0u);
  EXPECT_EQ(styleOf(label(L"plain:")) & SS_NOPREFIX, 0u);
  // A button has no such style.
  EXPECT_EQ(textOf(checkBox()), L"Q&&A:");
}

TEST_F(FormViewTest, WithTheBandsAtTheBottomTheFormBeginsHigher) {
  theAppSettings = std::make_unique<AppSettings>();
  theAppSettings->options().setRebarsAtTop(0);
  showFields(11, L"Text");
  EXPECT_EQ(placeOf(textEditor(0)).y, 2);
  EXPECT_EQ(placeOf(textEditor(8)).y, 186);
  EXPECT_EQ(placeOf(textEditor(9)).y, 2);
  theAppSettings->options().setRebarsAtTop(1);
  view().build();
  EXPECT_EQ(placeOf(textEditor(0)).y, 30);
}

TEST_F(FormViewTest, OnlyTheCurrentPageIsShown) {
  showFields(20, L"Text");
  ASSERT_EQ(view().pageCount(), 3u);
  EXPECT_EQ(view().pageIndex(), 0u);
  EXPECT_TRUE(isShown(textEditor(8)) && isShown(label(L"f8:")));
  EXPECT_FALSE(isShown(textEditor(9)) || isShown(label(L"f9:")));

  ASSERT_TRUE(view().showNextPage());
  EXPECT_FALSE(isShown(textEditor(8)) || isShown(label(L"f8:")));
  EXPECT_TRUE(isShown(textEditor(9)) && isShown(textEditor(17)));
  ASSERT_TRUE(view().showNextPage());
  EXPECT_TRUE(isShown(textEditor(18)) && isShown(textEditor(19)));
  EXPECT_FALSE(view().showNextPage());
  EXPECT_EQ(view().pageIndex(), 2u);
  EXPECT_TRUE(isShown(textEditor(19)));

  ASSERT_TRUE(view().showPreviousPage());
  ASSERT_TRUE(view().showPreviousPage());
  EXPECT_FALSE(view().showPreviousPage());
  EXPECT_TRUE(isShown(textEditor(0)));
  EXPECT_FALSE(isShown(textEditor(9)));
}

TEST_F(FormViewTest, WithoutRecordsNoPageIsShownAndNothingIsLoaded) {
  showTable(L"CREATE TABLE 'T' (abc Text, n Integer)");
  document().loadRecord();
  EXPECT_EQ(view().pageCount(), 1u);
  EXPECT_FALSE(isShown(textEditor()) || isShown(label(L"abc:")));
  EXPECT_EQ(textOf(textEditor()), L"Edit window");
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormViewTest, ClearedEditorsHoldNothingAndCountAsUnchanged) {
  showTable(L"CREATE TABLE 'T' (abc Text, n Integer)", {L"INSERT INTO T VALUES ('left over', 7)"});
  ASSERT_EQ(textOf(textEditor(0)), L"left over");
  view().clearEditors();
  EXPECT_EQ(textOf(textEditor(0)), L"");
  EXPECT_EQ(textOf(textEditor(1)), L"");
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormViewTest, TheFocusGoesToTheFirstFieldAlsoFromAnotherPage) {
  showFields(20, L"Text");
  EXPECT_EQ(GetFocus(), textEditor(0));
  view().showNextPage();
  SetFocus(textEditor(10));
  document().loadRecord();
  EXPECT_EQ(GetFocus(), textEditor(0));
  EXPECT_EQ(view().pageIndex(), 1u);
}

TEST_F(FormViewTest, TurningThePageTakesTheKeyboardAlong) {
  showFields(20, L"Text");
  ASSERT_EQ(GetFocus(), textEditor(0));
  ASSERT_TRUE(view().showNextPage());
  EXPECT_EQ(GetFocus(), textEditor(9));
  SendMessageW(GetFocus(), WM_CHAR, L'\t', 1);
  EXPECT_EQ(GetFocus(), textEditor(10));
  ASSERT_TRUE(view().showPreviousPage());
  EXPECT_EQ(GetFocus(), textEditor(0));
}

TEST_F(FormViewTest, TurningThePageAfterAMoveTakesTheKeyboardFromTheHiddenFirstField) {
  showFields(20, L"Text");
  view().showNextPage();
  document().loadRecord();
  ASSERT_EQ(GetFocus(), textEditor(0));
  ASSERT_TRUE(view().showNextPage());
  EXPECT_EQ(GetFocus(), textEditor(18));
}

TEST_F(FormViewTest, TurningThePageLeavesTheKeyboardToWhatIsNoEditor) {
  showFields(20, L"Text");
  const HWND other = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, host(), nullptr,
                                     nullptr, nullptr);
  SetFocus(other);
  ASSERT_TRUE(view().showNextPage());
  EXPECT_EQ(GetFocus(), other);
}

TEST_F(FormViewTest, AFieldThatWasFoundIsSelectedWhole) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text, c Bit)", {L"INSERT INTO T VALUES ('one', 'three', 0)"});
  view().focusField(1);
  EXPECT_EQ(GetFocus(), textEditor(1));
  EXPECT_EQ(SendMessageW(textEditor(1), EM_GETSEL, 0, 0), MAKELRESULT(0, 5));
  view().focusField(2);
  EXPECT_EQ(GetFocus(), checkBox());
  view().focusField(3);
  EXPECT_EQ(GetFocus(), checkBox());
}

TEST_F(FormViewTest, OnlyMinusOneChecksABoolean) {
  // A query's boolean may hold another program's number.
  showTable(L"CREATE TABLE 'T' (a Bit, b Bit, c Bit)", {L"INSERT INTO T VALUES (1, 0, NULL)"});
  EXPECT_EQ(SendMessageW(checkBox(0), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(SendMessageW(checkBox(1), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_EQ(SendMessageW(checkBox(2), BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

// ---- Changes

TEST_F(FormViewTest, ATouchedFieldIsStoredAndItsNeighboursStay) {
  showTable(kOfEachKind, {kOneOfEach});
  EXPECT_FALSE(view().takeChange());
  type(textEditor(1), L"1");
  EXPECT_EQ(textOf(textEditor(1)), L"1-2");
  SetWindowTextW(textEditor(1), L"12");
  commit();
  EXPECT_EQ(storedText(1), L"12");
  EXPECT_EQ(storedText(0), L"one");
  EXPECT_EQ(storedText(3), L"3/9/2001");
  EXPECT_EQ(storedText(4), L"1.500000");
}

TEST_F(FormViewTest, TheFirstChangeInFieldOrderIsTakenAway) {
  showFields(3, L"Text");
  type(textEditor(2), L"x\b");
  type(textEditor(1), L"x\b");
  EXPECT_TRUE(view().takeChange());
  EXPECT_TRUE(view().takeChange());
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormViewTest, LoadingARecordForgetsTheMarksOfTheFormerOne) {
  showFields(3, L"Text");
  type(textEditor(1), L"x");
  type(textEditor(2), L"x");
  document().loadRecord();
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormViewTest, AFieldThatIsReadOnlyGetsAReadOnlyEditor) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text GENERATED ALWAYS AS (a || '!') VIRTUAL)",
            {L"INSERT INTO T (a) VALUES ('x')"});
  const auto expectStyles = [this] {
    EXPECT_EQ(styleOf(textEditor(0)) & ES_READONLY, 0u);
    EXPECT_EQ(styleOf(textEditor(1)) & ES_READONLY, static_cast<DWORD>(ES_READONLY));
  };
  EXPECT_EQ(textOf(textEditor(1)), L"x!");
  expectStyles();
  // The editor has it from its making on; loading a record sets it once more.
  view().build();
  ASSERT_NE(textOf(textEditor(1)), L"x!") << "nothing was loaded yet";
  expectStyles();
}

TEST_F(FormViewTest, WithoutARecordNoEditorOfAnyPageIsShown) {
  showFields(11, L"Integer");
  panel().raise(214, 80);
  view().layOut(false);
  ASSERT_TRUE(isShown(textEditor(8))) << "of the second page now, and left visible";
  view().hideAllEditors();
  for (int field = 0; field < 11; ++field) EXPECT_FALSE(isShown(textEditor(field))) << field;
  EXPECT_FALSE(isShown(label(L"f8:")));
}

TEST_F(FormViewTest, WhatTheDeleteKeyAndTheClipboardDoIsAChange) {
  showFields(2, L"Text");
  SendMessageW(textEditor(1), EM_SETSEL, 0, -1);
  SendMessageW(textEditor(1), WM_CLEAR, 0, 0);
  EXPECT_TRUE(view().takeChange());
}

TEST_F(FormViewTest, EveryCharacterThatTheFilterTakesCountsAsAChangeAndTheSameTextIsNotWritten) {
  showFields(1, L"Text");
  const std::wstring before = storedText(0);
  SendMessageW(textEditor(), EM_SETSEL, 0, -1);
  type(textEditor(), L"\x03");
  EXPECT_TRUE(theTextEditors.find(textEditor())->isChanged());
  EXPECT_TRUE(view().takeChange());
  EXPECT_FALSE(view().takeChange()) << "asking takes it away";
  commit();
  EXPECT_EQ(storedText(0), before);
}

TEST_F(FormViewTest, ACheckBoxAndADateReportTheirChange) {
  showTable(kOfEachKind, {kOneOfEach});
  SendMessageW(checkBox(), BM_CLICK, 0, 0);
  EXPECT_TRUE(view().takeChange());
  commit();
  EXPECT_EQ(storedText(2), L"0");
  document().loadRecord();
  EXPECT_FALSE(view().takeChange());
  SetWindowTextW(dateEditor(), L"12/31/1999");
  EXPECT_TRUE(view().takeChange());
  commit();
  EXPECT_EQ(storedText(3), L"12/31/1999");
}

TEST_F(FormViewTest, ALongTextIsShownAndStoredWhole) {
  const std::wstring text(40000, L'q');
  showTable(L"CREATE TABLE 'T' (a Text, b Integer)",
            {(L"INSERT INTO T VALUES ('" + text + L"', 1)").c_str()});
  EXPECT_EQ(textOf(textEditor(0)), text);
  EXPECT_FALSE(view().takeChange());
  SendMessageW(textEditor(0), EM_SETSEL, 40000, 40000);
  SendMessageW(textEditor(0), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"END"));
  commit();
  EXPECT_EQ(storedText(0), text + L"END");
}

TEST_F(FormViewTest, TextsWithOddCharactersComeBackUnchanged) {
  showTable(
      L"CREATE TABLE 'T' (a Text, b Text, c Text, d Text)",
      {L"INSERT INTO T VALUES ('one' || char(10) || 'two', 'a' || char(13) || 'b', 'x' || char(9) || 'y', "
       L"'&' || char(8232) || char(55357, 56832))"});
  EXPECT_EQ(textOf(textEditor(0)), L"one\ntwo");
  EXPECT_EQ(textOf(textEditor(1)), L"a\rb");
  EXPECT_EQ(textOf(textEditor(2)), L"x\ty");
  for (int i = 0; i < 4; ++i) SetFocus(textEditor(i));
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormViewTest, ValuesBeyondTheirTextSurviveTheSavingOfTheirNeighbours) {
  showTable(L"CREATE TABLE 'T' (a Integer, b Float, f Datetime, g Datetime, c Bit, d Bit, n Text)",
            {L"INSERT INTO T VALUES (9007199254740993, 0.12345678901234567, '2001-03-09 14:05:07.250', "
             L"'1899-12-30', 5, NULL, 'x')"});
  type(textEditor(2), L"y");
  commit();
  Database database;
  ASSERT_TRUE(database.open(document().databasePath()));
  ASSERT_TRUE(database.openRecordset(
      L"Select a || ' ' || (b = 0.12345678901234567) || ' ' || f || ' ' || g || ' ' || c || ' ' || "
      L"coalesce(d, 'null') || ' ' || n from T"));
  EXPECT_STREQ(database.valueText(0).text(),
               L"9007199254740993 1 2001-03-09 14:05:07.250 1899-12-30 00:00:00 5 null yx");
}

TEST_F(FormViewTest, LineBreaksAreWrittenAsShownWithTheirRecordAndAreNoChangeAlone) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text)",
            {L"INSERT INTO T VALUES ('one' || char(13, 10) || 'two', 'x')"});
  EXPECT_EQ(textOf(textEditor(0)), L"one,two");
  EXPECT_FALSE(view().takeChange());
  commit();
  EXPECT_EQ(storedText(0), L"one\r\ntwo");
  type(textEditor(1), L"y");
  commit();
  EXPECT_EQ(storedText(0), L"one,two");
}

TEST_F(FormViewTest, ATextWithLineBreaksIsNoneThatWasTyped) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text)",
            {L"INSERT INTO T VALUES ('one' || char(13, 10) || 'two', 'x')"});
  RecordHistory& history = document().history();
  EXPECT_FALSE(history.hasStep(HistoryWay::back));
  type(textEditor(1), L"y");
  EXPECT_TRUE(history.hasStep(HistoryWay::back));
  EXPECT_EQ(history.text(HistoryWay::back), L"Undo what is typed");
  ASSERT_TRUE(history.take(HistoryWay::back));
  history.showTaken();
  EXPECT_EQ(storedText(0), L"one\r\ntwo");
  EXPECT_TRUE(history.hasStep(HistoryWay::again));
  EXPECT_FALSE(history.hasStep(HistoryWay::back));
}

TEST_F(FormViewTest, ADateThatIsChosenAgainIsNoOther) {
  showTable(kOfEachKind, {kOneOfEach});
  SetWindowTextW(dateEditor(), L"March 9, 2001");
  EXPECT_FALSE(theDateEditors.find(dateEditor())->isEdited());
  SetWindowTextW(dateEditor(), L"None");
  EXPECT_TRUE(theDateEditors.find(dateEditor())->isEdited());
}

TEST_F(FormViewTest, OfARecordThatWasNotReadNothingIsShownAndNothingCanBeTyped) {
  showTable(kOfEachKind, {kOneOfEach});
  view().showRecord(RecordSnapshot(1, Outcome::failure(L"locked")));
  EXPECT_EQ(textOf(textEditor(0)), L"");
  EXPECT_EQ(textOf(dateEditor()), L"");
  EXPECT_EQ(SendMessageW(checkBox(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  type(textEditor(0), L"typed");
  type(textEditor(1), L"12");
  SendMessageW(checkBox(), BM_CLICK, 0, 0);
  tap(dateEditor());  // opens no calendar, which would wait for its user
  tap(textEditor(0));
  EXPECT_EQ(textOf(textEditor(0)), L"");
  EXPECT_EQ(textOf(textEditor(1)), L"");
  EXPECT_EQ(SendMessageW(checkBox(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_TRUE((GetWindowLongW(textEditor(0), GWL_STYLE) & ES_READONLY) != 0);
  EXPECT_FALSE(view().takeChange());
  for (const FieldValueSource* editor : view().editors()) EXPECT_FALSE(editor->isEdited());

  document().loadRecord();
  EXPECT_EQ(textOf(textEditor(0)), L"one");
  type(textEditor(0), L"x");
  SendMessageW(checkBox(), BM_CLICK, 0, 0);
  EXPECT_EQ(textOf(textEditor(0)), L"xone");
  EXPECT_TRUE((GetWindowLongW(textEditor(0), GWL_STYLE) & ES_READONLY) == 0);
  EXPECT_TRUE(view().takeChange());
}

TEST_F(FormViewTest, TheFirstKeyInAnyTextIsReported) {
  showTable(kOfEachKind, {kOneOfEach});
  EXPECT_EQ(prompts().typedCount, 0);
  constexpr wchar_t kCopy[] = L"\x03";
  type(textEditor(0), kCopy);
  EXPECT_EQ(prompts().typedCount, 0) << "copying changes nothing";
  type(textEditor(0), L"xy");
  EXPECT_EQ(prompts().typedCount, 1);
}

TEST_F(FormViewTest, SoIsAKeyInATextThatCantBeChanged) {
  showTable(L"CREATE TABLE 'T' (abc Text)", {L"INSERT INTO T VALUES ('one')"});
  document().closeDatabase();
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_TRUE(document().openDatabase(path().c_str()));
  document().setViewMode(ViewMode::form);
  type(textEditor(0), L"x");
  EXPECT_EQ(textOf(textEditor(0)), L"one");
  EXPECT_EQ(prompts().typedCount, 1);
  document().closeDatabase();
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

// ---- Many fields

TEST_F(FormViewTest, AHundredAndTwentyTextFieldsAreShownAndStored) {
  showFields(120, L"Text");
  ASSERT_EQ(view().pageCount(), 14u);
  EXPECT_EQ(theTextEditors.count(), 50u);
  for (int i = 0; i < 120; ++i) ASSERT_EQ(textOf(textEditor(i)), L"v") << i;
  for (const int i : {0, 49, 50, 119}) type(textEditor(i), L"\b" + std::to_wstring(i));
  commit();
  for (const int i : {0, 49, 50, 119}) {
    EXPECT_EQ(storedText(static_cast<std::uint32_t>(i)), std::to_wstring(i) + L"v") << i;
  }
  EXPECT_EQ(storedText(51), L"v");
}

TEST_F(FormViewTest, AHundredAndTwentyDatesAreShownAndStored) {
  showFields(120, L"Datetime");
  EXPECT_EQ(theDateEditors.count(), 50u);
  for (int i = 0; i < 120; ++i) ASSERT_EQ(textOf(dateEditor(i)), L"1/4/1900") << i;
  SetWindowTextW(dateEditor(119), L"2/3/2004");
  commit();
  EXPECT_EQ(storedText(119), L"2/3/2004");
  EXPECT_EQ(storedText(118), L"1/4/1900");
}

TEST_F(FormViewTest, BuildingAgainAndAgainKeepsNothing) {
  showTable(kOfEachKind, {kOneOfEach});
  const long before = LiveResources::countOfAll();
  for (int i = 0; i < 20; ++i) {
    view().build();
    view().showEditors();
    document().loadRecord();
  }
  EXPECT_EQ(LiveResources::countOfAll(), before);
  EXPECT_EQ(labelCount(form()), 5);
  view().tearDown();
  EXPECT_EQ(LiveResources::count(ResourceKind::window), 0);
  EXPECT_EQ(GetWindow(form(), GW_CHILD), nullptr);
  EXPECT_EQ(view().pageCount(), 0u);
  EXPECT_EQ(theTextEditors.find(textEditor()), nullptr);
}

TEST_F(FormViewTest, EditorsThatWentWithTheirWindowAreForgotten) {
  showTable(kOfEachKind, {kOneOfEach});
  DestroyWindow(form());
  document().loadRecord();
  view().tearDown();
  EXPECT_EQ(LiveResources::count(ResourceKind::window), 0);
}

// ---- The input panel

TEST_F(FormViewTest, RaisingThePanelKeepsTheFirstFieldThatWasShown) {
  showFields(20, L"Text");
  view().showNextPage();
  view().showNextPage();
  ASSERT_EQ(view().pageIndex(), 2u);
  panel().raise(214, 80);
  view().layOut(false);
  EXPECT_EQ(view().pageIndex(), 3u);
  EXPECT_EQ(view().pageCount(), 4u);
  EXPECT_TRUE(isShown(textEditor(18)) && isShown(textEditor(19)));
  EXPECT_EQ(placeOf(textEditor(5)), (ControlPlace{41, 145, 195, 18}));
  EXPECT_EQ(placeOf(textEditor(6)), (ControlPlace{41, 30, 195, 18}));
  EXPECT_EQ(placeOf(label(L"f6:")), (ControlPlace{3, 30, 28, 18}));
  EXPECT_EQ(theTextEditors.find(textEditor(6))->place(), (ControlPlace{41, 30, 0, 0}));

  panel().putDown();
  view().layOut(false);
  EXPECT_EQ(view().pageIndex(), 2u);
  EXPECT_EQ(view().pageCount(), 3u);
  EXPECT_EQ(placeOf(textEditor(6)).y, 168);
}

TEST_F(FormViewTest, ControlsThatChangeTheirPageStayVisibleUntilItIsLeft) {
  showFields(20, L"Text");
  panel().raise(214, 80);
  view().layOut(false);
  EXPECT_EQ(view().pageIndex(), 0u);
  EXPECT_TRUE(isShown(textEditor(6)));
  view().showNextPage();
  view().showPreviousPage();
  EXPECT_FALSE(isShown(textEditor(6)));
}

TEST_F(FormViewTest, WithoutForceAPanelThatStaysChangesNothing) {
  panel().raise(214, 80);
  showFields(20, L"Text");
  ASSERT_EQ(view().pageCount(), 4u);
  SetWindowPos(textEditor(0), nullptr, 99, 99, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  view().layOut(false);
  EXPECT_EQ(placeOf(textEditor(0)).x, 99);
  view().layOut(true);
  EXPECT_EQ(placeOf(textEditor(0)).x, 41);
}

TEST_F(FormViewTest, APanelThatFloatsOrDoesNotAnswerTakesNoPlace) {
  panel().undock();
  showFields(20, L"Text");
  EXPECT_EQ(view().pageCount(), 3u);
  panel().raise(214, 80);
  view().layOut(false);
  ASSERT_EQ(view().pageCount(), 4u);
  panel().fail();
  view().layOut(true);
  EXPECT_EQ(view().pageCount(), 4u) << "what was known last holds on";
}

TEST_F(FormViewTest, OnAnotherPageOnlyThePanelIsRemembered) {
  showFields(20, L"Text");
  document().setViewMode(ViewMode::tables);
  panel().raise(214, 80);
  view().layOut(true);
  EXPECT_EQ(view().pageCount(), 3u);
}

TEST_F(FormViewTest, WithoutRecordsALayoutShowsNothing) {
  showTable(L"CREATE TABLE 'T' (abc Text)");
  view().layOut(true);
  EXPECT_FALSE(isShown(textEditor()));
}

TEST_F(FormViewTest, WithoutADocumentNothingHappens) {
  view().build();
  view().showRecord({});
  EXPECT_TRUE(view().editors().empty());
  view().layOut(true);
  EXPECT_FALSE(view().takeChange());
  EXPECT_FALSE(view().showNextPage());
  EXPECT_FALSE(view().showPreviousPage());
  EXPECT_EQ(view().pageCount(), 0u);
  EXPECT_EQ(GetWindow(form(), GW_CHILD), nullptr);
}

}  // namespace
