#include <windows.h>

#include <commctrl.h>

#include "gmock/gmock.h"
#include "owners/handles.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/message_boxes.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/check_field_editor.h"
#include "views/form/date_field_editor.h"
#include "views/form/field_label.h"
#include "views/form/text_field_editor.h"
#include "views/shared/child_control.h"
#include "views/shared/focused_edit.h"

namespace {

FieldSnapshot readAs(const wchar_t* text) {
  return {.state = FieldSnapshot::State::value, .text = text, .read = {}};
}

using testing::ElementsAre;

using FieldEditorsTest = FormFixture;

std::wstring todayText() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  wchar_t text[50] = L"";
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &now, nullptr, text, ARRAYSIZE(text));
  return text;
}

MessageBoxes::Box onlyNumbers(const std::wstring& field) {
  return {.caption = L"Quivane",
          .text = L"Only numbers are allowed\nField '" + field + L"'",
          .icon = LoadIconW(nullptr, IDI_INFORMATION),
          .isTopmost = true};
}

bool isTopmost(HWND window) {
  return (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

LRESULT CALLBACK noteTopmost(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR note) {
  if (message == WM_DESTROY) *reinterpret_cast<bool*>(note) = isTopmost(window);
  return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(FieldEditorsTest, TheTextOfAWindowIsReadWholeWhateverItsLength) {
  const UniqueWindow edit(CreateWindowExW(0, L"EDIT", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                          GetModuleHandleW(nullptr), nullptr));
  for (const std::size_t length : {0, 1, 126, 127, 128, 129, 5000}) {
    const std::wstring text(length, L'x');
    SetWindowTextW(edit.get(), text.c_str());
    EXPECT_EQ(windowText(edit.get()).text(), text) << length;
  }
}

// ---- Typing

TEST_F(FieldEditorsTest, Typing12aIntoANumberShowsTheMessageOnceAndLeaves12) {
  showTable(L"CREATE TABLE 'T' (n Integer)", {L"INSERT INTO T VALUES (NULL)"});
  MessageBoxes boxes;
  type(textEditor(), L"12a");
  EXPECT_THAT(boxes.take(), ElementsAre(onlyNumbers(L"n")));
  EXPECT_EQ(textOf(textEditor()), L"12");
}

TEST_F(FieldEditorsTest, AMinusGoesIntoSignedNumbersOnly) {
  showTable(L"CREATE TABLE 'T' (i SmallInt, n Integer, u UInt16, v UInt32)",
            {L"INSERT INTO T VALUES (NULL, NULL, NULL, NULL)"});
  ASSERT_EQ(document().fieldType(2), FieldType::unsignedSmallInt);
  ASSERT_EQ(document().fieldType(3), FieldType::unsignedInt);
  MessageBoxes boxes;
  for (int i = 0; i < 4; ++i) type(textEditor(i), L"-");
  EXPECT_THAT(boxes.take(), ElementsAre(onlyNumbers(L"u"), onlyNumbers(L"v")));
  EXPECT_EQ(textOf(textEditor(0)), L"-");
  EXPECT_EQ(textOf(textEditor(1)), L"-");
  EXPECT_EQ(textOf(textEditor(2)), L"");
  EXPECT_EQ(textOf(textEditor(3)), L"");
}

TEST_F(FieldEditorsTest, ATabIsNotInsertedIntoATextAndSetsItsFlag) {
  showFields(2, L"Text");
  TextFieldEditor* const editor = theTextEditors.find(textEditor(0));
  ASSERT_NE(editor, nullptr);
  EXPECT_FALSE(editor->tabPressed());
  type(textEditor(0), L"\t");
  EXPECT_TRUE(editor->tabPressed());
  EXPECT_EQ(textOf(textEditor(0)), L"v");
  EXPECT_FALSE(editor->isChanged());
}

TEST_F(FieldEditorsTest, ATabInANumberShowsTheMessage) {
  showFields(2, L"Integer");
  MessageBoxes boxes;
  type(textEditor(0), L"\t");
  EXPECT_THAT(boxes.take(), ElementsAre(onlyNumbers(L"f0")));
  EXPECT_EQ(textOf(textEditor(0)), L"5");
}

TEST_F(FieldEditorsTest, NothingElseCanBeUsedOrCoverTheMessageWhileItIsOpen) {
  showTable(L"CREATE TABLE 'T' (n Integer)", {L"INSERT INTO T VALUES (NULL)"});
  bool formEnabled = true;
  bool onTop = false;
  const DialogScript script([&](HWND box) {
    formEnabled = IsWindowEnabled(host()) != FALSE;
    // What it was until its end: now it is not shown yet.
    SetWindowSubclass(box, noteTopmost, 0, reinterpret_cast<DWORD_PTR>(&onTop));
    DialogScript::close(box, IDOK);
  });
  type(textEditor(), L"x");
  ASSERT_EQ(script.count(), 1);
  EXPECT_FALSE(formEnabled);
  EXPECT_TRUE(onTop);
  EXPECT_TRUE(IsWindowEnabled(host()));
  EXPECT_FALSE(isTopmost(host()));
}

TEST_F(FieldEditorsTest, TheCharactersOfAnEditorThatIsNotRegisteredAreNotJudged) {
  showFields(51, L"Integer");
  MessageBoxes boxes;
  SetFocus(textEditor(50));
  SetFocus(nullptr);
  type(textEditor(50), L"x");
  EXPECT_TRUE(boxes.take().empty());
  EXPECT_EQ(textOf(textEditor(50)), L"x5");
}

TEST_F(FieldEditorsTest, TheTabKeyGoesThroughTheEditorsOfThePage) {
  showTable(L"CREATE TABLE 'T' (a Text, b Bit, c Datetime, d Integer, e Text)",
            {L"INSERT INTO T VALUES ('', 0, NULL, 1, '')"});
  MessageBoxes boxes;
  ShowWindow(form(), SW_SHOW);
  ShowWindow(host(), SW_SHOWNOACTIVATE);
  const HWND order[] = {textEditor(0), checkBox(), dateEditor(), textEditor(1), textEditor(2), textEditor(0)};
  SetFocus(order[0]);
  for (std::size_t i = 0; i + 1 < ARRAYSIZE(order); ++i) {
    ASSERT_EQ(GetFocus(), order[i]) << i;
    SendMessageW(order[i], WM_CHAR, L'\t', 1);
  }
  EXPECT_EQ(GetFocus(), textEditor(0));
  EXPECT_EQ(boxes.take().size(), 1u) << "the number's own";
}

// ---- Line breaks

TEST_F(FieldEditorsTest, ThreeLinesShowWithCommasAndTheValueKeepsItsBreaks) {
  showTable(L"CREATE TABLE 'T' (t Text, n Integer)",
            {L"INSERT INTO T VALUES ('a' || char(13, 10) || 'b' || char(13, 10) || 'c', 1)"});
  EXPECT_EQ(textOf(textEditor(0)), L"a,b,c");
  EXPECT_STREQ(theTextEditors.find(textEditor(0))->value().text(), L"a\r\nb\r\nc");
  EXPECT_FALSE(view().takeChange());
  EXPECT_EQ(storedText(0), L"a\r\nb\r\nc");
}

TEST_F(FieldEditorsTest, ARecordWrittenFromTheFormStoresTheCommas) {
  showTable(L"CREATE TABLE 'T' (t Text, n Integer)",
            {L"INSERT INTO T VALUES ('a' || char(13, 10) || 'b', 1)"});
  type(textEditor(1), L"2");
  commit();
  EXPECT_EQ(storedText(0), L"a,b");
  EXPECT_EQ(storedText(1), L"21");
}

TEST_F(FieldEditorsTest, LineBreaksAtTheEndsAndInRowsShowAsCommas) {
  showFields(1, L"Text");
  TextFieldEditor* const editor = theTextEditors.find(textEditor());
  const struct {
    const wchar_t* value;
    const wchar_t* shown;
  } rows[] = {{L"", L""},       {L"\r\n", L","},          {L"\r\na", L",a"},      {L"a\r\n", L"a,"},
              {L"a\n", L"a\n"}, {L"a\r\n\r\nb", L"a,,b"}, {L"\r\r\n\n", L"\r,\n"}};
  for (const auto& row : rows) {
    editor->setValue(row.value);
    EXPECT_EQ(textOf(textEditor()), row.shown);
    EXPECT_STREQ(editor->value().text(), row.value);
  }
}

// ---- Read-only

TEST_F(FieldEditorsTest, TheMessageForReadingOnlyGoesToTheEditorThatHadTheFocusLast) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text)", {L"INSERT INTO T VALUES ('x', 'y')"});
  EXPECT_EQ(styleOf(textEditor()) & ES_READONLY, 0u);
  SendMessageW(textEditor(), kSetReadOnlyMessage, TRUE, 0);
  EXPECT_EQ(styleOf(textEditor(0)) & ES_READONLY, static_cast<DWORD>(ES_READONLY));
  SendMessageW(textEditor(1), kSetReadOnlyMessage, FALSE, 0);
  EXPECT_EQ(styleOf(textEditor(0)) & ES_READONLY, 0u);
  EXPECT_EQ(styleOf(textEditor(1)) & ES_READONLY, 0u);
}

// ---- Alone

class LoneEditorsTest : public testing::Test {
 protected:
  HWND host() const { return host_.get(); }

 private:
  HostWindow host_;
};

TEST_F(LoneEditorsTest, ALabelIsAHiddenStatic) {
  FieldLabel label;
  ASSERT_TRUE(label.create(L"name:", {WS_CHILD, {3, 30, 28, 18}, host(), 10}));
  EXPECT_EQ(classOf(label.window()), L"Static");
  EXPECT_EQ(textOf(label.window()), L"name:");
  EXPECT_FALSE(isShown(label.window()));
  label.show(true);
  EXPECT_TRUE(isShown(label.window()));
  label.position({7, 8, 9, 10}, SWP_NOZORDER);
  EXPECT_EQ(placeOf(label.window()), (ControlPlace{7, 8, 9, 10}));
}

TEST_F(LoneEditorsTest, ACheckBoxKnowsWhatItWasSetTo) {
  CheckFieldEditor editor;
  editor.setCaption(L"b:");
  ASSERT_TRUE(editor.create({WS_CHILD | BS_AUTOCHECKBOX, {3, 30, 170, 18}, host(), 1400}));
  EXPECT_FALSE(isShown(editor.window()));
  EXPECT_FALSE(editor.isChecked());
  editor.setChecked(true);
  EXPECT_TRUE(editor.isChecked());
  EXPECT_FALSE(editor.isChanged());
  SendMessageW(editor.window(), BM_SETCHECK, BST_UNCHECKED, 0);
  EXPECT_TRUE(editor.isChanged());
  editor.load(readAs(L"1"), false);
  EXPECT_FALSE(editor.isChecked());
  editor.load(readAs(L"-1"), false);
  EXPECT_TRUE(editor.isChecked());
  editor.load(readAs(L""), false);
  EXPECT_FALSE(editor.isChecked());
}

TEST_F(LoneEditorsTest, ADateEditorComparesItsWindowWithWhatItWasGiven) {
  theDateEditors.reset();
  DateFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD | SS_NOTIFY, {41, 30, 80, 18}, host(), 1600}));
  EXPECT_EQ(textOf(editor.window()), L"None");
  EXPECT_FALSE(isShown(editor.window()));
  EXPECT_FALSE(editor.isChanged());
  EXPECT_EQ(editor.date(), std::nullopt);

  editor.setText(L"3/9/2001");
  EXPECT_EQ(editor.date(), 36959.0);
  EXPECT_FALSE(editor.isChanged());
  SetWindowTextW(editor.window(), L"None");
  EXPECT_TRUE(editor.isChanged());
  EXPECT_EQ(editor.date(), std::nullopt);
  SetWindowTextW(editor.window(), L"");
  EXPECT_EQ(editor.date(), std::nullopt);
}

