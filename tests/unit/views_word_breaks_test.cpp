#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "views/shared/word_breaks.h"

namespace {

/// All places where a line can end, as the system finds them.
std::vector<int> breaksOf(std::wstring text) {
  std::vector<int> breaks;
  const auto count = static_cast<int>(text.size());
  for (int place = 0;;) {
    place = breakWords(text.data(), place + 1, count, WB_RIGHT);
    if (place >= count) break;
    breaks.push_back(place);
  }
  return breaks;
}

TEST(WordBreaksTest, WordsBeginBehindBlanks) {
  EXPECT_EQ(breaksOf(L"one  two\tthree"), (std::vector<int>{5, 9}));
}

TEST(WordBreaksTest, AWordThatFitsIsNotParted) {
  EXPECT_EQ(breaksOf(L"internationalisation"), std::vector<int>{});
  EXPECT_EQ(breaksOf(L"\x0E2A\x0E27\x0E31\x0E2A\x0E14\x0E35"), std::vector<int>{});
}

TEST(WordBreaksTest, ALongWordIsPartedBeforeWholeCharactersOnly) {
  std::wstring thai;
  while (thai.size() < 12) thai += L"\x0E14\x0E35\x0E49";
  EXPECT_EQ(breaksOf(thai), (std::vector<int>{3, 6, 9}));
  std::wstring accents;
  while (accents.size() < 24) accents += L"e\x0301\x0323";
  EXPECT_EQ(breaksOf(accents), (std::vector<int>{3, 6, 9, 12, 15, 18, 21}));
}

TEST(WordBreaksTest, PairsJoinersAndLineEndsStayTogether) {
  std::wstring faces;
  while (faces.size() < 12) faces += L"\xD83D\xDE00";
  EXPECT_EQ(breaksOf(faces), (std::vector<int>{2, 4, 6, 8, 10}));
  EXPECT_EQ(wholeCharacterPlace(L"a\x200D"
                                L"b",
                                1),
            3u);
  EXPECT_EQ(wholeCharacterPlace(L"a\r\r\nb", 2), 4u);
  EXPECT_EQ(wholeCharacterPlace(L"ab", 5), 2u);
}

TEST(WordBreaksTest, ToTheLeftTheSamePlacesAreFound) {
  std::wstring text = L"one two three";
  EXPECT_EQ(breakWords(text.data(), 13, 13, WB_LEFT), 8);
  EXPECT_EQ(breakWords(text.data(), 8, 13, WB_LEFT), 4);
  EXPECT_EQ(breakWords(text.data(), 4, 13, WB_LEFT), 0);
  EXPECT_EQ(breakWords(text.data(), 0, 13, WB_LEFT), 0);
}

TEST(WordBreaksTest, BlanksAreDelimitersAndPlacesOutsideAreNone) {
  std::wstring text = L"a b";
  EXPECT_TRUE(breakWords(text.data(), 1, 3, WB_ISDELIMITER));
  EXPECT_FALSE(breakWords(text.data(), 2, 3, WB_ISDELIMITER));
  EXPECT_FALSE(breakWords(text.data(), 99, 3, WB_ISDELIMITER));
  EXPECT_EQ(breakWords(text.data(), -5, 3, WB_LEFT), 0);
  EXPECT_EQ(breakWords(nullptr, 0, 3, WB_RIGHT), 0);
  EXPECT_EQ(breakWords(text.data(), 0, 0, WB_RIGHT), 0);
}

TEST(WordBreaksTest, OnlyTextsWithMoreThanPlainLettersNeedThem) {
  EXPECT_FALSE(
      needsWordBreaks(L"plain Stra\x00DF"
                      L"e"));
  EXPECT_TRUE(needsWordBreaks(L"e\x0301"));
  EXPECT_TRUE(needsWordBreaks(L"\xD83D\xDE00"));
}

}  // namespace
