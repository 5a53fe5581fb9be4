#include "platform/store/exchange/formats/csv_reader.h"

#include <gtest/gtest.h>

#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

std::string readAll(const std::string& file, CsvFormat format = {.hasHeader = false},
                    std::size_t atOnce = 1 << 20, Encoding encoding = Encoding::utf8) {
  DripSource source(file, atOnce);
  std::unique_ptr<CsvReader> reader;
  if (const Status status = CsvReader::open(source, encoding, format, &reader); !status)
    return status.message();
  return recordsOf(*reader);
}

TEST(CsvReader, FieldsEndAtTheSeparatorAndRecordsWithTheLine) {
  EXPECT_EQ(readAll("a,b\nc,d\n"), "1: [a] [b]\n2: [c] [d]\n");
  EXPECT_EQ(readAll("a;b,c\n", {.separator = ';', .hasHeader = false}), "1: [a] [b,c]\n");
}

TEST(CsvReader, TheLastLineNeedsNoEnd) {
  EXPECT_EQ(readAll("a,b\nc,d"), "1: [a] [b]\n2: [c] [d]\n");
  EXPECT_EQ(readAll("a,b\nc,"), "1: [a] [b]\n2: [c] null\n");
  EXPECT_EQ(readAll("\"a\",\"b\""), "1: \"a\" \"b\"\n");
}

TEST(CsvReader, EveryKindOfLineEndEndsARecord) {
  EXPECT_EQ(readAll("a,b\r\nc,d\re,f\ng,h\r\n"), "1: [a] [b]\n2: [c] [d]\n3: [e] [f]\n4: [g] [h]\n");
}

TEST(CsvReader, QuotesHoldSeparatorsLineEndsAndQuotes) {
  EXPECT_EQ(readAll("\"a,b\",\"c\r\nd\"\n\"say \"\"yes\"\"\",\"\"\"\"\nx,y\n"),
            "1: \"a,b\" \"c\r\nd\"\n3: \"say \"yes\"\" \"\"\"\n4: [x] [y]\n");
}

TEST(CsvReader, LinesAreCountedWithinQuotesWhateverTheirEnd) {
  EXPECT_EQ(readAll("\"1\n2\r\n3\r4\",a\nb,c\n"), "1: \"1\n2\r\n3\r4\" [a]\n5: [b] [c]\n");
}

TEST(CsvReader, AQuoteInsideAFieldIsText) {
  EXPECT_EQ(readAll("5\" pipe,a\"b\"c\n"), "1: [5\" pipe] [a\"b\"c]\n");
}

TEST(CsvReader, NothingIsNullAndQuotesAreAnEmptyText) {
  EXPECT_EQ(readAll(",\"\",x\n"), "1: null \"\" [x]\n");
}

TEST(CsvReader, AnotherTextCanStandForNull) {
  EXPECT_EQ(readAll("NULL,,\"NULL\"\n", {.hasHeader = false, .nullText = "NULL"}), "1: null [] \"NULL\"\n");
}

TEST(CsvReader, BlanksBelongToTheField) {
  EXPECT_EQ(readAll(" a , b\n"), "1: [ a ] [ b]\n");
}

TEST(CsvReader, EmptyLinesAreNoRecordsOfSeveralColumns) {
  EXPECT_EQ(readAll("\n\na,b\n\r\nc,d\n\n"), "3: [a] [b]\n5: [c] [d]\n");
}

TEST(CsvReader, AnEmptyLineIsANullOfASingleColumn) {
  EXPECT_EQ(readAll("name\na\n\nb\n", {.hasHeader = true}), "2: [a]\n3: null\n4: [b]\n");
}

