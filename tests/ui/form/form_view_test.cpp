#include "views/form/form_view.h"

#include "base/settings/app_settings.h"
#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/date_field_editor.h"
#include "views/form/text_field_editor.h"

namespace {

using FormViewTest = FormFixture;

int labelCount(HWND form) {
  int count = 0;
  for (HWND child = GetWindow(form, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetDlgCtrlID(child) == 10) ++count;
  }
  return count;
}

TEST_F(FormViewTest, EveryFieldGetsItsKindOfEditorAndIdentifier) {
  showOneOfEach();
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
  showOneOfEach();
  // Some systems' edit controls draw the border themselves and take its style away.
  EXPECT_EQ(styleOf(textEditor()) & ~DWORD{WS_VISIBLE | WS_BORDER},
            static_cast<DWORD>(WS_CHILD | WS_TABSTOP | ES_AUTOHSCROLL));
  EXPECT_EQ(styleOf(checkBox()) & ~DWORD{WS_VISIBLE},
            static_cast<DWORD>(WS_CHILD | WS_TABSTOP | BS_AUTOCHECKBOX | BS_LEFTTEXT));
  EXPECT_EQ(styleOf(label(L"abc:")) & ~DWORD{WS_VISIBLE}, static_cast<DWORD>(WS_CHILD));
  EXPECT_NE(styleOf(dateEditor()) & SS_NOTIFY, 0u) << "it could not be tapped";
}

TEST_F(FormViewTest, TheRowsHaveTheirPlaces) {
  showOneOfEach();
  EXPECT_EQ(placeOf(label(L"abc:")), (ControlPlace{3, 30, 35, 18}));
  EXPECT_EQ(placeOf(textEditor(0)), (ControlPlace{48, 30, 188, 18}));
  EXPECT_EQ(placeOf(textEditor(1)), (ControlPlace{48, 53, 188, 18}));
  EXPECT_EQ(placeOf(dateEditor()), (ControlPlace{48, 99, 80, 18}));
}

TEST_F(FormViewTest, ABooleanIsACheckBoxAtTheLeftAndItsRowHasNoLabel) {
  showOneOfEach();
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

TEST_F(FormViewTest, WithoutARecordNoEditorOfAnyPageIsShown) {
  showFields(11, L"Integer");
  panel().raise(214, 80);
  view().layOut(false);
  ASSERT_TRUE(isShown(textEditor(8))) << "of the second page now, and left visible";
  view().hideAllEditors();
  for (int field = 0; field < 11; ++field) EXPECT_FALSE(isShown(textEditor(field))) << field;
  EXPECT_FALSE(isShown(label(L"f8:")));
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
  showOneOfEach();
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
  showOneOfEach();
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
