#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "platform/store/odbc/driver/call_thread.h"
#include "platform/store/odbc/driver/odbc_connection.h"

namespace store {

/// The rows of a SELECT as the server makes them, read in the background through a conversation of its own
/// and as they were at one moment. A few of them are read ahead, however large they are; nothing else is
/// kept.
class RowReading {
 public:
  /// Begins to read. `connection` is used by nobody else meanwhile; `columns` is how many `select` has.
  RowReading(std::unique_ptr<OdbcConnection> connection, const std::string& select, std::size_t columns);
  /// Ends the reading, wherever it is; what its statement has changed is kept only if it was read to the end.
  ~RowReading();
  RowReading(const RowReading&) = delete;
  RowReading& operator=(const RowReading&) = delete;

  /// Replaces `*texts` by the rows that follow, as texts (row_text.h) one behind the other; empty behind the
  /// last. Done, and nothing is replaced, with `*hasCome` false when nothing has come within that time.
  Status take(std::chrono::milliseconds time, std::string* texts, bool* hasCome);

  /// Ends the reading and gives its conversation back; null when that is of no use for others. To be called
  /// last.
  std::unique_ptr<OdbcConnection> release();

 private:
  class State;

  std::shared_ptr<State> state_;
  CallThread thread_;
};

}  // namespace store
