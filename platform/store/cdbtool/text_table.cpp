#include "platform/store/cdbtool/text_table.h"

#include <algorithm>

#include "platform/store/exchange/formats/number_text.h"

namespace cdbtool {

using store::Cell;
using store::CellKind;
using store::exchange::ValueKind;

namespace {

constexpr std::size_t kMostWaitingBytes = std::size_t{8} << 20;
constexpr std::string_view kHex = "0123456789ABCDEF";

std::string lineOf(std::string_view text) {
  std::string line;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
      case '\n':
        line += "\\n";
        break;
      case '\r':
        line += "\\r";
        break;
      case '\t':
        line += "\\t";
        break;
      default:
        // Whatever else could move a terminal's cursor or change its colours.
        if (byte < 0x20 || byte == 0x7F) {
          line += "\\x";
          line += kHex[byte >> 4];
          line += kHex[byte & 15];
        } else {
          line += character;
        }
    }
  }
  return line;
}

std::string hexOf(std::string_view bytes) {
  std::string text;
  for (const char character : bytes) {
    text += kHex[static_cast<unsigned char>(character) >> 4];
    text += kHex[static_cast<unsigned char>(character) & 15];
  }
  return text;
}

}  // namespace

std::string shownText(const Cell& cell, ValueKind kind) {
  switch (cell.kind) {
    case CellKind::integer:
      if (kind == ValueKind::boolean && (cell.integer == 0 || cell.integer == 1)) {
        return cell.integer == 1 ? "true" : "false";
      }
      return std::to_string(cell.integer);
    case CellKind::real:
      return std::string(std::string_view(store::exchange::RealText(cell.real)));
    case CellKind::text:
      return lineOf(cell.bytes);
    case CellKind::blob:
      return hexOf(cell.bytes);
    default:
      return {};
  }
}

std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
    return (static_cast<unsigned char>(character) & 0xC0) != 0x80;
  }));
}

void TextTableWriter::put(std::size_t index, std::string_view text, bool isNumber,
                          store::exchange::TextOutput& output) {
  const std::size_t width = widthOf(text);
  const std::size_t blanks = widths_[index] - std::min(width, widths_[index]);
  const bool isLast = index + 1 == widths_.size();
  if (index > 0) output.put("  ");
  if (isNumber) output.put(std::string(blanks, ' '));
  output.put(text);
  // No blanks at the end of a line.
  if (!isNumber && !isLast) output.put(std::string(blanks, ' '));
  if (isLast) output.put('\n');
}

void TextTableWriter::begin(const std::vector<store::Column>& columns,
                            store::exchange::TextOutput& /*output*/) {
  kinds_ = store::exchange::kindsOf(columns);
  for (const store::Column& column : columns) {
    names_.push_back(lineOf(column.name));
    widths_.push_back(widthOf(names_.back()));
  }
}

void TextTableWriter::writeWaiting(store::exchange::TextOutput& output) {
  isWaiting_ = false;
  for (std::size_t index = 0; index < names_.size(); ++index) put(index, names_[index], false, output);
  for (std::size_t index = 0; index < names_.size(); ++index) {
    put(index, std::string(widths_[index], '-'), false, output);
  }
  std::size_t begin = 0;
  for (std::size_t number = 0; number < ends_.size(); ++number) {
    put(number % names_.size(), std::string_view(texts_).substr(begin, ends_[number] - begin),
        areNumbers_[number], output);
    begin = ends_[number];
  }
  texts_ = {};
  ends_ = {};
  areNumbers_ = {};
}

void TextTableWriter::writeRow(store::RowStream& rows, store::exchange::TextOutput& output) {
  for (std::size_t index = 0; index < kinds_.size(); ++index) {
    const Cell cell = rows.cell(index);
    const bool isNumber = (cell.kind == CellKind::integer || cell.kind == CellKind::real) &&
                          kinds_[index] != ValueKind::boolean;
    const std::string text = shownText(cell, kinds_[index]);
    if (!isWaiting_) {
      put(index, text, isNumber, output);
      continue;
    }
    widths_[index] = std::max(widths_[index], widthOf(text));
    texts_ += text;
    ends_.push_back(texts_.size());
    areNumbers_.push_back(isNumber);
  }
  const std::size_t bytes = texts_.size() + ends_.size() * sizeof(std::size_t);
  if (isWaiting_ && bytes >= kMostWaitingBytes) writeWaiting(output);
}

void TextTableWriter::end(store::exchange::TextOutput& output) {
  if (isWaiting_) writeWaiting(output);
}

}  // namespace cdbtool
