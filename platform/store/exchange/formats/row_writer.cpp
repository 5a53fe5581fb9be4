#include "platform/store/exchange/formats/row_writer.h"

#include <charconv>

#include "platform/store/exchange/formats/number_text.h"

namespace store::exchange {

namespace {

constexpr std::int64_t kRowsBetweenLooks = 1024;
constexpr std::size_t kMostDigits = 24;
constexpr std::string_view kHex = "0123456789ABCDEF";

}  // namespace

std::vector<ValueKind> kindsOf(const std::vector<Column>& columns) {
  std::vector<ValueKind> kinds;
  for (const Column& column : columns) kinds.push_back(kindOf(column.declaredType));
  return kinds;
}

void putInteger(std::int64_t value, TextOutput& output) {
  char* place = output.room(kMostDigits);
  output.used(static_cast<std::size_t>(std::to_chars(place, place + kMostDigits, value).ptr - place));
}

void putReal(double value, bool keepsPoint, TextOutput& output) {
  const RealText real(value);
  const std::string_view text = real;
  output.put(text);
  if (keepsPoint && text.find_first_of(".e") == std::string_view::npos) output.put(".0");
}

std::string realText(double value, bool keepsPoint) {
  const RealText real(value);
  std::string text(real);
  if (keepsPoint && text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

void putHex(std::string_view bytes, TextOutput& output) {
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    output.put(kHex[byte >> 4]);
    output.put(kHex[byte & 15]);
  }
}

void appendHex(std::string_view bytes, std::string* text) {
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    *text += kHex[byte >> 4];
    *text += kHex[byte & 15];
  }
}

Status exportRows(RowStream& rows, RowWriter& writer, ByteSink& sink, ExportObserver& observer,
                  ExportResult* result) {
  TextOutput output(sink);
  ExportResult counts;
  writer.begin(rows.columns(), output);
  for (;;) {
    bool hasRow = false;
    if (Status status = rows.next(&hasRow); !status) {
      // Of a damaged file this may be all that is left.
      output.flush();
      return status;
    }
    if (!hasRow) break;
    writer.writeRow(rows, output);
    ++counts.rows;
    if (counts.rows % kRowsBetweenLooks != 0) continue;
    if (!output.status()) return output.status();
    if (!observer.goesOn(counts.rows)) return {ErrorCode::illegalOperation, "The export was cancelled."};
  }
  writer.end(output);
  if (Status status = output.flush(); !status) return status;
  counts.changed = writer.changedCount();
  *result = counts;
  return {};
}

}  // namespace store::exchange