TEST_F(LoneEditorsTest, ADateEditorShowsTodayInANewRecord) {
  theDateEditors.reset();
  DateFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD, {41, 30, 80, 18}, host(), 1600}));
  const std::wstring before = todayText();
  editor.load(readAs(L"None"), true);
  EXPECT_THAT(textOf(editor.window()), testing::AnyOf(before, todayText()));
  EXPECT_FALSE(editor.isChanged());
  editor.load(readAs(L"3/9/2001"), false);
  EXPECT_EQ(textOf(editor.window()), L"3/9/2001");
}

TEST_F(LoneEditorsTest, ATextEditorWhoseRecordIsStillToComeShowsNothing) {
  TextFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD | ES_AUTOHSCROLL, {41, 30, 80, 18}, host(), 1200}));
  editor.show(true);
  EXPECT_EQ(textOf(editor.window()), L"");
  SetWindowTextW(editor.window(), L"typed");
  editor.show(false);
  editor.show(true);
  EXPECT_EQ(textOf(editor.window()), L"typed");
  editor.load(readAs(L"read"), false);
  EXPECT_EQ(textOf(editor.window()), L"read");
}

/// From record to record the texts of some fields stay the same.
TEST_F(LoneEditorsTest, ATextThatIsThereAlreadyIsNotSetAnewAndIsAsIfItHadCome) {
  TextFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD | ES_AUTOHSCROLL, {41, 30, 80, 18}, host(), 1200}));
  editor.load(readAs(L"same"), false);
  int settings = 0;
  const auto count = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                        DWORD_PTR counter) -> LRESULT {
    if (message == WM_SETTEXT) ++*reinterpret_cast<int*>(counter);
    return DefSubclassProc(window, message, wParam, lParam);
  };
  const HWND window = editor.window();
  ASSERT_TRUE(SetWindowSubclass(window, count, 1, reinterpret_cast<DWORD_PTR>(&settings)));
  SendMessageW(window, EM_SETSEL, 4, 4);
  for (const wchar_t character : {L'x', L'\b'})
    SendMessageW(window, WM_CHAR, static_cast<WPARAM>(character), 1);
  ASSERT_NE(SendMessageW(window, EM_GETMODIFY, 0, 0), 0);
  editor.load(readAs(L"same"), false);
  EXPECT_EQ(settings, 0);
  EXPECT_EQ(SendMessageW(window, EM_GETMODIFY, 0, 0), 0);
  EXPECT_EQ(SendMessageW(window, EM_CANUNDO, 0, 0), 0);
  EXPECT_EQ(SendMessageW(window, EM_GETSEL, 0, 0), 0);
  EXPECT_FALSE(editor.hasChange());
  editor.load(readAs(L"other"), false);
  EXPECT_EQ(settings, 1);
  EXPECT_EQ(textOf(window), L"other");
}

