#pragma once

#include <string>
#include <string_view>

#include "platform/store/exchange/bytes/byte_sink.h"
#include "platform/store/exchange/bytes/byte_source.h"
#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

/// The records that an import could not take, as a file of separated values: the line of the file on which
/// each begins, the reason, and its fields.

/// What stands above them.
inline constexpr std::string_view kRejectTitles = "Line,Reason,Fields\r\n";

/// One of them, with the end of its line.
std::string rejectLine(const Record& record, const std::string& reason);

/// Gathers the list in a temporary file, so that there may be more of them than memory holds.
class RejectList {
 public:
  /// What can't be gathered does not keep an import from going on: copyTo fails then.
  void add(const Record& record, const std::string& reason);
  /// Writes the whole list. inputOutput when it could not be gathered or can't be written.
  Status copyTo(ByteSink& sink);

 private:
  FileHandle file_;  // null without a record
  Status status_;
};

}  // namespace store::exchange
