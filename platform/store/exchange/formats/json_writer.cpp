#include "platform/store/exchange/formats/json_writer.h"

#include <cmath>
#include <set>

#include "platform/store/exchange/formats/json_text.h"

namespace store::exchange {

void JsonWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  kinds_ = kindsOf(columns);
  std::set<std::string> taken;
  for (const Column& column : columns) {
    // An object can't have two members of one name, a query can have two such columns.
    std::string name = column.name;
    for (int number = 2; !taken.insert(name).second; ++number)
      name = column.name + " " + std::to_string(number);
    std::string json;
    appendJsonText(name, &json);
    names_.push_back(std::move(json));
  }
  if (shape_ == Shape::array) output.put('[');
}

void JsonWriter::writeRow(RowStream& rows, TextOutput& output) {
  if (shape_ == Shape::array) output.put(isFirst_ ? "\n" : ",\n");
  isFirst_ = false;
  output.put('{');
  for (std::size_t index = 0; index < kinds_.size(); ++index) {
    if (index > 0) output.put(',');
    output.put(names_[index]);
    output.put(':');
    writeCell(rows.cell(index), kinds_[index], output);
  }
  output.put('}');
  if (shape_ == Shape::lines) output.put('\n');
}

void JsonWriter::writeCell(const Cell& cell, ValueKind kind, TextOutput& output) {
  switch (cell.kind) {
    case CellKind::integer:
      if (kind == ValueKind::boolean && (cell.integer == 0 || cell.integer == 1)) {
        output.put(cell.integer == 1 ? "true" : "false");
      } else {
        putInteger(cell.integer, output);
      }
      break;
    case CellKind::real:
      if (std::isfinite(cell.real)) {
        putReal(cell.real, kind == ValueKind::any, output);
      } else {
        output.put(cell.real > 0 ? "\"inf\"" : "\"-inf\"");
        // Where any text can be, nothing tells that this is none.
        if (kind == ValueKind::any) countChanged();
      }
      break;
    case CellKind::text:
      text_.clear();
      if (!appendJsonText(cell.bytes, &text_)) countChanged();
      output.put(text_);
      break;
    case CellKind::blob:
      output.put("{\"hex\":\"");
      putHex(cell.bytes, output);
      output.put("\"}");
      break;
    default:
      output.put("null");
  }
}

void JsonWriter::end(TextOutput& output) {
  if (shape_ == Shape::array) output.put(isFirst_ ? "]\n" : "\n]\n");
}

}  // namespace store::exchange
