#pragma once

#include <string>
#include <vector>

#include "platform/store/exchange/formats/row_writer.h"

namespace cdbtool {

/// A value as one line of text: what does not fit into a line is written as an escape, null is nothing.
std::string shownText(const store::Cell& cell, store::exchange::ValueKind kind);

/// How many columns of a terminal `text` takes, a character each.
std::size_t widthOf(std::string_view text);

/// Writes rows as aligned text. The widths of the columns must be known before: so the rows are gone through
/// twice, once by measure().
class TextTableWriter : public store::exchange::RowWriter {
 public:
  store::Status measure(store::RowStream& rows);

  void begin(const std::vector<store::Column>& columns, store::exchange::TextOutput& output) override;
  void writeRow(store::RowStream& rows, store::exchange::TextOutput& output) override;
  void end(store::exchange::TextOutput& output) override;

 private:
  void put(std::size_t index, const std::string& text, bool isNumber, store::exchange::TextOutput& output);

  std::vector<std::size_t> widths_;
  std::vector<store::exchange::ValueKind> kinds_;
};

}  // namespace cdbtool
