#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/store/exchange/formats/json_writer.h"
#include "tests/exchange/exchange_fixture.h"

// A column of SQLite may hold a value of any kind, whatever its type says. What is written out of it comes
// back to the byte, or is counted as what will not.

namespace store::exchange {
namespace {

const char* const kTypes[] = {
    "",         "SmallInt", "Integer",       "Bigint",    "Unsigned Int", "Float", "Double",
    "Real",     "Decimal",  "Numeric",       "Money",     "Bit",          "Bool",  "Boolean",
    "Date",     "Datetime", "Time",          "Timestamp", "Text",         "Memo",  "Char (10)",
    "Varchar",  "Clob",     "Long Varchar",  "Json",      "Varbinary",    "Bytea", "Long Varbinary",
    "Blob",     "Image",    "Binary (9)",    "String",    "Klingon",      "Any",   "Text Integer",
    "Datetext", "Dateblob", "Floating Point"};

const char* const kValues[] = {
    "NULL",
    "0",
    "1",
    "-1",
    "5",
    "1046563200",
    "9007199254740993",
    "9223372036854775807",
    "-9223372036854775807 - 1",
    "0.5",
    "-0.0",
    "0.1",
    "5.0",
    "1e15",
    "1e16",
    "1e300",
    "5e-324",
    "1.7976931348623157e308",
    "9e999",
    "-9e999",
    "''",
    "' '",
    "'yes'",
    "'true'",
    "'FALSE'",
    "'5'",
    "'007'",
    "'1e5'",
    "'1.50'",
    "' 5'",
    "'5 '",
    "'+5'",
    "'0x10'",
    "'12345678901234567890'",
    "'inf'",
    "'9e999'",
    "'NULL'",
    "'2003/01/02'",
    "'01/02/2003'",
    "'2003-01-02'",
    "' 2003-01-02'",
    "'2003-01-02 14:05'",
    "'14:05'",
    "'x''41'''",
    "'CAST(x''41'' AS TEXT)'",
    "'{\"hex\":\"41\"}'",
    "'{\"texthex\":\"41\"}'",
    "'[1,2]'",
    "'sep=;'",
    "'abc'",
    "' abc '",
    "'a,b;c|d' || char(9)",
    "'a\"b'",
    "'line' || char(13, 10) || 'end' || char(13)",
    "CAST(x'EFBBBF61' AS TEXT)",
    "CAST(x'41FF' AS TEXT)",
    "CAST(x'EDA0BD' AS TEXT)",
    "CAST(x'EDA0BDEDB880' AS TEXT)",
    "CAST(x'610062' AS TEXT)",
    "x''",
    "x'41'",
    "x'00FF'",
};

class EveryValueTest : public ExchangeTest {
 protected:
  struct Format {
    const char* name;
    bool isExact;
    std::function<std::unique_ptr<RowWriter>()> writer;
    std::string nullText = {};
    char separator = ',';
  };

  static Format csv(const char* name, bool isExact, char separator = ',', std::string nullText = "") {
    CsvWriter::Options options;
    options.format.separator = separator;
    options.format.nullText = nullText;
    options.isExact = isExact;
    return {name, isExact, [options] { return std::make_unique<CsvWriter>(options); }, nullText, separator};
  }
  static Format json(const char* name, bool isExact, JsonWriter::Shape shape) {
    return {name, isExact, [=] { return std::make_unique<JsonWriter>(shape, isExact); }};
  }

  /// A table with a column of each type, each value in each of them in a record of its own, so that it is
  /// refused alone.
  void SetUp() override {
    ExchangeTest::SetUp();
    OtherProgram other(path_);
    other.run("BEGIN; CREATE TABLE T " + definition());
    int record = 0;
    for (std::size_t type = 0; type < std::size(kTypes); ++type) {
      for (const char* value : kValues) {
        other.run("INSERT INTO T (Id, " + columnOf(type) + ") VALUES (" + std::to_string(++record) + ", " +
                  value + ")");
      }
    }
    other.run("COMMIT");
    open();
  }
  static std::string columnOf(std::size_t type) { return "V" + std::to_string(type); }
  static std::string definition() {
    std::string text = "(Id Integer";
    for (std::size_t type = 0; type < std::size(kTypes); ++type) {
      text += ", " + columnOf(type) + " " + kTypes[type];
    }
    return text + ")";
  }

