// What is typed into the form: what counts as a change, and what of it is stored.
#include "data/database/database.h"
#include "records/parts/record_history.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/date_field_editor.h"
#include "views/form/form_view.h"
#include "views/form/text_field_editor.h"

namespace {

using FormChangesTest = FormFixture;

TEST_F(FormChangesTest, ATouchedFieldIsStoredAndItsNeighboursStay) {
  showOneOfEach();
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

TEST_F(FormChangesTest, TheFirstChangeInFieldOrderIsTakenAway) {
  showFields(3, L"Text");
  type(textEditor(2), L"x\b");
  type(textEditor(1), L"x\b");
  EXPECT_TRUE(view().takeChange());
  EXPECT_TRUE(view().takeChange());
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormChangesTest, LoadingARecordForgetsTheMarksOfTheFormerOne) {
  showFields(3, L"Text");
  type(textEditor(1), L"x");
  type(textEditor(2), L"x");
  document().loadRecord();
  EXPECT_FALSE(view().takeChange());
}

TEST_F(FormChangesTest, AFieldThatIsReadOnlyGetsAReadOnlyEditor) {
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

TEST_F(FormChangesTest, WhatTheDeleteKeyAndTheClipboardDoIsAChange) {
  showFields(2, L"Text");
  SendMessageW(textEditor(1), EM_SETSEL, 0, -1);
  SendMessageW(textEditor(1), WM_CLEAR, 0, 0);
  EXPECT_TRUE(view().takeChange());
}

TEST_F(FormChangesTest, EveryCharacterThatTheFilterTakesCountsAsAChangeAndTheSameTextIsNotWritten) {
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

TEST_F(FormChangesTest, ACheckBoxAndADateReportTheirChange) {
  showOneOfEach();
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

TEST_F(FormChangesTest, ALongTextIsShownAndStoredWhole) {
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

TEST_F(FormChangesTest, TextsWithOddCharactersComeBackUnchanged) {
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

TEST_F(FormChangesTest, ValuesBeyondTheirTextSurviveTheSavingOfTheirNeighbours) {
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

TEST_F(FormChangesTest, LineBreaksAreWrittenAsShownWithTheirRecordAndAreNoChangeAlone) {
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

TEST_F(FormChangesTest, ATextWithLineBreaksIsNoneThatWasTyped) {
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

TEST_F(FormChangesTest, ADateThatIsChosenAgainIsNoOther) {
  showOneOfEach();
  SetWindowTextW(dateEditor(), L"March 9, 2001");
  EXPECT_FALSE(theDateEditors.find(dateEditor())->isEdited());
  SetWindowTextW(dateEditor(), L"None");
  EXPECT_TRUE(theDateEditors.find(dateEditor())->isEdited());
}

TEST_F(FormChangesTest, OfARecordThatWasNotReadNothingIsShownAndNothingCanBeTyped) {
  showOneOfEach();
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

TEST_F(FormChangesTest, TheFirstKeyInAnyTextIsReported) {
  showOneOfEach();
  EXPECT_EQ(prompts().typedCount, 0);
  constexpr wchar_t kCopy[] = L"\x03";
  type(textEditor(0), kCopy);
  EXPECT_EQ(prompts().typedCount, 0) << "copying changes nothing";
  type(textEditor(0), L"xy");
  EXPECT_EQ(prompts().typedCount, 1);
}

TEST_F(FormChangesTest, SoIsAKeyInATextThatCantBeChanged) {
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

}  // namespace
