#include <gtest/gtest.h>

#include "platform/store/exchange/formats/csv_detection.h"
#include "platform/store/exchange/formats/json_reader.h"
#include "platform/store/exchange/formats/json_writer.h"
#include "tests/exchange/exchange_fixture.h"

// As much, as wide and as odd as a file may be.

namespace store::exchange {
namespace {

using namespace std::string_literals;

class LimitsTest : public ExchangeTest {
 protected:
  /// Writes T out and reads it into a new table, "Back".
  void goRound(RowWriter& writer) {
    const std::string file = exported("T", writer);
    run("DROP TABLE IF EXISTS Back");
    options_.table = "Back";
    import(file);
  }
  std::string differing() {
    return ask(
        "SELECT (SELECT count(*) FROM (SELECT * FROM T EXCEPT SELECT * FROM Back)) + abs((SELECT "
        "count(*) FROM T) - (SELECT count(*) FROM Back))");
  }
};

TEST_F(LimitsTest, TwoThousandColumnsGoRound) {
  std::string columns;
  std::string values;
  for (int column = 1; column <= 2000; ++column) {
    columns += (column > 1 ? ", C" : "C") + std::to_string(column);
    values += (column > 1 ? ", " : "") + std::to_string(column);
  }
  prepare("CREATE TABLE T (" + columns + "); INSERT INTO T VALUES (" + values +
          "); INSERT INTO T (C2000) VALUES (7)");
  open();
  CsvWriter csv({});
  goRound(csv);
  EXPECT_EQ(differing(), "0");
  EXPECT_EQ(ask("SELECT count(*) FROM pragma_table_info('Back')"), "2000");
  JsonWriter json(JsonWriter::Shape::lines);
  goRound(json);
  EXPECT_EQ(differing(), "0");
  EXPECT_EQ(ask("SELECT sum(C2000) FROM Back"), "2007");
}

TEST_F(LimitsTest, MoreColumnsThanSqliteHasAreTold) {
  std::string header = "C1";
  for (int column = 2; column <= 2001; ++column) header += ",C" + std::to_string(column);
  open();
  const Status status = tryImport(header + "\n");
  EXPECT_FALSE(status);
  EXPECT_NE(status.message().find("too many columns"), std::string::npos) << status.message();
  EXPECT_EQ(ask("SELECT count(*) FROM sqlite_schema"), "0");
}

TEST_F(LimitsTest, AFieldOfAHundredMegabytesGoesRound) {
  constexpr int kBytes = 100'000'000;
  prepare("CREATE TABLE T (Id Integer, Long Text); INSERT INTO T VALUES (1, replace(hex(zeroblob(" +
          std::to_string(kBytes / 10) + ")), '00', 'a \"b\" c,\xC3\xA9')), (2, 'short')");
  ASSERT_EQ(ask("SELECT max(length(CAST(Long AS BLOB))) FROM T"), "100000000");
  open();
  CsvWriter csv({});
  goRound(csv);
  EXPECT_EQ(ask("SELECT count(*) FROM T JOIN Back USING (Id) WHERE T.Long = Back.Long"), "2");
  JsonWriter json(JsonWriter::Shape::array);
  goRound(json);
  EXPECT_EQ(ask("SELECT count(*) FROM T JOIN Back USING (Id) WHERE T.Long = Back.Long"), "2");
}

TEST_F(LimitsTest, ALongerRecordThanAllowedIsTold) {
  CsvFormat format;
  format.hasHeader = false;
  const std::string file = "a,b\n" + std::string(1 << 20, 'x') + ",2\n";
  for (const char* quote : {"", "\""}) {
    MemorySource source(file);
    const std::string quoted = "a,b\n" + (quote + std::string(1 << 20, 'x'));
    MemorySource quotedSource(quoted);
    std::unique_ptr<CsvReader> reader;
    ASSERT_TRUE(
        CsvReader::open(*quote != 0 ? quotedSource : source, Encoding::utf8, format, &reader, 500'000));
    bool hasRecord = false;
    ASSERT_TRUE(reader->next(&hasRecord));
    const Status status = reader->next(&hasRecord);
    EXPECT_EQ(status.code(), ErrorCode::conversion);
    EXPECT_EQ(status.message(),
              "Line 2: the record is longer than 500000 bytes. Is a quote or a bracket not closed?");
  }
  const std::string json = "[{\"a\":1},\n{\"a\":\"" + std::string(1 << 20, 'x') + "\"}]";
  MemorySource source(json);
  std::unique_ptr<JsonReader> reader;
  ASSERT_TRUE(JsonReader::open(source, Encoding::utf8, &reader, 500'000));
  bool hasRecord = false;
  ASSERT_TRUE(reader->next(&hasRecord));
  const Status status = reader->next(&hasRecord);
  EXPECT_EQ(status.code(), ErrorCode::conversion);
  EXPECT_EQ(status.message(),
            "Line 2: the record is longer than 500000 bytes. Is a quote or a bracket not closed?");
}

TEST_F(LimitsTest, ZeroBytesAreCharactersLikeOthers) {
  open();
  import("Na\0me,B\n\0,\"a\0b\"\n\0\0x,\0\n"s);
  EXPECT_EQ(ask("SELECT group_concat(hex(B), ' ') FROM T"), "610062 00");
  EXPECT_EQ(ask("SELECT name FROM pragma_table_info('T') LIMIT 1"), "Na me");
  options_.table = "Json";
  import("[{\"A\":\"a\\u0000b\"}]");
  EXPECT_EQ(ask("SELECT hex(A) FROM Json"), "610062");
}

// ---- What a first line may say

class SeparatorLineTest : public LimitsTest {};

TEST_F(SeparatorLineTest, NamesTheSeparator) {
  open();
  for (const char* end : {"\n", "\r\n", "\r"}) {
    run("DROP TABLE IF EXISTS T");
    import("sep=|"s + end + "Name|B" + end + "a,b,c|1" + end + "d,e,f|2" + end);
    EXPECT_EQ(contents("Name,B"), "text:'a,b,c' integer:1; text:'d,e,f' integer:2");
  }
}

TEST_F(SeparatorLineTest, IsNoRecordWhateverTheUserSays) {
  open();
  options_.separator = ',';
  options_.hasHeader = false;
  import("\xEF\xBB\xBFsep=;\na,1\n");
  EXPECT_EQ(contents("Field1,Field2"), "text:'a' integer:1");
}

TEST_F(SeparatorLineTest, CountsAsALine) {
  open();
  ASSERT_TRUE(tryImport("sep=;\r\na;b\r\n1\r\n", ImportMode::goodRecords));
  EXPECT_EQ(observer_.rejects, std::vector<std::string>{"3: there is 1 field instead of 2"});
}

TEST_F(SeparatorLineTest, IsReadAByteAtATimeToo) {
  DripSource source("sep=;\na;b\n1;2\n", 1);
  std::unique_ptr<CsvReader> reader;
  CsvFormat format;
  format.separator = ';';
  ASSERT_TRUE(CsvReader::open(source, Encoding::utf8, format, &reader));
  EXPECT_EQ(recordsOf(*reader), "3: [1] [2]\n");
}

TEST_F(SeparatorLineTest, IsExactlyThat) {
  for (const char* start : {"sep=", "sep=;", "sep=;;\n", "sep=\n\n", "sep=\"\n", "\"sep=;\"\n", "Sep=;\n"}) {
    EXPECT_FALSE(separatorLine(start)) << start;
  }
  EXPECT_EQ(separatorLine("sep=\t\r\n"), '\t');
}

TEST_F(SeparatorLineTest, ANameThatLooksLikeOneComesBack) {
  prepare("CREATE TABLE T (\"sep=;\" Text); INSERT INTO T VALUES ('{\"a\":1}'), ('x')");
  open();
  CsvWriter csv({});
  options_.table = "Back";
  import(exported("T", csv));
  EXPECT_EQ(contents("\"sep=;\"", "Back"), contents("\"sep=;\"", "T"));
  CsvWriter::Options bare;
  bare.format.hasHeader = false;
  CsvWriter writer(bare);
  run("DROP TABLE Back");
  options_.hasHeader = false;
  import(exported("T", writer));
  EXPECT_EQ(ask("SELECT group_concat(Field1, ' ') FROM Back"), "{\"a\":1} x");
}

}  // namespace
}  // namespace store::exchange
