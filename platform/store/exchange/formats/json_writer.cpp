#include "platform/store/exchange/formats/json_writer.h"

#include <cmath>
#include <set>

#include "platform/store/exchange/formats/json_text.h"

namespace store::exchange {

void JsonWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  columns_ = writtenColumns(columns, isExact_);
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
  for (std::size_t index = 0; index < columns_.size(); ++index) {
    if (index > 0) output.put(',');
    output.put(names_[index]);
    output.put(':');
    writeCell(rows.cell(index), columns_[index], output);
  }
  output.put('}');
  if (shape_ == Shape::lines) output.put('\n');
}

/// Leaves in text_ what will be read; the result is how.
FieldForm JsonWriter::writeReal(double value, const WrittenColumn& column, TextOutput& output) {
  const bool isAny = column.kind == ValueKind::any;
  if (std::isfinite(value)) {
    text_ = realText(value, isAny);
    output.put(text_);
    return FieldForm::number;
  }
  const std::string_view name = value > 0 ? "inf" : "-inf";
  output.put(isAny ? "{\"real\":\"" : "\"");
  output.put(name);
  output.put(isAny ? "\"}" : "\"");
  text_ = isAny ? realText(value, false) : std::string(name);
  return isAny ? FieldForm::number : FieldForm::string;
}

/// Where it is no text any more, the form says so.
FieldForm JsonWriter::writeText(std::string_view text, const WrittenColumn& column, TextOutput& output) {
  text_.clear();
  const bool isWhole = appendJsonText(text, &text_);
  if (isWhole || column.kind != ValueKind::any) {
    output.put(text_);
    return isWhole ? FieldForm::string : FieldForm::missing;
  }
  output.put("{\"texthex\":\"");
  putHex(text, output);
  output.put("\"}");
  return FieldForm::textBytes;
}

void JsonWriter::writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output) {
  const bool isSure = isOfKind(cell, column);
  Field field;
  switch (cell.kind) {
    case CellKind::integer:
      if (column.kind == ValueKind::boolean && (cell.integer == 0 || cell.integer == 1)) {
        field = {cell.integer == 1 ? "true" : "false", FieldForm::word};
        output.put(field.text);
        break;
      }
      putInteger(cell.integer, output);
      if (isSure) return;
      text_ = std::to_string(cell.integer);
      field = {text_, FieldForm::number};
      break;
    case CellKind::real:
      if (isSure && std::isfinite(cell.real))
        return putReal(cell.real, column.kind == ValueKind::any, output);
      field.form = writeReal(cell.real, column, output);
      field.text = text_;
      break;
    case CellKind::text:
      field.form = writeText(cell.bytes, column, output);
      if (field.form == FieldForm::missing) return countChanged();
      if (isSure) return;
      // (The bytes of a text are read as they are.)
      field = {cell.bytes, FieldForm::string};
      break;
    case CellKind::blob:
      output.put("{\"hex\":\"");
      putHex(cell.bytes, output);
      output.put("\"}");
      if (isSure) return;
      text_.clear();
      appendHex(cell.bytes, &text_);
      field = {text_, FieldForm::bytes};
      break;
    default:
      return output.put("null");
  }
  if (!isSure && !comesBack(field, column, cell)) countChanged();
}

void JsonWriter::end(TextOutput& output) {
  if (shape_ == Shape::array) output.put(isFirst_ ? "]\n" : "\n]\n");
}

}  // namespace store::exchange
