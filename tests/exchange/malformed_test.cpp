#include <gtest/gtest.h>

#include "tests/exchange/exchange_fixture.h"

// Files that are not as they should be: what can't be taken is told by its line, and the rest is taken.

namespace store::exchange {
namespace {

struct Malformed {
  const char* name;
  std::string file;  // has a line "good" that must be taken, unless `good` says otherwise
  std::vector<std::string> rejects;
  std::string good;
};

using namespace std::string_literals;

const std::vector<Malformed>& corpus() {
  static const std::vector<Malformed> rows{
      {"TooFewFields", "a,b\ngood,1\nx\n", {"3: there is 1 field instead of 2"}, "good"},
      {"TooManyFields", "a,b\nx,1,2\ngood,1\n", {"2: there are 3 fields instead of 2"}, "good"},
      {"UnclosedQuote",
       "a,b\ngood,1\n\"x,2\nlost,3\n",
       {"3: a quote is not closed; all up to the end of the file is taken for its text"},
       "good"},
      {"TextBehindAQuote", "a,b\n\"x\"y,2\ngood,1\n", {"2: there is text behind a closing quote"}, "good"},
      {"BlankBehindAQuote", "a,b\n\"x\" ,2\ngood,1\n", {"2: there is text behind a closing quote"}, "good"},
      {"QuoteAtTheEndOfTheFile",
       "a,b\ngood,1\nx,\"",
       {"3: a quote is not closed; all up to the end of the file is taken for its text"},
       "good"},
      {"InvalidByteOfUtf8",
       "\xEF\xBB\xBF"
       "a,b\nx\xFFy,2\ngood,1\n",
       {"2: there is a byte that stands for no character"},
       "good"},
      {"CutOffCharacter",
       "\xEF\xBB\xBF"
       "a,b\ngood,1\nx,\xC3",
       {"3: there is a byte that stands for no character"},
       "good"},
      {"OverlongForm",
       "\xEF\xBB\xBF"
       "a,b\n\xC0\xAF,2\ngood,1\n",
       {"2: there is a byte that stands for no character"},
       "good"},
      {"ByteOutsideWindows1252",
       "a,b\nx\x81,2\ng\xFC"
       "te,1\n",
       {"2: there is a byte that stands for no character"},
       "g\xC3\xBCte"},
      {"HalfAUnitOfUtf16",
       "\xFF\xFE"
       "a\0,\0b\0\n\0g\0o\0o\0d\0,\0"
       "1\0\n\0x\0,\0"
       "2\0\n"s,
       {"3: there is a byte that stands for no character"},
       "good"},
      {"ADanglingSeparator", "a,b\ngood,1,\n", {"2: there are 3 fields instead of 2"}, "(none)"},
      {"JsonMemberTwice",
       "[{\"a\":\"x\",\"a\":\"y\"},{\"a\":\"good\"}]",
       {"1: the name \"a\" occurs twice"},
       "good"},
      {"JsonNoObject",
       "[{\"a\":\"good\"},\n5,{\"a\":\"lost\"}]",
       {"2: an object was expected; nothing from here on can be read"},
       "good"},
      {"JsonUnclosed",
       "[{\"a\":\"good\"},\n{\"a\":\"x\"",
       {"2: the object is not closed; nothing from here on can be read"},
       "good"},
      {"JsonArrayUnclosed",
       "[{\"a\":\"good\"}\n",
       {"2: the array is not closed; nothing from here on can be read"},
       "good"},
      {"JsonWithoutAComma",
       "[{\"a\":\"good\"}\n{\"a\":\"x\"}]",
       {"2: a comma or the end of the array was expected; nothing from here on can be read"},
       "good"},
      {"JsonBehindTheArray",
       "[{\"a\":\"good\"}]\n{\"a\":\"x\"}",
       {"2: there is something behind the array; nothing from here on can be read"},
       "good"},
      {"JsonInvalidByte",
       "{\"a\":\"good\"}\n{\"a\":\"\x81\"}\n",
       {"2: there is a byte that stands for no character"},
       "good"},
  };
  return rows;
}

class MalformedTest : public ExchangeTest {};

TEST_F(MalformedTest, WhatIsWrongIsToldByItsLineAndTheRestTaken) {
  open();
  for (const Malformed& row : corpus()) {
    SCOPED_TRACE(row.name);
    options_.table = row.name;
    const Status status = tryImport(row.file, ImportMode::goodRecords);
    ASSERT_TRUE(status) << status.message();
    EXPECT_EQ(observer_.rejects, row.rejects);
    EXPECT_EQ(result_.leftOut, static_cast<std::int64_t>(row.rejects.size()));
    EXPECT_TRUE(result_.isStored);
    EXPECT_EQ(ask("SELECT group_concat(a, '|') FROM " + options_.table),
              row.good == "(none)" ? "(null)" : row.good);
  }
}

TEST_F(MalformedTest, OrNothingIsTakenAtAll) {
  open();
  const std::string before = bytesOf(path_);
  for (const Malformed& row : corpus()) {
    SCOPED_TRACE(row.name);
    options_.table = row.name;
    const Status status = tryImport(row.file);
    ASSERT_TRUE(status) << status.message();
    EXPECT_EQ(observer_.rejects, row.rejects);
    EXPECT_FALSE(result_.isStored);
    EXPECT_EQ(ask("SELECT count(*) FROM sqlite_schema"), "0");
  }
  EXPECT_TRUE(bytesOf(path_) == before);
}

TEST_F(MalformedTest, JsonThatIsNoneIsToldWithTheReason) {
  open();
  ASSERT_TRUE(tryImport("{\"a\":1}\n{\"a\":tru}\n{\"a\":3}\n", ImportMode::goodRecords));
  ASSERT_EQ(observer_.rejects.size(), 1u);
  EXPECT_TRUE(observer_.rejects[0].starts_with("2: it is no JSON: ")) << observer_.rejects[0];
  EXPECT_EQ(contents("a"), "integer:1; integer:3");
}

TEST_F(MalformedTest, DeepJsonIsRefused) {
  open();
  const std::string deep = "{\"a\":" + std::string(100'000, '[') + std::string(100'000, ']') + "}";
  ASSERT_TRUE(tryImport("{\"a\":1}\n" + deep, ImportMode::goodRecords));
  EXPECT_EQ(observer_.rejects, std::vector<std::string>{"2: its values are nested too deep"});
}

}  // namespace
}  // namespace store::exchange