TEST(CsvReader, EmptyLinesInFrontAreNullsOfASingleColumnToo) {
  EXPECT_EQ(readAll("\n\na\n"), "1: null\n2: null\n3: [a]\n");
  EXPECT_EQ(readAll("\r\n\r\na\r\n\r\nb"), "1: null\n2: null\n3: [a]\n4: null\n5: [b]\n");
  EXPECT_EQ(readAll("\n\n\"a\nb\"\n", {.hasHeader = false}, 1), "1: null\n2: null\n3: \"a\nb\"\n");
  EXPECT_EQ(readAll("\nNULL\n", {.hasHeader = false, .nullText = "NULL"}), "1: []\n2: null\n");
  EXPECT_EQ(readAll("\n\nname\na\n", {.hasHeader = true}), "4: [a]\n");
}

TEST(CsvReader, TheHeaderNamesTheColumns) {
  MemorySource source("\"a\nb\",c\n1,2\n");
  std::unique_ptr<CsvReader> reader;
  ASSERT_TRUE(CsvReader::open(source, Encoding::utf8, {.hasHeader = true}, &reader));
  EXPECT_EQ(reader->names(), (std::vector<std::string>{"a\nb", "c"}));
  EXPECT_EQ(recordsOf(*reader), "3: [1] [2]\n");
}

TEST(CsvReader, WithoutAHeaderTheColumnsAreNumbered) {
  MemorySource source("x,y\n");
  std::unique_ptr<CsvReader> reader;
  ASSERT_TRUE(CsvReader::open(source, Encoding::utf8, {.hasHeader = false}, &reader));
  EXPECT_EQ(reader->names(), (std::vector<std::string>{"Field1", "Field2"}));
}

TEST(CsvReader, AnEmptyFileHasNothing) {
  EXPECT_EQ(readAll(""), "");
  EXPECT_EQ(readAll("\xEF\xBB\xBF"), "");
  EXPECT_EQ(readAll("\n"), "");
}

TEST(CsvReader, AZeroByteIsACharacterLikeOthers) {
  using namespace std::string_literals;
  EXPECT_EQ(readAll("a\0b,\"\0\"\n"s), "1: [a\0b] \"\0\"\n"s);
}

// Every place of a file can be the end of a block.
TEST(CsvReader, WhereTheBlocksEndMakesNoDifference) {
  const std::string file =
      "\xEF\xBB\xBFname,\"a "
      "\"\"b\"\"\"\r\n\"x\r\ny\",\"\"\r\n\xC3\xA4\xE2\x82\xAC,\"q\"\"\"\"\"\r\n,last\r\"end\",1";
  const std::string expected = readAll(file);
  EXPECT_EQ(
      expected,
      "1: [name] \"a \"b\"\"\n2: \"x\r\ny\" \"\"\n4: [\xC3\xA4\xE2\x82\xAC] \"q\"\"\"\n5: null [last]\n6: "
      "\"end\" [1]\n");
  for (std::size_t atOnce = 1; atOnce < 12; ++atOnce) {
    EXPECT_EQ(readAll(file, {.hasHeader = false}, atOnce), expected) << atOnce << " bytes at once";
  }
}

TEST(CsvReader, LinesOfQuotedTextsAreCountedWhereverTheBlocksEnd) {
  const std::string file = "\"1\r2\n3\r\n4\n\r6\r\"\"\n8\",a\nb,c\n";
  for (std::size_t atOnce = 1; atOnce < 20; ++atOnce) {
    EXPECT_EQ(readAll(file, {.hasHeader = false}, atOnce),
              "1: \"1\r2\n3\r\n4\n\r6\r\"\n8\" [a]\n9: [b] [c]\n")
        << atOnce << " bytes at once";
  }
}

