#include "platform/store/rows/text_needle.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "tests/store/rows/search_fixture.h"

namespace store {
namespace {

bool occurs(std::u16string_view needle, std::string_view text, bool matchCase = false) {
  return TextNeedle(needle, matchCase ? nullptr : &oddFolding()).occursIn(text);
}

TEST(TextNeedleTest, TheEmptyTextOccursEverywhere) {
  EXPECT_TRUE(occurs(u"", ""));
  EXPECT_TRUE(occurs(u"", "a"));
  EXPECT_TRUE(TextNeedle(u"", nullptr).occursInUnits(u""));
  EXPECT_FALSE(occurs(u"a", ""));
}

TEST(TextNeedleTest, CaseCountsOnlyWhereItIsAskedFor) {
  EXPECT_TRUE(occurs(u"hErOn", "A Heron stood on the gauge."));
  EXPECT_FALSE(occurs(u"hErOn", "A Heron stood on the gauge.", true));
  EXPECT_TRUE(occurs(u"Heron", "A Heron stood on the gauge.", true));
}

TEST(TextNeedleTest, FindsATextAtEveryPlaceOfTextsOfEveryLength) {
  for (const std::u16string& needle : {std::u16string(u"x"), std::u16string(u"Xy"), std::u16string(u"x.Y"),
                                       std::u16string(u"xyzzyxyzzyxyzzyxyzzy")}) {
    const std::string bytes(needle.begin(), needle.end());
    for (std::size_t length = needle.size(); length < 80; ++length) {
      EXPECT_FALSE(occurs(needle, std::string(length, '-'))) << length;
      for (std::size_t place = 0; place + needle.size() <= length; ++place) {
        std::string text(length, '-');
        text.replace(place, bytes.size(), bytes);
        EXPECT_TRUE(occurs(needle, text)) << length << ' ' << place;
        text[place] = '-';
        EXPECT_FALSE(occurs(needle, text)) << length << ' ' << place;
      }
    }
  }
}

TEST(TextNeedleTest, ReadsNothingBehindTheText) {
  // The rest of the buffer would match; the sanitizer watches its end.
  const std::string buffer = "-----------------heron";
  for (std::size_t length = 0; length < buffer.size(); ++length) {
    EXPECT_FALSE(occurs(u"heron", std::string_view(buffer).substr(0, length))) << length;
  }
}

TEST(TextNeedleTest, ABracketIsNoLowerCaseOfABrace) {
  EXPECT_FALSE(occurs(u"[", "{"));
  EXPECT_FALSE(occurs(u"@", "`"));
  EXPECT_FALSE(occurs(u"\x10", "0"));
}

TEST(TextNeedleTest, LettersThatFoldToOneOfAsciiAreFound) {
  EXPECT_TRUE(occurs(u"kiss", "\u212A\u0131\u017F\u017F"));
  EXPECT_TRUE(occurs(u"\u212A\u0131\u017F\u017F", "KISS"));
  EXPECT_FALSE(occurs(u"kiss", "\u212A\u0131\u017F\u017F", true));
}

TEST(TextNeedleTest, SharpSAndTheDottedIStandForThemselves) {
  EXPECT_FALSE(occurs(u"ss", "Stra\u00DFe"));
  EXPECT_TRUE(occurs(u"STRA\u00DFE", "stra\u00DFe"));
  EXPECT_FALSE(occurs(u"i", "\u0130"));
}

TEST(TextNeedleTest, BothSmallSigmasAreOneLetter) {
  EXPECT_TRUE(occurs(u"ΠΑΠΑΣ", "Νίκος παπας"));
  EXPECT_TRUE(occurs(u"σ", "ς"));
  EXPECT_FALSE(occurs(u"σ", "ς", true));
}

TEST(TextNeedleTest, CombiningMarksAreUnitsOfTheirOwn) {
  EXPECT_TRUE(occurs(u"e", "e\u0301"));
  EXPECT_FALSE(occurs(u"\u00E9", "e\u0301"));
  EXPECT_TRUE(occurs(u"\u0301", "e\u0301"));
}

TEST(TextNeedleTest, AZeroIsShownAsItsSymbol) {
  EXPECT_TRUE(occurs(u"\u2400", std::string_view("a\0b", 3)));
  EXPECT_TRUE(occurs(u"a\u2400B", std::string_view("a\0b", 3)));
  EXPECT_TRUE(occurs(std::u16string_view(u"a\0b", 3), "a\u2400b"));
  EXPECT_TRUE(occurs(u"b", std::string_view("a\0b", 3)));
}

TEST(TextNeedleTest, SurrogatesAreFoundInBothOfTheirForms) {
  EXPECT_TRUE(occurs(u"\U0001F600", "a\xF0\x9F\x98\x80z"));
  EXPECT_TRUE(occurs(u"\U0001F600", "a\xED\xA0\xBD\xED\xB8\x80z"));
  const char16_t high = 0xD83D;
  EXPECT_TRUE(occurs({&high, 1}, "\xF0\x9F\x98\x80"));
  EXPECT_TRUE(occurs({&high, 1}, "\xED\xA0\xBD"));
}

TEST(TextNeedleTest, IllFormedTextIsSearchedAsItIsShown) {
  EXPECT_TRUE(occurs(u"\uFFFD", "a\xFFz"));
  EXPECT_TRUE(occurs(u"a\uFFFDz", "a\xE4\xB8z"));
  EXPECT_FALSE(occurs(u"\uFFFD", "az"));
  EXPECT_TRUE(occurs(u"z", "\xE4\xB8z"));
}

TEST(TextNeedleTest, LongTextsAreDecodedWholeWhereverTheirSequencesEnd) {
  for (std::size_t offset = 0; offset < 8; ++offset) {
    std::string text(offset, 'a');
    std::string stray = text;
    for (int count = 0; count < 1500; ++count) {
      text += "\xE4\xB8\xAD\xF0\x9F\x98\x80";
      stray += "\x80";
    }
    EXPECT_FALSE(occurs(u"\uFFFD", text)) << offset;
    EXPECT_TRUE(occurs(u"\U0001F600\u00C4", text + "\u00E4")) << offset;
    EXPECT_TRUE(occurs(std::u16string(1500, u'\uFFFD') + u"!", stray + "!")) << offset;
    EXPECT_FALSE(occurs(std::u16string(1501, u'\uFFFD'), stray)) << offset;
  }
}

/// Random texts of few different signs, so that needles are found often, and nearly found more often.
class RandomTexts {
 public:
  std::size_t number(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
  }

