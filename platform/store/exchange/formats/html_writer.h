#pragma once

#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

/// Writes a page with one table that a browser shows and prints: the names stand on top of each sheet, no row
/// is cut in two.
class HtmlWriter : public RowWriter {
 public:
  explicit HtmlWriter(std::string title) : title_(std::move(title)) {}

  void begin(const std::vector<Column>& columns, TextOutput& output) override;
  void writeRow(RowStream& rows, TextOutput& output) override;
  void end(TextOutput& output) override;

 private:
  void writeCell(const Cell& cell, ValueKind kind, TextOutput& output);
  void writeText(std::string_view text, TextOutput& output);

  std::string title_;
  std::vector<ValueKind> kinds_;
};

}  // namespace store::exchange
