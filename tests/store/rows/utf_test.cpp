#include "platform/store/rows/utf.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_literals;

namespace store {
namespace {

std::string bytesOf(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes.push_back(static_cast<char>(value));
  return bytes;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  units.resize(decodeUtf8(text, units.data()));
  return units;
}

TEST(UtfTest, EmptyTextIsEmptyBothWays) {
  EXPECT_EQ(toUtf8(u""), "");
  EXPECT_EQ(toUtf16(""), u"");
}

TEST(UtfTest, AsciiOfEveryLengthAndAlignmentPasses) {
  std::string narrow;
  std::u16string wide;
  for (int i = 0; i < 64; ++i) {
    narrow.push_back(static_cast<char>('!' + i));
    wide.push_back(static_cast<char16_t>('!' + i));
  }
  for (std::size_t begin = 0; begin < 16; ++begin) {
    for (std::size_t length = 0; begin + length <= narrow.size(); ++length) {
      const std::string_view narrowPart = std::string_view(narrow).substr(begin, length);
      const std::u16string_view widePart = std::u16string_view(wide).substr(begin, length);
      EXPECT_EQ(toUtf16(narrowPart), widePart);
      EXPECT_EQ(toUtf8(widePart), narrowPart);
    }
  }
}

TEST(UtfTest, ForeignCharacterAtEveryPlaceInAsciiPasses) {
  for (std::size_t place = 0; place < 24; ++place) {
    std::string narrow(24, 'a');
    std::u16string wide(24, u'a');
    narrow.replace(place, 1, "\xC3\xA9");
    wide[place] = u'\u00E9';
    EXPECT_EQ(toUtf16(narrow), wide) << place;
    EXPECT_EQ(toUtf8(wide), narrow) << place;
  }
}

TEST(UtfTest, LimitsOfEachSequenceLength) {
  struct Case {
    std::u16string wide;
    std::string narrow;
  };
  const std::vector<Case> cases = {
      {u"\u007F"s, bytesOf({0x7F})},
      {u"\u0080"s, bytesOf({0xC2, 0x80})},
      {u"\u07FF"s, bytesOf({0xDF, 0xBF})},
      {u"\u0800"s, bytesOf({0xE0, 0xA0, 0x80})},
      {u"\uD7FF"s, bytesOf({0xED, 0x9F, 0xBF})},
      {u"\uE000"s, bytesOf({0xEE, 0x80, 0x80})},
      {u"\uFFFF"s, bytesOf({0xEF, 0xBF, 0xBF})},
      {u"\U00010000"s, bytesOf({0xF0, 0x90, 0x80, 0x80})},
      {u"\U0010FFFF"s, bytesOf({0xF4, 0x8F, 0xBF, 0xBF})},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(toUtf8(c.wide), c.narrow);
    EXPECT_EQ(toUtf16(c.narrow), c.wide);
  }
}

TEST(UtfTest, GreekCyrillicJapaneseAndEmojiPass) {
  const std::u16string wide = u"\u03B1\u03B2 \u0416 \u65E5\u672C \U0001F600!";
  const std::string narrow = "\xCE\xB1\xCE\xB2 \xD0\x96 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80!";
  EXPECT_EQ(toUtf8(wide), narrow);
  EXPECT_EQ(toUtf16(narrow), wide);
}

TEST(UtfTest, EmbeddedZeroPasses) {
  const std::u16string wide = u"a\0b\0"s;
  const std::string narrow = "a\0b\0"s;
  EXPECT_EQ(toUtf8(wide), narrow);
  EXPECT_EQ(toUtf16(narrow), wide);
}

TEST(UtfTest, UnpairedSurrogatesKeepTheirThreeByteForm) {
  struct Case {
    std::u16string wide;
    std::string narrow;
  };
  const std::vector<Case> cases = {
      {{0xD800}, bytesOf({0xED, 0xA0, 0x80})},
      {{0xDBFF}, bytesOf({0xED, 0xAF, 0xBF})},
      {{0xDC00}, bytesOf({0xED, 0xB0, 0x80})},
      {{0xDFFF}, bytesOf({0xED, 0xBF, 0xBF})},
      {{0xDC00, 0xD800}, bytesOf({0xED, 0xB0, 0x80, 0xED, 0xA0, 0x80})},
      {{u'a', 0xD83D, u'b'}, bytesOf({'a', 0xED, 0xA0, 0xBD, 'b'})},
      {{0xD800, 0xD800, 0xDC00}, bytesOf({0xED, 0xA0, 0x80, 0xF0, 0x90, 0x80, 0x80})},
      {{0xD800, 0xDC00, 0xDC00}, bytesOf({0xF0, 0x90, 0x80, 0x80, 0xED, 0xB0, 0x80})},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(toUtf8(c.wide), c.narrow);
    EXPECT_EQ(toUtf16(c.narrow), c.wide);
  }
}

TEST(UtfTest, HighSurrogateAtTheEndOfAViewIsUnpaired) {
  const std::u16string pair = u"\U00010000";
  EXPECT_EQ(toUtf8(std::u16string_view(pair).substr(0, 1)), bytesOf({0xED, 0xA0, 0x80}));
}

TEST(UtfTest, EverySingleUnitSurvives) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const std::u16string wide(1, static_cast<char16_t>(unit));
    ASSERT_EQ(toUtf16(toUtf8(wide)), wide) << unit;
  }
}

