#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/exchange/formats/row_writer.h"

namespace cdbtool {

/// A value as one line of text: what does not fit into a line is written as an escape, null is nothing.
std::string shownText(const store::Cell& cell, store::exchange::ValueKind kind);

/// How many columns of a terminal `text` takes, a character each.
std::size_t widthOf(std::string_view text);

/// Writes rows as aligned text. The first ones, some megabytes of them, decide how wide the columns are; in a
/// later row a wider value pushes those behind it to the right.
class TextTableWriter : public store::exchange::RowWriter {
 public:
  void begin(const std::vector<store::Column>& columns, store::exchange::TextOutput& output) override;
  void writeRow(store::RowStream& rows, store::exchange::TextOutput& output) override;
  void end(store::exchange::TextOutput& output) override;

 private:
  /// The names of the columns and the rows that wait.
  void writeWaiting(store::exchange::TextOutput& output);
  void put(std::size_t index, std::string_view text, bool isNumber, store::exchange::TextOutput& output);

  std::vector<std::string> names_;
  std::vector<std::size_t> widths_;
  std::vector<store::exchange::ValueKind> kinds_;
  bool isWaiting_ = true;  // for rows that make the columns wider
  // The values of the rows that wait, one after the other.
  std::string texts_;
  std::vector<std::size_t> ends_;
  std::vector<bool> areNumbers_;
};

}  // namespace cdbtool
