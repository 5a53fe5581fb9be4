#pragma once

#include "platform/store/exchange/formats/coming_back.h"
#include "platform/store/exchange/formats/csv_format.h"
#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

/// Writes separated values. Quotes stand around what would be read as something else without them: texts with
/// separators, quotes, line ends or blanks at an end, empty ones, and those that look like a number, a date,
/// a truth value or bytes. Truth values are true and false, bytes x'...', null is nothing; where a column has
/// no kind a text that is not made of characters is CAST(x'...' AS TEXT).
class CsvWriter : public RowWriter {
 public:
  struct Options {
    CsvFormat format;
    std::string_view lineEnd = "\r\n";
    bool hasMark = false;  ///< a byte-order mark in front
    bool isExact = false;  ///< as writtenColumns() takes it
  };
  explicit CsvWriter(const Options& options);

  void begin(const std::vector<Column>& columns, TextOutput& output) override;
  void writeRow(RowStream& rows, TextOutput& output) override;
  void end(TextOutput& output) override;

  /// One value of such a column, as it stands in a row.
  void writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output);

 private:
  void writeWithCare(const Cell& cell, const WrittenColumn& column, TextOutput& output);
  void writeText(std::string_view text, ValueKind kind, TextOutput& output);
  void writeName(std::string_view name, TextOutput& output);
  bool needsQuotes(std::string_view text) const;

  Options options_;
  bool isSpecial_[256] = {};  // makes quotes necessary wherever it stands
  bool needsCare_ = false;    // values without quotes may be taken for null or for several
  std::vector<WrittenColumn> columns_;
};

}  // namespace store::exchange