/// A text of five characters at most, in the focus.
class FiveCharactersTest : public LoneEditorsTest {
 protected:
  void SetUp() override {
    theTextEditors.reset();
    editor_.setMaximumLength(5);
    ASSERT_TRUE(editor_.create({WS_CHILD | ES_AUTOHSCROLL, {41, 30, 80, 18}, host(), 1200}));
    editor_.takeFocus();
    ASSERT_EQ(GetFocus(), editor_.window());
  }
  void type(const std::wstring& text) {
    for (const wchar_t character : text) SendMessageW(editor_.window(), WM_CHAR, character, 1);
  }
  TextFieldEditor& editor() { return editor_; }
  std::wstring shown() const { return textOf(editor_.window()); }

 private:
  TextFieldEditor editor_;
};

TEST_F(FiveCharactersTest, ASixthCharacterIsTakenAndTheSeventhIsNot) {
  editor().load(readAs(L""), false);
  type(L"1234567");
  EXPECT_EQ(shown(), L"123456");
}

TEST_F(FiveCharactersTest, WhatIsLoadedCounts) {
  editor().load(readAs(L"a\r\nb\r\n"), false);
  editor().setSelection(4, 4);
  type(L"123");
  EXPECT_EQ(shown(), L"a,b,12");
}

TEST_F(FiveCharactersTest, CharactersAreCountedAnewWhenTheFocusLeaves) {
  editor().load(readAs(L"12345"), false);
  type(L"6");
  editor().selectAll();
  type(L"x");
  EXPECT_EQ(shown(), L"612345") << "what would replace a selection counts as more";
  SetWindowTextW(editor().window(), L"12");
  SetFocus(nullptr);
  editor().takeFocus();
  editor().setSelection(2, 2);
  type(L"vwxyz");
  EXPECT_EQ(shown(), L"12vwxy");
}