  /// Writes the table out and reads it into one like it, "Back".
  void goRound(const Format& format) {
    const std::unique_ptr<RowWriter> writer = format.writer();
    const std::string file = exported("T", *writer);
    OtherProgram(path_).run("DROP TABLE IF EXISTS Back; CREATE TABLE Back " + definition());
    options_ = {};
    options_.table = "Back";
    options_.isExact = format.isExact;
    options_.nullText = format.nullText;
    if (file.front() != '{' && file.front() != '[') options_.separator = format.separator;
    const Status status = tryImport(file, ImportMode::goodRecords);
    EXPECT_TRUE(status) << status.message();
  }
  static std::string shown(const std::string& value) {
    return "typeof(" + value + ") || ' ' || CASE typeof(" + value + ") WHEN 'text' THEN hex(" + value +
           ") ELSE quote(" + value + ") END";
  }
  /// The values of that type that did not come back, a line each.
  std::vector<std::string> differences(std::size_t type) {
    const std::string value = columnOf(type);
    const std::string ofType =
        "(t.Id - 1) / " + std::to_string(std::size(kValues)) + " = " + std::to_string(type);
    const std::string all =
        ask("SELECT group_concat(" + shown("t." + value) + " || ' became ' || CASE WHEN b.Id IS NULL THEN " +
            "'nothing' ELSE " + shown("b." + value) + " END, char(10)) FROM T AS t LEFT JOIN Back AS b ON " +
            "b.Id = t.Id WHERE " + ofType + " AND (b.Id IS NULL OR " + shown("t." + value) + " <> " +
            shown("b." + value) + ")");
    std::vector<std::string> lines;
    if (all == "(null)") return lines;
    std::istringstream text(all);
    for (std::string line; std::getline(text, line);)
      lines.push_back(std::string(kTypes[type]) + ": " + line);
    return lines;
  }
  std::vector<std::string> differences() {
    std::vector<std::string> all;
    OtherProgram(path_).run("CREATE INDEX BackIds ON Back (Id)");
    for (std::size_t type = 0; type < std::size(kTypes); ++type) {
      for (std::string& line : differences(type)) all.push_back(std::move(line));
    }
    OtherProgram(path_).run("DROP INDEX BackIds");
    return all;
  }
  /// The records of a table as they are in a file of their own.
  std::string storedBytes(const std::string& table) {
    const std::filesystem::path copy = folder_.file("stored.db");
    std::filesystem::remove(copy);
    {
      OtherProgram other(path_);
      other.run("ATTACH '" + utf8Of(copy) + "' AS copy; CREATE TABLE copy.T " + definition() +
                "; INSERT INTO copy.T SELECT * FROM main." + table + " ORDER BY rowid; DETACH copy");
    }
    return bytesOf(copy);
  }
};

TEST_F(EveryValueTest, ComesBackFromAnExactFileToTheByte) {
  const Format formats[] = {
      csv("CSV", true), csv("CSV with tabs", true, '\t'), csv("CSV with another null", true, ',', "NULL"),
      json("JSON", true, JsonWriter::Shape::array), json("lines of JSON", true, JsonWriter::Shape::lines)};
  for (const Format& format : formats) {
    SCOPED_TRACE(format.name);
    goRound(format);
    EXPECT_EQ(differences(), std::vector<std::string>());
    EXPECT_EQ(exported_.changed, 0);
    EXPECT_TRUE(observer_.rejects.empty());
    EXPECT_TRUE(storedBytes("Back") == storedBytes("T"));
  }
}

// Neither is a value spoiled that was not counted, nor one counted that is not spoiled. (That those of a
// column's own kind come back is what RoundTripTest looks at.)
TEST_F(EveryValueTest, OrIsCounted) {
  const Format formats[] = {csv("CSV", false),
                            csv("CSV with bars", false, '|'),
                            csv("CSV parted by digits", false, '5'),
                            csv("exact CSV parted by digits", true, '5'),
                            csv("CSV parted by points", false, '.'),
                            csv("exact CSV parted by blanks", true, ' '),
                            csv("CSV with a number for null", false, ',', "5"),
                            csv("exact CSV with a number for null", true, ',', "5"),
                            csv("CSV with a word for null", false, ',', "true"),
                            csv("CSV with a date for null", false, ',', "2003-01-02"),
                            json("JSON", false, JsonWriter::Shape::array),
                            json("lines of JSON", false, JsonWriter::Shape::lines)};
  for (const Format& format : formats) {
    SCOPED_TRACE(format.name);
    goRound(format);
    const std::vector<std::string> lost = differences();
    EXPECT_EQ(exported_.changed, static_cast<std::int64_t>(lost.size())) << testing::PrintToString(lost);
  }
}

// A text that SQLite would make a number of can only be there by another program's tricks.
TEST_F(EveryValueTest, WhatAColumnWouldNotTakeIsCountedEvenThen) {
  OtherProgram(path_).run(
      "CREATE TABLE Odd (N Text); INSERT INTO Odd VALUES ('5'), ('five'); PRAGMA writable_schema = ON; "
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE Odd (N Integer)' WHERE name = 'Odd'");
  for (const bool isExact : {false, true}) {
    CsvWriter::Options options;
    options.isExact = isExact;
    CsvWriter writer(options);
    JsonWriter json(JsonWriter::Shape::lines, isExact);
    exported("Odd", writer);
    EXPECT_EQ(exported_.changed, isExact ? 1 : 2);
    exported("Odd", json);
    EXPECT_EQ(exported_.changed, isExact ? 1 : 2);
  }
}

TEST_F(EveryValueTest, AnExactFileMakesANewTableToo) {
  prepare("CREATE TABLE Mixed (A Text, B Date); INSERT INTO Mixed VALUES ('007', 5), (x'41', '01/02/2003')");
  CsvWriter::Options csv;
  csv.isExact = true;
  CsvWriter writer(csv);
  const std::string file = exported("Mixed", writer);
  options_.table = "Back";
  options_.isExact = true;
  import(file);
  EXPECT_EQ(contents("A", "Back"), "text:'007'; blob:X'41'");
}

}  // namespace
}  // namespace store::exchange
