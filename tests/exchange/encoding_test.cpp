#include "platform/store/exchange/bytes/encoding.h"

#include <gtest/gtest.h>

#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

using namespace std::string_literals;

Encoding detected(const std::string& bytes, std::size_t atOnce = 100'000) {
  DripSource source(bytes, atOnce);
  Encoding encoding = Encoding::utf16BigEndian;
  EXPECT_TRUE(detectEncoding(source, &encoding));
  return encoding;
}

std::string textOf(const std::string& bytes, Encoding encoding, std::size_t atOnce = 100'000,
                   std::size_t room = 64) {
  DripSource source(bytes, atOnce);
  TextSource text(source, encoding);
  std::string all;
  std::string part(room, '\0');
  for (std::size_t count = 1; count > 0; all.append(part, 0, count)) {
    EXPECT_TRUE(text.read(part.data(), part.size(), &count));
  }
  return all;
}

TEST(Encoding, AMarkDecides) {
  EXPECT_EQ(detected("\xEF\xBB\xBFx\xFF"), Encoding::utf8);
  EXPECT_EQ(detected("\xFF\xFEx\0"s), Encoding::utf16LittleEndian);
  EXPECT_EQ(detected("\xFE\xFF\0x"s), Encoding::utf16BigEndian);
}

TEST(Encoding, WithoutAMarkAllOfTheFileDecides) {
  EXPECT_EQ(detected("plain"), Encoding::utf8);
  EXPECT_EQ(detected(""), Encoding::utf8);
  EXPECT_EQ(detected("\xC3\xA4"), Encoding::utf8);
  EXPECT_EQ(detected("\xE4"), Encoding::windows1252);
  EXPECT_EQ(detected(std::string(300'000, 'x') + "\xC3\xA4\xE4"), Encoding::windows1252);
  EXPECT_EQ(detected(std::string(300'000, 'x') + "\xC3"), Encoding::windows1252);
}

TEST(Encoding, ACharacterMayLieOnTheBorderOfTwoBlocks) {
  const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x99\x82z";
  for (std::size_t atOnce = 1; atOnce < 8; ++atOnce)
    EXPECT_EQ(detected(text, atOnce), Encoding::utf8) << atOnce;
  const std::string wrong = text + "\x82";
  for (std::size_t atOnce = 1; atOnce < 8; ++atOnce) {
    EXPECT_EQ(detected(wrong, atOnce), Encoding::windows1252) << atOnce;
  }
}

TEST(Encoding, TheMarkIsNoText) {
  EXPECT_EQ(textOf("\xEF\xBB\xBFx", Encoding::utf8), "x");
  EXPECT_EQ(textOf("\xEF\xBB\xBFx", Encoding::utf8, 1), "x");
  EXPECT_EQ(textOf("\xFF\xFEx\0"s, Encoding::utf16LittleEndian), "x");
  EXPECT_EQ(textOf("\xFE\xFF\0x"s, Encoding::utf16BigEndian), "x");
}

TEST(Encoding, Windows1252HasItsOwnSigns) {
  EXPECT_EQ(textOf("\x80\xE4\x9F\xFF", Encoding::windows1252), "\xE2\x82\xAC\xC3\xA4\xC5\xB8\xC3\xBF");
  EXPECT_EQ(textOf("a\x81"
                   "b",
                   Encoding::windows1252),
            "a\xFF"
            "b");
}

TEST(Encoding, Utf16HasPairsAndHalves) {
  const std::string little = "\x42\xD8\xB7\xDF\x41\xD8x\0"s;  // U+20BB7, half a pair, x
  EXPECT_EQ(textOf(little, Encoding::utf16LittleEndian),
            "\xF0\xA0\xAE\xB7\xED\xA1\x81"
            "x");
  EXPECT_EQ(textOf("\xD8\x42\xDF\xB7\0x"s, Encoding::utf16BigEndian), "\xF0\xA0\xAE\xB7x");
  EXPECT_EQ(textOf("x\0\xD8\x42\xD8"s, Encoding::utf16LittleEndian),
            "x\xEF\xBF\xBD"s.replace(1, 3, "\xE4\x8B\x98\xFF"));
}

TEST(Encoding, WhereTheBlocksEndMakesNoDifference) {
  const std::string little = "\xFF\xFE\x42\xD8\xB7\xDF\xE4\0\xAC\x20\x41\xD8x\0"s;
  const std::string expected = textOf(little, Encoding::utf16LittleEndian);
  for (std::size_t atOnce = 1; atOnce < 9; ++atOnce) {
    EXPECT_EQ(textOf(little, Encoding::utf16LittleEndian, atOnce, 8), expected) << atOnce;
  }
  const std::string single = "\x80\xE4x\x93\x94\xFC";
  for (std::size_t atOnce = 1; atOnce < 5; ++atOnce) {
    EXPECT_EQ(textOf(single, Encoding::windows1252, atOnce, 8), textOf(single, Encoding::windows1252))
        << atOnce;
  }
}

TEST(Encoding, WellFormedIsWhatTheEngineTakes) {
  for (const char* text :
       {"", "abc", "\xC3\xA4", "\xE0\xA0\x80", "\xED\xA0\x80", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(isWellFormed(text)) << text;
  }
  for (const char* text : {"\x80", "\xC1\xBF", "\xC3", "\xE0\x9F\xBF", "\xE2\x82", "\xF0\x8F\xBF\xBF",
                           "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "12345678\x80", "1234567\xC3"}) {
    EXPECT_FALSE(isWellFormed(text)) << text;
  }
}

TEST(Encoding, NamesAreKnownInAnyLetterCase) {
  EXPECT_EQ(encodingOf("UTF-8"), Encoding::utf8);
  EXPECT_EQ(encodingOf("cp1252"), Encoding::windows1252);
  EXPECT_EQ(encodingOf("klingon"), std::nullopt);
  EXPECT_EQ(nameOf(Encoding::windows1252), "windows-1252");
}

TEST(EncodingDetection, TellsWhereTheFirstByteIsThatIsNoUtf8) {
  struct Case {
    const char* name;
    std::string file;
    std::int64_t line;
    std::int64_t offset;
  };
  const Case cases[] = {{"none", "a\nb\n", 0, 0},
                        {"UTF-8", "\xC3\xA9\n", 0, 0},
                        {"the first", "\xFF", 1, 0},
                        {"in the third line", "a\n\xC3\xA9\nM\xFC\n\xFF", 3, 6},
                        {"the end of half a character", "a\n\xC3", 2, 2},
                        {"beyond a block", std::string(100'000, '\n') + "\xFC", 100'001, 100'000}};
  for (const Case& c : cases) {
    for (const std::size_t most : {std::size_t{1} << 16, std::size_t{1}}) {
      DripSource source(c.file, most);
      Encoding encoding = Encoding::utf16BigEndian;
      BytePlace place;
      ASSERT_TRUE(detectEncoding(source, &encoding, &place));
      EXPECT_EQ(encoding, c.line == 0 ? Encoding::utf8 : Encoding::windows1252) << c.name;
      EXPECT_EQ(place.line, c.line) << c.name;
      EXPECT_EQ(place.offset, c.offset) << c.name;
    }
  }
}

}  // namespace
}  // namespace store::exchange