  std::u16string needle(std::size_t most) {
    std::u16string units;
    for (std::size_t count = number(most); count > 0; --count) units += unit();
    return units;
  }

  std::string text(std::size_t most) {
    std::string bytes;
    for (std::size_t count = number(most); count > 0; --count) {
      const char16_t next = unit();
      bytes += number(30) == 0 ? std::string(1, static_cast<char>(number(255))) : toUtf8({&next, 1});
    }
    return bytes;
  }

 private:
  char16_t unit() {
    static constexpr std::u16string_view kAscii = u"aAbBkKsSiI.-0019 ";
    static const std::u16string others{0,      0xDF,   0xE4,   0xC4,  0x130, 0x131,  0x17F,
                                       0x212A, 0x3C2,  0x3C3,  0x3A3, 0x301, 0x4E2D, 0xD83D,
                                       0xDE00, 0xFFFD, 0x2400, 0xFF,  0x178, 0x3042};
    const bool isAscii = number(3) != 0;
    return isAscii ? kAscii[number(kAscii.size() - 1)] : others[number(others.size() - 1)];
  }

  std::mt19937_64 random_{20010309};
};

TEST(TextNeedleTest, AgreesWithThePlainWayOnRandomTexts) {
  RandomTexts texts;
  int found = 0;
  for (int round = 0; round < 100'000; ++round) {
    const std::u16string needle = texts.needle(3);
    const std::string text = texts.text(round % 50 == 0 ? 3000 : 40);
    const CaseFolding* folding = texts.number(1) == 0 ? nullptr : &oddFolding();
    const TextNeedle tested(needle, folding);
    const bool expected = occursPlainly(needle, decoded(text), folding);
    found += expected ? 1 : 0;
    ASSERT_EQ(expected, tested.occursIn(text)) << "round " << round;
    ASSERT_EQ(expected, tested.occursInUnits(decoded(text))) << "round " << round;
  }
  EXPECT_GT(found, 10'000);
  EXPECT_LT(found, 90'000);
}

TEST(TextNeedleTest, EveryPairOfCasesIsFound) {
  for (const CaseFolding::Change& change : oddFolding().changes()) {
    for (const auto& [needle, text] :
         {std::pair(change.from, change.to), std::pair(change.to, change.from)}) {
      EXPECT_TRUE(occurs({&needle, 1}, "in " + toUtf8({&text, 1}) + " it"))
          << static_cast<unsigned>(change.from);
    }
  }
}

}  // namespace
}  // namespace store
