#include "platform/store/exchange/formats/csv_writer.h"

#include <algorithm>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

constexpr char kQuote = '"';
// What values that are no texts are written with.
constexpr std::string_view kSignsOfValues = "0123456789ABCDEFx'+-.etrufals(ST) ";
// Of a first line that would be taken for something else than names.
constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kSeparatorLine = "sep=";

bool isBlank(char character) {
  return character == ' ' || character == '\t';
}

/// Whether a text without quotes would be taken for a value of another kind.
bool looksLikeValue(std::string_view text) {
  const char first = text.front();
  if ((first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.') return true;
  if (first == 't' || first == 'T') return equalsIgnoringCase(text, "true");
  if (first == 'f' || first == 'F') return equalsIgnoringCase(text, "false");
  if (first == 'C') return text.starts_with("CAST(");
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
  const std::string& nullText = options_.format.nullText;
  needsCare_ = kSignsOfValues.find(options_.format.separator) != std::string_view::npos ||
               (!nullText.empty() && looksLikeValue(nullText));
}

bool CsvWriter::needsQuotes(std::string_view text) const {
  if (text.empty() || isBlank(text.front()) || isBlank(text.back()) || text == options_.format.nullText)
    return true;
  // At the very front they would be taken for something about the file.
  const char first = text.front();
  if (first == '{' || first == '[' || text.starts_with(kMark) || text.starts_with(kSeparatorLine))
    return true;
  return std::any_of(text.begin(), text.end(),
                     [this](char character) { return isSpecial_[static_cast<unsigned char>(character)]; });
}

void CsvWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  columns_ = writtenColumns(columns, options_.isExact);
  if (options_.hasMark) output.put(kMark);
  if (!options_.format.hasHeader) return;
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (index > 0) output.put(options_.format.separator);
    writeName(columns[index].name, output);
  }
  output.put(options_.lineEnd);
}

/// By the first line the reader finds out what the file is.
void CsvWriter::writeName(std::string_view name, TextOutput& output) {
  if (name.find_first_of(",;\t|") != std::string_view::npos) {
    writeQuoted(name, output);
  } else {
    writeText(name, ValueKind::text, output);
  }
}

void CsvWriter::writeText(std::string_view text, ValueKind kind, TextOutput& output) {
  const bool isPlainDate = kind == ValueKind::date && parseIsoDate(text);
  if ((!isPlainDate && !text.empty() && looksLikeValue(text)) || needsQuotes(text)) {
    writeQuoted(text, output);
  } else {
    output.put(text);
  }
}

void CsvWriter::writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output) {
  if (needsCare_ || !isOfKind(cell, column)) return writeWithCare(cell, column, output);
  switch (cell.kind) {
    case CellKind::integer:
      if (column.kind == ValueKind::boolean && (cell.integer == 0 || cell.integer == 1)) {
        output.put(cell.integer == 1 ? "true" : "false");
      } else {
        putInteger(cell.integer, output);
      }
      break;
    case CellKind::real:
      putReal(cell.real, column.kind == ValueKind::any, output);
      break;
    case CellKind::text:
      if (isWellFormed(cell.bytes)) return writeText(cell.bytes, column.kind, output);
      writeWithCare(cell, column, output);
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

/// Looks whether what is written comes back.
void CsvWriter::writeWithCare(const Cell& cell, const WrittenColumn& column, TextOutput& output) {
  std::string made;
  bool isText = false;
  switch (cell.kind) {
    case CellKind::integer:
      made = column.kind != ValueKind::boolean ? std::to_string(cell.integer)
             : cell.integer == 0               ? "false"
             : cell.integer == 1               ? "true"
                                               : std::to_string(cell.integer);
      break;
    case CellKind::real:
      made = realText(cell.real, column.kind == ValueKind::any);
      break;
    case CellKind::text:
      isText = column.kind != ValueKind::any || isWellFormed(cell.bytes);
      if (isText) break;
      made = "CAST(x'";
      appendHex(cell.bytes, &made);
      made += "' AS TEXT)";
      break;
    case CellKind::blob:
      made = "x'";
      appendHex(cell.bytes, &made);
      made += '\'';
      break;
    default:
      return output.put(options_.format.nullText);
  }
  const bool isWhole = !isText || isWellFormed(cell.bytes);
  // One wrong byte, and all of the file would be read as of another encoding.
  if (!isWhole) made = mended(cell.bytes);
  const std::string_view text = isText && isWhole ? cell.bytes : std::string_view(made);
  const bool isQuoted = needsQuotes(text) || (isText && looksLikeValue(text));
  if (isQuoted) {
    writeQuoted(text, output);
  } else {
    output.put(text);
  }
  const Field field{text, isQuoted ? FieldForm::quoted : FieldForm::bare};
  if (!isWhole || !comesBack(field, column, cell)) countChanged();
}

void CsvWriter::writeRow(RowStream& rows, TextOutput& output) {
  for (std::size_t index = 0; index < columns_.size(); ++index) {
    if (index > 0) output.put(options_.format.separator);
    writeCell(rows.cell(index), columns_[index], output);
  }
  output.put(options_.lineEnd);
}

void CsvWriter::end(TextOutput& /*output*/) {}

}  // namespace store::exchange