// Larger than the block that is read at once, so that the buffer grows and moves in the midst of a record.
TEST(CsvReader, RecordsMayBeLargerThanABlock) {
  std::string file;
  std::string expected;
  for (int number = 1; number <= 5; ++number) {
    const std::string text(static_cast<std::size_t>(number) * 150'000, static_cast<char>('a' + number));
    file += "k" + std::to_string(number) + ",\"" + text + "\"\"" + text + "\"," + text + "\n";
    expected += std::to_string(number) + ": [k" + std::to_string(number) + "] \"" + text + "\"" + text +
                "\" [" + text + "]\n";
  }
  EXPECT_TRUE(readAll(file) == expected);
  EXPECT_TRUE(readAll(file, {.hasHeader = false}, 70'001) == expected);
}

TEST(CsvReader, TwoThousandColumnsAreRead) {
  std::string file;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 2000; ++column) {
      if (column > 0) file += ',';
      file += std::to_string(row * 2000 + column);
    }
    file += '\n';
  }
  DripSource source(file, 1000);
  std::unique_ptr<CsvReader> reader;
  ASSERT_TRUE(CsvReader::open(source, Encoding::utf8, {.hasHeader = false}, &reader));
  EXPECT_EQ(reader->names().size(), 2000u);
  for (int row = 0; row < 3; ++row) {
    bool hasRecord = false;
    ASSERT_TRUE(reader->next(&hasRecord));
    ASSERT_TRUE(hasRecord);
    ASSERT_EQ(reader->record().fields.size(), 2000u);
    for (std::size_t column = 0; column < 2000; ++column) {
      ASSERT_EQ(reader->record().fields[column].text,
                std::to_string(static_cast<std::size_t>(row) * 2000 + column));
    }
  }
}

/// "key,", a field of so many bytes between quotes, and another record; nothing of it in memory.
class HugeFieldSource : public ByteSource {
 public:
  explicit HugeFieldSource(std::size_t size) : size_(size) {}
  Status read(char* bytes, std::size_t room, std::size_t* count) override {
    *count = std::min(room, length_() - position_);
    for (std::size_t index = 0; index < *count; ++index) bytes[index] = at(position_ + index);
    position_ += *count;
    return {};
  }
  Status rewind() override {
    position_ = 0;
    return {};
  }
  std::int64_t length() const override { return static_cast<std::int64_t>(length_()); }

 private:
  static constexpr std::string_view kStart = "key,\"";
  static constexpr std::string_view kEnd = "\"\nnext,1\n";
  std::size_t length_() const { return kStart.size() + size_ + kEnd.size(); }
  char at(std::size_t place) const {
    if (place < kStart.size()) return kStart[place];
    place -= kStart.size();
    return place < size_ ? static_cast<char>('a' + place % 26) : kEnd[place - size_];
  }
  std::size_t size_;
  std::size_t position_ = 0;
};

TEST(CsvReader, AFieldMayHaveAHundredMegabytes) {
  constexpr std::size_t kSize = 100'000'000;
  HugeFieldSource source(kSize);
  std::unique_ptr<CsvReader> reader;
  ASSERT_TRUE(CsvReader::open(source, Encoding::utf8, {.hasHeader = false}, &reader));
  bool hasRecord = false;
  ASSERT_TRUE(reader->next(&hasRecord));
  ASSERT_EQ(reader->record().fields.size(), 2u);
  const std::string_view huge = reader->record().fields[1].text;
  ASSERT_EQ(huge.size(), kSize);
  EXPECT_EQ(huge.front(), 'a');
  EXPECT_EQ(huge[54'321], static_cast<char>('a' + 54'321 % 26));
  EXPECT_EQ(huge.back(), static_cast<char>('a' + (kSize - 1) % 26));
  EXPECT_EQ(recordsOf(*reader), "2: [next] [1]\n");
}

TEST(CsvReader, AFileThatCanNotBeReadFails) {
  class Failing : public DripSource {
   public:
    Failing() : DripSource("a,b\n\"c", 3) {}
    Status read(char* bytes, std::size_t room, std::size_t* count) override {
      if (++reads_ > 2) return {ErrorCode::inputOutput, "the disk is broken"};
      return DripSource::read(bytes, room, count);
    }

   private:
    int reads_ = 0;
  };
  Failing source;
  std::unique_ptr<CsvReader> reader;
  Status status = CsvReader::open(source, Encoding::utf8, {.hasHeader = false}, &reader);
  for (bool hasRecord = true; status && hasRecord;) status = reader->next(&hasRecord);
  EXPECT_EQ(status.message(), "the disk is broken");
}

}  // namespace
}  // namespace store::exchange
