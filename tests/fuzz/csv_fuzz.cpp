// The first byte chooses how the file is read, the others are the file: one of separated values.
#include <algorithm>
#include <memory>
#include <vector>

#include "platform/store/exchange/formats/csv_detection.h"
#include "platform/store/exchange/formats/csv_reader.h"
#include "platform/store/exchange/formats/csv_writer.h"
#include "platform/store/exchange/formats/value_reading.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

namespace exchange = store::exchange;

/// Gives few bytes at once, so that everything falls on the border of two parts some time.
class DripSource : public exchange::ByteSource {
 public:
  DripSource(std::string_view bytes, std::size_t most) : bytes_(bytes), most_(most) {}
  store::Status read(char* bytes, std::size_t room, std::size_t* count) override {
    *count = std::min({room, most_, bytes_.size() - position_});
    bytes_.copy(bytes, *count, position_);
    position_ += *count;
    return {};
  }
  store::Status rewind() override {
    position_ = 0;
    return {};
  }
  std::int64_t length() const override { return static_cast<std::int64_t>(bytes_.size()); }

 private:
  std::string_view bytes_;
  std::size_t most_;
  std::size_t position_ = 0;
};

struct Value {
  std::string text;
  exchange::FieldForm form;
  bool operator==(const Value&) const = default;
};
struct Row {
  std::vector<Value> values;
  std::int64_t line;
  std::string problem;
  bool operator==(const Row&) const = default;
};

std::vector<Row> readAll(exchange::ByteSource& source, exchange::Encoding encoding,
                         const exchange::CsvFormat& format) {
  std::vector<Row> rows;
  std::unique_ptr<exchange::CsvReader> reader;
  if (!exchange::CsvReader::open(source, encoding, format, &reader)) return rows;
  for (bool hasRecord = true;;) {
    fuzz::require(static_cast<bool>(reader->next(&hasRecord)), "what can be read is read to its end");
    if (!hasRecord) return rows;
    Row row{{}, reader->record().line, reader->record().problem};
    for (const exchange::Field& field : reader->record().fields) {
      row.values.push_back({std::string(field.text), field.form});
    }
    rows.push_back(std::move(row));
  }
}

/// The texts of a row, as they would come from a table.
class OneRow : public store::RowStream {
 public:
  explicit OneRow(const Row& row) : row_(row), columns_(row.values.size()) {}
  const std::vector<store::Column>& columns() const override { return columns_; }
  store::Status next(bool* hasRow) override {
    *hasRow = false;
    return {};
  }
  store::Cell cell(std::size_t index) override {
    store::Cell cell;
    const Value& value = row_.values[index];
    if (value.form == exchange::FieldForm::missing) return cell;
    cell.kind = store::CellKind::text;
    cell.bytes = value.text;
    return cell;
  }

 private:
  const Row& row_;
  std::vector<store::Column> columns_;
};

class StringSink : public exchange::ByteSink {
 public:
  store::Status write(std::string_view bytes) override {
    text += bytes;
    return {};
  }
  std::string text;
};

void requireComesBack(const Row& row, const exchange::CsvFormat& format) {
  StringSink sink;
  exchange::TextOutput output(sink);
  exchange::CsvWriter::Options options;
  options.format = format;
  exchange::CsvWriter writer(options);
  OneRow source(row);
  writer.begin(source.columns(), output);
  writer.writeRow(source, output);
  fuzz::require(static_cast<bool>(output.flush()), "a text takes all that is written");
  // A byte-order mark in front of a file is no text of it.
  if (sink.text.starts_with("\xEF\xBB\xBF")) return;
  exchange::MemorySource written(sink.text);
  const std::vector<Row> back = readAll(written, exchange::Encoding::utf8, format);
  // One column with nothing in it is an empty line.
  if (back.empty() && row.values.size() == 1) return;
  fuzz::require(back.size() == 1 && back[0].values.size() == row.values.size(), "one row is read again");
  for (std::size_t index = 0; index < row.values.size(); ++index) {
    const bool wasNull = row.values[index].form == exchange::FieldForm::missing;
    const bool isNull = back[0].values[index].form == exchange::FieldForm::missing;
    fuzz::require(wasNull == isNull, "null is read again as null alone");
    // (What is no character is not written as it stands.)
    std::string scratch;
    store::Cell cell;
    const exchange::Field field{back[0].values[index].text, back[0].values[index].form};
    fuzz::require(exchange::readValue(field, exchange::ValueKind::any, &scratch, &cell) == nullptr,
                  "what was written is a value");
    fuzz::require(wasNull || (cell.kind == store::CellKind::text && cell.bytes == row.values[index].text),
                  "a text is read again");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  if (length == 0) return 0;
  const unsigned choice = data[0];
  const std::string_view file = fuzz::textOf(data + 1, length - 1);
  exchange::CsvFormat format;
  format.hasHeader = false;
  format.separator = ",;\t|"[choice & 3];
  if ((choice & 4) != 0) format.nullText = "NULL";
  const auto encoding = static_cast<exchange::Encoding>(choice >> 3 & 3);

  exchange::MemorySource whole(file);
  const std::vector<Row> rows = readAll(whole, encoding, format);
  DripSource dripping(file, 1 + (choice >> 5));
  fuzz::require(readAll(dripping, encoding, format) == rows, "the borders of the parts make no difference");
  for (const Row& row : rows) {
    for (const Value& value : row.values) {
      fuzz::require(!row.problem.empty() || exchange::isWellFormed(value.text),
                    "what is taken is well-formed");
    }
    requireComesBack(row, format);
  }

  char separator = 0;
  bool isJson = false;
  exchange::Encoding detected = encoding;
  fuzz::require(exchange::detectEncoding(whole, &detected) &&
                    exchange::detectSeparator(whole, detected, &separator) &&
                    exchange::detectJson(whole, detected, &isJson),
                "anything can be looked at");
  return 0;
}
