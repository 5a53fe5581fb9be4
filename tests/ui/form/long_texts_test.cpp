// Texts that are longer than a control shows at once, and such as it can't show.
#include <algorithm>
#include <cstdint>
#include <string>
#include <usp10.h>
#include <vector>

#include "gtest/gtest.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/late_swap.h"
#include "tests/ui/support/test_database.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/field_zoom.h"
#include "views/form/text_field_editor.h"
#include "views/shared/shown_text.h"

namespace {

constexpr int kZoomText = 1015;

bool isDivided = true;

HRESULT WINAPI divide(const WCHAR* text, int count, int most, const SCRIPT_CONTROL* control,
                      const SCRIPT_STATE* state, SCRIPT_ITEM* items, int* found) {
  return isDivided ? ScriptItemize(text, count, most, control, state, items, found) : E_OUTOFMEMORY;
}

/// Before the program's first call of it.
const bool isReplaced = (replaceLateFunction("ScriptItemize", divide), true);

std::wstring repeated(const wchar_t* part, std::size_t count) {
  std::wstring text;
  while (text.size() < count) text += part;
  text.resize(count);
  return text;
}

/// What the control paints, pixel by pixel.
std::vector<std::uint32_t> paintedPixels(HWND control) {
  RECT area{};
  GetClientRect(control, &area);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, area.right, area.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC dc = CreateCompatibleDC(nullptr);
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ former = SelectObject(dc, bitmap);
  SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
  GdiFlush();
  const auto* const first = static_cast<const std::uint32_t*>(bits);
  std::vector<std::uint32_t> pixels(first, first + area.right * area.bottom);
  SelectObject(dc, former);
  DeleteObject(bitmap);
  DeleteDC(dc);
  return pixels;
}

void copyToClipboard(const std::wstring& text) {
  const HWND edit =
      CreateWindowW(L"EDIT", text.c_str(), ES_MULTILINE, 0, 0, 9, 9, HWND_MESSAGE, nullptr, nullptr, nullptr);
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, WM_COPY, 0, 0);
  DestroyWindow(edit);
}

bool isReadOnly(HWND edit) {
  return (styleOf(edit) & ES_READONLY) != 0;
}

std::size_t longestParagraph(const std::wstring& text) {
  std::size_t longest = 0;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(L"\r\n", start), text.size());
    longest = std::max(longest, end - start);
    start = end + 2;
  }
  return longest;
}

class LongTextsTest : public FormFixture {
 protected:
  /// A record whose first field holds the text, and what the form's editor does with it.
  void showText(const std::wstring& text) {
    showTable(L"CREATE TABLE 'T' (a Text, b Integer)",
              {(L"INSERT INTO T VALUES ('" + text + L"', 1)").c_str()});
  }
  static void replaceText(HWND edit, const std::wstring& text) {
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    type(edit, text);
  }
  /// What the zoom makes of a text when it is confirmed after `change`.
  static std::wstring zoomed(
      const std::wstring& text, const DialogScript::Step& change = [](HWND) {}) {
    const HostWindow owner;
    FieldZoom zoom(L"name", text.c_str(), false);
    DialogScript script([&](HWND dialog) {
      change(dialog);
      DialogScript::close(dialog, IDOK);
    });
    EXPECT_TRUE(zoom.run(owner.get()));
    return zoom.text().text();
  }
};

TEST(ShownTextTest, WhatTheSystemCannotDivideIsNotTakenForEmpty) {
  ASSERT_TRUE(isReplaced);
  isDivided = false;
  const ShownText few = textForLine(L"few letters");
  const ShownText many = textForLine(repeated(L"letters ", 2000));
  isDivided = true;
  EXPECT_EQ(few.text, L"few letters");
  EXPECT_TRUE(few.isExact);
  EXPECT_EQ(many.shownCount, 500u);
  EXPECT_TRUE(many.isCut());
}