TEST_F(FiveCharactersTest, WhoComesBackGoesOnWhereHeWas) {
  editor().load(readAs(L"ad"), false);
  editor().setSelection(1, 1);
  type(L"b");
  SetFocus(nullptr);
  editor().takeFocus();
  type(L"c");
  EXPECT_EQ(shown(), L"abcd");
}

TEST_F(FiveCharactersTest, OnlyTheFirstLossOfTheFocusCounts) {
  editor().load(readAs(L"12345"), false);
  SetWindowTextW(editor().window(), L"1");
  SendMessageW(editor().window(), WM_KILLFOCUS, 0, 0);
  SetWindowTextW(editor().window(), L"");
  SendMessageW(editor().window(), WM_KILLFOCUS, 0, 0);
  type(L"abcdef");
  EXPECT_EQ(shown(), L"abcde") << "one character was counted when the focus was lost first";
}

TEST_F(LoneEditorsTest, PlacesAreRemembered) {
  theDateEditors.reset();
  DateFieldEditor date;
  date.position({1, 2, 3, 4}, SWP_NOZORDER);
  EXPECT_EQ(date.place(), ControlPlace{}) << "there was no window to move";
  ASSERT_TRUE(date.create({WS_CHILD, {41, 30, 80, 18}, host(), 1600}));
  EXPECT_EQ(date.place(), (ControlPlace{41, 30, 80, 18}));
  date.position({41, 53, 0, 0}, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_EQ(date.place(), (ControlPlace{41, 53, 0, 0}));
  EXPECT_EQ(placeOf(date.window()), (ControlPlace{41, 53, 80, 18}));

  TextFieldEditor text;
  text.position({1, 2, 3, 4}, SWP_NOZORDER);
  EXPECT_EQ(text.place(), (ControlPlace{1, 2, 3, 4})) << "whatever the result";
}

TEST_F(LoneEditorsTest, TheEditMenuActsOnTheFocusAlone) {
  theTextEditors.reset();
  TextFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD | ES_AUTOHSCROLL, {41, 30, 80, 18}, host(), 1200}));
  editor.load(readAs(L"abc"), false);
  editor.takeFocus();
  ASSERT_EQ(GetFocus(), editor.window());
  editor.selectAll();
  focusededit::copy();
  EXPECT_FALSE(focusededit::canUndo());
  focusededit::cut();
  EXPECT_EQ(textOf(editor.window()), L"");
  EXPECT_TRUE(focusededit::canUndo());
  focusededit::undo();
  EXPECT_EQ(textOf(editor.window()), L"abc");
  editor.setSelection(3, 3);
  focusededit::paste();
  EXPECT_EQ(textOf(editor.window()), L"abcabc");
  SetFocus(nullptr);
  focusededit::cut();
  EXPECT_FALSE(focusededit::canUndo());
  EXPECT_EQ(textOf(editor.window()), L"abcabc");
}

}  // namespace
