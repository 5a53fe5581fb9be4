// Any text whatever in the controls that the user edits.
#include <windows.h>

#include <string>

#include "base/showable_text.h"
#include "tests/ui/support/control_texts_fixture.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/text_field_editor.h"
#include "views/shared/word_breaks.h"

namespace {

TEST_F(ControlTextsTest, AFormEditorShowsEachAndGivesItBack) {
  TextFieldEditor editor;
  ASSERT_TRUE(editor.create({WS_CHILD | WS_BORDER | ES_AUTOHSCROLL, kPlace, host(), 1200}));
  showAll(kTextCount, [&](const std::wstring& text) {
    editor.load({.state = FieldSnapshot::State::value, .text = text.c_str(), .read = {}}, false);
    ASSERT_FALSE(editor.takeChange());
    if ((styleOf(editor.window()) & ES_READONLY) != 0) {
      ASSERT_STREQ(editor.text().text(), text.c_str());
    }
  });
}

TEST_F(ControlTextsTest, AnEditorOfManyLinesShowsEach) {
  const HWND edit = createControl(L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL);
  showAll(kTextCount / 4, [&](const std::wstring& text) { SetWindowTextW(edit, text.c_str()); });
}

TEST_F(ControlTextsTest, NoLineBeginsInsideWhatBelongsTogether) {
  std::wstring lao;
  while (lao.size() < 300) lao += L"\x0EA2\x0ECD\x0EC2\x0EDA\x0EA1\x0EB5\x0EC9";
  std::wstring pairs;
  while (pairs.size() < 200) pairs += L"\xD83D\xDE00";
  const HWND edit = createControl(L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL);
  for (const std::wstring& text : {lao, pairs, L"plain \r\n" + lao}) {
    const auto expectWholeLines = [&](const char* way) {
      SCOPED_TRACE(way);
      const std::wstring held = textOf(edit);
      const auto lines = static_cast<int>(SendMessageW(edit, EM_GETLINECOUNT, 0, 0));
      ASSERT_GT(lines, 5);
      for (int line = 1; line < lines; ++line) {
        const auto start =
            static_cast<std::size_t>(SendMessageW(edit, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
        EXPECT_EQ(wholeCharacterPlace(held, start), start) << "line " << line;
      }
    };
    SetWindowTextW(edit, text.c_str());
    expectWholeLines("set");
    SetWindowTextW(edit, L"plain");
    SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
    expectWholeLines("inserted");
    SetWindowTextW(edit, L"");
    for (const wchar_t unit : text) {
      if (unit >= L' ') SendMessageW(edit, WM_CHAR, unit, 1);
    }
    expectWholeLines("typed");
    const HWND created = CreateWindowExW(0, L"EDIT", text.c_str(), WS_CHILD | ES_MULTILINE, 2, 2, 220, 60,
                                         host(), nullptr, GetModuleHandleW(nullptr), nullptr);
    ASSERT_EQ(textOf(created), text);
    DestroyWindow(created);
  }
}

TEST_F(ControlTextsTest, WhatIsPutIntoAnEditorAndTakenOutInAnyOrderLeavesNothingHarmful) {
  const HWND edit = createControl(L"EDIT", ES_AUTOHSCROLL);
  SetFocus(edit);
  int step = 0;
  showAll(kTextCount / 8, [&](const std::wstring& text) {
    const int length = GetWindowTextLengthW(edit);
    ++step;
    if (length > 300) SetWindowTextW(edit, L"");
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(step * 7919 % (length + 1)),
                 step % 3 == 0 ? step * 7919 % (length + 1) : step * 104729 % (length + 1));
    switch (step % 6) {
      case 0:
        SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
        break;
      case 1:
        for (const wchar_t unit : text.substr(0, 5)) {
          if (unit >= L' ') SendMessageW(edit, WM_CHAR, unit, 1);
        }
        break;
      case 2:
        SendMessageW(edit, WM_CHAR, L'\b', 1);
        break;
      case 3:
        SendMessageW(edit, WM_KEYDOWN, VK_DELETE, 1);
        break;
      case 4:
        SendMessageW(edit, WM_CLEAR, 0, 0);
        break;
      default:
        SendMessageW(edit, EM_UNDO, 0, 0);
        break;
    }
    ASSERT_TRUE(isShowable(textOf(edit)));
  });
}

TEST_F(ControlTextsTest, ADeletedLetterTakesItsMarksAlong) {
  const HWND edit = createControl(L"EDIT", ES_AUTOHSCROLL);
  SetWindowTextW(edit,
                 L"a\x05D0\x05B8"
                 L"b");
  SendMessageW(edit, EM_SETSEL, 1, 1);
  SendMessageW(edit, WM_KEYDOWN, VK_DELETE, 1);
  EXPECT_EQ(textOf(edit), L"ab");
  SetWindowTextW(edit,
                 L"a\x05D0\x05B8"
                 L"b");
  SendMessageW(edit, EM_SETSEL, 2, 2);
  SendMessageW(edit, WM_CHAR, L'\b', 1);
  EXPECT_EQ(textOf(edit), L"ab");
  SetWindowTextW(edit,
                 L"a\x05D0\x05B8"
                 L"b");
  SendMessageW(edit, EM_SETSEL, 1, 2);
  SendMessageW(edit, WM_CLEAR, 0, 0);
  EXPECT_EQ(textOf(edit), L"ab");
}

TEST_F(ControlTextsTest, AMarkAloneIsDeletedAloneAndTypedOnItsLetterOnly) {
  const HWND edit = createControl(L"EDIT", ES_AUTOHSCROLL);
  SetWindowTextW(edit, L"\x05D0\x05B8");
  SendMessageW(edit, EM_SETSEL, 2, 2);
  SendMessageW(edit, WM_CHAR, L'\b', 1);
  EXPECT_EQ(textOf(edit), L"\x05D0");
  SendMessageW(edit, WM_CHAR, 0x05B8, 1);
  EXPECT_EQ(textOf(edit), L"\x05D0\x05B8");
  SetWindowTextW(edit, L"a");
  SendMessageW(edit, EM_SETSEL, 1, 1);
  SendMessageW(edit, WM_CHAR, 0x05B8, 1);
  EXPECT_EQ(textOf(edit), L"a");
}

TEST_F(ControlTextsTest, AMessageToPaintIntoNothingIsSurvived) {
  // The layout of the text is made for what is painted into, and kept.
  constexpr WPARAM kNoContext = 1;
  for (const DWORD style : {ES_AUTOHSCROLL, ES_MULTILINE | ES_AUTOVSCROLL}) {
    const HWND edit = createControl(L"EDIT", style);
    for (const UINT message : {WM_PAINT, WM_PRINTCLIENT}) {
      SetWindowTextW(edit, L"1 of 3");
      SendMessageW(edit, message, kNoContext, 0);
      SetWindowTextW(edit, L"2 of 3");
      paint(edit);
      EXPECT_EQ(textOf(edit), L"2 of 3");
    }
  }
}

}  // namespace
