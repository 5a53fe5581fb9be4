#include "platform/store/exchange/formats/csv_writer.h"

#include <algorithm>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

constexpr char kQuote = '"';

bool isBlank(char character) {
  return character == ' ' || character == '\t';
}

/// Whether a text without quotes would be taken for a value of another kind.
bool looksLikeValue(std::string_view text) {
  const char first = text.front();
  if ((first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.') return true;
  if (first == 't' || first == 'T') return equalsIgnoringCase(text, "true");
  if (first == 'f' || first == 'F') return equalsIgnoringCase(text, "false");
  return (first == 'x' || first == 'X') && text.size() > 1 && text[1] == '\'';
}

void writeQuoted(std::string_view text, TextOutput& output) {
  output.put(kQuote);
  std::size_t quote = 0;
  while ((quote = text.find(kQuote)) != std::string_view::npos) {
    output.put(text.substr(0, quote + 1));
    output.put(kQuote);
    text.remove_prefix(quote + 1);
  }
  output.put(text);
  output.put(kQuote);
}

}  // namespace

CsvWriter::CsvWriter(const Options& options) : options_(options) {
  for (const char character : {options_.format.separator, kQuote, '\r', '\n'}) {
    isSpecial_[static_cast<unsigned char>(character)] = true;
  }
}

bool CsvWriter::needsQuotes(std::string_view text) const {
  if (text.empty() || isBlank(text.front()) || isBlank(text.back()) || text == options_.format.nullText)
    return true;
  return std::any_of(text.begin(), text.end(),
                     [this](char character) { return isSpecial_[static_cast<unsigned char>(character)]; });
}

void CsvWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  kinds_ = kindsOf(columns);
  if (options_.hasMark) output.put("\xEF\xBB\xBF");
  if (!options_.format.hasHeader) return;
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (index > 0) output.put(options_.format.separator);
    writeText(columns[index].name, ValueKind::text, output);
  }
  output.put(options_.lineEnd);
}

void CsvWriter::writeText(std::string_view text, ValueKind kind, TextOutput& output) {
  const bool isPlainDate = kind == ValueKind::date && parseIsoDate(text);
  if ((!isPlainDate && !text.empty() && looksLikeValue(text)) || needsQuotes(text)) {
    writeQuoted(text, output);
  } else {
    output.put(text);
  }
}

void CsvWriter::writeCell(const Cell& cell, ValueKind kind, TextOutput& output) {
  switch (cell.kind) {
    case CellKind::integer:
      if (kind == ValueKind::boolean && (cell.integer == 0 || cell.integer == 1)) {
        output.put(cell.integer == 1 ? "true" : "false");
      } else {
        putInteger(cell.integer, output);
      }
      break;
    case CellKind::real:
      putReal(cell.real, kind == ValueKind::any, output);
      break;
    case CellKind::text:
      if (!isWellFormed(cell.bytes)) countChanged();
      writeText(cell.bytes, kind, output);
      break;
    case CellKind::blob:
      output.put("x'");
      putHex(cell.bytes, output);
      output.put('\'');
      break;
    default:
      output.put(options_.format.nullText);
  }
}

void CsvWriter::writeRow(RowStream& rows, TextOutput& output) {
  for (std::size_t index = 0; index < kinds_.size(); ++index) {
    if (index > 0) output.put(options_.format.separator);
    writeCell(rows.cell(index), kinds_[index], output);
  }
  output.put(options_.lineEnd);
}

void CsvWriter::end(TextOutput& /*output*/) {}

}  // namespace store::exchange
