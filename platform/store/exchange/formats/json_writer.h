#pragma once

#include "platform/store/exchange/formats/coming_back.h"
#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

/// Writes an array of objects, each on a line of its own, or only the objects, one a line. Truth values are
/// true and false; bytes are {"hex": "..."}; what no number of JSON can be (infinity) is a text. Where a
/// column has no kind, infinity is {"real": "inf"} and a text that is not made of characters {"texthex":
/// "..."}.
class JsonWriter : public RowWriter {
 public:
  enum class Shape { array, lines };
  /// `isExact` as writtenColumns() takes it.
  explicit JsonWriter(Shape shape, bool isExact = false) : shape_(shape), isExact_(isExact) {}

  void begin(const std::vector<Column>& columns, TextOutput& output) override;
  void writeRow(RowStream& rows, TextOutput& output) override;
  void end(TextOutput& output) override;

 private:
  void writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output);
  FieldForm writeReal(double value, const WrittenColumn& column, TextOutput& output);
  FieldForm writeText(std::string_view text, const WrittenColumn& column, TextOutput& output);

  Shape shape_;
  bool isExact_;
  std::vector<WrittenColumn> columns_;
  std::vector<std::string> names_;  // as JSON
  std::string text_;
  bool isFirst_ = true;
};

}  // namespace store::exchange
