#include "platform/store/exchange/formats/html_writer.h"

#include "platform/store/exchange/bytes/encoding.h"

namespace store::exchange {

namespace {

constexpr std::string_view kHead =
    "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width\">\n<title>";
constexpr std::string_view kStyle =
    "</title>\n<style>\nbody { font-family: sans-serif; }\ntable { border-collapse: collapse; }\n"
    "th, td { border: 1px solid #999; padding: 0.2em 0.5em; text-align: left; vertical-align: top; "
    "white-space: "
    "pre-wrap; }\n"
    "th { background: #eee; }\ntd.n { text-align: right; }\ntd.e { background: #f6f6f6; }\n"
    "@media print { thead { display: table-header-group; } tr { break-inside: avoid; } body { font-size: "
    "9pt; } }\n"
    "</style>\n</head>\n<body>\n<table>\n";

}  // namespace

void HtmlWriter::writeText(std::string_view text, TextOutput& output) {
  for (const char character : text) {
    switch (character) {
      case '&':
        output.put("&amp;");
        break;
      case '<':
        output.put("&lt;");
        break;
      case '>':
        output.put("&gt;");
        break;
      case '"':
        output.put("&quot;");
        break;
      case '\0':
        output.put("\xE2\x90\x80");
        break;
      default:
        output.put(character);
    }
  }
}

void HtmlWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  kinds_ = kindsOf(columns);
  output.put(kHead);
  writeText(title_, output);
  output.put(kStyle);
  output.put("<caption>");
  writeText(title_, output);
  output.put("</caption>\n<thead>\n<tr>");
  for (const Column& column : columns) {
    output.put("<th>");
    writeText(column.name, output);
    output.put("</th>");
  }
  output.put("</tr>\n</thead>\n<tbody>\n");
}

void HtmlWriter::writeRow(RowStream& rows, TextOutput& output) {
  output.put("<tr>");
  for (std::size_t index = 0; index < kinds_.size(); ++index)
    writeCell(rows.cell(index), kinds_[index], output);
  output.put("</tr>\n");
}

void HtmlWriter::writeCell(const Cell& cell, ValueKind kind, TextOutput& output) {
  const bool isNumber = cell.kind == CellKind::integer || cell.kind == CellKind::real;
  const bool isTruth = kind == ValueKind::boolean && cell.kind == CellKind::integer;
  output.put(cell.kind == CellKind::null ? "<td class=\"e\">"
             : isNumber && !isTruth      ? "<td class=\"n\">"
                                         : "<td>");
  switch (cell.kind) {
    case CellKind::integer:
      if (isTruth) {
        output.put(cell.integer != 0 ? "true" : "false");
      } else {
        putInteger(cell.integer, output);
      }
      break;
    case CellKind::real:
      putReal(cell.real, false, output);
      break;
    case CellKind::text:
      if (!isWellFormed(cell.bytes)) countChanged();
      writeText(cell.bytes, output);
      break;
    case CellKind::blob:
      putHex(cell.bytes, output);
      break;
    default:
      break;
  }
  output.put("</td>");
}

void HtmlWriter::end(TextOutput& output) {
  output.put("</tbody>\n</table>\n</body>\n</html>\n");
}

}  // namespace store::exchange