TEST_F(LongTextsTest, ThirtyTwoThousandLettersOfOneShapeAreEditedInTheLine) {
  showText(repeated(L"plain words ", 32000));
  EXPECT_FALSE(isReadOnly(textEditor()));
  EXPECT_EQ(GetWindowTextLengthW(textEditor()), 32000);
}

TEST_F(LongTextsTest, OfAVeryLongTextTheLineShowsTheBeginningAndKeepsTheValue) {
  const std::wstring text = repeated(L"abc ", 120'000);
  showText(text);
  EXPECT_TRUE(isReadOnly(textEditor()));
  EXPECT_EQ(textOf(textEditor()), text.substr(0, kMostShownCount));
  type(textEditor(), L"x");
  replaceText(control(1201), L"2");
  commit();
  EXPECT_EQ(storedText(0), text);
  EXPECT_EQ(storedText(1), L"2");
}

TEST_F(LongTextsTest, ALineOfManySentencesIsDrawn) {
  const std::wstring text = repeated(L"Born on 12 May 2001, in room 7; left. ", 32000);
  showText(text);
  const std::vector<std::uint32_t> drawn = paintedPixels(textEditor());
  const std::wstring shown = textOf(textEditor());
  EXPECT_TRUE(text.starts_with(shown));
  EXPECT_GT(shown.size(), 500u);
  EXPECT_TRUE(isReadOnly(textEditor()));
  SetWindowTextW(textEditor(), shown.substr(0, 100).c_str());
  EXPECT_EQ(paintedPixels(textEditor()), drawn);
  commit();
  EXPECT_EQ(storedText(0), text);
}

TEST_F(LongTextsTest, OfWhatIsTypedBeyondThatTheBeginningIsDrawnAndAllIsStored) {
  showText(L"");
  std::wstring text;
  for (int i = 0; i < 400; ++i) text += L"a1";
  SetFocus(textEditor());
  type(textEditor(), text.substr(0, kMostLineRunCount));
  EXPECT_FALSE(isReadOnly(textEditor()));
  type(textEditor(), L"1111");
  EXPECT_FALSE(isReadOnly(textEditor()));
  type(textEditor(), L"a");
  EXPECT_TRUE(isReadOnly(textEditor()));
  type(textEditor(), L"2");
  commit();
  EXPECT_EQ(storedText(0), text.substr(0, kMostLineRunCount) + L"1111a");
}

TEST_F(LongTextsTest, WhatIsPastedBeyondThatIsStoredToo) {
  showText(L"");
  const std::wstring text = repeated(L"Born on 12 May 2001; ", 8000);
  SetFocus(textEditor());
  copyToClipboard(text);
  SendMessageW(textEditor(), WM_PASTE, 0, 0);
  EXPECT_TRUE(isReadOnly(textEditor()));
  commit();
  EXPECT_EQ(storedText(0), text);
}

TEST_F(LongTextsTest, ALineOfLettersThatChangeTheirShapesIsShorter) {
  const std::wstring text = repeated(L"\x0627\x0644\x0633\x0644\x0627\x0645 ", 32000);
  showText(text);
  EXPECT_TRUE(isReadOnly(textEditor()));
  EXPECT_LT(GetWindowTextLengthW(textEditor()), 2500);
  commit();
  EXPECT_EQ(storedText(0), text);
}

TEST_F(LongTextsTest, SoIsALineOfDigitsButNotOneOfManyNumbers) {
  EXPECT_EQ(textForLine(repeated(L"1", 32000)).shownCount, 2000u);
  EXPECT_TRUE(textForLine(repeated(L"on 12345 ", 1000)).isExact);
}

TEST_F(LongTextsTest, AnEditorThatShowedPartOfATextTakesTheNextOne) {
  showText(repeated(L"x", 200'000));
  ASSERT_TRUE(isReadOnly(textEditor()));
  theTextEditors.find(textEditor())
      ->load({.state = FieldSnapshot::State::value, .text = L"short", .read = {}}, false);
  EXPECT_FALSE(isReadOnly(textEditor()));
  EXPECT_EQ(textOf(textEditor()), L"short");
}

TEST_F(LongTextsTest, ATextThatCantBeShownIsKeptAndNotEdited) {
  showText(L"\x0636\x02A9\x05B0");
  EXPECT_TRUE(isReadOnly(textEditor()));
  EXPECT_EQ(textOf(textEditor()), L"\x0636\x02A9\xFFFD");
  type(textEditor(), L"x");
  replaceText(control(1201), L"2");
  commit();
  EXPECT_EQ(storedText(0), L"\x0636\x02A9\x05B0");
  EXPECT_EQ(storedText(1), L"2");
}

TEST_F(LongTextsTest, BytesAreShownTypedAndStored) {
  showTable(L"CREATE TABLE 'T' (a Image, b Image)", {L"INSERT INTO T VALUES (x'89504E', zeroblob(10240))"});
  EXPECT_EQ(textOf(textEditor(0)), L"89 50 4E");
  EXPECT_FALSE(isReadOnly(textEditor(0)));
  EXPECT_TRUE(textOf(textEditor(1)).ends_with(L"\x2026 (10240 bytes)"));
  EXPECT_TRUE(isReadOnly(textEditor(1)));
  SendMessageW(textEditor(0), EM_SETSEL, 8, 8);
  type(textEditor(0), L" 47");
  commit();
  EXPECT_EQ(storedText(0), L"89 50 4E 47");
  EXPECT_TRUE(storedText(1).ends_with(L"(10240 bytes)"));
}

TEST_F(LongTextsTest, TheZoomSaysHowMuchItShowsAndKeepsTheRest) {
  const std::wstring text = repeated(L"some words ", 250'000);
  std::wstring title;
  std::wstring shown;
  bool readOnly = false;
  EXPECT_EQ(zoomed(text,
                   [&](HWND dialog) {
                     title = textOf(dialog);
                     shown = textOf(GetDlgItem(dialog, kZoomText));
                     readOnly = isReadOnly(GetDlgItem(dialog, kZoomText));
                   }),
            text);
  EXPECT_EQ(title, L"name: the first 100000 of 250000 characters");
  EXPECT_EQ(withoutSoftBreaks(shown), text.substr(0, 100'000));
  EXPECT_TRUE(readOnly);
}

TEST_F(LongTextsTest, OfAValueThatWasNotReadWholeTheLineAndTheZoomSaySo) {
  showTable(L"CREATE TABLE 'T' (a Text, b Integer)",
            {L"INSERT INTO T VALUES (printf('%.*c', 3000000, 'x'), 1)"});
  EXPECT_TRUE(isReadOnly(textEditor()));
  std::wstring title;
  bool readOnly = false;
  DialogScript script([&](HWND dialog) {
    title = textOf(dialog);
    readOnly = isReadOnly(GetDlgItem(dialog, kZoomText));
    DialogScript::close(dialog, IDOK);
  });
  theTextEditors.find(textEditor())->openZoom();
  EXPECT_EQ(title, L"a: the first 100000 of 3000000 characters");
  EXPECT_TRUE(readOnly);
  replaceText(control(1201), L"2");
  commit();
  EXPECT_EQ(storedText(0).size(), 3'000'000u);
  EXPECT_EQ(storedText(1), L"2");
}

TEST_F(LongTextsTest, AZoomedTextThatCouldNotBeStoredIsStoredAtTheNextTry) {
  showText(L"before");
  DialogScript script([](HWND dialog) {
    SetWindowTextW(GetDlgItem(dialog, kZoomText), L"zoomed");
    DialogScript::close(dialog, IDOK);
  });
  theTextEditors.find(textEditor())->openZoom();
  runStatements(path(), {L"UPDATE T SET b = 2"});
  document().commitCurrentRecord();
  EXPECT_EQ(storedText(0), L"before");
  runStatements(path(), {L"UPDATE T SET b = 1"});
  document().commitCurrentRecord();
  EXPECT_EQ(storedText(0), L"zoomed");
}

TEST_F(LongTextsTest, BytesInAFieldOfTextCantBeEdited) {
  showTable(L"CREATE TABLE 'T' (a Text, b Text, c Text)",
            {L"INSERT INTO T VALUES (x'89504E', zeroblob(10240), 'x')"});
  EXPECT_EQ(textOf(textEditor(0)), L"89 50 4E");
  EXPECT_TRUE(isReadOnly(textEditor(0)));
  EXPECT_TRUE(isReadOnly(textEditor(1)));
  type(textEditor(0), L"4");
  replaceText(textEditor(2), L"y");
  commit();
  Database database;
  ASSERT_TRUE(database.open(path().c_str()));
  ASSERT_TRUE(database.openRecordset(L"Select typeof(a) || length(a), typeof(b) || length(b), c From T"));
  EXPECT_STREQ(database.valueText(0).text(), L"blob3");
  EXPECT_STREQ(database.valueText(1).text(), L"blob10240");
  EXPECT_STREQ(database.valueText(2).text(), L"y");
}

TEST_F(LongTextsTest, TheZoomSaysThatSomethingCantBeShown) {
  std::wstring title;
  EXPECT_EQ(zoomed(L"\x05B0", [&](HWND dialog) { title = textOf(dialog); }), L"\x05B0");
  EXPECT_EQ(title, L"name: some characters can't be shown");
}

TEST_F(LongTextsTest, LongParagraphsAreBrokenInTheZoomAndComeBackWhole) {
  for (const wchar_t* const part : {L"W", L"word ", L"\x0627\x0644\x0633 ", L"\xD83D\xDE00", L"e\x0301",
                                    L"a\rb", L"line\r\n\r\n", L"\x0E01\x0E49"}) {
    const std::wstring text = repeated(part, 16000);
    std::size_t longest = 0;
    EXPECT_TRUE(zoomed(text,
                       [&](HWND dialog) {
                         EXPECT_FALSE(isReadOnly(GetDlgItem(dialog, kZoomText)));
                         longest = longestParagraph(textOf(GetDlgItem(dialog, kZoomText)));
                       }) == text)
        << part;
    EXPECT_LE(longest, kLongParagraphCount);
  }
}

TEST_F(LongTextsTest, WhatIsTypedIntoALongParagraphIsInTheText) {
  const std::wstring text = repeated(L"word ", 4000);
  EXPECT_TRUE(zoomed(text, [](HWND dialog) {
                const HWND edit = GetDlgItem(dialog, kZoomText);
                SendMessageW(edit, EM_SETSEL, 0, 0);
                for (int i = 0; i < 1100; ++i) SendMessageW(edit, WM_CHAR, L'x', 1);
                EXPECT_LE(longestParagraph(textOf(edit)), kLongParagraphCount + 250);
              }) == std::wstring(1100, L'x') + text);
}

TEST_F(LongTextsTest, ATextThatHasSoftLineEndsItselfKeepsThem) {
  EXPECT_EQ(zoomed(L"a\r\r\nb"), L"a\r\r\nb");
  const std::wstring text = L"a\r\r\n" + repeated(L"b", 3000);
  bool readOnly = false;
  EXPECT_EQ(zoomed(text, [&](HWND dialog) { readOnly = isReadOnly(GetDlgItem(dialog, kZoomText)); }), text);
  EXPECT_TRUE(readOnly);
}

TEST_F(LongTextsTest, ATextIsNeverCutInsideACharacter) {
  std::wstring text = L"x" + repeated(L"\xD83D\xDE00", kMostShownCount + 10);
  const ShownText shown = textForLines(text);
  EXPECT_EQ(shown.shownCount, kMostShownCount - 1);
  EXPECT_TRUE(shown.isCut());
  EXPECT_FALSE(shown.isExact);
}

}  // namespace
