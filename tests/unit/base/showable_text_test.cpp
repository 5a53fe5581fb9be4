#include "base/showable_text.h"

#include <string>

#include "gtest/gtest.h"

namespace {

/// As people write them, in scripts whose marks stand on letters.
const struct {
  const char* script;
  const wchar_t* text;
} kOrdinary[] = {
    {"Latin", L"Z\x00FCrich, nai\x0308ve cafe\x0301, Vie\x0323\x0302t Nam, q\x0330\x0301 n\x02B7x"},
    {"Greek", L"\x03B1\x0301\x03BB\x03C6\x03B1 \x03AC"},
    {"Cyrillic", L"\x0438\x0306 \x0437\x0430\x0301\x043C\x043E\x043A"},
    {"Arabic", L"\x0628\x0650\x0633\x0652\x0645\x0650 \x0627\x0644\x0644\x0651\x064E\x0647\x0650 123 \x0645"},
    {"Hebrew",
     L"\x05D1\x05BC\x05B0\x05E8\x05B5\x05D0\x05E9\x05C1\x05B4\x0596\x05D9\x05EA "
     L"\x05D1\x05BC\x05B8\x05E8\x05B8\x05A3\x05D0 \x05D0\x05B1\x05DC\x05B9\x05D4\x05B4\x0591\x05D9\x05DD"},
    {"Hindi", L"\x0939\x093F\x0928\x094D\x0926\x0940 \x0915\x094D\x200D\x0937 \x0926\x0941\x0903\x0916"},
    {"Bengali", L"\x09B0\x200D\x09CD\x09AF\x09BE\x09AC \x09AC\x09BE\x0982\x09B2\x09BE"},
    {"Tamil", L"\x0BA4\x0BAE\x0BBF\x0BB4\x0BCD"},
    {"Thai",
     L"\x0E01\x0E33\x0E25\x0E31\x0E07 \x0E17\x0E35\x0E48 \x0E19\x0E49\x0E33 \x0E40\x0E1B\x0E47\x0E19"},
    {"Lao", L"\x0E9E\x0EB2\x0EAA\x0EB2\x0EA5\x0EB2\x0EA7 \x0E99\x0EC9\x0EB3 \x0E81\x0EB1\x0EC8"},
    {"Tibetan", L"\x0F56\x0F7C\x0F51\x0F0B\x0F66\x0F90\x0F51\x0F0B"},
    {"Khmer", L"\x1797\x17B6\x179F\x17B6\x1781\x17D2\x1798\x17C2\x179A"},
    {"Japanese", L"\x65E5\x672C\x8A9E \x304B\x3099"},
    {"Korean", L"\xD55C\xAD6D\xC5B4"},
    {"pictures", L"\x2764\xFE0F \xD83D\xDE00 \xD83D\xDC69\x200D\xD83D\xDCBB"},
};

TEST(ShowableTextTest, TextsAsPeopleWriteThemComeBackUnchanged) {
  for (const auto& each : kOrdinary) {
    EXPECT_EQ(showableText(each.text), each.text) << each.script;
    EXPECT_TRUE(isShowable(each.text)) << each.script;
  }
}

TEST(ShowableTextTest, ALongTextOfOneScriptComesBackUnchanged) {
  for (const auto& each : kOrdinary) {
    std::wstring text;
    while (text.size() < 5000) text.append(each.text).append(L" ");
    EXPECT_EQ(showableText(text), text) << each.script;
  }
}

TEST(ShowableTextTest, WhatIsNoMarkComesBackUnchanged) {
  const std::wstring odd = std::wstring(L"\x0001\x0007\t\r\n\x001B\x007F\x0085\xD800\xDC00\xDC00\xD800") +
                           L"\x200E\x200F\x202E\x2028\xFEFF\xFFFE\xFFFF\xE000" + std::wstring(1, L'\0');
  EXPECT_EQ(showableText(odd), odd);
}

TEST(ShowableTextTest, AMarkWithoutALetterOfItsScriptIsReplaced) {
  EXPECT_EQ(showableText(L"\x0636\x02A9\x05B0"), L"\x0636\x02A9\xFFFD");
  EXPECT_EQ(showableText(L"\x05B0"), L"\xFFFD");
  EXPECT_EQ(showableText(L"a\x0EB8"), L"a\xFFFD");
  EXPECT_EQ(showableText(L"\x0301x"), L"\xFFFDx");
  EXPECT_EQ(showableText(L"1\x0301"), L"1\xFFFD");
  EXPECT_EQ(showableText(L"\x05D0 \x05B0"), L"\x05D0 \xFFFD");
  EXPECT_EQ(showableText(L"\x02B7"), L"\xFFFD");
  EXPECT_EQ(showableText(L"e\x0301\x02B7"), L"e\x0301\xFFFD");
  EXPECT_FALSE(isShowable(L"a\x0EB8"));
}

TEST(ShowableTextTest, TheArabicFormsOfOlderCharacterSetsCarryNoMarksAndAreNone) {
  EXPECT_EQ(showableText(L"\xFC07\x065A"), L"\xFC07\xFFFD");
  EXPECT_EQ(showableText(L"\xFC94\xFC5F"), L"\xFC94\xFFFD");
  EXPECT_EQ(showableText(L"\xFD97\xFBBC"), L"\xFD97\xFFFD");
  EXPECT_EQ(showableText(L"\x0644\xFC60"), L"\x0644\xFFFD");
  EXPECT_TRUE(isShowable(L"\xFEE3\xFEAE\xFEA3\xFE92\xFE8E \xFDF2"));
}

TEST(ShowableTextTest, AMarkOfOneScriptStandsOnNoLetterOfNone) {
  EXPECT_EQ(showableText(L"\x67F0\x1CDF"), L"\x67F0\xFFFD");
  EXPECT_TRUE(isShowable(L"\x0915\x1CDF"));
}

TEST(ShowableTextTest, LettersThatAreTakenApartHaveAsMuchRoomAsWordsTake) {
  std::wstring words;
  for (int i = 0; i < 100; ++i) words += L"\x0E19\x0E49\x0E33";  // water
  EXPECT_TRUE(isShowable(words));
  EXPECT_FALSE(isShowable(std::wstring(L"\x0E19") + std::wstring(100, L'\x0E33')));
}

TEST(ShowableTextTest, MarksBehindOneThatWasReplacedAreReplacedToo) {
  EXPECT_EQ(showableText(L"a\x05B0\x05B1\x0301 e\x0301"), L"a\xFFFD\xFFFD\xFFFD e\x0301");
}

TEST(ShowableTextTest, AMarkOfTwoUnitsKeepsItsLength) {
  EXPECT_EQ(showableText(L"a\xD804\xDC00"), L"a\xFFFD\xFFFD");  // U+11000
}

TEST(ShowableTextTest, OfManyMarksOnOneLetterTheFirstStay) {
  const std::wstring piled = L"\x0E01" + std::wstring(100, L'\x0E49');
  const std::wstring shown = showableText(piled);
  EXPECT_EQ(shown.substr(0, 4), piled.substr(0, 4));
  EXPECT_EQ(shown.back(), L'\xFFFD');
  EXPECT_EQ(shown.size(), piled.size());
}

TEST(ShowableTextTest, WhatWasMadeShowableStaysAsItIs) {
  std::wstring text;
  for (unsigned unit = 1; unit < 0xFFFF; ++unit) text += static_cast<wchar_t>(unit * 40503 % 0xFFFF);
  const std::wstring shown = showableText(text);
  EXPECT_EQ(shown.size(), text.size());
  EXPECT_TRUE(isShowable(shown));
  EXPECT_EQ(showableText(shown), shown);
}

TEST(ShowableTextTest, TheMarksOfALetterEndBeforeTheNextOne) {
  EXPECT_EQ(endOfMarks(L"e\x0323\x0302t", 1), 3u);
  EXPECT_EQ(endOfMarks(L"et", 1), 1u);
  EXPECT_EQ(endOfMarks(L"e\x0301", 1), 2u);
  EXPECT_EQ(endOfMarks(L"", 0), 0u);
}

}  // namespace
