#include "platform/store/exchange/formats/json_reader.h"

#include <gtest/gtest.h>

#include "platform/store/exchange/formats/json_surrogates.h"
#include "platform/store/exchange/formats/json_text.h"
#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

std::string readAll(const std::string& file, std::size_t atOnce = 1 << 20) {
  DripSource source(file, atOnce);
  std::unique_ptr<JsonReader> reader;
  EXPECT_TRUE(JsonReader::open(source, Encoding::utf8, &reader));
  std::string text = recordsOf(*reader);
  for (const std::string& name : reader->names()) text += name + ";";
  return text;
}

TEST(JsonReader, AnArrayOfObjectsHasRecords) {
  EXPECT_EQ(readAll("[{\"a\":1,\"b\":\"x\"},\n{\"a\":null,\"b\":true}]"),
            "1: [1] \"x\"\n2: null [true]\na;b;");
}

TEST(JsonReader, AValueThatIsMissingHasNotTheTextOfTheRecordBefore) {
  MemorySource source("[{\"a\":1,\"b\":\"x\"}, {\"a\":2}, {\"a\":3,\"b\":\xFF}]");
  std::unique_ptr<JsonReader> reader;
  ASSERT_TRUE(JsonReader::open(source, Encoding::utf8, &reader));
  bool hasRecord = false;
  for (const std::string_view expected : {"x", "", ""}) {
    ASSERT_TRUE(reader->next(&hasRecord));
    ASSERT_TRUE(hasRecord);
    EXPECT_EQ(reader->record().fields.at(1).text, expected);
  }
  EXPECT_FALSE(reader->record().problem.empty());
  EXPECT_EQ(reader->record().fields.at(0).text, "") << "of what is no JSON nothing is a value";
}

TEST(JsonReader, SoHaveObjectsOneALine) {
  EXPECT_EQ(readAll("{\"a\":1}\n{\"a\":2}\n"), "1: [1]\n2: [2]\na;");
  EXPECT_EQ(readAll("{\"a\":1}{\"a\":2}"), "1: [1]\n1: [2]\na;");
}

TEST(JsonReader, NamesAreGatheredAsTheyOccur) {
  EXPECT_EQ(readAll("{\"a\":1}\n{\"b\":2,\"a\":3}\n{}\n"), "1: [1]\n2: [3] [2]\n3: null null\na;b;");
}

TEST(JsonReader, NumbersKeepTheirDigits) {
  EXPECT_EQ(readAll("{\"a\":12345678901234567890123,\"b\":1.50,\"c\":-0,\"d\":1e5}"),
            "1: [12345678901234567890123] [1.50] [0] [1e5]\na;b;c;d;");
}

TEST(JsonReader, NestedValuesAreTheirText) {
  EXPECT_EQ(readAll("{\"a\":[1, 2,{\"x\":\"y\\\"\"}],\"b\":{\"k\":[true,null]},\"c\":[]}"),
            "1: \"[1,2,{\"x\":\"y\\\"\"}]\" \"{\"k\":[true,null]}\" \"[]\"\na;b;c;");
}

TEST(JsonReader, BytesAreAnObjectOfTheirOwn) {
  EXPECT_EQ(readAll("{\"a\":{\"hex\":\"4142\"},\"b\":{\"hex\":\"x\"}}"),
            "1: [4142] \"{\"hex\":\"x\"}\"\na;b;");
}

TEST(JsonReader, BracketsInTextsAreText) {
  EXPECT_EQ(readAll("[{\"a\":\"}]{[\\\"}\"},{\"a\":\"\\\\\"}]"), "1: \"}]{[\"}\"\n1: \"\\\"\na;");
}

TEST(JsonReader, AnEmptyArrayIsEmpty) {
  EXPECT_EQ(readAll("[]"), "");
  EXPECT_EQ(readAll("[ ]\n"), "");
  EXPECT_EQ(readAll(""), "");
}

TEST(JsonReader, WhereTheBlocksEndMakesNoDifference) {
  const std::string file =
      "[\n{\"a\" : \"x\\u00e4\\ud83d\\ude42\\\\\", \"b\":[1,{}]} ,\r\n{\"a\":-1.5e3}\n]\n";
  const std::string expected = readAll(file);
  EXPECT_EQ(expected, "2: \"x\xC3\xA4\xF0\x9F\x99\x82\\\" \"[1,{}]\"\n3: [-1.5e3] null\na;b;");
  for (std::size_t atOnce = 1; atOnce < 12; ++atOnce) EXPECT_EQ(readAll(file, atOnce), expected) << atOnce;
}

TEST(JsonReader, HalvesOfPairsAreKept) {
  EXPECT_EQ(readAll("{\"a\":\"x\\ud800y\",\"b\":\"\\uDC00\\ud83d\\ude42\"}"),
            "1: \"x\xED\xA0\x80y\" \"\xED\xB0\x80\xF0\x9F\x99\x82\"\na;b;");
}

// The sign that they are hidden behind may itself be in a text.
TEST(JsonReader, EveryTextComesBackThroughTheParser) {
  const std::vector<std::string> parts{
      "a",  "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x8F\xBF\xBF", "ffff",   "d800",
      "\\", "\"",           "\n",           "\xF0\x9F\x99\x82", "\\ud800"};
  for (const std::string& first : parts) {
    for (const std::string& second : parts) {
      for (const std::string& third : parts) {
        const std::string text = first + second + third;
        std::string json;
        // Two halves beside each other are read as the pair that they make.
        const bool isPair = text.find("\xED\xA0\x80\xED\xBF\xBF") != std::string::npos;
        ASSERT_EQ(appendJsonText(text, &json), !isPair);
        if (isPair) continue;
        EXPECT_EQ(readAll("{\"a\":" + json + "}"), "1: \"" + text + "\"\na;") << json;
        // Raw, as other programs may write them.
        std::string raw;
        for (const char character : text) {
          if (character == '"' || character == '\\') raw += '\\';
          raw += character == '\n' ? ' ' : character;
        }
        std::string expected = text;
        std::replace(expected.begin(), expected.end(), '\n', ' ');
        EXPECT_EQ(readAll("{\"a\":\"" + raw + "\"}"), "1: \"" + expected + "\"\na;") << raw;
      }
    }
  }
  EXPECT_EQ(readAll("{\"a\":\"\\udbff\\udfffd800\"}"),
            "1: \"\xF4\x8F\xBF\xBF"
            "d800\"\na;");
}

TEST(JsonText, WhatIsNoCharacterBecomesAReplacement) {
  std::string json;
  EXPECT_FALSE(appendJsonText("a\xFFz", &json));
  EXPECT_EQ(json, "\"a\xEF\xBF\xBDz\"");
}

TEST(JsonText, ControlCharactersAreEscapes) {
  using namespace std::string_literals;
  std::string json;
  EXPECT_TRUE(appendJsonText("\0\x01\n\t\r\b\f\"\\\x7F"s, &json));
  EXPECT_EQ(json, "\"\\u0000\\u0001\\n\\t\\r\\b\\f\\\"\\\\\x7F\"");
}

}  // namespace
}  // namespace store::exchange
