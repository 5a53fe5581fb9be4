#include <bit>
#include <cmath>
#include <random>

#include "platform/store/exchange/formats/json_writer.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/rows/utf.h"
#include "tests/exchange/exchange_fixture.h"

// Whatever is in a table comes back from a file the same, to the byte.

namespace store::exchange {
namespace {

using namespace std::string_literals;

const char* const kDefinition =
    "(Small SmallInt, Whole Integer, Big Bigint, Wide Double, Exact Decimal (10, 2), Truth Bit, Moment "
    "Datetime, "
    "Day Date, Short Varchar (255), Long Text, Raw Varbinary (255), Image Long Varbinary, Free)";
const char* const kColumns = "Small,Whole,Big,Wide,Exact,Truth,Moment,Day,Short,Long,Raw,Image,Free";

class RoundTripTest : public ExchangeTest {
 protected:
  /// Any text that the interface can give: all of Unicode, zeros, halves of pairs, signs of the formats.
  std::string anyText() {
    static const std::u16string signs = u"\",;\t|\r\n\\'x tf0123456789.-+eE{}[]:uud8\0"s;
    std::u16string units;
    for (std::size_t length = random_() % 3 == 0 ? 0 : random_() % 12; length > 0; --length) {
      switch (random_() % 6) {
        case 0:
          units += static_cast<char16_t>(random_() % 0x10000);
          break;
        case 1:
          units += static_cast<char16_t>(0xD800 + random_() % 0x800);
          break;
        case 2:
          units += {static_cast<char16_t>(0xD800 + random_() % 0x400),
                    static_cast<char16_t>(0xDC00 + random_() % 0x400)};
          break;
        default:
          units += signs[random_() % signs.size()];
      }
    }
    return toUtf8(units);
  }
  std::string textLikeAValue() {
    static const std::vector<std::string> texts{
        "",           "5",    "007",  "1e5", "+3", "-0", "1.5", "true", "FALSE",           "x'41'",
        "2001-03-09", "NULL", "null", "inf", " ",  " a", "a ",  "\"",   "{\"hex\":\"41\"}"};
    return texts[random_() % texts.size()];
  }
  std::string anyBytes() {
    std::string bytes;
    for (std::size_t length = random_() % 5; length > 0; --length) bytes += static_cast<char>(random_());
    return bytes;
  }
  std::int64_t anyInteger() {
    const auto bits = static_cast<std::int64_t>(random_());
    return bits >> (random_() % 64);
  }
  double anyReal() {
    if (random_() % 8 == 0) return random_() % 2 ? INFINITY : -INFINITY;
    if (random_() % 3 == 0) return static_cast<double>(anyInteger());
    const double value = std::bit_cast<double>(random_());
    return std::isnan(value) ? 0.5 : value;
  }
  Value anyDate(bool mayHaveTime) {
    const double day = static_cast<double>(static_cast<int>(random_() % 60'000)) - 10'000;
    std::string text = *formatIsoDate(day, DateShape::date);
    if (mayHaveTime && random_() % 2) text += random_() % 2 ? " 14:05" : "T14:05:07.250Z";
    return text;
  }
  Value anyValue(std::size_t column) {
    if (random_() % 5 == 0) return {};
    switch (column) {
      case 0:
      case 1:
      case 2:
        return anyInteger();
      case 3:
        return anyReal();
      case 4:
        return random_() % 2 ? Value(anyInteger()) : Value(anyReal());
      case 5:
        return static_cast<std::int64_t>(random_() % 3) - 1;
      case 6:
        return anyDate(true);
      case 7:
        return anyDate(false);
      case 8:
      case 9:
        return random_() % 2 ? anyText() : textLikeAValue();
      case 10:
      case 11:
        return Blob{anyBytes()};
      default:
        switch (random_() % 4) {
          case 0:
            return anyInteger();
          case 1: {
            const double real = anyReal();
            return std::isinf(real) && !hasFreeInfinity_ ? 1.5 : real;
          }
          case 2:
            return random_() % 2 ? anyText() : textLikeAValue();
          default:
            return Blob{anyBytes()};
        }
    }
  }

  void fill(int count) {
    LoadTarget target{.createStatement = std::string("CREATE TABLE T ") + kDefinition, .table = "T"};
    std::string names = kColumns;
    for (std::size_t at = 0; at < names.size();) {
      const std::size_t comma = std::min(names.find(',', at), names.size());
      target.columns.push_back(names.substr(at, comma - at));
      at = comma + 1;
    }
    std::unique_ptr<TableLoad> load;
    ASSERT_TRUE(backend_->beginLoad(target, &load));
    for (int row = 0; row < count; ++row) {
      std::vector<Value> values;
      for (std::size_t column = 0; column < target.columns.size(); ++column)
        values.push_back(anyValue(column));
      std::vector<Cell> cells;
      for (const Value& value : values) cells.push_back(cellOf(value));
      const Status status = load->add(cells);
      ASSERT_TRUE(status) << status.message();
    }
    ASSERT_TRUE(load->commit());
  }
  static Cell cellOf(const Value& value) {
    Cell cell;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
      cell.kind = CellKind::integer;
      cell.integer = *integer;
    } else if (const auto* real = std::get_if<double>(&value)) {
      cell.kind = CellKind::real;
      cell.real = *real;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
      cell.kind = CellKind::text;
      cell.bytes = *text;
    } else if (const auto* blob = std::get_if<Blob>(&value)) {
      cell.kind = CellKind::blob;
      cell.bytes = blob->bytes;
    }
    return cell;
  }

  /// The records as SQLite keeps them: the table is put into an own file in both cases, whose bytes are
  /// compared.
  std::string storedBytes(const std::string& table) {
    const std::filesystem::path copy = folder_.file("stored.db");
    std::filesystem::remove(copy);
    {
      OtherProgram other(path_);
      other.run("ATTACH '" + utf8Of(copy) + "' AS copy; CREATE TABLE copy.T " + kDefinition +
                "; INSERT INTO copy.T SELECT * FROM main." + table + " ORDER BY rowid; DETACH copy");
    }
    return bytesOf(copy);
  }

  /// The first value of the column that came back as another one.
  std::string difference(const std::string& column) {
    const auto shown = [&column](const std::string& table) {
      const std::string name = table + "." + column;
      return "typeof(" + name + ") || ' ' || CASE typeof(" + name + ") WHEN 'text' THEN hex(" + name +
             ") ELSE quote(" + name + ") END";
    };
    return ask("SELECT " + shown("T") + " || ' became ' || " + shown("Back") +
               " FROM T JOIN Back ON T.rowid = Back.rowid WHERE " + shown("T") + " <> " + shown("Back"));
  }

  void goRound(RowWriter& writer) {
    const std::string file = exported("T", writer);
    run(std::string("CREATE TABLE Back ") + kDefinition);
    options_.table = "Back";
    import(file);
    EXPECT_EQ(result_.added, exported_.rows);
    std::string names = kColumns;
    for (std::size_t at = 0; at < names.size();) {
      const std::size_t comma = std::min(names.find(',', at), names.size());
      EXPECT_EQ(difference(names.substr(at, comma - at)), "(none)");
      at = comma + 1;
    }
    EXPECT_TRUE(storedBytes("Back") == storedBytes("T"));
  }

  bool hasFreeInfinity_ = true;  // JSON can't say it where there is no type
  std::mt19937_64 random_{20010309};
};

TEST_F(RoundTripTest, ThroughCsv) {
  open();
  fill(3000);
  CsvWriter writer({});
  goRound(writer);
}

TEST_F(RoundTripTest, ThroughCsvOfEverySeparator) {
  open();
  fill(300);
  for (const char separator : {';', '\t', '|'}) {
    CsvWriter::Options options;
    options.format.separator = separator;
    options.lineEnd = "\n";
    options.hasMark = separator == '|';
    CsvWriter writer(options);
    goRound(writer);
    run("DROP TABLE Back");
  }
}

TEST_F(RoundTripTest, ThroughCsvWithAnotherTextForNull) {
  open();
  fill(300);
  CsvWriter::Options options;
  options.format.nullText = options_.nullText = "NULL";
  CsvWriter writer(options);
  goRound(writer);
}

TEST_F(RoundTripTest, ThroughAnArrayOfJson) {
  open();
  hasFreeInfinity_ = false;
  fill(3000);
  JsonWriter writer(JsonWriter::Shape::array);
  goRound(writer);
}

TEST_F(RoundTripTest, ThroughLinesOfJson) {
  open();
  hasFreeInfinity_ = false;
  fill(300);
  JsonWriter writer(JsonWriter::Shape::lines);
  goRound(writer);
}

// Where the types are found out as well, what a user sees is the same, and so are the types.
TEST_F(RoundTripTest, ThroughANewTable) {
  prepare(
      "CREATE TABLE T (N Integer, L Bigint, X Float, B Bit, D Date, M Datetime, S Text); INSERT INTO T "
      "VALUES "
      "(1, 5000000000, 0.1, 1, '2001-03-09', '2001-03-09 14:05', '007'), (-2, NULL, 2, 0, NULL, "
      "'2001-03-09', '5'), "
      "(NULL, 1, NULL, NULL, '1999-12-31', NULL, NULL), (0, -1, 1e300, 1, '2000-02-29', '2001-03-09', '')");
  open();
  const std::string columns = "N,L,X,B,D,M,S";
  CsvWriter csv({});
  JsonWriter json(JsonWriter::Shape::array);
  const std::string files[] = {exported("T", csv), exported("T", json)};
  for (const std::string& file : files) {
    options_.table = "Back";
    import(file);
    EXPECT_EQ(typesOf("Back"), typesOf("T"));
    EXPECT_EQ(contents(columns, "Back"), contents(columns, "T"));
    run("DROP TABLE Back");
  }
}

}  // namespace
}  // namespace store::exchange