TEST(UtfTest, RandomUnitsSurvive) {
  std::mt19937 random(20011);
  const std::vector<std::pair<int, int>> ranges = {{0, 0x7F},        {0x80, 0x7FF},    {0x800, 0xD7FF},
                                                   {0xD800, 0xDBFF}, {0xDC00, 0xDFFF}, {0xE000, 0xFFFF}};
  for (int round = 0; round < 2000; ++round) {
    std::u16string wide(random() % 50, u'\0');
    for (char16_t& unit : wide) {
      const auto [low, high] = ranges[random() % ranges.size()];
      unit = static_cast<char16_t>(std::uniform_int_distribution<int>(low, high)(random));
    }
    ASSERT_EQ(toUtf16(toUtf8(wide)), wide);
  }
}

TEST(UtfTest, IllFormedBytesBecomeOneReplacementForEachMaximalPart) {
  struct Case {
    const char* name;
    std::string bytes;
    std::u16string shown;
  };
  const std::vector<Case> cases = {
      {"lone continuation", bytesOf({0x80, 0xBF}), u"\uFFFD\uFFFD"s},
      {"overlong, two bytes", bytesOf({0xC0, 0x80, 0xC1, 0xBF}), u"\uFFFD\uFFFD\uFFFD\uFFFD"s},
      {"overlong, three bytes", bytesOf({0xE0, 0x9F, 0xBF}), u"\uFFFD\uFFFD\uFFFD"s},
      {"overlong, four bytes", bytesOf({0xF0, 0x8F, 0xBF, 0xBF}), u"\uFFFD\uFFFD\uFFFD\uFFFD"s},
      {"above the last code point", bytesOf({0xF4, 0x90, 0x80, 0x80}), u"\uFFFD\uFFFD\uFFFD\uFFFD"s},
      {"bytes that never occur", bytesOf({0xF5, 0xFE, 0xFF}), u"\uFFFD\uFFFD\uFFFD"s},
      {"two bytes cut by the end", bytesOf({0xC3}), u"\uFFFD"s},
      {"three bytes cut by the end", bytesOf({0xE6, 0x97}), u"\uFFFD"s},
      {"four bytes cut by the end", bytesOf({0xF0, 0x9F, 0x98}), u"\uFFFD"s},
      {"surrogate cut by the end", bytesOf({0xED, 0xA0}), u"\uFFFD"s},
      {"cut by ASCII", bytesOf({0xE6, 0x97, 'a'}), u"\uFFFDa"s},
      {"cut by another sequence", bytesOf({0xF0, 0x9F, 0xC3, 0xA9}), u"\uFFFD\u00E9"s},
      {"four bytes cut by four bytes", bytesOf({0xF1, 0x80, 0x80, 0xF0, 0x9F, 0x98, 0x80}),
       u"\uFFFD\U0001F600"s},
      {"a mixture", bytesOf({'a', 0xF1, 0x80, 0x80, 0xE1, 0x80, 0xC2, 'b', 0x80, 'c', 0x80, 0xBF, 'd'}),
       u"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"s},
  };
  for (const Case& c : cases) EXPECT_EQ(toUtf16(c.bytes), c.shown) << c.name;
}

TEST(UtfTest, DecodingNeverWritesMoreUnitsThanBytes) {
  std::mt19937 random(20012);
  for (int round = 0; round < 5000; ++round) {
    std::string bytes(random() % 20, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random() % 3 == 0 ? 0xF0 : 0x80 + random() % 64);
    // The buffer ends where its room ends, so that the sanitizer sees a unit too many.
    std::vector<char16_t> units(bytes.size());
    const std::size_t count = decodeUtf8(bytes, units.data());
    ASSERT_LE(count, bytes.size());
    ASSERT_EQ(std::u16string(units.data(), count), toUtf16(bytes));
  }
}

TEST(UtfTest, DecodingLeavesTheRestOfTheBufferAlone) {
  std::vector<char16_t> units(12, u'#');
  EXPECT_EQ(decodeUtf8("12345678\xC3\xA9", units.data()), 9u);
  EXPECT_EQ(std::u16string(units.begin(), units.end()), u"12345678\u00E9###");
}

TEST(UtfTest, ABeginningEndsBetweenTwoCharacters) {
  struct Case {
    const char* name;
    std::string text;
    std::size_t most;
    std::string beginning;
  };
  const Case cases[] = {
      {"all of it", "abc", 3, "abc"},
      {"more than all of it", "abc", 9, "abc"},
      {"nothing", "abc", 0, ""},
      {"of ASCII", "abc", 2, "ab"},
      {"behind a character", "a\xC3\xA9z", 3, "a\xC3\xA9"},
      {"in two bytes", "a\xC3\xA9z", 2, "a"},
      {"in three bytes", "\xE6\x97\xA5z", 2, ""},
      {"in four bytes", "a\xF0\x9F\x98\x80z", 4, "a"},
      {"behind four bytes", "\xF0\x9F\x98\x80z", 4, "\xF0\x9F\x98\x80"},
      {"what is no UTF-8 is cut anywhere", std::string(9, '\x80'), 5, std::string(5, '\x80')},
      {"and never gets lost", "\x80\x80\x80\x80", 2, "\x80\x80"},
  };
  for (const Case& c : cases) EXPECT_EQ(beginningOf(c.text, c.most), c.beginning) << c.name;
}

}  // namespace
}  // namespace store
