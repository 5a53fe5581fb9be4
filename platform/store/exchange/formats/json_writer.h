#pragma once

#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

/// Writes an array of objects, each on a line of its own, or only the objects, one a line. Truth values are
/// true and false; bytes are {"hex": "..."}; what no number of JSON can be (infinity) is a text.
class JsonWriter : public RowWriter {
 public:
  enum class Shape { array, lines };
  explicit JsonWriter(Shape shape) : shape_(shape) {}

  void begin(const std::vector<Column>& columns, TextOutput& output) override;
  void writeRow(RowStream& rows, TextOutput& output) override;
  void end(TextOutput& output) override;

 private:
  void writeCell(const Cell& cell, ValueKind kind, TextOutput& output);

  Shape shape_;
  std::vector<ValueKind> kinds_;
  std::vector<std::string> names_;  // as JSON
  std::string text_;
  bool isFirst_ = true;
};

}  // namespace store::exchange
